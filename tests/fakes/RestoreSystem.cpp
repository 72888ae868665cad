#include "fakes/RestoreSystem.h"

namespace quorvane {

RestoreSystem::RestoreSystem() {
    commands.print(reading::kPower, "AC Power:\n standby 1\n disksleep 10\n sleep 1\n sms 1\n");
    commands.print(reading::kSpotlight, reading::indexing("Indexing enabled. "));
    commands.print(reading::kSpotlightOfAll, reading::indexing("Indexing enabled. "));
    commands.respond = [this, respond = commands.respond](const QStringList& arguments) {
        const std::optional<CommandOutcome> answer = answerOfPreferences(arguments);
        return answer || !respond ? answer : respond(arguments);
    };
    scripts.carryOut = [this, carryOut = scripts.carryOut](const QString& source) {
        if (source.contains(u"tmutil enable"_s) || source.contains(u"tmutil disable"_s)) {
            setAutomaticBackups(source.contains(u"tmutil enable"_s));
        }
        if (carryOut) {
            carryOut(source);
        }
    };
}

/// None of what was never written.
std::optional<CommandOutcome> RestoreSystem::answerOfPreferences(const QStringList& arguments) {
    static const QMap<QString, QString> kSwitches{{u"YES"_s, u"1"_s}, {u"NO"_s, u"0"_s}, {u"true"_s, u"1"_s}};
    const qsizetype verb = arguments.value(1) == u"-currentHost" ? 2 : 1;
    const QString place = arguments.mid(verb + 1, 2).join(u' ');
    if (arguments.first() != u"/usr/bin/defaults"_s) {
        return std::nullopt;
    }
    if (arguments.value(verb) == u"read" && m_written.contains(place)) {
        CommandOutcome outcome = ScriptedCommandLauncher::succeeded(m_written[place].value_or(QString()).toUtf8());
        outcome.code = m_written[place] ? 0 : 1;
        return outcome;
    }
    if (arguments.value(verb) == u"write") {
        m_written[place] = kSwitches.value(arguments.last(), arguments.last());
    } else if (arguments.value(verb) == u"delete") {
        m_written[place] = std::nullopt;
    }
    return std::nullopt;
}

QString RestoreSystem::readBack(const QStringList& further, const QStringList& beside, const QString& afterLook) {
    const QStringList names =
        QStringList(u"App Nap"_s) + further +
        QStringList{u"Software Updates"_s, u"Notifications"_s, u"Crash Reporter"_s, u"AirDrop"_s, u"Siri"_s,
                    u"UI Sounds"_s,        u"Clean Reboot"_s} +
        beside;
    return kLookAtTweaks + afterLook + u"  [OK] "_s + names.join(u"\n  [OK] "_s) + u'\n';
}

QString RestoreSystem::readBackOfStandard() {
    return readBack({u"Spotlight"_s, u"USB Power"_s, u"Motion Sensor"_s, u"Time Machine"_s});
}

QDateTime RestoreSystem::timeAt(int second) {
    return QDateTime(QDate(2026, 3, 14), QTime(20, 30, second), Qt::UTC);
}

SystemSnapshot RestoreSystem::usersOwn(int second) {
    SystemSnapshot snapshot;
    snapshot.id = QUuid::fromString(u"0F8FAD5B-D9CB-469F-A165-70867728950E"_s);
    snapshot.dateCreated = timeAt(second);
    snapshot.automaticDownload = u"1"_s;
    snapshot.siriStatus = u"Disabled"_s;
    snapshot.uiSoundsEnabled = u"7"_s;
    return snapshot;
}

void RestoreSystem::save(const SystemSnapshot& snapshot) {
    SnapshotManager(files, machine).save(snapshot);
}

void RestoreSystem::saveBaseline(const QString& path, const SystemSnapshot& snapshot, const QString& deviceName,
                                 const std::optional<QString>& deviceId) {
    files.addFile(path, encodeMasterBaseline(masterBaselineOf(snapshot, {deviceName, deviceId}, {})));
}

} // namespace quorvane
