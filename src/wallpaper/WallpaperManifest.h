#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace quorvane {

/// What a display showed before the label came onto it.
struct ScreenWallpaperRecord {
    QString screenIdentifier;
    QString originalImagePath;                 ///< of the copy in the work folder
    std::optional<QString> originalDesktopURL; ///< of the user's own file; none when it isn't known any more

    bool operator==(const ScreenWallpaperRecord&) const = default;
};

/// The user's own pictures, one record for each display, connected or not.
struct WallpaperManifest {
    QList<ScreenWallpaperRecord> screens;

    bool operator==(const WallpaperManifest&) const = default;

    /// Null where there is none.
    const ScreenWallpaperRecord* record(const QString& screenIdentifier) const;
    /// Takes the place of an older record of the display.
    void put(const ScreenWallpaperRecord& record);
    void remove(const QString& screenIdentifier);
};

QByteArray encodeWallpaperManifest(const WallpaperManifest& manifest);
/// None for what isn't a manifest.
std::optional<WallpaperManifest> decodeWallpaperManifest(const QByteArray& bytes);

} // namespace quorvane
