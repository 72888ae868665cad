#include "core/Background.h"
#include "core/Paths.h"
#include "platform/FileManager.h"
#include "wallpaper/DesktopLabel.h"
#include "wallpaper/WallpaperLabel.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <QUrl>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QByteArray opaqueJpegFile(const QImage& picture) {
    return jpegFile(opaquePicture(picture));
}

bool haveSameRecord(const WallpaperManifest& one, const WallpaperManifest& other, const QString& id) {
    const ScreenWallpaperRecord* record = one.record(id);
    const ScreenWallpaperRecord* otherRecord = other.record(id);
    return record == nullptr || otherRecord == nullptr ? record == otherRecord : *record == *otherRecord;
}

} // namespace

/// Copies the pictures that the user has chosen since, and says for each display what its label is to be put on. A
/// display whose picture couldn't be copied and recorded must keep it: nothing could bring it back.
QCoro::Task<QList<DesktopLabel::Target>> DesktopLabel::withOriginals(QList<Target> targets) {
    const WallpaperManifest before = manifest();
    WallpaperManifest originals = before;
    adoptOriginals(targets, originals);
    for (Target& target : targets) {
        if (!target.picture || !m_files.isOurs(*target.picture)) {
            target.trouble = co_await copyOriginal(target);
            if (target.trouble == Trouble::None) {
                originals.put(recordOf(target));
            }
        }
    }
    const bool isWritten = originals.screens.isEmpty() || storedManifest() == originals || write(originals);
    for (Target& target : targets) {
        if (target.trouble == Trouble::None && !isWritten && !haveSameRecord(originals, before, target.id)) {
            target.trouble = Trouble::NotSaved;
        }
        if (target.trouble == Trouble::None) {
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
            target.trouble = Trouble::NotSaved;
            originals = before;
            return;
        }
        originals.put(
            {target.id, m_files.originalPath(target.id), recordShown(target.picture, before)->originalDesktopURL});
    }
}

QCoro::Task<DesktopLabel::Trouble> DesktopLabel::copyOriginal(Target target) {
    if (!target.picture) {
        co_return Trouble::NotLoaded;
    }
    const QImage picture = co_await m_displays.loadPicture(*target.picture);
    if (picture.isNull()) {
        co_return Trouble::NotLoaded;
    }
    const QByteArray copy = co_await inBackground(&opaqueJpegFile, picture);
    const bool isSaved = !copy.isEmpty() && writeFile(m_files.originalPath(target.id), copy);
    co_return isSaved ? Trouble::None : Trouble::NotSaved;
}

ScreenWallpaperRecord DesktopLabel::recordOf(const Target& target) const {
    return {target.id, m_files.originalPath(target.id),
            QUrl::fromLocalFile(*target.picture).toString(QUrl::FullyEncoded)};
}

/// None where the file is missing, can't be read or is damaged.
std::optional<WallpaperManifest> DesktopLabel::storedManifest() const {
    try {
        return decodeWallpaperManifest(m_fileManager.read(m_files.manifestPath()));
    } catch (const FileError&) {
        return std::nullopt;
    }
}

/// One that is missing is empty. Of one that is damaged there are still the copies, each under its display's name.
WallpaperManifest DesktopLabel::manifest() const {
    WallpaperManifest originals = storedManifest().value_or(WallpaperManifest{});
    if (!originals.screens.isEmpty() || !m_fileManager.exists(m_files.manifestPath())) {
        return originals;
    }
    for (const QString& name : m_files.names()) {
        if (const QString id = WallpaperFiles::displayOfOriginal(name); !id.isEmpty()) {
            originals.put({id, m_files.folder() + u'/' + name, std::nullopt});
        }
    }
    return originals;
}

/// The record of the picture that is shown, whatever the display's number is now; null when none is its own.
const ScreenWallpaperRecord* DesktopLabel::recordShown(const std::optional<QString>& picture,
                                                       const WallpaperManifest& originals) const {
    if (!picture || !m_files.isOurs(*picture)) {
        return nullptr;
    }
    const QString name = lastPathComponent(*picture);
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
        return copy ? m_fileManager.read(*copy) : QByteArray();
    } catch (const FileError&) {
        return {};
    }
}

bool DesktopLabel::write(const WallpaperManifest& manifest) {
    return writeFile(m_files.manifestPath(), encodeWallpaperManifest(manifest));
}

} // namespace quorvane
