#include "profiles/ProfileCloudBackup.h"

#include "core/FileTimestamp.h"
#include "core/Json.h"
#include "core/OneLine.h"
#include "core/Paths.h"
#include "platform/Machine.h"
#include "profiles/ProfileJson.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

using Code = ProfileCloudError::Code;
using BackupKind = ProfileCloudBackupKind;

const QString kBackupExtension = u".json"_s;

/// Empty for the kind that is called by its date.
QString fixedTitle(BackupKind kind) {
    switch (kind) {
    case BackupKind::fullLatest:
        return u"Latest Backup"_s;
    case BackupKind::defaultCurrent:
        return u"Default Profile (Current)"_s;
    case BackupKind::defaultPrevious:
        return u"Default Profile (Previous)"_s;
    case BackupKind::fullTimestamped:
        break;
    }
    return {};
}

QString errorText(Code code, const QString& text) {
    switch (code) {
    case Code::readFailed:
        return u"Could not read the iCloud backup: "_s + text;
    case Code::writeFailed:
        return u"Could not write the iCloud backup: "_s + text;
    case Code::iCloudUnavailable:
        return u"iCloud Drive is not available. Sign in to iCloud in System Settings and enable iCloud Drive."_s;
    case Code::noProfilesToBackup:
        return u"There are no custom profiles to back up."_s;
    case Code::backupNotFound:
        return u"The selected iCloud backup could not be found."_s;
    case Code::emptyBackup:
        return u"The selected backup does not contain any profiles."_s;
    }
    return {};
}

bool goesBefore(const ProfileCloudBackupInfo& left, const ProfileCloudBackupInfo& right) {
    if (left.kind != right.kind) {
        return left.kind < right.kind;
    }
    return left.createdAt != right.createdAt ? left.createdAt > right.createdAt : left.id > right.id;
}

} // namespace

QByteArray encodeProfileCloudBackup(const ProfileCloudBackup& backup) {
    Json object = Json::object();
    appendMember(object, "formatVersion", encodeJson(backup.formatVersion));
    appendMember(object, "createdAt", encodeJson(backup.createdAt));
    appendMember(object, "deviceName", encodeJson(backup.deviceName));
    appendMember(object, "profiles", encodeJson(backup.profiles));
    return sortedJsonText(object);
}

ProfileCloudBackup decodeProfileCloudBackup(const QByteArray& bytes) {
    const Json object = parseJson(bytes);
    ProfileCloudBackup backup;
    backup.formatVersion = requiredMember<int>(object, "formatVersion");
    backup.createdAt = requiredMember<QDateTime>(object, "createdAt");
    backup.deviceName = requiredMember<QString>(object, "deviceName");
    backup.profiles = requiredMember<QList<UnifiedProfile>>(object, "profiles");
    return backup;
}

QString timestampedBackupName(const QDateTime& createdAt) {
    return u"backup-"_s + fileTimestamp(createdAt) + kBackupExtension;
}

bool isBackupName(const QString& fileName) {
    return fileName.endsWith(kBackupExtension) && fileName != kBackupExtension;
}

ProfileCloudBackupKind backupKindOf(const QString& fileName) {
    if (fileName == kLatestBackupName) {
        return BackupKind::fullLatest;
    }
    if (fileName == kDefaultCurrentName) {
        return BackupKind::defaultCurrent;
    }
    return fileName == kDefaultPreviousName ? BackupKind::defaultPrevious : BackupKind::fullTimestamped;
}

QString ProfileCloudBackupInfo::title(const Machine& machine) const {
    return kind == BackupKind::fullTimestamped ? machine.dateAndTimeText(createdAt) : fixedTitle(kind);
}

QString ProfileCloudBackupInfo::detail() const {
    const bool isDefault = kind == BackupKind::defaultCurrent || kind == BackupKind::defaultPrevious;
    const QString what = isDefault ? u"Default profile backup"_s : u"%1 profile(s)"_s.arg(profileCount);
    return what + u" from "_s + deviceName;
}

ProfileCloudBackupInfo backupInfo(const QString& path, const ProfileCloudBackup& backup) {
    const QString name = lastPathComponent(path);
    return {
        name, path, backup.createdAt, static_cast<int>(backup.profiles.size()), backup.deviceName, backupKindOf(name)};
}

void sortBackups(QList<ProfileCloudBackupInfo>& backups) {
    std::sort(backups.begin(), backups.end(), goesBefore);
}

ProfileCloudError::ProfileCloudError(Code code, const QString& text)
    : m_code(code)
    , m_text(errorText(code, text).toUtf8()) {}

QString summary(int imported, int updated, const QStringList& renamed) {
    QStringList counts;
    if (imported > 0) {
        counts.append(u"%1 imported"_s.arg(imported));
    }
    if (updated > 0) {
        counts.append(u"%1 updated"_s.arg(updated));
    }
    if (counts.isEmpty()) {
        return u"No profiles changed."_s;
    }
    const QString names = renamed.isEmpty() ? QString() : u"\nRenamed: "_s + onOneLine(renamed.join(u", "_s));
    return counts.join(u", "_s) + names;
}

ClosingAlert backupCompleteAlert(const ProfileCloudBackupResult& result) {
    const QStringList titles{fixedTitle(BackupKind::fullLatest), fixedTitle(BackupKind::defaultCurrent),
                             fixedTitle(BackupKind::defaultPrevious)};
    QStringList leftOut;
    for (const QString& name : result.unreadable) {
        leftOut.append(nameOnOneLine(name));
    }
    const QString missing =
        leftOut.isEmpty() ? QString() : u"\n\nNot saved, because it can't be read: "_s + leftOut.join(u", "_s);
    return {u"Backup Complete"_s,
            u"Saved %1 profile(s) to iCloud.\n\n"_s.arg(result.backup.profiles.size()) + titles.join(u'\n') + missing};
}

ClosingAlert profilesRestoredAlert(const ProfileImportResult& result) {
    return {u"Profiles Restored"_s, summary(result.imported, result.updated, result.renamed)};
}

} // namespace quorvane
