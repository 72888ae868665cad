#include "startup/launchd/LaunchPlist.h"

#include "core/ExcludedNames.h"
#include "platform/PropertyLists.h"
#include "startup/launchd/LaunchItemNames.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// The keys by which launchd starts a job without being asked (launchd.plist(5)).
bool hasStartOfItsOwn(const QVariantMap& plist) {
    const QStringList switches{u"RunAtLoad"_s, u"KeepAlive"_s, u"StartOnMount"_s};
    const QStringList occasions{u"StartInterval"_s, u"StartCalendarInterval"_s, u"WatchPaths"_s, u"QueueDirectories"_s};
    const auto isOn = [&plist](const QString& key) {
        const QVariant value = plist.value(key);
        return value.isValid() && (value.typeId() != QMetaType::Bool || value.toBool());
    };
    const auto isThere = [&plist](const QString& key) { return plist.contains(key); };
    return std::any_of(switches.begin(), switches.end(), isOn) ||
           std::any_of(occasions.begin(), occasions.end(), isThere);
}

} // namespace

LaunchPlist readLaunchPlist(const LaunchFolder& folder, const QString& fileName, const PropertyLists& propertyLists) {
    LaunchPlist plist{fileName, folder, {}};
    const std::optional<QVariantMap> read = propertyLists.dictionary(plist.path());
    if (read) {
        const QVariant label = read->value(u"Label"_s);
        plist.label = label.typeId() == QMetaType::QString && isUsableLaunchdLabel(label.toString()) ? label.toString()
                                                                                                     : QString();
        plist.isDisabled =
            read->value(u"Disabled"_s).typeId() == QMetaType::Bool && read->value(u"Disabled"_s).toBool();
        plist.startsByItself = hasStartOfItsOwn(*read);
    }
    return plist;
}

std::optional<bool> isOn(const LaunchPlist& plist, const LaunchdOverrides& overrides) {
    switch (overrides.stateOf(plist.service())) {
    case OverrideState::Disabled:
        return false;
    case OverrideState::Enabled:
        return true;
    case OverrideState::NotListed:
        return !plist.isDisabled;
    case OverrideState::Unknown:
        break;
    }
    return std::nullopt;
}

bool mayOverride(const QString& label) {
    return isUsableLaunchdLabel(label) && !isReservedLabel(label) && !isExcludedName(label);
}

} // namespace quorvane
