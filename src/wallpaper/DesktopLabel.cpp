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

QCoro::Task<QList<DisplayLabel>> DesktopLabel::show(QString name, Attempt attempt) {
    m_wasOvertaken = false;
    const WallpaperManifest originals = settled();
    QList<Target> displays = targets(name, originals);
    for (Target& target : displays) {
        if (attempt == Attempt::Untried && hasFailedBefore(target)) {
            target.trouble = Trouble::FailedBefore;
        }
    }
    const QList<Target> ready = co_await withOriginals(displays, originals);
    QList<DisplayLabel> labels;
    for (const Target& target : ready) {
        const DisplayLabel label = co_await showOn(target);
        labels.append(label);
    }
    keepTrack();
    removeFormerLabels(ready);
    logSummary(name, labels);
    co_return labels;
}

void DesktopLabel::keepTrack() {
    if (m_files.isThere()) {
        keep(settled());
    }
}

QList<DesktopLabel::Target> DesktopLabel::targets(const QString& name, const WallpaperManifest& originals) const {
    QList<Target> targets;
    for (const Display& display : m_displays.screens()) {
        Target target{display, screenIdentifier(display), name, m_displays.desktopPicture(display), {}, {}, {}};
        target.composited = compositedPath(target, originals);
        targets.append(target);
    }
    return targets;
}

/// The one that the display shows already, or else the first of its names that no other display has been shown as: one that
/// isn't connected finds its own picture behind its file's name when it returns.
QString DesktopLabel::compositedPath(const Target& target, const WallpaperManifest& originals) const {
    const ScreenWallpaperRecord* record = originals.record(target.id);
    const QString shown = target.picture ? WallpaperFiles::nameOf(*target.picture) : QString();
    const int shownNumber = WallpaperFiles::numberOfComposited(shown, target.id, target.name);
    if (shownNumber > 0 && record != nullptr && isShownAs(*record, shown)) {
        return m_files.compositedPath(target.id, target.name, shownNumber);
    }
    int number = 1;
    while (isShownElsewhere(originals, WallpaperFiles::compositedName(target.id, target.name, number), target.id)) {
        ++number;
    }
    return m_files.compositedPath(target.id, target.name, number);
}

bool DesktopLabel::isOurs(const Target& target) const {
    return target.picture && m_files.isOurs(*target.picture);
}

bool DesktopLabel::isInPlace(const QString& name) const {
    const QList<Target> displays = targets(name, settled());
    return std::all_of(displays.cbegin(), displays.cend(),
                       [this](const Target& target) { return isLabelled(target) && !hasFailedBefore(target); });
}

bool DesktopLabel::isInPlaceWhereItCan(const QString& name) const {
    const QList<Target> displays = targets(name, settled());
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
    const auto composed = m_composed.constFind(target.composited);
    return isLabelled(target) && composed != m_composed.cend() && composed->name == target.name &&
           composed->canvas == canvasOf(target.display) && m_fileManager.exists(target.composited);
}

QCoro::Task<DisplayLabel> DesktopLabel::showOn(Target target) {
    if (target.trouble == Trouble::FailedBefore) {
        co_return DisplayLabel{target.display.localizedName, false, m_failures.value(target.id).detail};
    }
    if (target.trouble == Trouble::None && needsNothing(target)) {
        co_return labelOn(target);
    }
    m_failures.insert(target.id, {target.picture, target.name, {}});
    if (target.trouble == Trouble::None) {
        target.trouble = co_await compose(target);
    }
    co_return showComposed(target);
}

DisplayLabel DesktopLabel::showComposed(const Target& target) {
    if (const std::optional<QString> picture = m_displays.desktopPicture(target.display); picture != target.picture) {
        m_failures.remove(target.id);
        m_wasOvertaken = true; // the user was quicker, and their new picture hasn't been copied
        const QString detail = picture ? u"Another picture was chosen meanwhile."_s : u"It isn't connected any more."_s;
        return {target.display.localizedName, false, detail};
    }
    if (target.trouble != Trouble::None) {
        logTrouble(target.trouble, target);
        return giveUp(target, detailOf(target));
    }
    if (const std::optional<QString> error = setPicture(target.display, target.composited)) {
        logTrouble(Trouble::NotSet, target);
        return giveUp(target, *error);
    }
    Target shown = target;
    shown.picture = m_displays.desktopPicture(target.display);
    if (!isLabelled(shown)) {
        const QString detail = u"The system shows another picture."_s;
        m_failures.insert(target.id, {shown.picture, target.name, detail}); // so that it isn't set for ever
        return {target.display.localizedName, false, detail};
    }
    m_failures.remove(target.id);
    return labelOn(target);
}

