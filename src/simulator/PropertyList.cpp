#include "simulator/PropertyList.h"

#include "simulator/PropertyListLimits.h"

#include <cstdlib>
#include <limits>
#include <locale.h>
#include <memory>
#include <plist/plist.h>
#include <stdexcept>

namespace macsim {

namespace {

struct NodeDeleter {
    void operator()(void* node) const { plist_free(node); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

struct CFree {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using CMemory = std::unique_ptr<T, CFree>;

[[noreturn]] void refuse(const char* reason) {
    throw std::invalid_argument(reason);
}

/// libplist reads and writes the reals of XML by the thread's locale, which may want a decimal comma.
class PlainNumbers {
public:
    PlainNumbers()
        : m_plain(::newlocale(LC_NUMERIC_MASK, "C", nullptr))
        , m_previous(::uselocale(m_plain)) {}
    PlainNumbers(const PlainNumbers&) = delete;
    PlainNumbers& operator=(const PlainNumbers&) = delete;
    ~PlainNumbers() {
        ::uselocale(m_previous);
        ::freelocale(m_plain);
    }

private:
    locale_t m_plain;
    locale_t m_previous;
};

QByteArray xmlOfNode(plist_t node) {
    const PlainNumbers plainNumbers;
    char* text = nullptr;
    uint32_t length = 0;
    plist_to_xml(node, &text, &length);
    const CMemory<char> owner(text);
    return {text, static_cast<qsizetype>(length)};
}

Node nodeOfXml(const QByteArray& xml) {
    const PlainNumbers plainNumbers;
    plist_t node = nullptr;
    plist_from_xml(xml.constData(), static_cast<uint32_t>(xml.size()), &node);
    return Node(node);
}

/// The text of a scalar as XML has it: "-5", "2026-01-31T10:00:00Z".
QByteArray scalarText(plist_t node) {
    const QByteArray xml = xmlOfNode(node);
    const qsizetype end = xml.lastIndexOf("</", xml.lastIndexOf("</plist>") - 1);
    const qsizetype start = xml.lastIndexOf('>', end) + 1;
    return xml.mid(start, end - start);
}

// --- from libplist
// --------------------------------------------------------------------------------------------------

std::optional<PropertyList> listOfNode(plist_t node);

std::optional<PropertyList> arrayOfNode(plist_t node) {
    PropertyList::Array array;
    plist_array_iter position = nullptr;
    plist_array_new_iter(node, &position);
    const CMemory<void> owner(position);
    for (uint32_t left = plist_array_get_size(node); left > 0; --left) {
        plist_t item = nullptr;
        plist_array_next_item(node, position, &item);
        std::optional<PropertyList> value = listOfNode(item);
        if (!value) {
            return std::nullopt;
        }
        array.push_back(*std::move(value));
    }
    return PropertyList(std::move(array));
}

std::optional<PropertyList> dictionaryOfNode(plist_t node) {
    PropertyList::Dictionary dictionary;
    plist_dict_iter position = nullptr;
    plist_dict_new_iter(node, &position);
    const CMemory<void> owner(position);
    for (uint32_t left = plist_dict_get_size(node); left > 0; --left) {
        char* key = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, position, &key, &item);
        const CMemory<char> keyOwner(key);
        std::optional<PropertyList> value = item ? listOfNode(item) : std::nullopt;
        if (!value) {
            return std::nullopt;
        }
        dictionary.insert_or_assign(QString::fromUtf8(key), *std::move(value));
    }
    return PropertyList(std::move(dictionary));
}

/// libplist hands every integer out as an unsigned one. Above 2^63 - 1 only its text tells a negative from a
/// large one.
std::optional<PropertyList> integerOfNode(plist_t node) {
    uint64_t bits = 0;
    plist_get_uint_val(node, &bits);
    if (bits > static_cast<uint64_t>(std::numeric_limits<qint64>::max()) && !scalarText(node).startsWith('-')) {
        return std::nullopt;
    }
    return PropertyList(static_cast<qint64>(bits));
}

/// libplist hands dates out as 32-bit seconds, while macOS writes dates of the years 1 and 4001 for "never".
std::optional<PropertyList> dateOfNode(plist_t node) {
    const QByteArray text = scalarText(node);
    const QByteArray fullYear = text.left(text.indexOf('-')).rightJustified(4, '0') + text.mid(text.indexOf('-'));
    const QDateTime date = QDateTime::fromString(QString::fromLatin1(fullYear), Qt::ISODate);
    return date.isValid() ? std::optional(PropertyList(date)) : std::nullopt;
}

std::optional<PropertyList> listOfNode(plist_t node) {
    uint64_t length = 0;
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return PropertyList(value != 0);
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return PropertyList(value);
    }
    case PLIST_STRING: {
        const char* text = plist_get_string_ptr(node, &length);
        return PropertyList(QString::fromUtf8(text, static_cast<qsizetype>(length)));
    }
    case PLIST_DATA: {
        const char* bytes = plist_get_data_ptr(node, &length);
        return PropertyList(QByteArray(bytes, static_cast<qsizetype>(length)));
    }
    case PLIST_UINT:
        return integerOfNode(node);
    case PLIST_DATE:
        return dateOfNode(node);
    case PLIST_ARRAY:
        return arrayOfNode(node);
    case PLIST_DICT:
        return dictionaryOfNode(node);
    default:
        return std::nullopt;
    }
}

// --- to libplist
// ----------------------------------------------------------------------------------------------------

QByteArray utf8(const QString& text) {
    if (text.contains(QChar::Null)) {
        refuse("property list: a text with a null character");
    }
    return text.toUtf8();
}

struct NodeMaker {
    int depth = 0;

