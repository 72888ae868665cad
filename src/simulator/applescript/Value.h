#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <memory>
#include <variant>

namespace macsim {
class ScriptApplication;
}

namespace macsim::applescript {

class Value;

/// What is copied is shared until it is changed: handing lists around costs nothing.
///
/// Values nest only so deep (a script can put a list into itself in a loop): going deeper throws ScriptError
/// -2706.
class List {
public:
    void append(const Value& value);
    void append(const List& other);

    qsizetype size() const;
    const Value& at(qsizetype index) const;
    const QList<Value>& values() const { return m_values; }
    int depth() const { return m_depth; }

private:
    QList<Value> m_values;
    int m_depth = 1;
};

/// Values by name, in the order in which they were written. The case of a name does not count.
class Record {
public:
    /// The first of two values of the same name stays.
    void insert(const QString& name, const Value& value);
    void insert(const Record& other);

    /// Null where there is none.
    const Value* find(const QString& name) const;
    const QList<QString>& names() const { return m_names; }
    const List& values() const { return m_values; }

private:
    QList<QString> m_names;
    List m_values;
    QHash<QString, qsizetype> m_indexes;
};

struct MissingValue {};

/// The variable of `repeat with x in list`: not the item but a reference to it. Commands and operators look
/// through it, except that it equals nothing but another reference to the same: `contents of x` is what
/// compares.
struct ItemReference {
    List list;
    qsizetype index = 0;
};

/// One object of an application: a login item.
struct ScriptObject {
    QString className;
    QString name;     ///< as it is printed: login item "Live"; empty for the only one of its class
    QString identity; ///< by which the application knows it again, when other objects have gone or come

    bool operator==(const ScriptObject&) const = default;
};

/// An object outside the script: one of an application, the application where there is no object, or the script
/// itself where there is neither.
struct ObjectReference {
    ScriptApplication* application = nullptr;
    std::shared_ptr<const ScriptObject> object = nullptr;
};

/// The name of a class as a value: the `class` of an object.
struct ClassName {
    QString name;
};

using ValueData =
    std::variant<MissingValue, bool, int, double, QString, List, Record, ItemReference, ObjectReference, ClassName>;

/// AppleScript's integers end here; beyond, numbers are real.
constexpr int kLargestInteger = 536870911;
constexpr int kSmallestInteger = -536870912;

/// Any value of a script.
class Value {
public:
    Value() = default;
    template <typename T>
    explicit Value(T data)
        : m_data(std::move(data)) {}

    template <typename T>
    const T* get() const {
        return std::get_if<T>(&m_data);
    }
    template <typename T>
    T* get() {
        return std::get_if<T>(&m_data);
    }
    const ValueData& data() const { return m_data; }

    /// How many values are inside one another; 0 for what contains none.
    int depth() const;

private:
    ValueData m_data;
};

/// A value as the script would write it: "a" in quotes, {1, 2}, {name:"x"}.
QString sourceForm(const Value& value);
/// A value for reading: texts bare, lists and records without braces.
QString readableForm(const Value& value);
/// A real number in AppleScript's notation: "2.0", "0.5", "1.0E+4".
QString realText(double number);

} // namespace macsim::applescript
