#include "simulator/PropertyListLimits.h"

#include "simulator/PropertyList.h"

#include <QStringDecoder>
#include <QXmlStreamReader>

#include <optional>
#include <vector>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// Apple's reader takes a comment with "--" in it, which isn't XML: hand-written launch plists have such
/// ones, where a program's option was commented out. Literal text is left alone, as it may only look like a
/// comment.
QString withoutComments(const QString& xml) {
    const QString opening = u"<!--"_s;
    const QString closing = u"-->"_s;
    if (xml.contains(u"<![CDATA["_s)) {
        return xml;
    }
    QString kept;
    qsizetype from = 0;
    for (;;) {
        const qsizetype start = xml.indexOf(opening, from);
        const qsizetype end = start < 0 ? -1 : xml.indexOf(closing, start + opening.size());
        if (end < 0) {
            return kept + xml.mid(from);
        }
        kept += QStringView(xml).mid(from, start - from);
        from = end + closing.size();
    }
}

bool isAcceptable(QXmlStreamReader& reader, int& depth) {
    switch (reader.readNext()) {
    case QXmlStreamReader::StartElement:
        return ++depth <= kMaximumPropertyListDepth + 1; // the element plist is one level
    case QXmlStreamReader::EndElement:
        --depth;
        return true;
    case QXmlStreamReader::DTD:
        return !reader.text().contains(u'[');
    case QXmlStreamReader::ProcessingInstruction:
        return false;
    default:
        return true;
    }
}

/// The parts of a binary list's last 32 bytes, and access to its objects.
class BinaryLayout {
public:
    static constexpr qsizetype kHeaderSize = 8;
    static constexpr qsizetype kTrailerSize = 32;

    explicit BinaryLayout(const QByteArray& bytes)
        : m_bytes(bytes)
        , m_end(bytes.size() - kTrailerSize)
        , m_offsetSize(number(m_end + 6, 1).value_or(0))
        , m_referenceSize(number(m_end + 7, 1).value_or(0))
        , m_objectCount(number(m_end + 8, 8).value_or(0))
        , m_offsetTable(number(m_end + 24, 8).value_or(0)) {}

    std::optional<quint64> root() const { return number(m_end + 16, 8); }

    /// Where an object begins.
    std::optional<qsizetype> objectStart(quint64 index) const {
        const auto limit = static_cast<quint64>(m_bytes.size());
        if (index >= m_objectCount || m_objectCount > limit || m_offsetTable > limit || m_offsetSize > 8) {
            return std::nullopt;
        }
        const auto start = number(static_cast<qsizetype>(m_offsetTable + index * m_offsetSize), m_offsetSize);
        return start && *start < limit ? std::optional(static_cast<qsizetype>(*start)) : std::nullopt;
    }

    /// A big-endian number.
    std::optional<quint64> number(qsizetype at, quint64 size) const {
        if (size < 1 || size > 8 || at < kHeaderSize || at > m_bytes.size() - static_cast<qsizetype>(size)) {
            return std::nullopt;
        }
        quint64 value = 0;
        for (quint64 i = 0; i < size; ++i) {
            value = (value << 8) | static_cast<quint8>(m_bytes[at + static_cast<qsizetype>(i)]);
        }
        return value;
    }

    quint64 referenceSize() const { return m_referenceSize; }
    quint8 byteAt(qsizetype at) const { return static_cast<quint8>(m_bytes[at]); }
    quint64 size() const { return static_cast<quint64>(m_bytes.size()); }

private:
    const QByteArray& m_bytes;
    qsizetype m_end;
    quint64 m_offsetSize;
    quint64 m_referenceSize;
    quint64 m_objectCount;
    quint64 m_offsetTable;
};

struct BinaryObject {
    quint64 weight = 0;         ///< what libplist will spend on it, in bytes
    qsizetype references = 0;   ///< where its references begin
    quint64 referenceCount = 0; ///< keys and values of a dictionary, items of an array
};

/// libplist stops the process at a key with a null character.
bool isWholeText(const BinaryLayout& layout, qsizetype start, quint64 length, quint64 unitSize) {
    for (quint64 i = 0; i < length; ++i) {
        if (layout.number(start + static_cast<qsizetype>(i * unitSize), unitSize).value_or(0) == 0) {
            return false;
        }
    }
    return true;
}

/// The kind of object is in the upper half of its first byte, its length in the lower one or, from 15, in the
/// integer that follows.
std::optional<BinaryObject> binaryObject(const BinaryLayout& layout, quint64 index) {
    constexpr quint64 kNodeWeight = 64;
    const std::optional<qsizetype> start = layout.objectStart(index);
    if (!start) {
        return std::nullopt;
    }
    const int kind = layout.byteAt(*start) >> 4;
    quint64 length = layout.byteAt(*start) & 0x0f;
    qsizetype next = *start + 1;
    if (length == 0x0f && kind >= 0x4) {
        const auto marker = layout.number(next, 1);
        const quint64 size = marker ? quint64{1} << (*marker & 0x0f) : 0;
        const auto counted = layout.number(next + 1, size);
        if (!counted || *marker >> 4 != 0x1) {
            return std::nullopt;
        }
        length = *counted;
        next += 1 + static_cast<qsizetype>(size);
    }
    if (length > layout.size()) {
        return std::nullopt;
    }
    if ((kind == 0x5 && !isWholeText(layout, next, length, 1)) ||
        (kind == 0x6 && !isWholeText(layout, next, length, 2))) {
        return std::nullopt;
    }
    const quint64 references = kind == 0xd ? 2 * length : kind >= 0xa ? length : 0;
    return BinaryObject{kNodeWeight + length, next, references};
}

} // namespace

QByteArray soundXmlPropertyList(const QByteArray& bytes) {
    QStringDecoder decode(QStringDecoder::encodingForData(bytes, u'<').value_or(QStringDecoder::Utf8));
    const QString xml = withoutComments(decode(bytes));
    QXmlStreamReader reader(xml);
    reader.setNamespaceProcessing(false);
    int depth = 0;
    while (!reader.atEnd()) {
        if (!isAcceptable(reader, depth)) {
            return {};
        }
    }
    return reader.hasError() ? QByteArray() : xml.toUtf8();
}

bool isSoundBinaryPropertyList(const QByteArray& bytes) {
    struct Visit {
        quint64 index;
        int depth;
    };
    constexpr quint64 kMaximumWeight = 67'108'864; // 64 MiB
    if (bytes.size() < BinaryLayout::kHeaderSize + BinaryLayout::kTrailerSize) {
        return false;
    }
    const BinaryLayout layout(bytes);
    std::vector<Visit> pending{{layout.root().value_or(~quint64{0}), 0}};
    quint64 weight = 0;
    while (!pending.empty()) {
        const Visit visit = pending.back();
        pending.pop_back();
        const std::optional<BinaryObject> object = binaryObject(layout, visit.index);
        if (!object || visit.depth > kMaximumPropertyListDepth) {
            return false;
        }
        weight += object->weight;
        if (weight + 64 * (pending.size() + object->referenceCount) > kMaximumWeight) {
            return false;
        }
        for (quint64 i = 0; i < object->referenceCount; ++i) {
            const auto at = object->references + static_cast<qsizetype>(i * layout.referenceSize());
            const std::optional<quint64> reference = layout.number(at, layout.referenceSize());
            if (!reference) {
                return false;
            }
            pending.push_back({*reference, visit.depth + 1});
        }
    }
    return true;
}

} // namespace macsim
