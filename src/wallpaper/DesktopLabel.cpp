#include "wallpaper/DesktopLabel.h"

#include "core/Background.h"
#include "platform/FileManager.h"
#include "wallpaper/WallpaperLabel.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// In device pixels, so that the label is as sharp as the display.
QSizeF canvasOf(const Display& display) {
    return display.frame.size() * display.backingScaleFactor;
}

} // namespace

DesktopLabel::DesktopLabel(Displays& displays, FileManager& files, const Machine& machine, LogAction log)
    : m_displays(displays)
    , m_fileManager(files)
    , m_log(std::move(log))
    , m_files(files, machine) {}

QCoro::Task<void> DesktopLabel::show(QString name, Attempt attempt) {
    m_wasOvertaken = false;
    QList<Target> displays = targets(name);
    if (attempt == Attempt::Untried) {
        displays.removeIf([this](const Target& target) { return hasFailedBefore(target); });
    }
    const QList<Target> ready = co_await withOriginals(displays);
    int count = 0;
    for (const Target& target : ready) {
        const bool isDone = co_await showOn(target);
        count += isDone ? 1 : 0;
    }
    if (count > 0) {
        m_log(
            u"  [APPLIED] Wallpaper profile label set to \"%1\" on %2 display(s)."_s.arg(name, QString::number(count)));
    }
}

QList<DesktopLabel::Target> DesktopLabel::targets(const QString& name) const {
    QList<Target> targets;
    for (const Display& display : m_displays.screens()) {
        const QString id = screenIdentifier(display);
        targets.append({display, id, name, m_displays.desktopPicture(display), m_files.compositedPath(id, name), {}});
    }
    return targets;
}

bool DesktopLabel::isInPlace(const QString& name) const {
    const QList<Target> displays = targets(name);
    return std::all_of(displays.cbegin(), displays.cend(),
                       [this](const Target& target) { return isLabelled(target) && !hasFailedBefore(target); });
}

bool DesktopLabel::isInPlaceWhereItCan(const QString& name) const {
    const QList<Target> displays = targets(name);
    return std::all_of(displays.cbegin(), displays.cend(),
                       [this](const Target& target) { return isLabelled(target) || hasFailedBefore(target); });
}

bool DesktopLabel::isLabelled(const Target& target) const {
    return target.picture && m_files.standardized(*target.picture) == m_files.standardized(target.composited);
}

bool DesktopLabel::hasFailedBefore(const Target& target) const {
    const auto failure = m_failures.constFind(target.id);
    return failure != m_failures.cend() && failure->picture == target.picture && failure->name == target.name;
}

/// Two names may share a file, so it counts what was composed into it.
bool DesktopLabel::needsNothing(const Target& target) const {
    const auto composed = m_composed.constFind(target.id);
    return isLabelled(target) && composed != m_composed.cend() && composed->name == target.name &&
           composed->canvas == canvasOf(target.display) && m_fileManager.exists(target.composited);
}

QCoro::Task<bool> DesktopLabel::showOn(Target target) {
    if (needsNothing(target)) {
        co_return true;
    }
    m_composed.remove(target.id);
    m_failures.insert(target.id, {target.picture, target.name});
    const Trouble trouble = co_await compose(target);
    if (trouble != Trouble::None) {
        warn(trouble, target);
        co_return false;
    }
    if (m_displays.desktopPicture(target.display) != target.picture) {
        m_failures.remove(target.id);
        m_wasOvertaken = true; // the user was quicker, and their new picture hasn't been copied
        co_return false;
    }
    if (!setPicture(target.display, target.composited)) {
        warn(Trouble::NotSet, target);
        co_return false;
    }
    m_composed.insert(target.id, {target.name, canvasOf(target.display)});
    target.picture = m_displays.desktopPicture(target.display);
    if (isLabelled(target)) {
        m_failures.remove(target.id);
    } else {
        m_failures.insert(target.id,
                          {target.picture, target.name}); // the system calls it otherwise; don't set it for ever
    }
    removeFormerLabels(target);
    co_return true;
}

QCoro::Task<DesktopLabel::Trouble> DesktopLabel::compose(Target target) {
    if (target.trouble != Trouble::None) {
        co_return target.trouble;
    }
    QImage original;
    if (!target.original.isEmpty()) {
        original = co_await m_displays.loadPicture(target.original);
    }
    if (original.isNull()) {
        co_return Trouble::NotLoaded;
    }
    const QImage labelled = co_await inBackground(&labelledPicture, original, target.name, canvasOf(target.display));
    if (labelled.isNull()) {
        co_return Trouble::NotComposited;
    }
    const QByteArray file = co_await inBackground(&jpegFile, labelled);
    const bool isSaved = !file.isEmpty() && writeFile(target.composited, file);
    co_return isSaved ? Trouble::None : Trouble::NotSaved;
}

void DesktopLabel::removeFormerLabels(const Target& target) {
    const QSet<QString> shown = shownPictures();
    for (const QString& name : m_files.names()) {
        const QString path = m_files.standardized(m_files.folder() + u'/' + name);
        if (WallpaperFiles::isComposited(name, target.id) && path != m_files.standardized(target.composited) &&
            !shown.contains(path)) {
            m_files.remove(name);
        }
    }
}

void DesktopLabel::warn(Trouble trouble, const Target& target) const {
    static const QHash<Trouble, QString> texts{{Trouble::NotLoaded, u"Could not load wallpaper image"_s},
                                               {Trouble::NotComposited, u"Could not composite wallpaper label"_s},
                                               {Trouble::NotSaved, u"Could not save composited wallpaper"_s},
                                               {Trouble::NotSet, u"Could not set desktop wallpaper"_s}};
    m_log(u"  [WARNING] %1 for %2."_s.arg(texts.value(trouble), target.id));
}

bool DesktopLabel::writeFile(const QString& path, const QByteArray& bytes) {
    try {
        m_fileManager.writeAtomically(path, bytes);
        return true;
    } catch (const FileError&) {
        return false;
    }
}

bool DesktopLabel::setPicture(const Display& display, const QString& path) {
    const std::optional<QString> error = m_displays.setDesktopPicture(display, path);
    if (error) {
        m_log(u"  [WARNING] Could not set desktop wallpaper: "_s + *error);
    }
    return !error;
}

/// By all displays that are connected, in the form in which paths are compared.
QSet<QString> DesktopLabel::shownPictures() const {
    QSet<QString> pictures;
    for (const Display& display : m_displays.screens()) {
        if (const std::optional<QString> shown = m_displays.desktopPicture(display)) {
            pictures.insert(m_files.standardized(*shown));
        }
    }
    return pictures;
}

} // namespace quorvane
