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
QList<QByteArray> damagedBackups(const QByteArray& whole);

/// The profiles of a user who is signed in, and what they have of them in iCloud.
class ProfileCloudSystem : public ScriptedSystem {
public:
    ~ProfileCloudSystem() override;

protected:
    ProfileCloudSystem();

    static UnifiedProfile defaultNamed(const QString& name);
    /// The Default profile with another content, which changes with the number.
    static UnifiedProfile defaultVersion(int number);
    static ProfileCloudBackup backupHolding(const QList<UnifiedProfile>& backedUp, const QDateTime& createdAt,
                                            const QString& deviceName = u"Booth"_s);
    QString pathOf(const QString& name) const;
    QByteArray bytesOf(const QString& name) const;
    ProfileCloudBackup backupIn(const QString& name) const;
    /// Puts a backup there, as another Mac does.
    void addBackup(const QString& name, const QList<UnifiedProfile>& backedUp, int second = 0);
    QString backUpAll();
    QString backUpDefault(const std::optional<UnifiedProfile>& profile = {});
    QString ensureDefault();
    QString refresh();

    /// What was written and removed since the last call, without the folder: "create latest.json".
    QStringList takeChanges();
    QStringList listedIds() const;

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
