#include "actions/SettingsTexts.h"

#include "actions/SettingsStatus.h"
#include "core/OneLine.h"
#include "lock/BiometryNames.h"
#include "platform/Machine.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using BackupKind = ProfileCloudBackupKind;

const QString kWarningSymbol = u"exclamationmark.triangle.fill"_s;

/// The latest of all profiles; null where there is none.
const ProfileCloudBackupInfo* latestFullBackup(const QList<ProfileCloudBackupInfo>& backups) {
    const auto isFull = [](const ProfileCloudBackupInfo& backup) {
        return backup.kind == BackupKind::fullLatest || backup.kind == BackupKind::fullTimestamped;
    };
    const auto found = std::find_if(backups.cbegin(), backups.cend(), isFull);
    return found == backups.cend() ? nullptr : &*found;
}

QString symbolOf(BackupKind kind) {
    switch (kind) {
    case BackupKind::fullLatest:
        return u"icloud.fill"_s;
    case BackupKind::defaultCurrent:
        return u"display.and.arrow.down"_s;
    case BackupKind::defaultPrevious:
        return u"arrow.counterclockwise.icloud"_s;
    case BackupKind::fullTimestamped:
        break;
    }
    return u"clock.arrow.circlepath"_s;
}

} // namespace

// ---- Appearance

const QList<AppearanceChoice>& appearanceChoices() {
    static const QList<AppearanceChoice> choices{
        {{u"Follow macOS"_s, u"Automatically match your system theme"_s, {}}, u"system"_s},
        {{u"Light Mode"_s, u"Always use light appearance"_s, {}}, u"light"_s},
        {{u"Dark Mode"_s, u"Always use dark appearance"_s, {}}, u"dark"_s},
    };
    return choices;
}

// ---- App Security

RowText appLockRow(BiometryType biometry) {
    return {u"App Lock"_s,
            u"Require a password to open Quorvane and switch profiles. When available, "_s +
                biometryDisplayName(biometry) + u" can be used instead of typing your password."_s,
            u"lock.shield.fill"_s};
}

RowText lockIsActiveRow() {
    return {u"App lock is active"_s, {}, u"lock.fill"_s};
}

RowText setPasswordRow() {
    return {u"Set App Password…"_s, {}, u"plus.circle.fill"_s};
}

RowText lockNowRow() {
    return {u"Lock Now"_s, {}, u"lock.fill"_s};
}

RowText changePasswordRow() {
    return {u"Change Password…"_s, {}, u"pencil"_s};
}

RowText removeLockRow() {
    return {u"Remove App Lock…"_s, {}, u"minus.circle.fill"_s};
}

// ---- Profile Backup

RowText cloudRow(bool isAvailable, const QList<ProfileCloudBackupInfo>& backups, const Machine& machine) {
    RowText row{isAvailable ? u"iCloud Drive is available"_s : u"iCloud Drive is unavailable"_s, {}, u"icloud.fill"_s};
    if (const ProfileCloudBackupInfo* const latest = latestFullBackup(backups)) {
        row.subtitle = u"Latest backup: %1 (%2 profile(s))"_s.arg(machine.dateAndTimeText(latest->createdAt))
                           .arg(latest->profileCount);
    }
    return row;
}

RowText backUpRow() {
    return {u"Back Up Profiles to iCloud"_s, {}, u"icloud.and.arrow.up.fill"_s};
}

RowText restoreRow() {
    return {u"Restore Profiles from iCloud"_s, {}, u"arrow.counterclockwise.icloud"_s};
}

// ---- Wallpaper

RowText wallpaperRow() {
    return {u"Show Current Profile on Wallpaper"_s,
            u"Displays the profile name in bold at the top-left of your wallpaper"_s, u"display"_s};
}

QString wallpaperNote(const SettingsFacts& facts) {
    if (!facts.showsLabel || (facts.hasLabelName && facts.isLabelInPlace)) {
        return {};
    }
    if (!facts.hasLabelName) {
        return u"Shown after a profile was applied."_s;
    }
    return facts.hasAnimatedPicture
               ? u"Not shown where macOS animates the picture. Switch this off and on to show it there, too."_s
               : u"Could not be shown on every display. Check the Logs tab."_s;
}

// ---- Startup

RowText launchAtLoginRow() {
    return {u"Launch at Login"_s, u"Automatically start Quorvane when you log in"_s, u"power.circle.fill"_s};
}

QString launchAtLoginNote(LoginService::State state) {
    return state == LoginService::State::RequiresApproval ? kAllowInSettings : QString();
}

// ---- Permissions

RowText fullDiskAccessRow(FullDiskAccess access) {
    const QString title = u"Full Disk Access"_s;
    switch (access) {
    case FullDiskAccess::Given:
        return {title, u"Quorvane has it."_s, u"checkmark.circle.fill"_s};
    case FullDiskAccess::Missing:
        return {title, u"Quorvane doesn’t have it."_s, kWarningSymbol};
    case FullDiskAccess::Unknown:
        break;
    }
    return {title, u"Whether Quorvane has it can’t be told."_s, u"questionmark.circle.fill"_s};
}

RowText openSystemSettingsRow() {
    return {u"Open System Settings…"_s, {}, u"gearshape.fill"_s};
}

// ---- The sheet of backups

ChoiceTexts backupChoiceTexts() {
    return {kRestoreTitle, kRestoreText, kLoadingBackups, kRestoringProfiles, kNoBackups, kRestore};
}

RowText backupRow(const ProfileCloudBackupInfo& backup, const Machine& machine) {
    return {backup.title(machine), onOneLine(backup.detail()), symbolOf(backup.kind)};
}

} // namespace quorvane
