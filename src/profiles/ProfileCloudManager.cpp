#include "profiles/ProfileCloudManager.h"

#include "core/DeviceName.h"
#include "core/JsonErrors.h"
#include "core/Turns.h"
#include "platform/Clock.h"
#include "platform/CloudDrive.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "profiles/ProfileImporting.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileManager.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Code = ProfileCloudError::Code;
using BackupKind = ProfileCloudBackupKind;

constexpr qsizetype kTimestampedBackupsKept = 20;
const QString kNotDownloaded = u"It has not been downloaded from iCloud yet."_s;
const QString kQuitting = u"The program is quitting."_s;

QByteArray encoded(const ProfileCloudBackup& backup) {
    try {
        return encodeProfileCloudBackup(backup);
    } catch (const EncodingError& error) {
        throw ProfileCloudError(Code::writeFailed, error.message());
    }
}

ProfileCloudBackup decoded(const QByteArray& bytes) {
    try {
        return decodeProfileCloudBackup(bytes);
    } catch (const DecodingError& error) {
        throw ProfileCloudError(Code::readFailed, error.message());
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

/// None where none is saved. Throws ProfileCloudError for one that can't be read: the built-in one would take its place.
std::optional<UnifiedProfile> savedDefault(const ProfileManager::Reading& all) {
    const QString name = UnifiedProfile::defaultProfile().name;
    if (all.isUnreadable(name)) {
        throw ProfileCloudError(Code::writeFailed, u"The saved profile \"%1\" can't be read."_s.arg(name));
    }
    return all.profile(name);
}

/// Takes away the one profile that has copies of its own. Another one with its `id` is in none of them.
void removeSavedDefault(QList<UnifiedProfile>& profiles, const ProfileManager::Reading& all) {
    if (const std::optional<UnifiedProfile> saved = savedDefault(all)) {
        profiles.removeIf(
            [&saved](const UnifiedProfile& each) { return each == *saved && each.hasSameContent(*saved); });
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

QCoro::Task<ProfileCloudBackupResult> ProfileCloudManager::backupAllProfiles(ProfileManager& profileManager) {
    std::optional<Busy> busy(std::in_place, *this);
    const TaskLock::Hold hold = co_await m_lock.acquire();
    requireICloud();
    const ProfileCloudBackupResult result = co_await backUpAll(profileManager);
    busy.reset();
    co_await listBackups();
    if (result.backup.profiles.isEmpty()) {
        throw ProfileCloudError(Code::noProfilesToBackup);
    }
    co_return std::as_const(result);
}

/// Without profiles beside the Default profile it writes that one's copies alone.
QCoro::Task<ProfileCloudBackupResult> ProfileCloudManager::backUpAll(ProfileManager& profileManager) {
    const std::optional<UnifiedProfile> savedOne;
    co_await backUpDefault(profileManager, savedOne);
    const ProfileManager::Reading all = co_await wholeReading(profileManager);
    ProfileListing listing = all.listing();
    removeSavedDefault(listing.profiles, all);
    const ProfileCloudBackupResult result{backupOf(listing.profiles), listing.unreadable};
    if (listing.profiles.isEmpty()) {
        co_return std::as_const(result);
    }
    const QByteArray bytes = encoded(result.backup);
    const QString folder = co_await requiredFolder();
    co_await writeBackupData(bytes, folder + u'/' + timestampedBackupName(result.backup.createdAt));
    co_await writeBackupData(bytes, folder + u'/' + kLatestBackupName);
    co_await prune(folder);
    co_return std::as_const(result);
}

QCoro::Task<void> ProfileCloudManager::backupDefaultProfile(ProfileManager& profileManager,
                                                            std::optional<UnifiedProfile> profile) {
    std::optional<Busy> busy(std::in_place, *this);
    const TaskLock::Hold hold = co_await m_lock.acquire();
    requireICloud();
    co_await backUpDefault(profileManager, profile);
    busy.reset();
    co_await listBackups();
}

QCoro::Task<void> ProfileCloudManager::ensureDefaultBackups(ProfileManager& profileManager) {
    const TaskLock::Hold hold = co_await m_lock.acquire();
    updateAvailability();
    if (!m_isICloudAvailable) {
        co_return;
    }
    const QString folder = co_await requiredFolder();
    const bool hasBoth = m_cloudFiles.exists(folder + u'/' + kDefaultCurrentName) &&
                         m_cloudFiles.exists(folder + u'/' + kDefaultPreviousName);
    if (!hasBoth) {
        std::optional<Busy> busy(std::in_place, *this);
        const ProfileManager::Reading all = co_await wholeReading(profileManager);
        const UnifiedProfile profile = savedDefault(all).value_or(UnifiedProfile::defaultProfile());
        co_await rotate(profile, true);
        busy.reset();
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
    const QByteArray bytes = co_await newestBytes(info.url);
    co_return decoded(bytes);
}

QCoro::Task<ProfileImportResult> ProfileCloudManager::restore(ProfileCloudBackupInfo info,
                                                              ProfileManager& profileManager) {
    const Busy busy(*this);
    const TaskLock::Hold hold = co_await m_lock.acquire();
    const ProfileCloudBackup backup = co_await readListedBackup(info);
    if (backup.profiles.isEmpty()) {
        throw ProfileCloudError(Code::emptyBackup);
    }
    co_return co_await importInto(profileManager, backup.profiles);
}

QCoro::Task<ProfileImportResult> ProfileCloudManager::importInto(ProfileManager& profileManager,
                                                                 QList<UnifiedProfile> profiles) {
    try {
        co_return co_await importInTurns(m_clock, profileManager, profiles);
    } catch (const ProfileImportError& error) {
        throw ProfileCloudError(Code::writeFailed, error.message());
    }
}

/// In turns. Throws when the program quits before the end: what is missing would count as not saved.
QCoro::Task<ProfileManager::Reading> ProfileCloudManager::wholeReading(ProfileManager& profileManager) {
    ProfileManager::Reading all = profileManager.reading();
    bool isWhole = false;
    co_await inTurns(m_clock, [&all, &isWhole] {
        isWhole = !all.step();
        return !isWhole;
    });
    if (!isWhole) {
        throw ProfileCloudError(Code::writeFailed, kQuitting);
    }
    co_return std::move(all);
}

// ---- The copies of the Default profile

QCoro::Task<void> ProfileCloudManager::backUpDefault(ProfileManager& profileManager,
                                                     std::optional<UnifiedProfile> given) {
    const ProfileManager::Reading all = co_await wholeReading(profileManager);
    const std::optional<UnifiedProfile> saved = savedDefault(all);
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
    const QByteArray held = co_await newestBytes(current);
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

/// Their paths. Of those that were changed at one moment, or at none that is known, the later name counts as newer.
QStringList ProfileCloudManager::outdatedBackups(const QString& folder) const {
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
    QStringList paths;
    for (const Dated& file : files.mid(kTimestampedBackupsKept)) {
        paths.append(file.path);
    }
    return paths;
}

/// Keeps the newest.
QCoro::Task<void> ProfileCloudManager::prune(QString folder) {
    const QStringList outdated = outdatedBackups(folder);
    for (const QString& path : outdated) {
        const std::optional<QString> error = co_await m_cloud.remove(path);
        if (error) {
            throw ProfileCloudError(Code::writeFailed, *error);
        }
    }
}

// ---- The list

QCoro::Task<void> ProfileCloudManager::listBackups() {
    QList<ProfileCloudBackupInfo> found;
    m_listFailure = ProfileCloudError(Code::iCloudUnavailable).message();
    if (const std::optional<QString> folder = co_await m_cloudFiles.folder()) {
        QStringList paths;
        const QStringList names = backupNames(*folder);
        for (const QString& name : names) {
            paths.append(*folder + u'/' + name);
        }
        const std::function<void(const QStringList&)> showThem = [this, paths](const QStringList& here) {
            showBeforeOthersCome(here, paths);
        };
        const QStringList arrived = co_await m_cloudFiles.downloadAll(paths, showThem);
        m_listFailure.reset();
        found = readInfos(arrived);
        if (arrived.size() < paths.size()) {
            m_listFailure = ProfileCloudError(Code::readFailed, kNotDownloaded).message();
        }
    }
    setBackups(found);
}

/// Of the others those stay that were known already.
void ProfileCloudManager::showBeforeOthersCome(const QStringList& here, const QStringList& all) {
    QList<ProfileCloudBackupInfo> shown = readInfos(here);
    for (const ProfileCloudBackupInfo& known : std::as_const(m_backups)) {
        if (all.contains(known.url) && !here.contains(known.url)) {
            shown.append(known);
        }
    }
    sortBackups(shown);
    setBackups(shown);
}

/// Sorted. A file that can't be read is left out.
QList<ProfileCloudBackupInfo> ProfileCloudManager::readInfos(const QStringList& paths) {
    QList<ProfileCloudBackupInfo> infos;
    for (const QString& path : paths) {
        try {
            infos.append(backupInfo(path, decoded(bytesIn(path))));
        } catch (const ProfileCloudError& error) {
            m_listFailure = error.message();
        }
    }
    sortBackups(infos);
    return infos;
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
QCoro::Task<QByteArray> ProfileCloudManager::newestBytes(QString path) {
    const bool isCurrent = co_await m_cloudFiles.download(path);
    if (!isCurrent) {
        throw ProfileCloudError(Code::readFailed, kNotDownloaded);
    }
    co_return bytesIn(path);
}

/// As they are on the disk.
QByteArray ProfileCloudManager::bytesIn(const QString& path) const {
    try {
        return m_files.read(path);
    } catch (const FileError& error) {
        const bool hasGone = error.cause() == FileError::Cause::NotDownloaded; // to make room, since it was looked for
        throw ProfileCloudError(Code::readFailed, hasGone ? kNotDownloaded : error.message());
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
