#include "snapshots/RestoreCommands.h"

#include "core/Quoting.h"

#include <QRegularExpression>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

bool isInteger(const QString& value) {
    static const QRegularExpression form(u"\\A[+-]?[0-9]+\\z"_s);
    bool fits = false;
    value.toLongLong(&fits);
    return fits && form.match(value).hasMatch();
}

/// The type's option and the value, as `defaults write` takes them.
QStringList typedValue(const QString& value, bool isPerHost) {
    const QString lowered = value.toLower();
    if (lowered == u"true" || lowered == u"yes" || lowered == u"1") {
        return {u"-bool"_s, u"YES"_s};
    }
    if (lowered == u"false" || lowered == u"no" || lowered == u"0") {
        return {u"-bool"_s, u"NO"_s};
    }
    if (!isPerHost && isInteger(value)) {
        return {u"-int"_s, value};
    }
    return {u"-string"_s, value};
}

/// Of the three sleep settings those that were captured; empty when none was.
QString capturedSleepCommand(const SystemSnapshot& snapshot) {
    QString settings;
    const auto add = [&settings](QStringView name, const std::optional<QString>& value) {
        if (value) {
            settings += u' ' + name.toString() + u' ' + shellWord(*value);
        }
    };
    add(u"standby", snapshot.pmsetStandby);
    add(u"disksleep", snapshot.pmsetDisksleep);
    add(u"sleep", snapshot.pmsetSleep);
    return settings.isEmpty() ? QString() : u"pmset -a"_s + settings;
}

} // namespace

QStringList writeDefaultValueCommand(const MacPreference& preference, const std::optional<QString>& value,
                                     const QString& notificationCenter) {
    if (!value || value->isEmpty()) {
        return defaultsCommand(u"delete"_s, preference, notificationCenter);
    }
    return defaultsCommand(u"write"_s, preference, notificationCenter) +
           typedValue(*value, preference.isNotificationCenters());
}

QList<TweakStep> restoreSteps(const SystemSnapshot& snapshot, const QString& notificationCenter) {
    QList<TweakStep> steps;
    for (const PreferenceGroup& group : preferenceGroups()) {
        TweakStep step{{}, u"  [RESTORED] %1 settings."_s.arg(group.captured)};
        for (const SnapshotPreference& preference : snapshotPreferences()) {
            if (preference.tweak == group.tweak) {
                step.commands.append(
                    writeDefaultValueCommand(preference, snapshot.*preference.value, notificationCenter));
            }
        }
        step.commands += commandsBehindPreferences(group, TweakState::Standard);
        steps.append(step);
    }
    return steps;
}

QStringList restoreSystemCommands(const SystemSnapshot& snapshot) {
    QStringList commands;
    if (const QString sleep = capturedSleepCommand(snapshot); !sleep.isEmpty()) {
        commands.append(sleep);
    }
    if (snapshot.pmsetSms) {
        commands.append(motionSensorCommand(shellWord(*snapshot.pmsetSms)));
    }
    if (snapshot.spotlightIndexingEnabled) {
        commands.append(spotlightCommand(*snapshot.spotlightIndexingEnabled));
    }
    if (snapshot.timeMachineEnabled) {
        commands.append(timeMachineCommand(*snapshot.timeMachineEnabled));
    }
    return commands;
}

} // namespace quorvane
