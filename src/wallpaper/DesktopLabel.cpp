#include "wallpaper/DesktopLabel.h"

#include "core/Background.h"
#include "core/UserDefaultKeys.h"
#include "platform/FileManager.h"
#include "platform/UserDefaults.h"
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

DesktopLabel::DesktopLabel(const WallpaperPorts& ports, LogAction log)
    : m_ports(ports)
    , m_log(std::move(log))
    , m_files(ports.files, ports.machine) {}

QCoro::Task<QList<DisplayLabel>> DesktopLabel::show(QString name, Attempt attempt) {
    m_wasOvertaken = false;
    const WallpaperManifest originals = settled();
    QList<Target> displays = targets(name);
    for (Target& target : displays) {
        target.trouble = knownTrouble(target, attempt);
    }
    nameFiles(displays);
    const QList<Target> ready = co_await withOriginals(displays, originals);
    QList<DisplayLabel> labels;
    for (const Target& target : ready) {
        const DisplayLabel label = co_await showOn(target);
        labels.append(label);
    }
    keepTrack();
    removeFormerPictures(ready);
    logSummary(name, labels);
    co_return labels;
}

void DesktopLabel::keepTrack() {
    if (m_files.isThere()) {
        keep(settled());
    }
    forgetWhatIsNotShown();
}

/// It counts at once, and for what begins next.
void DesktopLabel::noteAnotherSpace() {
    m_spaces = Spaces::Others;
    m_isOnAnotherSpace = true;
}

void DesktopLabel::begin(Spaces assumed) {
    m_spaces = std::exchange(m_isOnAnotherSpace, false) ? Spaces::Others : assumed;
}

void DesktopLabel::takeChoices() {
    if (m_spaces != Spaces::Others && m_files.isThere()) {
        m_spaces = Spaces::TheSame;
        keepTrack();
        removeFormerPictures({});
    }
}

QList<DesktopLabel::Target> DesktopLabel::targets(const QString& name) const {
    QList<Target> targets;
    for (const Display& display : m_ports.displays.screens()) {
        targets.append(
            {display, screenIdentifier(display), name, m_ports.displays.desktopPicture(display), {}, {}, {}});
    }
    return targets;
}

/// One number for all of them; another one for a display whose name, cut off, is that of another display.
void DesktopLabel::nameFiles(QList<Target>& targets) {
    const auto isTaken = [&targets](const QString& path) {
        return std::any_of(targets.cbegin(), targets.cend(),
                           [&path](const Target& target) { return target.composited == path; });
    };
    int number = 0;
    for (Target& target : targets) {
        if (isLabelled(target)) {
            target.composited = *target.picture;
        } else if (target.trouble == Trouble::None) {
            if (number == 0 || isTaken(m_files.compositedPath(target.id, target.name, number))) {
                number = takeNumber();
            }
            target.composited = m_files.compositedPath(target.id, target.name, number);
        }
    }
}

/// One that no picture of the program's has had. The files tell, too, where the preferences are lost.
int DesktopLabel::takeNumber() {
    int highest = m_ports.defaults.string(kQuorvaneWallpaperNumber).value_or(QString()).left(9).toInt();
    for (const QString& name : m_files.names()) {
        highest = std::max(highest, WallpaperFiles::numberIn(name));
    }
    for (const QString& shown : shownPictures()) {
        highest = std::max(highest, WallpaperFiles::numberIn(WallpaperFiles::nameOf(shown)));
    }
    m_ports.defaults.setString(kQuorvaneWallpaperNumber, QString::number(highest + 1));
    return highest + 1;
}

bool DesktopLabel::isOurs(const Target& target) const {
    return target.picture && m_files.isOurs(*target.picture);
}

bool DesktopLabel::isInPlace(const QString& name) const {
    const QList<Target> displays = targets(name);
    return std::all_of(displays.cbegin(), displays.cend(), [this](const Target& target) { return isLabelled(target); });
}

bool DesktopLabel::isInPlaceWhereItCan(const QString& name) const {
    const QList<Target> displays = targets(name);
    return std::all_of(displays.cbegin(), displays.cend(), [this](const Target& target) {
        return isLabelled(target) || hasFailedBefore(target) || wasLeftAnimated(target);
    });
}

/// What another process has composed may bear another name, or be of another size: it isn't known.
bool DesktopLabel::isLabelled(const Target& target) const {
    if (!target.picture) {
        return false;
    }
    const auto composed = m_composed.constFind(m_files.standardized(*target.picture));
    return composed != m_composed.cend() && *composed == composedFor(target) && m_ports.files.exists(*target.picture);
}

