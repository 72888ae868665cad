#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// The program's own preferences. Main thread.
class UserDefaults {
public:
    UserDefaults() = default;
    UserDefaults(const UserDefaults&) = delete;
    UserDefaults& operator=(const UserDefaults&) = delete;
    virtual ~UserDefaults() = default;

    /// None when the key is missing or holds another type.
    virtual std::optional<QString> string(const QString& key) const = 0;
    /// Empty when the key is missing or holds another type.
    virtual QStringList stringArray(const QString& key) const = 0;
    /// False when the key is missing or holds another type.
    virtual bool boolean(const QString& key) const = 0;

    /// A write that fails is not reported: the system keeps preferences in its own store.
    virtual void setString(const QString& key, const QString& value) = 0;
    virtual void setStringArray(const QString& key, const QStringList& value) = 0;
    virtual void setBoolean(const QString& key, bool value) = 0;
    /// Nothing happens where the key is missing.
    virtual void remove(const QString& key) = 0;
    /// Returns when what was set has reached the system's store: it outlives a sudden end of the program from then on.
    virtual void synchronize() = 0;
};

} // namespace quorvane
