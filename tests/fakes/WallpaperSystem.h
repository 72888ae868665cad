#pragma once

#include "core/UserDefaultKeys.h"
#include "fakes/EventLoop.h"
#include "fakes/Pictures.h"
#include "fakes/ScriptedSystem.h"
#include "fakes/WallpaperPorts.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileManager.h"
#include "wallpaper/WallpaperManifest.h"
#include "wallpaper/WallpaperProfileOverlay.h"

#include <QCoroTask>

#include <memory>

namespace quorvane {

inline const QString kWallpaperFolder = u"/Users/alex/Library/Application Support/Quorvane/WallpaperOverlay/"_s;
inline const QString kPictures = u"/Users/alex/Pictures/"_s;
inline const QString kDefaultDesktop = u"/System/Library/CoreServices/DefaultDesktop.heic"_s;

/// The label over displays in memory: a built-in one with two pixels a point, and a monitor with one. `trace` holds the log
/// lines and the pictures that were set: "Display 1 <- composited-display-1-live-1.jpg".
class WallpaperSystem : public ScriptedSystem {
public:
    ~WallpaperSystem() override;

protected:
    WallpaperSystem();

    /// Starts the program anew; what is kept on the disk and in the preferences stays.
    void start();
    void addPicture(const QString& name, const QColor& color);
    void addProfile(const QString& name, const QDateTime& created);
    void enable(const QString& name);
    void disable();
    void update(const QString& name);
    void atStart(const QString& name);
    void refresh(const QString& name);
    /// Tells of a change of the desktop, and waits until it is dealt with.
    void tellOfChange();
    /// Another Space is visible, or the like, and no notification tells of it.
    void tell(DesktopChange change);
    /// The user chooses a picture in System Settings.
    void choose(int display, const QString& path);
    std::optional<QString> shown(int display) const { return displays.connected[display - 1].picture; }
    /// What a display draws, whatever is in the file that it shows.
    QImage drawn(int display) const;
    /// The names in the work folder, sorted.
    QStringList workFiles() const;
    QImage pictureIn(const QString& name) const;
    /// In the file that holds the labelled picture of a display for a profile.
    QImage labelOn(int display, const QString& slug) const;
    QString storedName() const;
    /// The labelled picture of a display for a profile that was composed last, or else the one that is composed next.
    QString composited(int display, const QString& slug) const;
    QString nextComposited(int display, const QString& slug) const;
    /// Where a display's own picture is kept when it is copied.
    static QString original(int display);
    /// The copy of it that a display was given last. @param display  the system's number for it
    QString shownOriginal(int display) const;
    /// The pictures that were set since the last call, in order, by their names.
    QStringList takeSets();

    /// "Display 1: shown", "Display 2: It is locked.": what became of the label when it was put on last.
    QStringList labels;
    std::unique_ptr<WallpaperProfileOverlay> overlay;
};

} // namespace quorvane
