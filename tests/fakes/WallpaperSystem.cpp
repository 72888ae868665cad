#include "fakes/WallpaperSystem.h"

#include <algorithm>

namespace quorvane {

WallpaperSystem::WallpaperSystem() {
    addPicture(u"blue.png"_s, Qt::darkBlue);
    addPicture(u"light.png"_s, QColor(230, 230, 230));
    displays.plugIn(1, {0, 0, 200, 120}, 2, kPictures + u"blue.png"_s);
    displays.plugIn(2, {200, 0, 300, 200}, 1, kPictures + u"light.png"_s);
    start();
}

WallpaperSystem::~WallpaperSystem() = default;

void WallpaperSystem::start() {
    overlay = std::make_unique<WallpaperProfileOverlay>(wallpaperPorts(host));
    overlay->setLogAction([this](const QString& line) { trace.append(line); });
    QObject::connect(overlay.get(), &ProfileLabel::displaysLabelled, [this](const QList<DisplayLabel>& results) {
        labels.clear();
        for (const DisplayLabel& label : results) {
            const QString detail = label.detail.isEmpty() ? u"shown"_s : label.detail;
            labels.append(label.display + (label.isShown && !label.detail.isEmpty() ? u": shown. "_s : u": "_s) +
                          detail);
        }
    });
}

void WallpaperSystem::addPicture(const QString& name, const QColor& color) {
    files.addFile(kPictures + name, pngFile(plainPicture({20, 10}, color)));
}

void WallpaperSystem::addProfile(const QString& name, const QDateTime& created) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuidV5(QUuid(), name);
    profile.name = name;
    profile.dateCreated = created;
    files.addFile(profilesDirectory(machine) + u'/' + name + u".json"_s, encodeProfile(profile));
}

void WallpaperSystem::enable(const QString& name) {
    QCoro::waitFor(overlay->setOverlayEnabled(true, name));
}

void WallpaperSystem::disable() {
    QCoro::waitFor(overlay->setOverlayEnabled(false, {}));
}

void WallpaperSystem::update(const QString& name) {
    QCoro::waitFor(overlay->updateForAppliedProfile(name));
}

void WallpaperSystem::atStart(const QString& name) {
    QCoro::waitFor(overlay->updateAtStart(name));
}

void WallpaperSystem::refresh(const QString& name) {
    QCoro::waitFor(overlay->refreshForProfile(name));
}

void WallpaperSystem::tellOfChange() {
    systemNotifications.post(u"com.apple.desktop"_s);
    QCoro::waitFor(overlay->finished());
}

void WallpaperSystem::tell(DesktopChange change) {
    displays.tell(change);
    QCoro::waitFor(overlay->finished());
}

void WallpaperSystem::choose(int display, const QString& path) {
    displays.connected[display - 1].picture = path;
    tellOfChange();
}

QImage WallpaperSystem::drawn(int display) const {
    return QImage::fromData(displays.drawnOn(displays.connected.at(display - 1)));
}

QStringList WallpaperSystem::workFiles() const {
    QStringList names = files.exists(kWallpaperFolder) ? files.list(kWallpaperFolder) : QStringList();
    names.sort();
    return names;
}

QImage WallpaperSystem::pictureIn(const QString& name) const {
    return QImage::fromData(files.read(kWallpaperFolder + name));
}

QImage WallpaperSystem::labelOn(int display, const QString& slug) const {
    return QImage::fromData(files.read(composited(display, slug)));
}

QString WallpaperSystem::storedName() const {
    return defaults.values.value(kWallpaperProfileName).toString();
}

QString WallpaperSystem::composited(int display, const QString& slug) const {
    const QString stem = u"composited-display-%1-%2-"_s.arg(display).arg(slug);
    int latest = 0;
    for (const QString& name : workFiles()) {
        if (name.startsWith(stem)) {
            latest = std::max(latest, WallpaperFiles::numberIn(name));
        }
    }
    return latest > 0 ? kWallpaperFolder + stem + QString::number(latest) + u".jpg"_s : nextComposited(display, slug);
}

QString WallpaperSystem::nextComposited(int display, const QString& slug) const {
    const int next = defaults.values.value(kQuorvaneWallpaperNumber).toInt() + 1;
    return kWallpaperFolder + u"composited-display-%1-%2-%3.jpg"_s.arg(display).arg(slug).arg(next);
}

QString WallpaperSystem::original(int display) {
    return kWallpaperFolder + u"original-display-%1.jpg"_s.arg(display);
}

QString WallpaperSystem::shownOriginal(int display) const {
    const QString stem = u"restored-display-%1-"_s.arg(display);
    int latest = 0;
    for (const QString& name : workFiles()) {
        if (name.startsWith(stem)) {
            latest = std::max(latest, WallpaperFiles::numberIn(name));
        }
    }
    return kWallpaperFolder + stem + QString::number(latest) + u".jpg"_s;
}

QStringList WallpaperSystem::takeSets() {
    QStringList sets;
    for (const QString& call : std::exchange(displays.calls, {})) {
        if (call.startsWith(u"set "_s)) {
            sets.append(call.mid(4, 10) + call.mid(call.lastIndexOf(u'/') + 1));
        }
    }
    return sets;
}

} // namespace quorvane
