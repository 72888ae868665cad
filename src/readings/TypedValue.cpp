#include "readings/TypedValue.h"

#include <QByteArray>
#include <QDateTime>
#include <QLocale>
#include <QMap>
#include <QXmlStreamReader>

#include <cmath>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Type = TypedValue::Type;

constexpr int kMaximumDepth = 16;

QString element(const QString& name, const QString& content) {
    return u'<' + name + u'>' + content + u"</"_s + name + u'>';
}

/// A line's end of the older kind would be read back as another one.
QString escaped(const QString& text) {
    return text.toHtmlEscaped().replace(u"&quot;"_s, u"\""_s).replace(u'\r', u"&#13;"_s);
}

std::optional<QString> wholeNumber(const QString& text) {
    bool fits = false;
    if (const qlonglong number = text.toLongLong(&fits); fits) {
        return QString::number(number);
    }
    const qulonglong large = text.toULongLong(&fits);
    return fits ? std::optional(QString::number(large)) : std::nullopt;
}

std::optional<QString> fraction(const QString& text) {
    bool isNumber = false;
    const double number = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(number)) {
        return std::nullopt;
    }
    return QString::number(number, 'g', QLocale::FloatingPointShortest);
}

/// Property lists know whole seconds of universal time.
std::optional<QString> date(const QString& text) {
    const QDateTime time = QDateTime::fromString(text, u"yyyy-MM-dd'T'HH:mm:ss'Z'"_s);
    return time.isValid() ? std::optional(text) : std::nullopt;
}

/// Without the blanks and line ends that base64 is broken into.
std::optional<QString> data(const QString& text) {
    const QByteArray base64 = QString(text).remove(u' ').remove(u'\n').remove(u'\t').remove(u'\r').toUtf8();
    const QByteArray bytes = QByteArray::fromBase64(base64);
    return bytes.toBase64() == base64 ? std::optional(QString::fromLatin1(base64)) : std::nullopt;
}

} // namespace

TypedValue::TypedValue(Type type, QString xml, QString text)
    : m_type(type)
    , m_xml(std::move(xml))
    , m_text(std::move(text)) {}

std::optional<TypedValue> TypedValue::ofXml(const QString& xml) {
    if (xml.size() > kMaximumSize) {
        return std::nullopt;
    }
    QXmlStreamReader reader(xml);
    reader.setNamespaceProcessing(false);
    if (!reader.readNextStartElement()) {
        return std::nullopt;
    }
    std::optional<TypedValue> value = ofElement(reader);
    while (!reader.atEnd()) {
        reader.readNext();
    }
    return reader.hasError() ? std::nullopt : value;
}

std::optional<TypedValue> TypedValue::ofElement(QXmlStreamReader& xml) {
    std::optional<TypedValue> value = ofElement(xml, 1);
    return value && value->m_xml.size() <= kMaximumSize ? value : std::nullopt;
}

std::optional<TypedValue> TypedValue::ofElement(QXmlStreamReader& xml, int depth) {
    if (depth > kMaximumDepth) {
        xml.skipCurrentElement();
        return std::nullopt;
    }
    if (xml.name() == u"array") {
        return arrayOf(xml, depth);
    }
    return xml.name() == u"dict" ? dictionaryOf(xml, depth) : scalarOf(xml);
}

std::optional<TypedValue> TypedValue::arrayOf(QXmlStreamReader& xml, int depth) {
    QString content;
    bool isWhole = true;
    while (xml.readNextStartElement()) {
        const std::optional<TypedValue> item = ofElement(xml, depth + 1);
        isWhole = isWhole && item;
        content += item ? item->m_xml : QString();
    }
    if (xml.hasError() || !isWhole) {
        return std::nullopt;
    }
    return TypedValue(Type::Array, element(u"array"_s, content), {});
}

