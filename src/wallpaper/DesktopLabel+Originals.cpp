#include "core/Background.h"
#include "platform/FileManager.h"
#include "wallpaper/DesktopLabel.h"
#include "wallpaper/WallpaperLabel.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <QUrl>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QByteArray opaqueJpegFile(const QImage& picture) {
    return jpegFile(opaquePicture(picture));
}

/// In a manifest of an earlier version a display may show each labelled picture that bears its name.
WallpaperManifest withFilesShown(WallpaperManifest originals, const WallpaperFiles& files) {
    for (ScreenWallpaperRecord& record : originals.screens) {
        if (record.shownAs) {
            continue;
        }
        QStringList shown;
        for (const QString& name : files.names()) {
            if (WallpaperFiles::isComposited(name, record.screenIdentifier)) {
                shown.append(name.normalized(QString::NormalizationForm_C));
            }
        }
        record.shownAs = shown.isEmpty() ? std::nullopt : std::optional(shown);
    }
    return originals;
}

bool haveSameRecord(const WallpaperManifest& one, const WallpaperManifest& other, const QString& id) {
    const ScreenWallpaperRecord* record = one.record(id);
    const ScreenWallpaperRecord* otherRecord = other.record(id);
    return record == nullptr || otherRecord == nullptr ? record == otherRecord : *record == *otherRecord;
}

} // namespace

/// Copies the pictures that the user has chosen since, and says for each display what its label is to be put on. A
/// display whose picture couldn't be copied and recorded must keep it: nothing could bring it back.
QCoro::Task<QList<DesktopLabel::Target>> DesktopLabel::withOriginals(QList<Target> targets,
                                                                     WallpaperManifest originals) {
    for (Target& target : targets) {
        if (target.trouble != Trouble::None) {
            continue;
        }
        if (isOurs(target)) {
            takeExisting(target, originals);
            continue;
        }
        target.original = freeCopyPath(target.id, originals);
        target.trouble = co_await copyPicture(target.picture.value_or(QString()), target.original);
        if (target.trouble == Trouble::None) {
            originals.put(newRecord(target));
        }
    }
    if (!keep(originals)) {
        const WallpaperManifest stored = storedManifest().value_or(WallpaperManifest{});
        for (Target& target : targets) {
            if (target.trouble == Trouble::None && !haveSameRecord(originals, stored, target.id)) {
                target.trouble = Trouble::NotSaved;
            }
        }
    }
    co_return targets;
}

/// For a display that shows a picture of the program's: the copy of its user's lies there already, or is made anew.
void DesktopLabel::takeExisting(Target& target, WallpaperManifest& originals) const {
    const std::optional<QString> copy = copyFor(target.id, originals);
    const ScreenWallpaperRecord* known = originals.record(target.id);
    if (known == nullptr && !copy) {
        target.trouble = Trouble::NotLoaded;
        return;
    }
    ScreenWallpaperRecord record = known != nullptr ? *known : ScreenWallpaperRecord{target.id, *copy, std::nullopt};
    record.originalImagePath = copy ? *copy : freeCopyPath(target.id, originals);
    QStringList files = record.shownAs.value_or(QStringList());
    files += {WallpaperFiles::nameOf(*target.picture), WallpaperFiles::nameOf(target.composited)};
    files.removeDuplicates();
    record.shownAs = files;
    record.screen = screenDescription(target.display);
    originals.put(record);
    target.original = record.originalImagePath;
    target.usersPicture = usersPicture(record).value_or(QString());
}

QCoro::Task<DesktopLabel::Trouble> DesktopLabel::copyPicture(QString from, QString to) {
    const QImage picture = co_await m_ports.displays.loadPicture(from);
    if (picture.isNull()) {
        co_return Trouble::NotLoaded;
    }
    const QByteArray copy = co_await inBackground(&opaqueJpegFile, picture);
    const bool isSaved = !copy.isEmpty() && writeFile(to, copy);
    co_return isSaved ? Trouble::None : Trouble::NotSaved;
}

ScreenWallpaperRecord DesktopLabel::newRecord(const Target& target) {
    return {target.id, target.original, QUrl::fromLocalFile(*target.picture).toString(QUrl::FullyEncoded),
            QStringList(WallpaperFiles::nameOf(target.composited)), screenDescription(target.display)};
}

/// None where the file is missing, can't be read or is damaged.
std::optional<WallpaperManifest> DesktopLabel::storedManifest() const {
    try {
        return decodeWallpaperManifest(m_ports.files.read(m_files.manifestPath()));
    } catch (const FileError&) {
        return std::nullopt;
    }
}

/// One that is missing is empty. Of one that is damaged there are still the copies, each under its display's name.
WallpaperManifest DesktopLabel::manifest() const {
    if (m_unwritten) {
        return *m_unwritten;
    }
    WallpaperManifest originals = storedManifest().value_or(WallpaperManifest{});
    if (!originals.screens.isEmpty() || !m_ports.files.exists(m_files.manifestPath())) {
        return originals;
    }
    for (const QString& name : m_files.names()) {
        if (const QString id = WallpaperFiles::displayOfOriginal(name); !id.isEmpty()) {
            originals.put({id, m_files.folder() + u'/' + name, std::nullopt});
        }
    }
    return originals;
}

/// The records as they belong to the displays that are connected now.
WallpaperManifest DesktopLabel::settled() const {
    return settledManifest(withFilesShown(manifest(), m_files), shownWallpapers(), m_spaces);
}

QList<ShownWallpaper> DesktopLabel::shownWallpapers() const {
    QList<ShownWallpaper> wallpapers;
    for (const Display& display : m_ports.displays.screens()) {
        ShownWallpaper wallpaper{screenIdentifier(display), screenDescription(display)};
        if (const std::optional<QString> picture = m_ports.displays.desktopPicture(display)) {
            const bool isOurs = m_files.isOurs(*picture);
            wallpaper.kind = isOurs ? ShownWallpaper::Kind::Ours : ShownWallpaper::Kind::Users;
            wallpaper.file = isOurs ? WallpaperFiles::nameOf(*picture) : QString();
        }
        wallpapers.append(wallpaper);
    }
    return wallpapers;
}

/// The copy of the user's picture: the one that the record tells of, or the one that bears the display's name and is no
/// other's. None where neither lies in the work folder.
std::optional<QString> DesktopLabel::copyFor(const QString& id, const WallpaperManifest& originals) const {
    const ScreenWallpaperRecord* record = originals.record(id);
    if (record != nullptr && m_files.holds(record->originalImagePath)) {
        return record->originalImagePath;
    }
    const QString path = m_files.originalPath(id);
    const bool isOwn = m_files.holds(path) && !isCopyElsewhere(originals, path, id);
    return isOwn ? std::optional(path) : std::nullopt;
}

QString DesktopLabel::freeCopyPath(const QString& id, const WallpaperManifest& originals) const {
    int number = 1;
    while (isCopyElsewhere(originals, m_files.originalPath(id, number), id)) {
        ++number;
    }
    return m_files.originalPath(id, number);
}

/// Writes the manifest unless it says so already. What can't be written is remembered: it is tried again with the next
/// change, and until then it is what counts.
bool DesktopLabel::keep(const WallpaperManifest& originals) {
    const bool isKept = storedManifest().value_or(WallpaperManifest{}) == originals ||
                        writeFile(m_files.manifestPath(), encodeWallpaperManifest(originals));
    m_unwritten = isKept ? std::nullopt : std::optional(originals);
    return isKept;
}

} // namespace quorvane
