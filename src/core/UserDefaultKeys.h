#pragma once

#include <QString>

namespace quorvane {

// The program's own preferences, by their keys.

/// String: the name of the profile that was last applied. It is never removed: the profile may be gone.
inline const QString kQuorvaneLastAppliedProfileName = QStringLiteral("QuorvaneLastAppliedProfileName");

/// String: the raw value of the current `AppMode`.
inline const QString kQuorvaneCurrentMode = QStringLiteral("QuorvaneCurrentMode");

/// String array: the paths of the apps that this program has put into the login items.
inline const QString kQuorvaneManagedStartupAppPaths = QStringLiteral("QuorvaneManagedStartupAppPaths");

/// String array: the keys of the tweaks that this program has put in force where they weren't, and that haven't been seen back since.
inline const QString kQuorvaneChangedTweaks = QStringLiteral("QuorvaneChangedTweaks");

/// Boolean: this program has switched the automatic backups off, and they haven't been seen on since.
inline const QString kQuorvaneSwitchedBackupsOff = QStringLiteral("QuorvaneSwitchedBackupsOff");

/// String: a private entry point that was being called, and the version of macOS: "SMLoginItemSetUserAllowed_4BTM 14.7". There
/// only during the call, or when the program ended in it.
inline const QString kQuorvaneBackgroundTaskCallBegan = QStringLiteral("QuorvaneBackgroundTaskCallBegan");

/// Boolean: the app lock is on.
inline const QString kQuorvaneAppLockEnabled = QStringLiteral("QuorvaneAppLockEnabled");

/// Boolean: the active profile's name stands on the desktop pictures.
inline const QString kShowProfileOnWallpaper = QStringLiteral("showProfileOnWallpaper");

/// String: the name that stands there now. "Default", or a missing value, means none.
inline const QString kWallpaperProfileName = QStringLiteral("wallpaperProfileName");

/// String: the highest number that a picture of the program's has had on a desktop, so that no other is given it.
inline const QString kQuorvaneWallpaperNumber = QStringLiteral("QuorvaneWallpaperNumber");

/// String array: the displays that were given a still picture back for an animated one, and show it since; each as
/// "display-1 /System/Library/CoreServices/DefaultDesktop.heic".
inline const QString kQuorvaneStillDesktopPictures = QStringLiteral("QuorvaneStillDesktopPictures");

/// String: "light", "dark", or anything else for the system's appearance.
inline const QString kAppearanceMode = QStringLiteral("appearanceMode");

} // namespace quorvane
