#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

// Pictures that macOS animates, shuffles or otherwise manages itself. It can't be asked to show one of them again, and it
// names a stand-in for them: a label over one leaves a still picture when it goes.
namespace quorvane {

/// Where macOS keeps what its displays show, below the user's home folder. It is only read.
inline const QString kWallpaperStore =
    QStringLiteral("/Library/Application Support/com.apple.wallpaper/Store/Index.plist");

/// The system's picture for a display on which nothing else can be shown, and its stand-in for most of what it animates.
inline const QString kDefaultDesktopPicture = QStringLiteral("/System/Library/CoreServices/DefaultDesktop.heic");

/// The kinds of picture that the store tells of ("com.apple.wallpaper.choice.image"), wherever in it they stand: of which
/// display and Space each of them is can't be told. Empty for a store that tells of none.
QStringList wallpaperProviders(const QVariantMap& store);

/// Whether a display of which the system says that it shows this file may show a picture of macOS's own. The path alone
/// doesn't tell: a stand-in may also have been chosen as a picture.
/// @param providers  of the store; empty where it can't be read
bool mayBeAnimated(const QString& path, const QStringList& providers);

} // namespace quorvane
