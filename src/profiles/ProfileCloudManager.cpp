#include "profiles/ProfileCloudManager.h"

#include "core/DeviceName.h"
#include "core/JsonErrors.h"
#include "platform/Clock.h"
#include "platform/CloudDrive.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileManager.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Code = ProfileCloudError::Code;
using BackupKind = ProfileCloudBackupKind;

constexpr qsizetype kTimestampedBackupsKept = 20;

QByteArray encoded(const ProfileCloudBackup& backup) {
    try {
        return encodeProfileCloudBackup(backup);
    } catch (const EncodingError& error) {
        throw ProfileCloudError(Code::writeFailed, error.message());
    }
}

/// None for a file that is no backup, or one of no profiles.
std::optional<UnifiedProfile> firstProfileIn(const QByteArray& bytes) {
    try {
        const QList<UnifiedProfile> profiles = decodeProfileCloudBackup(bytes).profiles;
        return profiles.isEmpty() ? std::nullopt : std::optional(profiles.first());
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

std::optional<UnifiedProfile> savedDefault(const ProfileManager& profileManager) {
    return profileManager.loadProfile(u"Default"_s);
}

/// All but the one of which there are copies of its own, so that every profile is saved somewhere.
QList<UnifiedProfile> customProfiles(const ProfileManager& profileManager) {
    QList<UnifiedProfile> profiles = profileManager.listProfiles();
    if (const std::optional<UnifiedProfile> saved = savedDefault(profileManager)) {
        profiles.removeAll(*saved);
    }
    return profiles;
}

ProfileImportResult importInto(ProfileManager& profileManager, const QList<UnifiedProfile>& profiles) {
    try {
        return profileManager.importProfiles(profiles);
    } catch (const ProfileStoreError& error) {
        throw ProfileCloudError(Code::writeFailed, error.message());
    } catch (const EncodingError& error) {
        throw ProfileCloudError(Code::writeFailed, error.message());
    } catch (const FileError& error) {
        throw ProfileCloudError(Code::writeFailed, error.message());
    }
}

} // namespace

/// A backup or a restore, as long as it lasts.
class ProfileCloudManager::Busy {
public:
    explicit Busy(ProfileCloudManager& manager)
        : m_manager(manager) {
        if (++m_manager.m_busyDepth == 1) {
            Q_EMIT m_manager.isBusyChanged();
        }
    }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    ~Busy() {
        if (--m_manager.m_busyDepth == 0) {
            Q_EMIT m_manager.isBusyChanged();
        }
    }

private:
    ProfileCloudManager& m_manager;
};

ProfileCloudManager::ProfileCloudManager(FileManager& files, CloudDrive& cloud, Clock& clock, const Machine& machine,
                                         QObject* parent)
    : QObject(parent)
    , m_files(files)
    , m_cloud(cloud)
    , m_clock(clock)
    , m_machine(machine)
    , m_cloudFiles(files, cloud, clock, u"ProfileBackups"_s, u"Could not create the iCloud backup file."_s)
    , m_isICloudAvailable(cloud.hasAccount()) {}

// ---- Operations

QCoro::Task<void> ProfileCloudManager::refreshBackups() {
    const TaskLock::Hold hold = co_await m_lock.acquire();
    updateAvailability();
    co_await listBackups();
}

QCoro::Task<ProfileCloudBackup> ProfileCloudManager::backupAllProfiles(ProfileManager& profileManager) {
    const Busy busy(*this);
    const TaskLock::Hold hold = co_await m_lock.acquire();
    requireICloud();
    const std::optional<UnifiedProfile> savedOne;
    co_await backUpDefault(profileManager, savedOne);
    const ProfileCloudBackup backup = backupOf(customProfiles(profileManager));
    if (backup.profiles.isEmpty()) {
        co_await listBackups();
        throw ProfileCloudError(Code::noProfilesToBackup);
    }
    const QByteArray bytes = encoded(backup);
    const QString folder = co_await requiredFolder();
    co_await writeBackupData(bytes, folder + u'/' + timestampedBackupName(backup.createdAt));
    co_await writeBackupData(bytes, folder + u'/' + kLatestBackupName);
    prune(folder);
    co_await listBackups();
    co_return backup;
}

QCoro::Task<void> ProfileCloudManager::backupDefaultProfile(ProfileManager& profileManager,
                                                            std::optional<UnifiedProfile> profile) {
    const Busy busy(*this);
    const TaskLock::Hold hold = co_await m_lock.acquire();
    requireICloud();
    co_await backUpDefault(profileManager, profile);
    co_await listBackups();
}

QCoro::Task<void> ProfileCloudManager::ensureDefaultBackups(ProfileManager& profileManager) {
    const Busy busy(*this);
    const TaskLock::Hold hold = co_await m_lock.acquire();
    updateAvailability();
    if (!m_isICloudAvailable) {
        co_return;
    }
    const QString folder = co_await requiredFolder();
    const bool hasBoth = m_cloudFiles.exists(folder + u'/' + kDefaultCurrentName) &&
                         m_cloudFiles.exists(folder + u'/' + kDefaultPreviousName);
    if (!hasBoth) {
        const UnifiedProfile profile = savedDefault(profileManager).value_or(UnifiedProfile::defaultProfile());
        co_await rotate(profile, true);
        co_await listBackups();
    }
}

QCoro::Task<ProfileCloudBackup> ProfileCloudManager::contents(ProfileCloudBackupInfo info) {
    const TaskLock::Hold hold = co_await m_lock.acquire();
    co_return co_await readListedBackup(info);
}

QCoro::Task<ProfileCloudBackup> ProfileCloudManager::readListedBackup(ProfileCloudBackupInfo info) {
    requireICloud();
    if (!m_cloudFiles.exists(info.url)) {
        throw ProfileCloudError(Code::backupNotFound);
    }
    co_return co_await readBackup(info.url);
}

QCoro::Task<ProfileImportResult> ProfileCloudManager::restore(ProfileCloudBackupInfo info,
                                                              ProfileManager& profileManager) {
    const Busy busy(*this);
    const TaskLock::Hold hold = co_await m_lock.acquire();
    const ProfileCloudBackup backup = co_await readListedBackup(info);
    if (backup.profiles.isEmpty()) {
        throw ProfileCloudError(Code::emptyBackup);
    }
    co_return importInto(profileManager, backup.profiles);
}

// ---- The copies of the Default profile

QCoro::Task<void> ProfileCloudManager::backUpDefault(ProfileManager& profileManager,
                                                     std::optional<UnifiedProfile> given) {
    const std::optional<UnifiedProfile> saved = savedDefault(profileManager);
    const bool force = given ? saved && saved->id != given->id : !saved;
    const UnifiedProfile profile = given ? *given : saved.value_or(UnifiedProfile::defaultProfile());
    co_await rotate(profile, force);
}

/// @param force  a first current copy replaces a previous one that is there
QCoro::Task<void> ProfileCloudManager::rotate(UnifiedProfile profile, bool force) {
    const QString folder = co_await requiredFolder();
    const QByteArray fresh = encoded(backupOf({profile}));
    if (m_cloudFiles.exists(folder + u'/' + kDefaultCurrentName)) {
        co_await rotateExisting(profile, fresh, folder);
    } else {
        co_await writeBackupData(fresh, folder + u'/' + kDefaultCurrentName);
        if (force || !m_cloudFiles.exists(folder + u'/' + kDefaultPreviousName)) {
            co_await writeBackupData(fresh, folder + u'/' + kDefaultPreviousName);
        }
    }
}

/// What the current copy holds is read before anything is written, and written as the previous one before it is replaced.
QCoro::Task<void> ProfileCloudManager::rotateExisting(UnifiedProfile profile, QByteArray fresh, QString folder) {
    const QString current = folder + u'/' + kDefaultCurrentName;
    const QString previous = folder + u'/' + kDefaultPreviousName;
    const QByteArray held = co_await readBytes(current);
    const std::optional<UnifiedProfile> last = firstProfileIn(held);
    if (last && !last->hasSameContent(profile)) {
        co_await writeBackupData(held, previous);
        co_await writeBackupData(fresh, current);
        co_return;
    }
    if (!last) {
        co_await writeBackupData(fresh, current);
    }
    // Asked as late as this: iCloud may have learnt of it while the current one came.
    if (!m_cloudFiles.exists(previous)) {
        const QByteArray now = last ? held : fresh;
        co_await writeBackupData(now, previous);
    }
}

// ---- Timestamped backups

/// Keeps the newest. Of those that were changed at one moment, or at none that is known, the later name counts as newer.
void ProfileCloudManager::prune(const QString& folder) {
    struct Dated {
        QDateTime modified;
        QString path;
    };
    const QDateTime distantPast(QDate(1, 1, 1), QTime(0, 0), Qt::UTC);
    QList<Dated> files;
    for (const QString& name : backupNames(folder)) {
        const QString path = folder + u'/' + name;
        const bool isFolder = m_files.status(path).kind == FileStatus::Kind::Folder;
        if (backupKindOf(name) == BackupKind::fullTimestamped && !isFolder) {
            files.append({m_cloud.modificationDate(path).value_or(distantPast), path});
        }
    }
    std::sort(files.begin(), files.end(), [](const Dated& left, const Dated& right) {
        return left.modified != right.modified ? left.modified > right.modified : left.path > right.path;
    });
    for (const Dated& file : files.mid(kTimestampedBackupsKept)) {
        if (const std::optional<QString> error = m_cloud.remove(file.path)) {
            throw ProfileCloudError(Code::writeFailed, *error);
        }
    }
}

// ---- The list

QCoro::Task<void> ProfileCloudManager::listBackups() {
    QList<ProfileCloudBackupInfo> found;
    if (const std::optional<QString> folder = co_await m_cloudFiles.folder()) {
        const QStringList names = backupNames(*folder);
        for (const QString& name : names) {
            if (const std::optional<ProfileCloudBackupInfo> info = co_await readInfo(*folder + u'/' + name)) {
                found.append(*info);
            }
        }
    }
    sortBackups(found);
    setBackups(found);
}

/// None for a file that can't be read.
QCoro::Task<std::optional<ProfileCloudBackupInfo>> ProfileCloudManager::readInfo(QString path) {
    try {
        const ProfileCloudBackup backup = co_await readBackup(path);
        co_return backupInfo(path, backup);
    } catch (const ProfileCloudError&) {
        co_return std::nullopt;
    }
}

/// In the order in which the folder gives them.
QStringList ProfileCloudManager::backupNames(const QString& folder) const {
    try {
        QStringList names = m_cloud.list(folder);
        names.removeIf([](const QString& name) { return !isBackupName(name); });
        return names;
    } catch (const FileError& error) {
        throw ProfileCloudError(Code::readFailed, error.message());
    }
}

void ProfileCloudManager::setBackups(const QList<ProfileCloudBackupInfo>& backups) {
    if (m_backups != backups) {
        m_backups = backups;
        Q_EMIT backupsChanged();
    }
}

// ---- Files

void ProfileCloudManager::updateAvailability() {
    const bool isAvailable = m_cloud.hasAccount();
    if (m_isICloudAvailable != isAvailable) {
        m_isICloudAvailable = isAvailable;
        Q_EMIT isICloudAvailableChanged();
    }
}

void ProfileCloudManager::requireICloud() {
    updateAvailability();
    if (!m_isICloudAvailable) {
        throw ProfileCloudError(Code::iCloudUnavailable);
    }
}

QCoro::Task<QString> ProfileCloudManager::requiredFolder() {
    const std::optional<QString> folder = co_await m_cloudFiles.folder();
    if (!folder) {
        throw ProfileCloudError(Code::iCloudUnavailable);
    }
    co_return *folder;
}

/// A file whose newest content doesn't come counts as unread, even where an older one is on the disk: it would be taken for
/// what the user saved last.
QCoro::Task<QByteArray> ProfileCloudManager::readBytes(QString path) {
    const bool isCurrent = co_await m_cloudFiles.download(path);
    if (!isCurrent) {
        throw ProfileCloudError(Code::readFailed, u"It has not been downloaded from iCloud yet."_s);
    }
    try {
        co_return m_files.read(path);
    } catch (const FileError& error) {
        throw ProfileCloudError(Code::readFailed, error.message());
    }
}

QCoro::Task<ProfileCloudBackup> ProfileCloudManager::readBackup(QString path) {
    const QByteArray bytes = co_await readBytes(path);
    try {
        co_return decodeProfileCloudBackup(bytes);
    } catch (const DecodingError& error) {
        throw ProfileCloudError(Code::readFailed, error.message());
    }
}

QCoro::Task<void> ProfileCloudManager::writeBackupData(QByteArray bytes, QString path) {
    const std::optional<QString> error = co_await m_cloudFiles.write(bytes, path);
    if (error) {
        throw ProfileCloudError(Code::writeFailed, *error);
    }
}

/// Of this moment, on this Mac.
ProfileCloudBackup ProfileCloudManager::backupOf(const QList<UnifiedProfile>& profiles) const {
    ProfileCloudBackup backup;
    backup.createdAt = m_clock.now();
    backup.deviceName = deviceNameOf(m_machine.computerName());
    backup.profiles = profiles;
    return backup;
}

} // namespace quorvane
