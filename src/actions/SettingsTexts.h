#pragma once

#include "actions/PageTexts.h"
#include "actions/RowChoice.h"
#include "platform/Biometrics.h"
#include "platform/LoginService.h"
#include "profiles/ProfileCloudBackup.h"
#include "readings/FullDiskAccess.h"

#include <QList>
#include <QString>

// What the Settings page says, and its sheet of backups. Texts are plain, and names stand in them on one line.
namespace quorvane {

class Machine;
struct SettingsFacts;

// ---- Appearance

inline const QString kAppearanceTitle = QStringLiteral("Appearance");
inline const QString kAppearanceHeader = QStringLiteral("Choose how Quorvane looks on your system.");

struct AppearanceChoice {
    RowText text;
    QString mode; ///< see AppearanceManager::mode
};
/// The first is what every unknown mode means.
const QList<AppearanceChoice>& appearanceChoices();

// ---- App Security

inline const QString kSecurityTitle = QStringLiteral("App Security");
RowText appLockRow(BiometryType biometry);
RowText lockIsActiveRow();
RowText setPasswordRow();
RowText lockNowRow();
RowText changePasswordRow();
RowText removeLockRow();

// ---- Profile Backup

inline const QString kBackupTitle = QStringLiteral("Profile Backup");
inline const QString kBackupHeader = QStringLiteral(
    "Back up your custom profiles to iCloud Drive and restore them on another Mac. The Default profile is kept in two "
    "iCloud copies (current and previous) so you can revert if it is overwritten.");
/// @param backups  as they are known, in the order of their list
RowText cloudRow(bool isAvailable, const QList<ProfileCloudBackupInfo>& backups, const Machine& machine);
RowText backUpRow();
RowText restoreRow();

// ---- Wallpaper

inline const QString kWallpaperTitle = QStringLiteral("Wallpaper");
inline const QString kWallpaperHeader = QStringLiteral("Show your active Quorvane profile on the desktop wallpaper.");
RowText wallpaperRow();
/// What stands below the row beside that; empty where all is well.
QString wallpaperNote(const SettingsFacts& facts);

// ---- Startup

inline const QString kStartupTitle = QStringLiteral("Startup");
inline const QString kStartupHeader = QStringLiteral("Control how Quorvane behaves when you log in.");
inline const QString kAllowInSettings = QStringLiteral("Allow Quorvane in System Settings → General → Login Items.");
RowText launchAtLoginRow();
QString launchAtLoginNote(LoginService::State state);

// ---- Permissions

inline const QString kPermissionsTitle = QStringLiteral("Permissions");
inline const QString kPermissionsHeader =
    QStringLiteral("Quorvane requires Full Disk Access to optimize Time Machine and Spotlight indexing.");
inline const QString kPermissionsNote = QStringLiteral("Add Quorvane in System Settings and ensure the toggle is ON.");
inline const QString kPermissionsNoteSymbol = QStringLiteral("info.circle.fill");
RowText fullDiskAccessRow(FullDiskAccess access);
RowText openSystemSettingsRow();

// ---- The sheet of backups

inline const QString kRestoreTitle = QStringLiteral("Restore from iCloud");
inline const QString kRestoreText = QStringLiteral(
    "Choose a backup to restore profiles on this Mac. Use the Default Profile entries to recover the current or "
    "previous Default profile if it was overwritten.");
inline const QString kLoadingBackups = QStringLiteral("Loading iCloud backups…");
inline const QString kRestoringProfiles = QStringLiteral("Restoring profiles from iCloud…");
inline const QString kNoBackups = QStringLiteral("No iCloud backups were found for Quorvane.");
inline const QString kRestore = QStringLiteral("Restore");
ChoiceTexts backupChoiceTexts();
RowText backupRow(const ProfileCloudBackupInfo& backup, const Machine& machine);

} // namespace quorvane
