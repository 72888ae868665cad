#pragma once

#include "platform/UserDefaults.h"

#include <QMap>
#include <QVariant>

namespace quorvane {

class MemoryUserDefaults final : public UserDefaults {
public:
    std::optional<QString> string(const QString& key) const override;
    QStringList stringArray(const QString& key) const override;
    bool boolean(const QString& key) const override;
    void setString(const QString& key, const QString& value) override;
    void setStringArray(const QString& key, const QStringList& value) override;
    void setBoolean(const QString& key, bool value) override;
    void remove(const QString& key) override;
    void synchronize() override;

    QMap<QString, QVariant> values;
    QMap<QString, QVariant> synchronized; ///< what a sudden end would leave
    QStringList writtenKeys;              ///< in the order of the writes
    bool refusesWrites = false;

private:
    void set(const QString& key, const QVariant& value);
};

} // namespace quorvane
