#include "tweaks/TweakCommands.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kDefaults = u"/usr/bin/defaults"_s;
const QString kLaunchctl = u"/bin/launchctl"_s;
const QString kNotificationCenterAgent = u"/System/Library/LaunchAgents/com.apple.notificationcenterui.plist"_s;

template <typename... Arguments>
QStringList defaults(Arguments&&... arguments) {
    return QStringList{kDefaults, QString(std::forward<Arguments>(arguments))...};
}

// ---- What puts a tweak in force

QList<QStringList> bypassAppNap() {
    return {defaults(u"write"_s, u"NSGlobalDomain"_s, u"NSAppSleepDisabled"_s, u"-bool"_s, u"YES"_s),
            defaults(u"write"_s, u"com.ableton.live"_s, u"NSAppSleepDisabled"_s, u"-bool"_s, u"YES"_s)};
}

QList<QStringList> setAutomaticUpdates(const QString& value) {
    return {defaults(u"write"_s, u"com.apple.SoftwareUpdate"_s, u"AutomaticDownload"_s, u"-bool"_s, value),
            defaults(u"write"_s, u"com.apple.SoftwareUpdate"_s, u"AutomaticCheckEnabled"_s, u"-bool"_s, value),
            defaults(u"write"_s, u"com.apple.commerce"_s, u"AutoUpdate"_s, u"-bool"_s, value)};
}

QStringList doNotDisturb(const QString& notificationCenter) {
    return defaults(u"-currentHost"_s, u"write"_s, notificationCenter, u"doNotDisturb"_s, u"-boolean"_s, u"true"_s);
}

QStringList doNotDisturbInFocusPreferences() {
    return defaults(u"write"_s, u"com.apple.ncprefs.plist"_s, u"dnd_prefs"_s, u"-dict-add"_s, u"dnd_enabled"_s,
                    u"-bool"_s, u"true"_s);
}

QList<QStringList> stopNotificationCenter() {
    return {{u"/usr/bin/killall"_s, u"NotificationCenter"_s},
            {kLaunchctl, u"unload"_s, u"-w"_s, kNotificationCenterAgent}};
}

QList<QStringList> disableSiri() {
    return {defaults(u"write"_s, u"com.apple.Siri"_s, u"Status"_s, u"-string"_s, u"Disabled"_s),
            defaults(u"write"_s, u"com.apple.assistant.support"_s, u"Assistant Enabled"_s, u"-bool"_s, u"false"_s)};
}

QList<QStringList> silenceCrashReporter() {
    return {defaults(u"write"_s, u"com.apple.CrashReporter"_s, u"DialogType"_s, u"-string"_s, u"none"_s)};
}

QList<QStringList> setInterfaceSounds(const QString& value) {
    return {defaults(u"write"_s, u"com.apple.systemsound"_s, u"com.apple.sound.uiaudio.enabled"_s, u"-int"_s, value)};
}

QList<QStringList> setAirDropDisabled(const QString& value) {
    return {defaults(u"write"_s, u"com.apple.NetworkBrowser"_s, u"DisableAirDrop"_s, u"-bool"_s, value)};
}

// ---- What puts it back

QList<QStringList> restoreAppNap() {
    return {defaults(u"delete"_s, u"NSGlobalDomain"_s, u"NSAppSleepDisabled"_s),
            defaults(u"delete"_s, u"com.ableton.live"_s, u"NSAppSleepDisabled"_s)};
}

QList<QStringList> restoreNotifications(const QString& notificationCenter) {
    return QList<QStringList>{defaults(u"-currentHost"_s, u"delete"_s, notificationCenter, u"doNotDisturb"_s)} +
           startNotificationCenter();
}

QList<QStringList> restoreSiri() {
    return {defaults(u"delete"_s, u"com.apple.Siri"_s, u"Status"_s),
            defaults(u"write"_s, u"com.apple.assistant.support"_s, u"Assistant Enabled"_s, u"-bool"_s, u"true"_s)};
}

QList<QStringList> restoreCrashReporter() {
    return {defaults(u"delete"_s, u"com.apple.CrashReporter"_s, u"DialogType"_s)};
}

} // namespace

QList<QStringList> startNotificationCenter() {
    return {{kLaunchctl, u"load"_s, u"-w"_s, kNotificationCenterAgent},
            {u"/usr/bin/open"_s, u"-a"_s, u"NotificationCenter"_s}};
}

QString spotlightCommand(bool indexes) {
    return indexes ? u"mdutil -a -i on"_s : u"mdutil -a -i off"_s;
}

QList<TweakStep> applySteps(const PerformanceSettings& settings, const QString& notificationCenter) {
    QList<TweakStep> steps;
    if (settings.appNap) {
        steps.append({bypassAppNap(), u"  [APPLIED] Disabled App Nap (prevents background audio dropouts)."_s});
    }
    if (settings.updates) {
        steps.append({setAutomaticUpdates(u"NO"_s), u"  [APPLIED] Disabled automatic macOS and App Store updates."_s});
    }
    if (settings.notifications) {
        steps.append({QList<QStringList>{doNotDisturb(notificationCenter), doNotDisturbInFocusPreferences()} +
                          stopNotificationCenter(),
                      u"  [APPLIED] Suppressed Notifications/Notification Center."_s});
    }
    if (settings.siri) {
        steps.append({disableSiri(), u"  [APPLIED] Disabled Siri processing."_s});
    }
    if (settings.crashReporter) {
        steps.append({silenceCrashReporter(), u"  [APPLIED] Disabled Crash Reporter popups."_s});
    }
    if (settings.uiSounds) {
        steps.append({setInterfaceSounds(u"0"_s), u"  [APPLIED] Muted System UI sound effects."_s});
    }
    if (settings.airdrop) {
        steps.append({setAirDropDisabled(u"YES"_s), u"  [APPLIED] Deactivated AirDrop proximity sharing."_s});
    }
    return steps;
}

