#include "fakes/RestoreSystem.h"

namespace quorvane {

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
