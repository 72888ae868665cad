#include "platform/FileManager.h"
#include "services/DesktopLabel.h"

#include <QUrl>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kDefaultPicture = u"/System/Library/CoreServices/DefaultDesktop.heic"_s;
const QString kNoLabel = u"Default"_s;

/// The user's own file, as long as it is one; none for anything else that a manifest may say.
std::optional<QString> usersPicture(const ScreenWallpaperRecord& record, const FileManager& files) {
    const QUrl url(record.originalDesktopURL.value_or(QString()), QUrl::StrictMode);
    const QString path = url.isLocalFile() ? url.toLocalFile() : QString();
    const bool isThere = !path.isEmpty() && !WallpaperFiles::isOurs(path) && files.exists(path);
    return isThere ? std::optional(path) : std::nullopt;
}

} // namespace

void DesktopLabel::restoreOriginals() {
    m_failures.clear();
    m_composed.clear();
    const WallpaperManifest originals = manifest();
    for (const Display& display : m_host.displays.screens()) {
        const std::optional<QString> picture = pictureToRestore(display, originals);
        if (picture && !setPicture(display, *picture)) {
            m_failures.insert(screenIdentifier(display), {m_host.displays.desktopPicture(display), kNoLabel});
        }
    }
    clearFolder(neededRecords(originals));
}

bool DesktopLabel::hasLeftOver() const {
    const QList<Display> displays = m_host.displays.screens();
    return std::any_of(displays.cbegin(), displays.cend(), [this](const Display& display) {
        const std::optional<QString> shown = m_host.displays.desktopPicture(display);
        const auto failure = m_failures.constFind(screenIdentifier(display));
        const bool hasFailed = failure != m_failures.cend() && failure->picture == shown && failure->name == kNoLabel;
        return shown && WallpaperFiles::isOurs(*shown) && !hasFailed && pictureToRestore(display, manifest());
    });
}

/// The user's own file rather than the copy of it, because a dynamic picture is more than its first one. None where the
/// display shows that already, or a picture that the program hasn't made: then the user has chosen it since.
std::optional<QString> DesktopLabel::pictureToRestore(const Display& display,
                                                      const WallpaperManifest& originals) const {
    const QString id = screenIdentifier(display);
    const ScreenWallpaperRecord* record = originals.record(id);
    const std::optional<QString> shown = m_host.displays.desktopPicture(display);
    const bool isUsers = shown ? !WallpaperFiles::isOurs(*shown) : record == nullptr;
    if (isUsers) {
        return std::nullopt;
    }
    std::optional<QString> picture = record != nullptr ? usersPicture(*record, m_host.files) : std::nullopt;
    if (!picture && record != nullptr && m_files.holds(record->originalImagePath)) {
        picture = record->originalImagePath;
    }
    if (!picture && m_files.holds(m_files.originalPath(id))) {
        picture = m_files.originalPath(id);
    }
    if (!picture && m_host.files.exists(kDefaultPicture)) {
        picture = kDefaultPicture;
    }
    return picture == shown ? std::nullopt : picture;
}

/// The records of displays that aren't connected, or that still show a picture of the program's.
WallpaperManifest DesktopLabel::neededRecords(const WallpaperManifest& originals) const {
    WallpaperManifest needed = originals;
    for (const Display& display : m_host.displays.screens()) {
        const QString id = screenIdentifier(display);
        const std::optional<QString> shown = m_host.displays.desktopPicture(display);
        if (!m_failures.contains(id) && !(shown && WallpaperFiles::isOurs(*shown))) {
            needed.screens.removeIf([&id](const ScreenWallpaperRecord& each) { return each.screenIdentifier == id; });
        }
    }
    return needed;
}

bool DesktopLabel::isNeeded(const QString& name, const WallpaperManifest& kept) const {
    const QString path = m_files.folder() + u'/' + name;
    return shownPictures().contains(path) ||
           std::any_of(kept.screens.cbegin(), kept.screens.cend(), [&](const ScreenWallpaperRecord& record) {
               return path == record.originalImagePath || path == m_files.originalPath(record.screenIdentifier) ||
                      WallpaperFiles::isComposited(name, record.screenIdentifier);
           });
}

/// The manifest is brought up to date first: a record without its files is worse than a file without a record.
void DesktopLabel::clearFolder(const WallpaperManifest& kept) {
    const bool keepsManifest = !kept.screens.isEmpty();
    if (keepsManifest && kept != manifest()) {
        write(kept);
    }
    for (const QString& name : m_files.names()) {
        const bool isManifest = m_files.folder() + u'/' + name == m_files.manifestPath();
        if (isManifest ? !keepsManifest : !isNeeded(name, kept)) {
            m_files.remove(name);
        }
    }
}

} // namespace quorvane
