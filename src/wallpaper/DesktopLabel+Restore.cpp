#include "platform/FileManager.h"
#include "wallpaper/AnimatedPictures.h"
#include "wallpaper/DesktopLabel.h"

#include <QUrl>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kNoProfile = u"Default"_s;

} // namespace

void DesktopLabel::restoreOriginals() {
    m_failures.clear();
    m_composed.clear();
    WallpaperManifest originals = settled();
    QStringList done;
    for (const Display& display : m_ports.displays.screens()) {
        if (isUsersAgain(display, restore(display, originals))) {
            done.append(screenIdentifier(display));
        }
    }
    WallpaperManifest needed = settledManifest(originals, shownWallpapers());
    for (const QString& id : done) {
        needed.remove(id);
    }
    clearFolder(needed);
}

/// @return the picture that the display was given; none when it was left as it is
std::optional<QString> DesktopLabel::restore(const Display& display, WallpaperManifest& originals) {
    std::optional<QString> picture = pictureToRestore(display, originals);
    if (!picture) {
        return std::nullopt;
    }
    if (m_files.isOurs(*picture)) {
        picture = newlyNamedCopy(display, *picture, originals);
    }
    if (setPicture(display, *picture)) {
        m_failures.insert(screenIdentifier(display), {m_ports.displays.desktopPicture(display), kNoProfile, {}});
    } else {
        rememberStill(display, *picture);
    }
    return picture;
}

/// The copy as it can be shown: a display may have shown another one under the name under which it is kept.
QString DesktopLabel::newlyNamedCopy(const Display& display, const QString& copy, WallpaperManifest& originals) {
    const QString id = screenIdentifier(display);
    const QString named = m_files.restoredPath(id, takeNumber());
    try {
        m_ports.files.writeAtomically(named, m_ports.files.read(copy));
    } catch (const FileError&) {
        return copy; // rather than nothing
    }
    const ScreenWallpaperRecord* known = originals.record(id);
    ScreenWallpaperRecord record = known != nullptr ? *known : ScreenWallpaperRecord{id, copy, std::nullopt};
    record.shownAs = record.shownAs.value_or(QStringList()) + QStringList(WallpaperFiles::nameOf(named));
    originals.put(record);
    keep(originals);
    return named;
}

/// Whether the display shows none of the program's pictures. Where the system doesn't say, what was set must do.
bool DesktopLabel::isUsersAgain(const Display& display, const std::optional<QString>& restored) const {
    const std::optional<QString> shown = m_ports.displays.desktopPicture(display);
    const std::optional<QString> picture = shown ? shown : restored;
    return !m_failures.contains(screenIdentifier(display)) && !(picture && m_files.isOurs(*picture));
}

bool DesktopLabel::hasLeftOver() const {
    const QList<Display> displays = m_ports.displays.screens();
    return std::any_of(displays.cbegin(), displays.cend(), [this](const Display& display) {
        const std::optional<QString> shown = m_ports.displays.desktopPicture(display);
        const auto failure = m_failures.constFind(screenIdentifier(display));
        const bool hasFailed = failure != m_failures.cend() && failure->picture == shown && failure->name == kNoProfile;
        return shown && m_files.isOurs(*shown) && !hasFailed && pictureToRestore(display, settled());
    });
}

/// The user's own file rather than the copy of it, because a dynamic picture is more than its first one. None where the
/// display shows that already, or a picture that the program hasn't made: then the user has chosen it since.
std::optional<QString> DesktopLabel::pictureToRestore(const Display& display,
                                                      const WallpaperManifest& originals) const {
    const ScreenWallpaperRecord* record = originals.record(screenIdentifier(display));
    const std::optional<QString> shown = m_ports.displays.desktopPicture(display);
    const bool isUsers = shown ? !m_files.isOurs(*shown) : record == nullptr;
    if (isUsers) {
        return std::nullopt;
    }
    std::optional<QString> picture = record != nullptr ? usersPicture(*record) : std::nullopt;
    if (!picture) {
        picture = copyFor(screenIdentifier(display), originals);
    }
    if (!picture && m_ports.files.exists(kDefaultDesktopPicture)) {
        picture = kDefaultDesktopPicture;
    }
    return picture && shown && isPutBack(*picture, *shown, record) ? std::nullopt : picture;
}

/// Whether it is shown already: itself, or the copy under the name that it was given.
bool DesktopLabel::isPutBack(const QString& picture, const QString& shown, const ScreenWallpaperRecord* record) const {
    const QString file = WallpaperFiles::nameOf(shown);
    const bool isCopy = m_files.isOurs(picture) && WallpaperFiles::isRestored(file) && m_ports.files.exists(shown) &&
                        record != nullptr && isShownAs(*record, file);
    return isCopy || m_files.standardized(picture) == m_files.standardized(shown);
}

/// The user's own file, as long as it is one; none for anything else that a manifest may say.
std::optional<QString> DesktopLabel::usersPicture(const ScreenWallpaperRecord& record) const {
    const QUrl url(record.originalDesktopURL.value_or(QString()), QUrl::StrictMode);
    const QString path = url.isLocalFile() ? url.toLocalFile() : QString();
    const bool isThere = !path.isEmpty() && !m_files.isOurs(path) && m_ports.files.exists(path);
    return isThere ? std::optional(path) : std::nullopt;
}

/// The manifest is brought up to date first, and nothing goes if that fails: a record without its files is worse than a
/// file without a record.
void DesktopLabel::clearFolder(const WallpaperManifest& kept) {
    const bool keepsManifest = !kept.screens.isEmpty();
    if (keepsManifest && !keep(kept)) {
        return;
    }
    m_unwritten.reset();
    const QSet<QString> shown = shownPictures();
    for (const QString& name : m_files.names()) {
        const QString path = m_files.folder() + u'/' + name;
        const bool isManifest = path == m_files.manifestPath();
        const bool isNeeded = shown.contains(m_files.standardized(path)) || isNeededBy(kept, name);
        if (isManifest ? !keepsManifest : !isNeeded) {
            m_files.remove(name);
        }
    }
}

bool DesktopLabel::isNeededBy(const WallpaperManifest& kept, const QString& name) const {
    const QString path = m_files.folder() + u'/' + name;
    return std::any_of(kept.screens.cbegin(), kept.screens.cend(), [&](const ScreenWallpaperRecord& record) {
        return isShownAs(record, name.normalized(QString::NormalizationForm_C)) ||
               path == copyFor(record.screenIdentifier, kept);
    });
}

} // namespace quorvane
