#pragma once

#include "platform/UserDefaults.h"

#include <QMap>
#include <QVariant>

namespace quorvane {

class MemoryUserDefaults final : public UserDefaults {
public:
    std::optional<QString> string(const QString& key) const override {
        const QVariant value = values.value(key);
        return value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt;
    }
    QStringList stringArray(const QString& key) const override { return values.value(key).toStringList(); }
    bool boolean(const QString& key) const override {
        const QVariant value = values.value(key);
        return value.typeId() == QMetaType::Bool && value.toBool();
    }
    void setString(const QString& key, const QString& value) override { set(key, value); }
    void setStringArray(const QString& key, const QStringList& value) override { set(key, value); }
    void setBoolean(const QString& key, bool value) override { set(key, value); }

    QMap<QString, QVariant> values;
    QStringList writtenKeys; ///< in the order of the writes
    bool refusesWrites = false;

private:
    void set(const QString& key, const QVariant& value) {
        if (refusesWrites)
            return;
        values.insert(key, value);
        writtenKeys.append(key);
    }
};

} // namespace quorvane