QStringList applySystemCommands(const PerformanceSettings& settings) {
    QStringList commands;
    if (settings.usbPower) {
        commands.append(u"pmset -a standby 0 disksleep 0 sleep 0"_s);
    }
    if (settings.spotlight) {
        commands.append(spotlightCommand(false));
    }
    if (settings.timeMachine) {
        commands.append(u"tmutil disable"_s);
    }
    if (settings.sms) {
        commands.append(u"pmset -a sms 0"_s);
    }
    return commands;
}

QList<TweakStep> syncSteps(const PerformanceSettings& settings, const QString& notificationCenter) {
    const auto step = [](bool selected, const TweakStep& applied, const TweakStep& restored) {
        return selected ? applied : restored;
    };
    // Unlike the one-way apply, a sync leaves the Focus preferences alone, by intent.
    const QList<QStringList> suppress = QList<QStringList>{doNotDisturb(notificationCenter)} + stopNotificationCenter();
    return {step(settings.appNap, {bypassAppNap(), u"  [APPLIED] Disabled App Nap."_s},
                 {restoreAppNap(), u"  [RESTORED] Re-enabled App Nap."_s}),
            step(settings.updates, {setAutomaticUpdates(u"NO"_s), u"  [APPLIED] Disabled automatic updates."_s},
                 {setAutomaticUpdates(u"YES"_s), u"  [RESTORED] Re-enabled automatic updates."_s}),
            step(settings.notifications, {suppress, u"  [APPLIED] Suppressed Notifications."_s},
                 {restoreNotifications(notificationCenter), u"  [RESTORED] Re-enabled Notifications."_s}),
            step(settings.siri, {disableSiri(), u"  [APPLIED] Disabled Siri."_s},
                 {restoreSiri(), u"  [RESTORED] Re-enabled Siri."_s}),
            step(settings.crashReporter, {silenceCrashReporter(), u"  [APPLIED] Disabled Crash Reporter."_s},
                 {restoreCrashReporter(), u"  [RESTORED] Re-enabled Crash Reporter."_s}),
            step(settings.uiSounds, {setInterfaceSounds(u"0"_s), u"  [APPLIED] Muted UI sounds."_s},
                 {setInterfaceSounds(u"1"_s), u"  [RESTORED] Restored UI sounds."_s}),
            step(settings.airdrop, {setAirDropDisabled(u"YES"_s), u"  [APPLIED] Deactivated AirDrop."_s},
                 {setAirDropDisabled(u"NO"_s), u"  [RESTORED] Re-activated AirDrop."_s})};
}

QStringList syncSystemCommands(const PerformanceSettings& settings) {
    const QString sleep = settings.usbPower ? u"0"_s : u"1"_s;
    const QString diskSleep = settings.usbPower ? u"0"_s : u"10"_s;
    const QString motionSensor = settings.sms ? u"0"_s : u"1"_s;
    return {u"pmset -a standby %1 disksleep %2 sleep %1 sms %3"_s.arg(sleep, diskSleep, motionSensor),
            spotlightCommand(!settings.spotlight), settings.timeMachine ? u"tmutil disable"_s : u"tmutil enable"_s};
}

QList<TweakStep> undoSteps(const QString& notificationCenter) {
    return {{restoreAppNap(), u"  [REVERTED] Re-enabled App Nap."_s},
            {setAutomaticUpdates(u"YES"_s), u"  [REVERTED] Re-enabled automatic updates."_s},
            {restoreNotifications(notificationCenter), u"  [REVERTED] Re-enabled Notifications."_s},
            {restoreSiri(), u"  [REVERTED] Re-enabled Siri."_s},
            {restoreCrashReporter(), u"  [REVERTED] Re-enabled Crash Reporter."_s},
            {setInterfaceSounds(u"1"_s), u"  [REVERTED] Restored System UI sound effects."_s},
            {setAirDropDisabled(u"NO"_s), u"  [REVERTED] Re-activated AirDrop."_s},
            restoreAppRestorationStep()};
}

QStringList undoSystemCommands() {
    return {u"pmset -a standby 1 disksleep 10 sleep 1"_s, spotlightCommand(true), u"tmutil enable"_s,
            u"pmset -a sms 1"_s};
}

TweakStep restoreAppRestorationStep() {
    return {
        {defaults(u"write"_s, u"com.apple.loginwindow"_s, u"TALLogoutSavesState"_s, u"-bool"_s, u"true"_s),
         defaults(u"write"_s, u"com.apple.loginwindow"_s, u"LoginwindowLaunchesRelaunchApps"_s, u"-bool"_s, u"true"_s),
         defaults(u"delete"_s, u"NSGlobalDomain"_s, u"NSQuitAlwaysKeepsWindows"_s)},
        u"  [RESTORED] Re-enabled app restoration on reboot."_s};
}

TweakStep stopAppRestorationStep() {
    return {
        {defaults(u"write"_s, u"com.apple.loginwindow"_s, u"TALLogoutSavesState"_s, u"-bool"_s, u"false"_s),
         defaults(u"write"_s, u"com.apple.loginwindow"_s, u"LoginwindowLaunchesRelaunchApps"_s, u"-bool"_s, u"false"_s),
         defaults(u"write"_s, u"NSGlobalDomain"_s, u"NSQuitAlwaysKeepsWindows"_s, u"-bool"_s, u"false"_s)},
        u"  [APPLIED] Disabled app and window restoration on reboot."_s};
}

} // namespace quorvane
