#include "fakes/ProfileCloudSystem.h"

namespace quorvane {

QList<QByteArray> damagedBackups(const QByteArray& whole) {
    return {"",
            whole.chopped(1),
            whole.left(whole.size() / 2),
            "[]",
            "{}",
            "<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict/></plist>\n",
            QByteArray("bplist00\xd0\x08\0\0", 12),
            QByteArray(100000, '['),
            R"({"createdAt": "2026-11-15T21:05:37Z", "deviceName": "Studio", "formatVersion": 1, "profiles": [{}]})"};
}

ProfileCloudSystem::ProfileCloudSystem() {
    clock.time = QDateTime(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);
    cloud.account = true;
    cloud.container = container;
    files.addFolders(profilesDirectory(machine));
}

ProfileCloudSystem::~ProfileCloudSystem() = default;

UnifiedProfile ProfileCloudSystem::defaultNamed(const QString& name) {
    UnifiedProfile profile = UnifiedProfile::defaultProfile();
    profile.name = name;
    return profile;
}

UnifiedProfile ProfileCloudSystem::defaultVersion(int number) {
    UnifiedProfile profile = UnifiedProfile::defaultProfile();
    profile.startup.items = {
        StartupItem::fromLaunchItem({u"Live %1"_s.arg(number), u"/Applications/Live.app"_s, false})};
    return profile;
}

ProfileCloudBackup ProfileCloudSystem::backupHolding(const QList<UnifiedProfile>& backedUp, const QDateTime& createdAt,
                                                     const QString& deviceName) {
    ProfileCloudBackup backup;
    backup.createdAt = createdAt;
    backup.deviceName = deviceName;
    backup.profiles = backedUp;
    return backup;
}

QString ProfileCloudSystem::pathOf(const QString& name) const {
    return folder + u'/' + name;
}

QByteArray ProfileCloudSystem::bytesOf(const QString& name) const {
    return files.read(pathOf(name));
}

ProfileCloudBackup ProfileCloudSystem::backupIn(const QString& name) const {
    return decodeProfileCloudBackup(bytesOf(name));
}

void ProfileCloudSystem::addBackup(const QString& name, const QList<UnifiedProfile>& backedUp, int second) {
    files.addFile(pathOf(name), encodeProfileCloudBackup(backupHolding(backedUp, march.addSecs(second))));
}

QString ProfileCloudSystem::backUpAll() {
    return QCoro::waitFor(backupErrorOf(manager.backupAllProfiles(profiles)));
}

QString ProfileCloudSystem::backUpDefault(const std::optional<UnifiedProfile>& profile) {
    return QCoro::waitFor(backupErrorOf(manager.backupDefaultProfile(profiles, profile)));
}

QString ProfileCloudSystem::ensureDefault() {
    return QCoro::waitFor(backupErrorOf(manager.ensureDefaultBackups(profiles)));
}

QString ProfileCloudSystem::refresh() {
    return QCoro::waitFor(backupErrorOf(manager.refreshBackups()));
}

QStringList ProfileCloudSystem::takeChanges() {
    QStringList changes;
    for (const QString& call : std::exchange(cloud.calls, {})) {
        const QString what = call.section(u' ', 0, 0);
        if (what == u"create" || what == u"replace" || what == u"remove") {
            changes.append(QString(call).remove(folder + u'/'));
        }
    }
    return changes;
}

QStringList ProfileCloudSystem::listedIds() const {
    QStringList ids;
    for (const ProfileCloudBackupInfo& info : manager.backups()) {
        ids.append(info.id);
    }
    return ids;
}

} // namespace quorvane
