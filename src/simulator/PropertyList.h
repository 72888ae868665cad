#pragma once

#include "simulator/Json.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <map>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace macsim {

/// A property list: the value types that macOS keeps in preferences, launch plists and bundles.
///
/// The types are distinct, as they are on a Mac: the boolean true, the integer 1, the real 1.0 and the text
/// "1" are four different values. A date counts whole seconds. A dictionary gives its keys in the order of
/// their code units.
class PropertyList {
public:
    using Array = std::vector<PropertyList>;
    using Dictionary = std::map<QString, PropertyList>;
    using Value = std::variant<Dictionary, Array, QString, bool, qint64, double, QByteArray, QDateTime>;

    /// An empty dictionary.
    PropertyList() = default;
    PropertyList(Dictionary value)
        : m_value(std::move(value)) {}
    PropertyList(Array value)
        : m_value(std::move(value)) {}
    PropertyList(QString value)
        : m_value(std::move(value)) {}
    PropertyList(bool value)
        : m_value(value) {}
    PropertyList(int value)
        : m_value(qint64{value}) {}
    PropertyList(qint64 value)
        : m_value(value) {}
    PropertyList(double value)
        : m_value(value) {}
    PropertyList(QByteArray value)
        : m_value(std::move(value)) {}
    PropertyList(QDateTime value)
        : m_value(std::move(value)) {}
    /// A pointer would become the boolean true.
    template <typename T>
    PropertyList(const T*) = delete;

    const Value& value() const { return m_value; }
    /// The value where it is of this type, otherwise null.
    template <typename T>
    const T* as() const {
        return std::get_if<T>(&m_value);
    }
    template <typename T>
    T* as() {
        return std::get_if<T>(&m_value);
    }

    bool operator==(const PropertyList&) const = default;

private:
    Value m_value;
};

/// Containers nested deeper than this are refused, as something that nobody wrote by hand or by program.
inline constexpr int kMaximumPropertyListDepth = 256;

/// Reads an XML or a binary property list. Nothing where the bytes are damaged or hold what a PropertyList
/// cannot: a keyed archive's identifiers, or an integer above 2^63 - 1.
std::optional<PropertyList> parsePropertyList(const QByteArray& bytes);

/// Both writers throw std::invalid_argument for a text with a null character and for a list nested too
/// deeply.
QByteArray xmlPropertyList(const PropertyList& list);
QByteArray binaryPropertyList(const PropertyList& list);

/// Makes a property list of JSON, for descriptions of Macs. What JSON lacks is written as an object of one key:
/// {"$data": base64} and {"$date": ISO 8601 with its zone}. A number with a fraction or an exponent is a real, any other
/// an integer. Throws std::invalid_argument for null and for what cannot be such a value.
PropertyList propertyListFromJson(const Json& json);

} // namespace macsim