DesktopLabel::Composed DesktopLabel::composedFor(const Target& target) {
    return {target.id, target.name, canvasOf(target.display)};
}

bool DesktopLabel::hasFailedBefore(const Target& target) const {
    const auto failure = m_failures.constFind(target.id);
    return failure != m_failures.cend() && failure->picture == target.picture && failure->name == target.name;
}

DesktopLabel::Trouble DesktopLabel::knownTrouble(const Target& target, Attempt attempt) const {
    if (attempt == Attempt::Untried && hasFailedBefore(target)) {
        return Trouble::FailedBefore;
    }
    const bool isLeft = attempt != Attempt::AnimatedToo && isAnimated(target.display, target.picture);
    return isLeft ? Trouble::Animated : Trouble::None;
}

QCoro::Task<DisplayLabel> DesktopLabel::showOn(Target target) {
    if (target.trouble == Trouble::FailedBefore) {
        co_return DisplayLabel{target.display.localizedName, false, m_failures.value(target.id).detail};
    }
    if (target.trouble == Trouble::Animated) {
        co_return leaveAnimated(target);
    }
    if (target.trouble == Trouble::None && isLabelled(target)) {
        co_return labelOn(target);
    }
    m_failures.insert(target.id, {target.picture, target.name, {}});
    if (target.trouble == Trouble::None) {
        target.trouble = co_await compose(target);
    }
    co_return showComposed(target);
}

DisplayLabel DesktopLabel::showComposed(const Target& target) {
    if (const std::optional<QString> picture = m_ports.displays.desktopPicture(target.display);
        picture != target.picture) {
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
    shown.picture = m_ports.displays.desktopPicture(target.display);
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
    WallpaperManifest originals = settled();
    restore(target.display, originals);
    m_failures.insert(target.id, {m_ports.displays.desktopPicture(target.display), target.name, detail});
    return {target.display.localizedName, false, detail};
}

DisplayLabel DesktopLabel::labelOn(const Target& target) {
    const bool isWhole = labelLetters(target.name) == LabelLetters::All;
    return {target.display.localizedName, true, isWhole ? QString() : u"Not every letter of the name has a font."_s};
}

QCoro::Task<DesktopLabel::Trouble> DesktopLabel::compose(Target target) {
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
    m_composed.insert(m_files.standardized(target.composited), composedFor(target));
    co_return Trouble::None;
}

/// Null where the copy is lost.
QCoro::Task<QImage> DesktopLabel::loadOriginal(Target target) {
    QImage original;
    if (m_files.holds(target.original)) {
        original = co_await m_ports.displays.loadPicture(target.original);
    }
    co_return original;
}

/// Those that no display shows and none will look for when it returns. The copies stay while the manifest that is stored may
/// speak of them.
void DesktopLabel::removeFormerPictures(const QList<Target>& targets) {
    const WallpaperManifest originals = manifest();
    QSet<QString> kept = shownPictures();
    for (const Target& target : targets) {
        kept.insert(m_files.standardized(target.composited));
    }
    for (const QString& name : m_files.names()) {
        const QString path = m_files.standardized(m_files.folder() + u'/' + name);
        const bool isCopy = !WallpaperFiles::displayOfOriginal(name).isEmpty() && !m_unwritten;
        const bool isNeeded = isNeededBy(originals, name) || kept.contains(path);
        if ((WallpaperFiles::isForShow(name) || isCopy) && !isNeeded) {
            m_composed.remove(path);
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
        m_ports.files.writeAtomically(path, bytes);
        return true;
    } catch (const FileError&) {
        return false;
    }
}

/// @return why it can't be set
std::optional<QString> DesktopLabel::setPicture(const Display& display, const QString& path) {
    const std::optional<QString> error = m_ports.displays.setDesktopPicture(display, path);
    if (error) {
        m_log(u"  [ERROR] Could not set desktop wallpaper: "_s + *error);
    }
    return error;
}

/// By all displays that are connected, in the form in which paths are compared.
QSet<QString> DesktopLabel::shownPictures() const {
    QSet<QString> pictures;
    for (const Display& display : m_ports.displays.screens()) {
        if (const std::optional<QString> shown = m_ports.displays.desktopPicture(display)) {
            pictures.insert(m_files.standardized(*shown));
        }
    }
    return pictures;
}

} // namespace quorvane
