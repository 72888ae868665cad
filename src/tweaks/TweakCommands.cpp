#include "tweaks/TweakCommands.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kLaunchctl = u"/bin/launchctl"_s;
const QString kNotificationCenterAgent = u"/System/Library/LaunchAgents/com.apple.notificationcenterui.plist"_s;

const QString kMotionSensorOff = u"0"_s;
const QString kMotionSensorOn = u"1"_s;

using Settings = PerformanceSettings;

/// Nothing puts it back: it isn't one of the preferences that a snapshot keeps.
QStringList doNotDisturbInFocusPreferences() {
    return defaultsCommand(u"write"_s, u"com.apple.ncprefs.plist"_s, u"dnd_prefs"_s, PreferenceHost::Any) +
           QStringList{u"-dict-add"_s, u"dnd_enabled"_s, u"-bool"_s, u"true"_s};
}

QList<QStringList> stopNotificationCenter() {
    return {{u"/usr/bin/killall"_s, u"NotificationCenter"_s},
            {kLaunchctl, u"unload"_s, u"-w"_s, kNotificationCenterAgent}};
}

QList<QStringList> startNotificationCenter() {
    return {{kLaunchctl, u"load"_s, u"-w"_s, kNotificationCenterAgent},
            {u"/usr/bin/open"_s, u"-a"_s, u"NotificationCenter"_s}};
}

QStringList preferenceCommand(const MacPreference& preference, TweakState state, const QString& notificationCenter) {
    const QStringView value = state == TweakState::InForce ? preference.applied : preference.standard;
    if (value.isEmpty()) {
        return defaultsCommand(u"delete"_s, preference, notificationCenter);
    }
    return defaultsCommand(u"write"_s, preference, notificationCenter) +
           QStringList{preference.type.toString(), value.toString()};
}

QList<QStringList> preferenceCommands(const PreferenceGroup& group, TweakState state,
                                      const QString& notificationCenter) {
    QList<QStringList> commands;
    for (const MacPreference& preference : kMacPreferences) {
        if (preference.tweak == group.tweak) {
            commands.append(preferenceCommand(preference, state, notificationCenter));
        }
    }
    return commands;
}

TweakStep stepTo(TweakState state, const PreferenceGroup& group, const QString& notificationCenter,
                 const QString& logLine) {
    return {preferenceCommands(group, state, notificationCenter) + commandsBehindPreferences(group, state), logLine};
}

/// All but the clean reboot's: that step stands where the flow removes login items.
QList<PreferenceGroup> groupsOfTweakSteps() {
    QList<PreferenceGroup> groups;
    for (const PreferenceGroup& group : preferenceGroups()) {
        if (group.tweak != &Settings::cleanReboot) {
            groups.append(group);
        }
    }
    return groups;
}

const PreferenceGroup& cleanRebootGroup() {
    const std::span<const PreferenceGroup> groups = preferenceGroups();
    return *std::find_if(groups.begin(), groups.end(),
                         [](const PreferenceGroup& group) { return group.tweak == &Settings::cleanReboot; });
}

/// A Mac that stays awake, or one with standard sleep values: standby as 1 or 0, the others in minutes, of which 0 is never.
QString powerCommand(bool staysAwake) {
    return staysAwake ? u"pmset -a standby 0 disksleep 0 sleep 0"_s : u"pmset -a standby 1 disksleep 10 sleep 1"_s;
}

QString appliedLine(QStringView text) {
    return u"  [APPLIED] "_s + text.toString();
}
QString restoredLine(QStringView text) {
    return u"  [RESTORED] "_s + text.toString();
}

} // namespace

QList<QStringList> commandsBehindPreferences(const PreferenceGroup& group, TweakState state) {
    if (group.tweak != &Settings::notifications) {
        return {};
    }
    return state == TweakState::InForce ? stopNotificationCenter() : startNotificationCenter();
}

QString motionSensorCommand(const QString& value) {
    return u"pmset -a sms "_s + value;
}

QString spotlightCommand(bool indexes) {
    return indexes ? u"mdutil -a -i on"_s : u"mdutil -a -i off"_s;
}

QString timeMachineCommand(bool backsUp) {
    return backsUp ? u"tmutil enable"_s : u"tmutil disable"_s;
}

QList<TweakStep> applySteps(const PerformanceSettings& settings, const QString& notificationCenter) {
    QList<TweakStep> steps;
    for (const PreferenceGroup& group : groupsOfTweakSteps()) {
        if (settings.*group.tweak) {
            QList<QStringList> commands = preferenceCommands(group, TweakState::InForce, notificationCenter);
            if (group.tweak == &Settings::notifications) {
                commands.append(doNotDisturbInFocusPreferences());
            }
            steps.append(
                {commands + commandsBehindPreferences(group, TweakState::InForce), appliedLine(group.applied)});
        }
    }
    return steps;
}

QStringList applySystemCommands(const PerformanceSettings& settings) {
    QStringList commands;
    if (settings.usbPower) {
        commands.append(powerCommand(true));
    }
    if (settings.spotlight) {
        commands.append(spotlightCommand(false));
    }
    if (settings.timeMachine) {
        commands.append(timeMachineCommand(false));
    }
    if (settings.sms) {
        commands.append(motionSensorCommand(kMotionSensorOff));
    }
    return commands;
}

QList<TweakStep> syncSteps(const PerformanceSettings& settings, const QString& notificationCenter) {
    // Unlike the one-way apply, a sync leaves the Focus preferences alone, by intent.
    QList<TweakStep> steps;
    for (const PreferenceGroup& group : groupsOfTweakSteps()) {
        steps.append(settings.*group.tweak
                         ? stepTo(TweakState::InForce, group, notificationCenter, appliedLine(group.switchedOn))
                         : stepTo(TweakState::Standard, group, notificationCenter, restoredLine(group.switchedOff)));
    }
    return steps;
}

QStringList syncSystemCommands(const PerformanceSettings& settings) {
    return {powerCommand(settings.usbPower) + u" sms "_s + (settings.sms ? kMotionSensorOff : kMotionSensorOn),
            spotlightCommand(!settings.spotlight), timeMachineCommand(!settings.timeMachine)};
}

QList<TweakStep> undoSteps(const QString& notificationCenter) {
    QList<TweakStep> steps;
    for (const PreferenceGroup& group : groupsOfTweakSteps()) {
        steps.append(
            stepTo(TweakState::Standard, group, notificationCenter, u"  [REVERTED] "_s + group.undone.toString()));
    }
    return steps + QList<TweakStep>{restoreAppRestorationStep()};
}

QStringList undoSystemCommands() {
    return {powerCommand(false), spotlightCommand(true), timeMachineCommand(true),
            motionSensorCommand(kMotionSensorOn)};
}

TweakStep restoreAppRestorationStep() {
    const PreferenceGroup& group = cleanRebootGroup();
    return stepTo(TweakState::Standard, group, {}, restoredLine(group.switchedOff));
}

TweakStep stopAppRestorationStep() {
    const PreferenceGroup& group = cleanRebootGroup();
    return stepTo(TweakState::InForce, group, {}, appliedLine(group.applied));
}

} // namespace quorvane
