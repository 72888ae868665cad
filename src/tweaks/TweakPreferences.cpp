#include "tweaks/TweakPreferences.h"

#include "tweaks/ValueTests.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Settings = PerformanceSettings;

} // namespace

bool isApplied(const MacPreference& preference, const std::optional<QString>& value) {
    if (!value) {
        return preference.whereNotSet == TweakState::InForce;
    }
    const QString applied = preference.applied.toString();
    if (isTruthy(applied)) {
        return isTruthy(value);
    }
    if (isFalsy(applied)) {
        return isFalsy(value);
    }
    return value->toLower() == applied.toLower();
}

bool isStandard(const MacPreference& preference, const std::optional<QString>& value) {
    if (!value) {
        return true;
    }
    if (isFalsy(preference.applied.toString())) {
        return isTruthy(value);
    }
    return isTruthy(preference.applied.toString()) ? isFalsy(value) : !isApplied(preference, value);
}

bool meansTheSame(const std::optional<QString>& value, const std::optional<QString>& other) {
    const auto isSet = [](const std::optional<QString>& text) { return text && !text->isEmpty(); };
    if (!isSet(value) || !isSet(other)) {
        return isSet(value) == isSet(other);
    }
    return *value == *other || (isTruthy(value) && isTruthy(other)) || (isFalsy(value) && isFalsy(other));
}

std::span<const PreferenceGroup> preferenceGroups() {
    static constexpr PreferenceGroup groups[]{
        {&Settings::appNap, u"Disabled App Nap (prevents background audio dropouts).", u"Disabled App Nap.",
         u"Re-enabled App Nap.", u"Re-enabled App Nap.", u"App Nap"},
        {&Settings::updates, u"Disabled automatic macOS and App Store updates.", u"Disabled automatic updates.",
         u"Re-enabled automatic updates.", u"Re-enabled automatic updates.", u"Software update"},
        {&Settings::notifications, u"Suppressed Notifications/Notification Center.", u"Suppressed Notifications.",
         u"Re-enabled Notifications.", u"Re-enabled Notifications.", u"Notification"},
        {&Settings::siri, u"Disabled Siri processing.", u"Disabled Siri.", u"Re-enabled Siri.", u"Re-enabled Siri.",
         u"Siri"},
        {&Settings::crashReporter, u"Disabled Crash Reporter popups.", u"Disabled Crash Reporter.",
         u"Re-enabled Crash Reporter.", u"Re-enabled Crash Reporter.", u"Crash Reporter"},
        {&Settings::uiSounds, u"Muted System UI sound effects.", u"Muted UI sounds.", u"Restored UI sounds.",
         u"Restored System UI sound effects.", u"UI sound"},
        {&Settings::airdrop, u"Deactivated AirDrop proximity sharing.", u"Deactivated AirDrop.",
         u"Re-activated AirDrop.", u"Re-activated AirDrop.", u"AirDrop"},
        {&Settings::cleanReboot, u"Disabled app and window restoration on reboot.",
         u"Disabled app and window restoration on reboot.", u"Re-enabled app restoration on reboot.",
         u"Re-enabled app restoration on reboot.", u"Login and reboot"},
    };
    return groups;
}

QStringList defaultsCommand(const QString& verb, const QString& domain, const QString& key, PreferenceHost host) {
    QStringList command{u"/usr/bin/defaults"_s};
    if (host == PreferenceHost::Current) {
        command.append(u"-currentHost"_s);
    }
    return command + QStringList{verb, domain, key};
}

QStringList exportCommand(const QString& domain, PreferenceHost host) {
    return defaultsCommand(u"export"_s, domain, u"-"_s, host);
}

QStringList defaultsCommand(const QString& verb, const MacPreference& preference, const QString& notificationCenter) {
    const QString domain = preference.isNotificationCenters() ? notificationCenter : preference.domain.toString();
    return defaultsCommand(verb, domain, preference.key.toString(), preference.host);
}

} // namespace quorvane