/// The entries stand in the order of their keys; of two with one key the last counts.
std::optional<TypedValue> TypedValue::dictionaryOf(QXmlStreamReader& xml, int depth) {
    QMap<QString, QString> entries;
    bool isWhole = true;
    while (xml.readNextStartElement()) {
        const bool isKey = xml.name() == u"key";
        const QString key = isKey ? xml.readElementText() : QString();
        if (!isKey || !xml.readNextStartElement()) {
            isWhole = false;
            xml.skipCurrentElement();
            break;
        }
        const std::optional<TypedValue> value = ofElement(xml, depth + 1);
        isWhole = isWhole && value;
        entries.insert(key, value ? value->m_xml : QString());
    }
    if (xml.hasError() || !isWhole) {
        return std::nullopt;
    }
    QString content;
    for (auto entry = entries.cbegin(); entry != entries.cend(); ++entry) {
        content += element(u"key"_s, escaped(entry.key())) + *entry;
    }
    return TypedValue(Type::Dictionary, element(u"dict"_s, content), {});
}

std::optional<TypedValue> TypedValue::scalarOf(QXmlStreamReader& xml) {
    struct Scalar {
        QStringView name;
        Type type;
        std::optional<QString> (*read)(const QString& text);
    };
    static constexpr Scalar kScalars[]{{u"integer", Type::Integer, wholeNumber},
                                       {u"real", Type::Real, fraction},
                                       {u"date", Type::Date, date},
                                       {u"data", Type::Data, data}};
    const QString name = xml.name().toString();
    const QString text = xml.readElementText(QXmlStreamReader::ErrorOnUnexpectedElement);
    if (xml.hasError()) {
        return std::nullopt;
    }
    if (name == u"string") {
        return TypedValue(Type::String, element(name, escaped(text)), text);
    }
    if (name == u"true" || name == u"false") {
        return text.isEmpty() ? std::optional(TypedValue(Type::Boolean, u'<' + name + u"/>"_s, name)) : std::nullopt;
    }
    for (const Scalar& scalar : kScalars) {
        const std::optional<QString> content = scalar.name == name ? scalar.read(text.trimmed()) : std::nullopt;
        if (content) {
            return TypedValue(scalar.type, element(name, *content), *content);
        }
    }
    return std::nullopt;
}

std::optional<QString> TypedValue::printed() const {
    switch (m_type) {
    case Type::Boolean:
        return m_text == u"true" ? u"1"_s : u"0"_s;
    case Type::Integer:
    case Type::Real:
        return m_text;
    case Type::String:
        return m_text.trimmed();
    case Type::Date:
        return QString(m_text).replace(u'T', u' ').replace(u"Z"_s, u" +0000"_s);
    case Type::Data:
    case Type::Array:
    case Type::Dictionary:
        break;
    }
    return std::nullopt;
}

bool TypedValue::isPrintedAs(const QString& text) const {
    const std::optional<QString> own = printed();
    if (m_type == Type::Real) {
        bool isNumber = false;
        return std::abs(text.toDouble(&isNumber) - m_text.toDouble()) <= 1e-5 * std::abs(m_text.toDouble()) && isNumber;
    }
    if (own) {
        return *own == text;
    }
    const QString start = m_type == Type::Array ? u"("_s : u"{"_s; // data as a dictionary; by older systems in "<"
    return text.startsWith(start) || (m_type == Type::Data && text.startsWith(u'<'));
}

QString nameOfType(TypedValue::Type type) {
    switch (type) {
    case Type::Boolean:
        return u"switch"_s;
    case Type::Integer:
        return u"whole number"_s;
    case Type::Real:
        return u"fraction"_s;
    case Type::String:
        return u"text"_s;
    case Type::Date:
        return u"date"_s;
    case Type::Data:
        return u"data"_s;
    case Type::Array:
        return u"list"_s;
    case Type::Dictionary:
        break;
    }
    return u"dictionary"_s;
}

} // namespace quorvane
