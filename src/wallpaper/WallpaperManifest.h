#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// What a display showed before the label came onto it.
struct ScreenWallpaperRecord {
    QString screenIdentifier;                  ///< of the display; a free one while that isn't connected
    QString originalImagePath;                 ///< of the copy in the work folder
    std::optional<QString> originalDesktopURL; ///< of the user's own file; none when it isn't known any more
    /// The names of the files in the work folder as which the display shows it: two while one takes the other's place, so
    /// that neither is unknown if that fails. None in the manifest of an earlier version.
    std::optional<QStringList> shownAs = std::nullopt;
    /// What is known of the display beside its number; see screenDescription.
    std::optional<QString> screen = std::nullopt;
    /// A picture of the user's was found in the place of its label: it goes, unless that label stands on another Space.
    bool mayBeReplaced = false;

    bool operator==(const ScreenWallpaperRecord&) const = default;
};

/// The user's own pictures, one record for each display, connected or not.
struct WallpaperManifest {
    QList<ScreenWallpaperRecord> screens;

    bool operator==(const WallpaperManifest&) const = default;

    /// Null where there is none.
    const ScreenWallpaperRecord* record(const QString& screenIdentifier) const;
    ScreenWallpaperRecord* record(const QString& screenIdentifier);
    /// Takes the place of an older record of the display.
    void put(const ScreenWallpaperRecord& newer);
    void remove(const QString& screenIdentifier);
};

QByteArray encodeWallpaperManifest(const WallpaperManifest& manifest);
/// None for what isn't a manifest.
std::optional<WallpaperManifest> decodeWallpaperManifest(const QByteArray& bytes);

} // namespace quorvane
