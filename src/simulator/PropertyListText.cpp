#include "simulator/PropertyListText.h"

#include <QLocale>

#include <algorithm>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kIndentation = 4;
constexpr qsizetype kLongestWholeData = 24;

bool isPlain(QChar character) {
    const char16_t unit = character.unicode();
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') || (unit >= u'0' && unit <= u'9');
}

/// `defaults` prints a character beyond ASCII, or one that can't be seen, with two backslashes.
QString escaped(QChar character) {
    switch (character.unicode()) {
    case u'"':
        return u"\\\""_s;
    case u'\\':
        return u"\\\\"_s;
    case u'\n':
        return u"\\n"_s;
    case u'\r':
        return u"\\r"_s;
    case u'\t':
        return u"\\t"_s;
    default:
        break;
    }
    if (character.unicode() >= 0x20 && character.unicode() < 0x7f) {
        return character;
    }
    return u"\\\\U%1"_s.arg(uint{character.unicode()}, 4, 16, QChar(u'0'));
}

QString quotedIfNeeded(const QString& text) {
    if (!text.isEmpty() && std::all_of(text.cbegin(), text.cend(), isPlain)) {
        return text;
    }
    QString quoted(u'"');
    for (const QChar character : text) {
        quoted += escaped(character);
    }
    return quoted + u'"';
}

QString dataText(const QByteArray& data) {
    const QString length = u"{length = %1, bytes = 0x"_s.arg(data.size());
    if (data.size() <= kLongestWholeData) {
        return length + QString::fromLatin1(data.toHex()) + u'}';
    }
    const auto group = [&data](qsizetype at) { return QString::fromLatin1(data.mid(at, 4).toHex()); };
    const QStringList head{group(0), group(4), group(8), group(12)};
    const QStringList tail{group(data.size() - 8), group(data.size() - 4)};
    return length + head.join(u' ') + u" ... "_s + tail.join(u' ') + u" }"_s;
}

/// One scalar or container. A container begins with the blanks of its level even behind "key = ", and even
/// where it stands on a line of its own that was indented before: that is how macOS prints them.
struct Printer {
    int level = 0;
    bool isInside = false;

    QString blanks() const { return QString(level * kIndentation, u' '); }
    QString scalar(const QString& text) const { return isInside ? quotedIfNeeded(text) : text; }
    QString child(const PropertyList& value) const { return std::visit(Printer{level + 1, true}, value.value()); }

    QString operator()(bool value) const { return value ? u"1"_s : u"0"_s; }
    QString operator()(qint64 value) const { return scalar(QString::number(value)); }
    QString operator()(double value) const {
        return scalar(QString::number(value, 'g', QLocale::FloatingPointShortest));
    }
    QString operator()(const QString& value) const { return scalar(value); }
    QString operator()(const QByteArray& value) const { return dataText(value); }
    QString operator()(const QDateTime& value) const {
        return scalar(value.toUTC().toString(u"yyyy-MM-dd HH:mm:ss"_s) + u" +0000"_s);
    }
    QString operator()(const PropertyList::Array& array) const {
        QStringList lines;
        for (const PropertyList& item : array) {
            lines.append(blanks() + QString(kIndentation, u' ') + child(item));
        }
        const QString end = lines.isEmpty() ? QString() : u"\n"_s;
        return blanks() + u"(\n"_s + lines.join(u",\n"_s) + end + blanks() + u')';
    }
    QString operator()(const PropertyList::Dictionary& dictionary) const {
        QString text = blanks() + u"{\n"_s;
        for (const auto& [key, value] : dictionary) {
            text += blanks() + QString(kIndentation, u' ') + quotedIfNeeded(key) + u" = "_s + child(value) + u";\n"_s;
        }
        return text + blanks() + u'}';
    }
};

} // namespace

QString propertyListText(const PropertyList& list) {
    return std::visit(Printer{}, list.value());
}

} // namespace macsim
