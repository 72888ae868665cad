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
/// lines and the pictures that were set: "Display 1 <- composited-display-1-live.jpg".
class WallpaperSystem : public ScriptedSystem {
protected:
    WallpaperSystem() {
        addPicture(u"blue.png"_s, Qt::darkBlue);
        addPicture(u"light.png"_s, QColor(230, 230, 230));
        displays.plugIn(1, {0, 0, 200, 120}, 2, kPictures + u"blue.png"_s);
        displays.plugIn(2, {200, 0, 300, 200}, 1, kPictures + u"light.png"_s);
        start();
    }

    /// Starts the program anew; what is kept on the disk and in the preferences stays.
    void start() {
        overlay = std::make_unique<WallpaperProfileOverlay>(wallpaperPorts(host));
        overlay->setLogAction([this](const QString& line) { trace.append(line); });
    }

    void addPicture(const QString& name, const QColor& color) {
        files.addFile(kPictures + name, pngFile(plainPicture({20, 10}, color)));
    }
    void addProfile(const QString& name, const QDateTime& created) {
        UnifiedProfile profile;
        profile.id = QUuid::createUuidV5(QUuid(), name);
        profile.name = name;
        profile.dateCreated = created;
        files.addFile(profilesDirectory(machine) + u'/' + name + u".json"_s, encodeProfile(profile));
    }

    void enable(const QString& name) { QCoro::waitFor(overlay->setOverlayEnabled(true, name)); }
    void disable() { QCoro::waitFor(overlay->setOverlayEnabled(false, {})); }
    void update(const QString& name) { QCoro::waitFor(overlay->updateForAppliedProfile(name)); }
    void atStart(const QString& name) { QCoro::waitFor(overlay->updateAtStart(name)); }
    void refresh(const QString& name) { QCoro::waitFor(overlay->refreshForProfile(name)); }
    /// Tells of a change of the desktop, and waits until it is dealt with.
    void tellOfChange() {
        systemNotifications.post(u"com.apple.desktop"_s);
        QCoro::waitFor(overlay->finished());
    }
    /// The user chooses a picture in System Settings.
    void choose(int display, const QString& path) {
        displays.connected[display - 1].picture = path;
        tellOfChange();
    }
    std::optional<QString> shown(int display) const { return displays.connected[display - 1].picture; }
    /// The names in the work folder, sorted.
    QStringList workFiles() const {
        QStringList names = files.exists(kWallpaperFolder) ? files.list(kWallpaperFolder) : QStringList();
        names.sort();
        return names;
    }
    QImage pictureIn(const QString& name) const { return QImage::fromData(files.read(kWallpaperFolder + name)); }
    QString storedName() const { return defaults.values.value(kWallpaperProfileName).toString(); }
    static QString composited(int display, const QString& slug) {
        return kWallpaperFolder + u"composited-display-%1-%2.jpg"_s.arg(display).arg(slug);
    }
    static QString original(int display) { return kWallpaperFolder + u"original-display-%1.jpg"_s.arg(display); }
    /// The pictures that were set since the last call, in order, by their names.
    QStringList takeSets() {
        QStringList sets;
        for (const QString& call : std::exchange(displays.calls, {})) {
            if (call.startsWith(u"set "_s))
                sets.append(call.mid(4, 10) + call.mid(call.lastIndexOf(u'/') + 1));
        }
        return sets;
    }

    std::unique_ptr<WallpaperProfileOverlay> overlay;
};

} // namespace quorvane
