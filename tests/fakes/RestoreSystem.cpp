#include "fakes/RestoreSystem.h"

namespace quorvane {

RestoreSystem::RestoreSystem() {
    keepWhatIsWritten();
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
