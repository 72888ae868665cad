#pragma once

#include "core/CloudFiles.h"
#include "core/TaskLock.h"
#include "profiles/ProfileCloudBackup.h"
#include "profiles/ProfileManager.h"

#include <QList>
#include <QObject>

#include <optional>

namespace quorvane {

class Clock;
class CloudDrive;
class FileManager;
class Machine;

/// The profiles in iCloud Drive: full backups of the custom ones, of which the latest 20 stay, and two copies of the Default
/// profile, as it is and as it was before its last change.
///
/// One operation runs at a time, because a rotation reads what it then writes, and awaits in between; the others wait for
/// their turn. Each throws ProfileCloudError. Main thread; it outlives its tasks, and so do the profile managers it is given.
class ProfileCloudManager : public QObject {
    Q_OBJECT

public:
    ProfileCloudManager(FileManager& files, CloudDrive& cloud, Clock& clock, const Machine& machine,
                        QObject* parent = nullptr);

    /// Whether there was an account when the last operation began.
    bool isICloudAvailable() const { return m_isICloudAvailable; }
    /// As they were listed last.
    const QList<ProfileCloudBackupInfo>& backups() const { return m_backups; }
    /// Why there may be others: what kept the list, or a file, from being read when they were listed last. None where all was read.
    const std::optional<QString>& listFailure() const { return m_listFailure; }
    /// A backup or a restore is under way, or waits for its turn. It is over when what it came to is known: the list, which is read
    /// anew behind a backup, may have to wait.
    bool isBusy() const { return m_busyDepth > 0; }

    /// Lists the backups. What can't be read is left out; without iCloud the list is empty. Those that are here are listed before
    /// the others have come.
    QCoro::Task<void> refreshBackups();

    /// Saves the Default profile and then all others, once under the moment and once as the latest.
    QCoro::Task<ProfileCloudBackupResult> backupAllProfiles(ProfileManager& profileManager);

    /// Saves the Default profile as the current copy, and what that held as the previous one; nothing where its content is the
    /// same. @param profile  none takes the saved Default profile, or the built-in one where none is saved; one that is there and
    /// can't be read is an error. A caller that refreshes the copies at another profile's use gives none.
    QCoro::Task<void> backupDefaultProfile(ProfileManager& profileManager, std::optional<UnifiedProfile> profile);

    /// Makes the two copies of the Default profile where one is missing; does nothing without an account.
    QCoro::Task<void> ensureDefaultBackups(ProfileManager& profileManager);

    /// What a backup holds.
    QCoro::Task<ProfileCloudBackup> contents(ProfileCloudBackupInfo info);

    /// Merges a backup's profiles into the saved ones. What was saved before a failure stays.
    QCoro::Task<ProfileImportResult> restore(ProfileCloudBackupInfo info, ProfileManager& profileManager);

Q_SIGNALS:
    void isICloudAvailableChanged();
    void backupsChanged();
    void isBusyChanged();

private:
    class Busy;

    void updateAvailability();
    void requireICloud();
    QCoro::Task<QString> requiredFolder();
    QCoro::Task<QByteArray> newestBytes(QString path);
    QByteArray bytesIn(const QString& path) const;
    QCoro::Task<ProfileCloudBackup> readListedBackup(ProfileCloudBackupInfo info);
    QList<ProfileCloudBackupInfo> readInfos(const QStringList& paths);
    void showBeforeOthersCome(const QStringList& here, const QStringList& all);
    QCoro::Task<void> writeBackupData(QByteArray bytes, QString path);
    QStringList backupNames(const QString& folder) const;
    QStringList outdatedBackups(const QString& folder) const;
    QCoro::Task<void> prune(QString folder);
    QCoro::Task<void> listBackups();
    void setBackups(const QList<ProfileCloudBackupInfo>& backups);
    ProfileCloudBackup backupOf(const QList<UnifiedProfile>& profiles) const;
    QCoro::Task<ProfileCloudBackupResult> backUpAll(ProfileManager& profileManager);
    QCoro::Task<void> backUpDefault(ProfileManager& profileManager, std::optional<UnifiedProfile> given);
    QCoro::Task<ProfileManager::Reading> wholeReading(ProfileManager& profileManager);
    QCoro::Task<ProfileImportResult> importInto(ProfileManager& profileManager, QList<UnifiedProfile> profiles);
    QCoro::Task<void> rotate(UnifiedProfile profile, bool force);
    QCoro::Task<void> rotateExisting(UnifiedProfile profile, QByteArray fresh, QString folder);

    FileManager& m_files;
    CloudDrive& m_cloud;
    Clock& m_clock;
    const Machine& m_machine;
    CloudFiles m_cloudFiles;
    TaskLock m_lock;
    bool m_isICloudAvailable = false;
    QList<ProfileCloudBackupInfo> m_backups;
    std::optional<QString> m_listFailure;
    int m_busyDepth = 0;
};

} // namespace quorvane
