#include "services/DesktopLabel.h"

#include "core/Background.h"
#include "platform/FileManager.h"
#include "services/WallpaperLabel.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <QUrl>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kNotLoaded = u"Could not load wallpaper image"_s;
const QString kNotComposited = u"Could not composite wallpaper label"_s;
const QString kNotSaved = u"Could not save composited wallpaper"_s;
const QString kNotSet = u"Could not set desktop wallpaper"_s;

/// In device pixels, so that the label is as sharp as the display.
QSizeF canvasOf(const Display& display) {
    return display.frame.size() * display.backingScaleFactor;
}

QByteArray opaqueJpegFile(const QImage& picture) {
    return jpegFile(opaquePicture(picture));
}

bool haveSameRecord(const WallpaperManifest& one, const WallpaperManifest& other, const QString& id) {
    const ScreenWallpaperRecord* record = one.record(id);
    const ScreenWallpaperRecord* otherRecord = other.record(id);
    return record == nullptr || otherRecord == nullptr ? record == otherRecord : *record == *otherRecord;
}

} // namespace

struct DesktopLabel::Target {
    Display display;
    QString id;
    QString name;                   ///< the label
    std::optional<QString> picture; ///< what the display showed at the beginning
    QString composited;             ///< where its labelled picture is kept
    QString original;               ///< the copy of the user's picture that is labelled; empty where there is none
    QString trouble;                ///< why there is none
};

DesktopLabel::DesktopLabel(const Host& host, LogAction log)
    : m_host(host)
    , m_log(std::move(log))
    , m_files(host) {}

DesktopLabel::~DesktopLabel() = default;

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
    for (const Display& display : m_host.displays.screens()) {
        const QString id = screenIdentifier(display);
        targets.append(
            {display, id, name, m_host.displays.desktopPicture(display), m_files.compositedPath(id, name), {}, {}});
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
           composed->canvas == canvasOf(target.display) && m_host.files.exists(target.composited);
}

/// Copies the pictures that the user has chosen since, and says for each display what its label is to be put on. A
/// display whose picture couldn't be copied and recorded must keep it: nothing could bring it back.
QCoro::Task<QList<DesktopLabel::Target>> DesktopLabel::withOriginals(QList<Target> targets) {
    const WallpaperManifest before = manifest();
    WallpaperManifest originals = before;
    adoptOriginals(targets, originals);
    for (Target& target : targets) {
        if (!target.picture || !m_files.isOurs(*target.picture)) {
            target.trouble = co_await copyOriginal(target);
            if (target.trouble.isEmpty()) {
                originals.put(recordOf(target));
            }
        }
    }
    const bool isWritten = originals == before || write(originals);
    for (Target& target : targets) {
        if (target.trouble.isEmpty() && !isWritten && !haveSameRecord(originals, before, target.id)) {
            target.trouble = kNotSaved;
        }
        if (target.trouble.isEmpty()) {
            target.original = copyFor(target.id, originals.record(target.id)).value_or(QString());
        }
    }
    co_return targets;
}

/// The system may number its displays anew. What a display shows tells which original is its own.
void DesktopLabel::adoptOriginals(QList<Target>& targets, WallpaperManifest& originals) {
    const WallpaperManifest before = originals;
    QHash<QString, QByteArray> copies; // all read before any is written: two displays may have changed places
    for (const Target& target : targets) {
        const ScreenWallpaperRecord* record = recordShown(target.picture, before);
        if (record != nullptr && record->screenIdentifier != target.id) {
            copies.insert(target.id, readCopy(*record));
            originals.remove(record->screenIdentifier);
        }
    }
    for (Target& target : targets) {
        if (!copies.contains(target.id)) {
            continue;
        }
        const QByteArray copy = copies.value(target.id);
        if (copy.isEmpty() || !writeFile(m_files.originalPath(target.id), copy)) {
            target.trouble = kNotSaved;
            originals = before;
            return;
        }
        originals.put(
            {target.id, m_files.originalPath(target.id), recordShown(target.picture, before)->originalDesktopURL});
    }
}

/// @return what went wrong; empty when the copy is there
QCoro::Task<QString> DesktopLabel::copyOriginal(Target target) {
    if (!target.picture) {
        co_return kNotLoaded;
    }
    const QImage picture = co_await m_host.displays.loadPicture(*target.picture);
    if (picture.isNull()) {
        co_return kNotLoaded;
    }
    const QByteArray copy = co_await inBackground(&opaqueJpegFile, picture);
    const bool isSaved = !copy.isEmpty() && writeFile(m_files.originalPath(target.id), copy);
    co_return isSaved ? QString() : kNotSaved;
}

ScreenWallpaperRecord DesktopLabel::recordOf(const Target& target) const {
    return {target.id, m_files.originalPath(target.id),
            QUrl::fromLocalFile(*target.picture).toString(QUrl::FullyEncoded)};
}

