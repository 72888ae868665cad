#pragma once

#include "wallpaper/WallpaperManifest.h"

#include <QList>
#include <QString>

// Which display's picture is whose.
//
// The system numbers its displays as they come, so that a number may stand for another display tomorrow. What a display
// shows it keeps, wherever it is plugged in: so the file that it shows tells which record is its own, and no file that a
// record is shown as is ever given another picture by somebody else.
namespace quorvane {

/// A connected display, and what it shows.
struct ShownWallpaper {
    enum class Kind {
        Ours,   ///< a file of the work folder
        Users,  ///< any other
        Unknown ///< the system doesn't say
    };

    QString screenIdentifier;
    QString screen; ///< see screenDescription
    Kind kind = Kind::Unknown;
    QString file = {}; ///< the name of a file of the work folder
};

/// Whether a display that shows the file has this record.
bool isShownAs(const ScreenWallpaperRecord& record, const QString& file);
/// Whether the file is shown, or is to be shown, by another display than this one.
bool isShownElsewhere(const WallpaperManifest& manifest, const QString& file, const QString& screenIdentifier);
/// Whether another display's record has its copy there.
bool isCopyElsewhere(const WallpaperManifest& manifest, const QString& path, const QString& screenIdentifier);

/// Whether the displays show the Spaces that they showed when the manifest was settled last.
enum class Spaces {
    TheSame,
    Unknown, ///< the system may tell of another one in a moment
    Others,
};

/// The manifest with each record under the display that it belongs to now.
///
/// A record goes with the display that shows one of its files. Where several do, the one that had it keeps it, and each of
/// the others has a copy of it in the place of its own. A display that shows a picture of its user's keeps the record of its
/// number, unless it is of another make or size. A record whose display isn't connected takes an identifier that no display has, before its own
/// is used by another; it is dropped when its display shows none of its files.
///
/// A Space that isn't visible is like a display that isn't connected: where the Spaces may be others, a picture of the user's
/// leaves the record to the label of the Space before. While that is unknown the record is marked, so that it goes when the
/// Spaces turn out to be the same.
WallpaperManifest settledManifest(const WallpaperManifest& manifest, const QList<ShownWallpaper>& displays,
                                  Spaces spaces = Spaces::TheSame);

} // namespace quorvane
