#include "tweaks/TweakCommands.h"

#include "core/AdminScript.h"
#include "tweaks/TweakCatalogue.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kLaunchctl = u"/bin/launchctl"_s;
const QString kNotificationCenterAgent = u"/System/Library/LaunchAgents/com.apple.notificationcenterui.plist"_s;

using Settings = PerformanceSettings;

/// It isn't one of the preferences that a snapshot keeps; whoever runs it notes what was there (FocusMark).
QStringList doNotDisturbInFocusPreferences() {
    return defaultsCommand(u"write"_s, kFocusPreferences.toString(), kFocusKey.toString(), PreferenceHost::Any) +
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

QList<QStringList> preferenceCommands(const PreferenceGroup& group, TweakState state, const QString& notificationCenter,
                                      const MayChange& mayChange) {
    QList<QStringList> commands;
    for (const MacPreference& preference : kMacPreferences) {
        if (preference.tweak == group.tweak && !preference.isSystems() && mayChange(preference)) {
            commands.append(preferenceCommand(preference, state, notificationCenter));
        }
    }
    return commands;
}

/// An organization has set all that the group goes by.
bool isManaged(const PreferenceGroup& group, const MayChange& mayChange) {
    return std::none_of(kMacPreferences.begin(), kMacPreferences.end(), [&](const MacPreference& preference) {
        return preference.tweak == group.tweak && preference.decides && mayChange(preference);
    });
}

TweakStep stepTo(TweakState state, const PreferenceGroup& group, const QString& notificationCenter,
                 const MayChange& mayChange, const QString& logLine) {
    if (isManaged(group, mayChange)) {
        return {{}, managedLine(tweakOf(group.tweak).name)};
    }
    return {preferenceCommands(group, state, notificationCenter, mayChange) + commandsBehindPreferences(group, state),
            logLine};
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

QString powerCommand(bool staysAwake) {
    return staysAwake ? u"pmset -a standby 0 disksleep 0 sleep 0"_s : u"pmset -a standby 1 disksleep 10 sleep 1"_s;
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

/// What became of it is read afterwards: a write that fails is no refused prompt.
QString systemPreferenceCommand(const MacPreference& preference, std::optional<bool> value) {
    if (!value) {
        return withoutStatus(defaultsCommand(u"delete"_s, preference, {}).join(u' '));
    }
    return withoutStatus(defaultsCommand(u"write"_s, preference, {}).join(u' ') + u' ' + preference.type.toString() +
                         (*value ? u" YES"_s : u" NO"_s));
}

QStringList systemPreferenceCommands(const PerformanceSettings& settings, const MayChange& mayChange) {
    QStringList commands;
    for (const MacPreference& preference : kMacPreferences) {
        if (preference.isSystems() && settings.*preference.tweak && mayChange(preference)) {
            commands.append(systemPreferenceCommand(preference, preference.applied == u"YES"));
        }
    }
    return commands;
}

QString managedLine(const QString& tweakName) {
    return u"  [INFO] Set by your organization: "_s + tweakName;
}

// ---- One-way

QList<TweakStep> applySteps(const PerformanceSettings& settings, const QString& notificationCenter,
                            const MayChange& mayChange) {
    QList<TweakStep> steps;
    for (const PreferenceGroup& group : groupsOfTweakSteps()) {
        if (!(settings.*group.tweak)) {
            continue;
        }
        TweakStep step = stepTo(TweakState::InForce, group, notificationCenter, mayChange, appliedLine(group.applied));
        if (group.tweak == &Settings::notifications && !step.commands.isEmpty()) {
            const qsizetype behind = step.commands.size() - stopNotificationCenter().size();
            step.commands.insert(behind, doNotDisturbInFocusPreferences());
        }
        steps.append(step);
    }
    return steps;
}

QStringList applySystemCommands(const PerformanceSettings& settings, const MayChange& mayChange) {
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
    return commands + systemPreferenceCommands(settings, mayChange);
}

// ---- Two-way

TweakStep syncStep(const PreferenceGroup& group, TweakState state, const QString& notificationCenter,
                   const MayChange& mayChange) {
    // Unlike the one-way apply, a sync leaves the Focus preferences alone, by intent.
    const QString line = state == TweakState::InForce ? appliedLine(group.switchedOn) : restoredLine(group.switchedOff);
    return stepTo(state, group, notificationCenter, mayChange, line);
}

// ---- Back

QList<TweakStep> undoSteps(const QString& notificationCenter, const MayChange& mayChange) {
    QList<TweakStep> steps;
    for (const PreferenceGroup& group : groupsOfTweakSteps()) {
        steps.append(stepTo(TweakState::Standard, group, notificationCenter, mayChange,
                            u"  [REVERTED] "_s + group.undone.toString()));
    }
    return steps + QList<TweakStep>{restoreAppRestorationStep(mayChange)};
}

QStringList undoSystemCommands() {
    return {powerCommand(false), spotlightCommand(true), timeMachineCommand(true),
            motionSensorCommand(kMotionSensorOn)};
}

TweakStep restoreAppRestorationStep(const MayChange& mayChange) {
    return syncStep(cleanRebootGroup(), TweakState::Standard, {}, mayChange);
}

TweakStep stopAppRestorationStep(const MayChange& mayChange) {
    return syncStep(cleanRebootGroup(), TweakState::InForce, {}, mayChange);
}

// ---- Notification Center's override

QList<TweakStep> enablingNotificationCenter(QList<TweakStep> steps, const QStringList& enable) {
    for (TweakStep& step : steps) {
        const qsizetype start = step.commands.indexOf(startNotificationCenter().first());
        if (start >= 0) {
            step.commands.insert(start, enable);
        }
    }
    return steps;
}

QList<TweakStep> leavingNotificationCenterOn(QList<TweakStep> steps) {
    for (TweakStep& step : steps) {
        step.commands.removeAll(stopNotificationCenter().last());
    }
    return steps;
}

bool marksFocus(const QList<TweakStep>& steps) {
    return std::any_of(steps.begin(), steps.end(),
                       [](const TweakStep& step) { return step.commands.contains(doNotDisturbInFocusPreferences()); });
}

bool stopsNotificationCenter(const QList<TweakStep>& steps) {
    return std::any_of(steps.begin(), steps.end(),
                       [](const TweakStep& step) { return step.commands.contains(stopNotificationCenter().last()); });
}

} // namespace quorvane