QCoro::Task<bool> DesktopLabel::showOn(Target target) {
    if (needsNothing(target)) {
        co_return true;
    }
    m_composed.remove(target.id);
    m_failures.insert(target.id, {target.picture, target.name});
    const QString trouble = co_await compose(target);
    if (!trouble.isEmpty()) {
        warn(trouble, target);
        co_return false;
    }
    if (m_host.displays.desktopPicture(target.display) != target.picture) {
        m_failures.remove(target.id);
        m_wasOvertaken = true; // the user was quicker, and his new picture hasn't been copied
        co_return false;
    }
    if (!setPicture(target.display, target.composited)) {
        warn(kNotSet, target);
        co_return false;
    }
    m_composed.insert(target.id, {target.name, canvasOf(target.display)});
    target.picture = m_host.displays.desktopPicture(target.display);
    if (isLabelled(target)) {
        m_failures.remove(target.id);
    } else {
        m_failures.insert(target.id,
                          {target.picture, target.name}); // the system calls it otherwise; don't set it for ever
    }
    removeFormerLabels(target);
    co_return true;
}

/// @return what went wrong; empty when the labelled picture is written
QCoro::Task<QString> DesktopLabel::compose(Target target) {
    if (!target.trouble.isEmpty()) {
        co_return target.trouble;
    }
    QImage original;
    if (!target.original.isEmpty()) {
        original = co_await m_host.displays.loadPicture(target.original);
    }
    if (original.isNull()) {
        co_return kNotLoaded;
    }
    const QImage labelled = co_await inBackground(&labelledPicture, original, target.name, canvasOf(target.display));
    if (labelled.isNull()) {
        co_return kNotComposited;
    }
    const QByteArray file = co_await inBackground(&jpegFile, labelled);
    const bool isSaved = !file.isEmpty() && writeFile(target.composited, file);
    co_return isSaved ? QString() : kNotSaved;
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

void DesktopLabel::warn(const QString& trouble, const Target& target) const {
    m_log(u"  [WARNING] %1 for %2."_s.arg(trouble, target.id));
}

/// One that is missing is empty. Of one that is damaged there are still the copies, each under its display's name.
WallpaperManifest DesktopLabel::manifest() const {
    if (!m_host.files.exists(m_files.manifestPath())) {
        return {};
    }
    try {
        if (const auto decoded = decodeWallpaperManifest(m_host.files.read(m_files.manifestPath()))) {
            return *decoded;
        }
    } catch (const FileError&) {
        // As one that is damaged.
    }
    WallpaperManifest rebuilt;
    for (const QString& name : m_files.names()) {
        if (const QString id = WallpaperFiles::displayOfOriginal(name); !id.isEmpty()) {
            rebuilt.put({id, m_files.folder() + u'/' + name, std::nullopt});
        }
    }
    return rebuilt;
}

/// The record of the picture that is shown, whatever the display's number is now; null when none is its own.
const ScreenWallpaperRecord* DesktopLabel::recordShown(const std::optional<QString>& picture,
                                                       const WallpaperManifest& originals) const {
    if (!picture || !m_files.isOurs(*picture)) {
        return nullptr;
    }
    const QString name = picture->mid(picture->lastIndexOf(u'/') + 1);
    const auto found = std::find_if(originals.screens.cbegin(), originals.screens.cend(),
                                    [&name](const ScreenWallpaperRecord& record) {
                                        return WallpaperFiles::isComposited(name, record.screenIdentifier) ||
                                               record.originalImagePath.endsWith(u'/' + name);
                                    });
    return found == originals.screens.cend() ? nullptr : &*found;
}

/// The copy of the user's picture: the one that the record tells of, or the one that bears the display's name. None where
/// neither lies in the work folder.
std::optional<QString> DesktopLabel::copyFor(const QString& id, const ScreenWallpaperRecord* record) const {
    if (record != nullptr && m_files.holds(record->originalImagePath)) {
        return record->originalImagePath;
    }
    const QString path = m_files.originalPath(id);
    return m_files.holds(path) ? std::optional(path) : std::nullopt;
}

/// Empty when it can't be read.
QByteArray DesktopLabel::readCopy(const ScreenWallpaperRecord& record) const {
    const std::optional<QString> copy = copyFor(record.screenIdentifier, &record);
    try {
        return copy ? m_host.files.read(*copy) : QByteArray();
    } catch (const FileError&) {
        return {};
    }
}

bool DesktopLabel::write(const WallpaperManifest& manifest) {
    return writeFile(m_files.manifestPath(), encodeWallpaperManifest(manifest));
}

bool DesktopLabel::writeFile(const QString& path, const QByteArray& bytes) {
    try {
        m_host.files.writeAtomically(path, bytes);
        return true;
    } catch (const FileError&) {
        return false;
    }
}

bool DesktopLabel::setPicture(const Display& display, const QString& path) {
    const std::optional<QString> error = m_host.displays.setDesktopPicture(display, path);
    if (error) {
        m_log(u"  [WARNING] Could not set desktop wallpaper: "_s + *error);
    }
    return !error;
}

/// By all displays that are connected, in the form in which paths are compared.
QSet<QString> DesktopLabel::shownPictures() const {
    QSet<QString> pictures;
    for (const Display& display : m_host.displays.screens()) {
        if (const std::optional<QString> shown = m_host.displays.desktopPicture(display)) {
            pictures.insert(m_files.standardized(*shown));
        }
    }
    return pictures;
}

} // namespace quorvane
