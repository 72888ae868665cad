#include "fakes/MemoryUserDefaults.h"

namespace quorvane {

std::optional<QString> MemoryUserDefaults::string(const QString& key) const {
    const QVariant value = values.value(key);
    return value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt;
}

QStringList MemoryUserDefaults::stringArray(const QString& key) const {
    const QVariant value = values.value(key);
    return value.typeId() == QMetaType::QStringList ? value.toStringList() : QStringList();
}

bool MemoryUserDefaults::boolean(const QString& key) const {
    const QVariant value = values.value(key);
    return value.typeId() == QMetaType::Bool && value.toBool();
}

void MemoryUserDefaults::setString(const QString& key, const QString& value) {
    set(key, value);
}

void MemoryUserDefaults::setStringArray(const QString& key, const QStringList& value) {
    set(key, value);
}

void MemoryUserDefaults::setBoolean(const QString& key, bool value) {
    set(key, value);
}

void MemoryUserDefaults::remove(const QString& key) {
    if (!refusesWrites) {
        values.remove(key);
    }
}

void MemoryUserDefaults::synchronize() {
    synchronized = values;
}

void MemoryUserDefaults::set(const QString& key, const QVariant& value) {
    if (refusesWrites) {
        return;
    }
    values.insert(key, value);
    writtenKeys.append(key);
}

} // namespace quorvane
