#pragma once

#include "fakes/ProfileStore.h"
#include "fakes/ScriptedSystem.h"
#include "profiles/ProfileCloudManager.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

/// What a task throws, in its words; "no error" where it throws nothing.
template <typename T>
QCoro::Task<QString> backupErrorOf(QCoro::Task<T> task) {
    QString text = u"no error"_s;
    try {
        co_await std::move(task);
    } catch (const ProfileCloudError& error) {
        text = error.message();
    }
    co_return std::as_const(text);
}

/// Files that are no backups, each in another way.
inline QList<QByteArray> damagedBackups(const QByteArray& whole) {
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

/// The profiles of a user who is signed in, and what he has of them in iCloud.
class ProfileCloudSystem : public ScriptedSystem {
protected:
    ProfileCloudSystem() {
        clock.time = QDateTime(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);
        cloud.account = true;
        cloud.container = container;
        files.addFolders(profilesDirectory(machine));
    }

    static UnifiedProfile defaultNamed(const QString& name) {
        UnifiedProfile profile = UnifiedProfile::defaultProfile();
        profile.name = name;
        return profile;
    }
    /// The Default profile with another content, which changes with the number.
    static UnifiedProfile defaultVersion(int number) {
        UnifiedProfile profile = UnifiedProfile::defaultProfile();
        profile.startup.items = {
            StartupItem::fromLaunchItem({u"Live %1"_s.arg(number), u"/Applications/Live.app"_s, false})};
        return profile;
    }
    static ProfileCloudBackup backupHolding(const QList<UnifiedProfile>& backedUp, const QDateTime& createdAt,
                                            const QString& deviceName = u"Booth"_s) {
        ProfileCloudBackup backup;
        backup.createdAt = createdAt;
        backup.deviceName = deviceName;
        backup.profiles = backedUp;
        return backup;
    }

    QString pathOf(const QString& name) const { return folder + u'/' + name; }
    QByteArray bytesOf(const QString& name) const { return files.read(pathOf(name)); }
    ProfileCloudBackup backupIn(const QString& name) const { return decodeProfileCloudBackup(bytesOf(name)); }
    /// Puts a backup there, as another Mac does.
    void addBackup(const QString& name, const QList<UnifiedProfile>& backedUp, int second = 0) {
        files.addFile(pathOf(name), encodeProfileCloudBackup(backupHolding(backedUp, march.addSecs(second))));
    }

    QString backUpAll() { return QCoro::waitFor(backupErrorOf(manager.backupAllProfiles(profiles))); }
    QString backUpDefault(const std::optional<UnifiedProfile>& profile = {}) {
        return QCoro::waitFor(backupErrorOf(manager.backupDefaultProfile(profiles, profile)));
    }
    QString ensureDefault() { return QCoro::waitFor(backupErrorOf(manager.ensureDefaultBackups(profiles))); }
    QString refresh() { return QCoro::waitFor(backupErrorOf(manager.refreshBackups())); }

    /// What was written and removed since the last call, without the folder: "create latest.json".
    QStringList takeChanges() {
        QStringList changes;
        for (const QString& call : std::exchange(cloud.calls, {})) {
            const QString what = call.section(u' ', 0, 0);
            if (what == u"create" || what == u"replace" || what == u"remove") {
                changes.append(QString(call).remove(folder + u'/'));
            }
        }
        return changes;
    }
    QStringList listedIds() const {
        QStringList ids;
        for (const ProfileCloudBackupInfo& info : manager.backups()) {
            ids.append(info.id);
        }
        return ids;
    }

    const QString container = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;
    const QString folder = container + u"/Documents/Quorvane/ProfileBackups"_s;
    const QString current = u"default-current.json"_s;
    const QString previous = u"default-previous.json"_s;
    const QString latest = u"latest.json"_s;
    const QString stamped = u"backup-2026-11-15T21:05:37Z.json"_s;
    const QDateTime march{QDate(2026, 3, 14), QTime(20, 30), Qt::UTC};
    ProfileManager profiles{files, profilesDirectory(machine)};
    ProfileCloudManager manager{files, cloud, clock, machine};
};

} // namespace quorvane
