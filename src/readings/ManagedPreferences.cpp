#include "readings/ManagedPreferences.h"

#include "platform/Machine.h"
#include "platform/PropertyLists.h"

#include <QStringList>
#include <QVariant>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString fileOf(const MacPreference& preference) {
    const QString domain = preference.domain.toString().section(u'/', -1);
    return (domain == u"NSGlobalDomain"_s ? u".GlobalPreferences"_s : domain) + u".plist"_s;
}

/// None for what is no value of a single setting.
std::optional<QString> printed(const QVariant& value) {
    if (value.typeId() == QMetaType::Bool) {
        return value.toBool() ? u"1"_s : u"0"_s;
    }
    return value.canConvert<QString>() ? std::optional(value.toString()) : std::nullopt;
}

} // namespace

std::optional<QString> managedValue(const MacPreference& preference, const PropertyLists& propertyLists,
                                    const Machine& machine) {
    const QString folder = u"/Library/Managed Preferences/"_s;
    const QString user = machine.homeFolder().section(u'/', -1);
    for (const QString& path : {folder + user + u'/' + fileOf(preference), folder + fileOf(preference)}) {
        const std::optional<QVariantMap> settings = propertyLists.dictionary(path);
        const QVariant value = settings ? settings->value(preference.key.toString()) : QVariant();
        if (value.isValid()) {
            return printed(value);
        }
    }
    return std::nullopt;
}

} // namespace quorvane
