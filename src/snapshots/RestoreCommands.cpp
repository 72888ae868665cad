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

/// The step that restores the next preferences of the table, as many as are told.
class StepMaker {
public:
    StepMaker(const SystemSnapshot& snapshot, const QString& notificationCenter)
        : m_snapshot(snapshot)
        , m_notificationCenter(notificationCenter) {}

    TweakStep next(int count, const QString& logLine) {
        TweakStep step{{}, logLine};
        for (int i = 0; i < count; ++i) {
            const SnapshotPreference& preference = *m_preference++;
            step.commands.append(
                writeDefaultValueCommand(preference, m_snapshot.*preference.value, m_notificationCenter));
        }
        return step;
    }

private:
    const SystemSnapshot& m_snapshot;
    const QString& m_notificationCenter;
    std::array<SnapshotPreference, 14>::const_iterator m_preference = snapshotPreferences().begin();
};

} // namespace

QStringList writeDefaultValueCommand(const SnapshotPreference& preference, const std::optional<QString>& value,
                                     const QString& notificationCenter) {
    const bool isPerHost = preference.isNotificationCenters();
    const bool isSet = value && !value->isEmpty();
    QStringList command{u"/usr/bin/defaults"_s};
    if (isPerHost) {
        command.append(u"-currentHost"_s);
    }
    command += {isSet ? u"write"_s : u"delete"_s, isPerHost ? notificationCenter : preference.domain.toString(),
                preference.key.toString()};
    return isSet ? command + typedValue(*value, isPerHost) : command;
}

QList<TweakStep> restoreSteps(const SystemSnapshot& snapshot, const QString& notificationCenter) {
    StepMaker steps(snapshot, notificationCenter);
    const TweakStep appNap = steps.next(2, u"  [RESTORED] App Nap settings."_s);
    const TweakStep updates = steps.next(3, u"  [RESTORED] Software update settings."_s);
    TweakStep notifications = steps.next(1, u"  [RESTORED] Notification settings."_s);
    notifications.commands += startNotificationCenter();
    const TweakStep siri = steps.next(2, u"  [RESTORED] Siri settings."_s);
    const TweakStep crashReporter = steps.next(1, u"  [RESTORED] Crash Reporter settings."_s);
    const TweakStep sounds = steps.next(1, u"  [RESTORED] UI sound settings."_s);
    const TweakStep airDrop = steps.next(1, u"  [RESTORED] AirDrop settings."_s);
    const TweakStep reboot = steps.next(3, u"  [RESTORED] Login and reboot settings."_s);
    return {appNap, updates, notifications, siri, crashReporter, sounds, airDrop, reboot};
}

QStringList restoreSystemCommands(const SystemSnapshot& snapshot) {
    QStringList commands;
    if (snapshot.pmsetStandby && snapshot.pmsetDisksleep && snapshot.pmsetSleep) {
        commands.append(u"pmset -a standby %1 disksleep %2 sleep %3"_s.arg(
            shellWord(*snapshot.pmsetStandby), shellWord(*snapshot.pmsetDisksleep), shellWord(*snapshot.pmsetSleep)));
    }
    if (snapshot.pmsetSms) {
        commands.append(u"pmset -a sms "_s + shellWord(*snapshot.pmsetSms));
    }
    if (snapshot.spotlightIndexingEnabled) {
        commands.append(spotlightCommand(*snapshot.spotlightIndexingEnabled));
    }
    if (snapshot.timeMachineEnabled) {
        commands.append(*snapshot.timeMachineEnabled ? u"tmutil enable"_s : u"tmutil disable"_s);
    }
    return commands;
}

} // namespace quorvane