/// The display gets its user's own picture: another profile's label would be taken for this one's.
DisplayLabel DesktopLabel::giveUp(const Target& target, const QString& detail) {
    if (const std::optional<QString> picture = pictureToRestore(target.display, settled())) {
        setPicture(target.display, *picture);
    }
    m_failures.insert(target.id, {m_displays.desktopPicture(target.display), target.name, detail});
    return {target.display.localizedName, false, detail};
}

DisplayLabel DesktopLabel::labelOn(const Target& target) {
    const bool isWhole = labelLetters(target.name) == LabelLetters::All;
    return {target.display.localizedName, true, isWhole ? QString() : u"Not every letter of the name has a font."_s};
}

QCoro::Task<DesktopLabel::Trouble> DesktopLabel::compose(Target target) {
    m_composed.remove(target.composited);
    QImage original = co_await loadOriginal(target);
    if (original.isNull() && !target.usersPicture.isEmpty()) {
        const Trouble trouble = co_await copyPicture(target.usersPicture, target.original);
        if (trouble != Trouble::None) {
            co_return trouble;
        }
        original = co_await loadOriginal(target);
    }
    if (original.isNull()) {
        co_return Trouble::NotLoaded;
    }
    const QImage labelled = co_await inBackground(&labelledPicture, original, target.name, canvasOf(target.display));
    if (labelled.isNull()) {
        co_return Trouble::NotComposited;
    }
    const QByteArray file = co_await inBackground(&jpegFile, labelled);
    if (file.isEmpty() || !writeFile(target.composited, file)) {
        co_return Trouble::NotSaved;
    }
    m_composed.insert(target.composited, {target.name, canvasOf(target.display)});
    co_return Trouble::None;
}

/// Null where the copy is lost.
QCoro::Task<QImage> DesktopLabel::loadOriginal(Target target) {
    QImage original;
    if (m_files.holds(target.original)) {
        original = co_await m_displays.loadPicture(target.original);
    }
    co_return original;
}

/// Those that no display shows and none will look for when it returns.
void DesktopLabel::removeFormerLabels(const QList<Target>& targets) {
    const WallpaperManifest originals = manifest();
    QSet<QString> kept = shownPictures();
    for (const Target& target : targets) {
        kept.insert(m_files.standardized(target.composited));
    }
    for (const QString& name : m_files.names()) {
        const bool isNeeded = isShownElsewhere(originals, name.normalized(QString::NormalizationForm_C), {}) ||
                              kept.contains(m_files.standardized(m_files.folder() + u'/' + name));
        if (WallpaperFiles::isComposited(name) && !isNeeded) {
            m_files.remove(name);
        }
    }
}

void DesktopLabel::logSummary(const QString& name, const QList<DisplayLabel>& labels) const {
    const auto count =
        std::count_if(labels.cbegin(), labels.cend(), [](const DisplayLabel& label) { return label.isShown; });
    if (count > 0) {
        m_log(
            u"  [APPLIED] Wallpaper profile label set to \"%1\" on %2 display(s)."_s.arg(name, QString::number(count)));
    }
    if (labelLetters(name) != LabelLetters::All) {
        m_log(u"  [INFO] No font on this Mac has all letters of \""_s + name + u"\"."_s);
    }
}

void DesktopLabel::logTrouble(Trouble trouble, const Target& target) const {
    static const QHash<Trouble, QString> texts{{Trouble::NotLoaded, u"Could not load wallpaper image"_s},
                                               {Trouble::NotComposited, u"Could not composite wallpaper label"_s},
                                               {Trouble::NotSaved, u"Could not save composited wallpaper"_s},
                                               {Trouble::NotSet, u"Could not set desktop wallpaper"_s}};
    m_log(u"  [ERROR] %1 for %2."_s.arg(texts.value(trouble), target.id));
}

QString DesktopLabel::detailOf(const Target& target) {
    switch (target.trouble) {
    case Trouble::NotLoaded:
        return u"Its picture could not be read."_s;
    case Trouble::NotSaved:
        return u"The labelled picture could not be saved."_s;
    default:
        return labelLetters(target.name) == LabelLetters::None ? u"No font has the letters of the name."_s
                                                               : u"The label could not be composed."_s;
    }
}

bool DesktopLabel::writeFile(const QString& path, const QByteArray& bytes) {
    try {
        m_fileManager.writeAtomically(path, bytes);
        return true;
    } catch (const FileError&) {
        return false;
    }
}

/// @return why it can't be set
std::optional<QString> DesktopLabel::setPicture(const Display& display, const QString& path) {
    const std::optional<QString> error = m_displays.setDesktopPicture(display, path);
    if (error) {
        m_log(u"  [ERROR] Could not set desktop wallpaper: "_s + *error);
    }
    return error;
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