    Node operator()(bool value) const { return Node(plist_new_bool(value ? 1 : 0)); }
    Node operator()(qint64 value) const { return Node(plist_new_uint(static_cast<uint64_t>(value))); }
    Node operator()(double value) const { return Node(plist_new_real(value)); }
    Node operator()(const QString& value) const { return Node(plist_new_string(utf8(value).constData())); }
    Node operator()(const QByteArray& value) const {
        return Node(plist_new_data(value.constData(), static_cast<uint64_t>(value.size())));
    }
    Node operator()(const QDateTime& value) const {
        const QByteArray text = value.toUTC().toString(Qt::ISODate).toLatin1();
        if (text.isEmpty()) {
            refuse("property list: a date outside the years 1 to 9999");
        }
        return nodeOfXml("<plist><date>" + text + "</date></plist>");
    }
    Node operator()(const PropertyList::Array& array) const {
        Node node(plist_new_array());
        for (const PropertyList& item : array) {
            plist_array_append_item(node.get(), child(item).release());
        }
        return node;
    }
    Node operator()(const PropertyList::Dictionary& dictionary) const {
        Node node(plist_new_dict());
        for (const auto& [key, item] : dictionary) {
            const QByteArray name = utf8(key);
            plist_dict_set_item(node.get(), name.constData(), child(item).release());
        }
        return node;
    }

    Node child(const PropertyList& item) const {
        if (depth == kMaximumPropertyListDepth) {
            refuse("property list: nested too deeply");
        }
        return std::visit(NodeMaker{depth + 1}, item.value());
    }
};

Node nodeOfList(const PropertyList& list) {
    return std::visit(NodeMaker{}, list.value());
}

} // namespace

std::optional<PropertyList> parsePropertyList(const QByteArray& bytes) {
    if (bytes.size() > std::numeric_limits<qint32>::max()) {
        return std::nullopt;
    }
    Node node;
    if (!bytes.startsWith("bplist")) {
        node = nodeOfXml(soundXmlPropertyList(bytes));
    } else if (isSoundBinaryPropertyList(bytes)) {
        plist_t root = nullptr;
        plist_from_bin(bytes.constData(), static_cast<uint32_t>(bytes.size()), &root);
        node.reset(root);
    }
    return node ? listOfNode(node.get()) : std::nullopt;
}

QByteArray xmlPropertyList(const PropertyList& list) {
    return xmlOfNode(nodeOfList(list).get());
}

QByteArray binaryPropertyList(const PropertyList& list) {
    const Node node = nodeOfList(list);
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(node.get(), &bytes, &length);
    const CMemory<char> owner(bytes);
    return {bytes, static_cast<qsizetype>(length)};
}

} // namespace macsim
