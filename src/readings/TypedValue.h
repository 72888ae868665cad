#pragma once

#include <QString>

#include <optional>

class QXmlStreamReader;

namespace quorvane {

/// A value of a property list with its type: the switch, the number 1 and the text "1" are three values. It keeps the XML that
/// stands for it, each value in one way alone, so that two are the same exactly when their XML is.
class TypedValue {
public:
    enum class Type { Boolean, Integer, Real, String, Date, Data, Array, Dictionary };

    /// Reads the XML of one value, without a property list around it: "<integer>1</integer>".
    /// @return none for what is no value, not well formed, longer than `kMaximumSize`, or nested deeper than 16 values
    static std::optional<TypedValue> ofXml(const QString& xml);
    /// The same of the element that the reader stands at; afterwards it stands at that element's end, or has failed.
    static std::optional<TypedValue> ofElement(QXmlStreamReader& xml);

    static constexpr qsizetype kMaximumSize = 65536; ///< characters of the XML

    Type type() const { return m_type; }
    const QString& xml() const { return m_xml; }
    /// What stands in the element of one that holds no others: "true" and "false" for a switch, data in base64.
    const QString& text() const { return m_text; }

    /// As `defaults read` prints it, trimmed; none for data and for what holds others, whose print isn't the value.
    std::optional<QString> printed() const;
    /// True where a printed text, trimmed, may be this value's. Whoever can't tell says yes.
    bool isPrintedAs(const QString& text) const;

    bool operator==(const TypedValue& other) const { return m_xml == other.m_xml; }

private:
    TypedValue(Type type, QString xml, QString text);
    static std::optional<TypedValue> ofElement(QXmlStreamReader& xml, int depth);
    static std::optional<TypedValue> arrayOf(QXmlStreamReader& xml, int depth);
    static std::optional<TypedValue> dictionaryOf(QXmlStreamReader& xml, int depth);
    static std::optional<TypedValue> scalarOf(QXmlStreamReader& xml);

    Type m_type;
    QString m_xml;
    QString m_text;
};

/// "switch", "whole number", "fraction", "text", "date", "data", "list", "dictionary": as people may read it.
QString nameOfType(TypedValue::Type type);

} // namespace quorvane
