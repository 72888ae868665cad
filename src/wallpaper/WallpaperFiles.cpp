#include "wallpaper/WallpaperFiles.h"

#include "core/Paths.h"
#include "platform/Displays.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "platform/Machine.h"

#include <QDir>
#include <QRegularExpression>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestName = 255;       // bytes of a file name
constexpr qsizetype kLongestIdentifier = 120; // of these; a profile's name has the rest

const QString kFolder = u"/Quorvane/WallpaperOverlay"_s;
const QString kOriginal = u"original-"_s;
const QString kComposited = u"composited-"_s;
const QString kRestored = u"restored-"_s;
const QString kEnding = u".jpg"_s;

bool isAlphanumeric(char32_t character) {
    return QChar::isLetterOrNumber(character) || QChar::isMark(character);
}

/// As many characters from the start as fit into so many bytes of UTF-8.
QString fitting(const QString& text, qsizetype bytes) {
    QString fit = text;
    while (fit.toUtf8().size() > bytes) {
        fit.chop(fit.back().isLowSurrogate() && fit.size() > 1 ? 2 : 1);
    }
    return fit;
}

/// A display's name may hold what a file name can't.
QString inFileName(const QString& screenIdentifier) {
    QString name = screenIdentifier;
    name.replace(u'/', u'-').replace(QChar(u'\0'), u'-');
    return fitting(name, kLongestIdentifier);
}

/// What tells the names apart that the copy of one display's picture may have.
QString numberInFileName(int number) {
    return number == 1 ? QString() : u'.' + QString::number(number);
}

QString compositedPrefix(const QString& screenIdentifier) {
    return kComposited + inFileName(screenIdentifier) + u'-';
}

QString compositedFile(const QString& screenIdentifier, const QString& profileName, int number) {
    const QString prefix = compositedPrefix(screenIdentifier);
    const QString ending = u'-' + QString::number(number) + kEnding;
    const qsizetype left = kLongestName - prefix.toUtf8().size() - ending.size();
    return prefix + fitting(wallpaperSlug(profileName), left) + ending;
}

/// In whole points.
QString sizeOf(const QRectF& frame) {
    return u"%1x%2"_s.arg(static_cast<qint64>(frame.width())).arg(static_cast<qint64>(frame.height()));
}

} // namespace

QString screenIdentifier(const Display& display) {
    if (display.number) {
        return u"display-%1"_s.arg(*display.number);
    }
    const QRectF& frame = display.frame;
    return display.localizedName +
           u"-%1x%2-"_s.arg(static_cast<qint64>(frame.x())).arg(static_cast<qint64>(frame.y())) + sizeOf(frame);
}

QString screenDescription(const Display& display) {
    return display.localizedName + u'-' + sizeOf(display.frame);
}

QString wallpaperSlug(const QString& profileName) {
    QString slug;
    for (const char32_t character : profileName.toLower().replace(u' ', u'-').toUcs4()) {
        if (character == U'-' || isAlphanumeric(character)) {
            slug += QString::fromUcs4(&character, 1);
        }
    }
    return slug.isEmpty() ? u"profile"_s : slug;
}

WallpaperFiles::WallpaperFiles(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_machine(machine) {}

/// Where the folder is, or would be.
QString WallpaperFiles::place() const {
    return m_machine.applicationSupportFolder() + kFolder;
}

QString WallpaperFiles::folder() const {
    try {
        m_files.createFolders(place());
    } catch (const FileError&) {
        // The read or the write that follows tells of it.
    }
    return place();
}

QString WallpaperFiles::manifestPath() const {
    return folder() + u"/wallpaper-originals.json"_s;
}

QString WallpaperFiles::originalPath(const QString& screenIdentifier, int number) const {
    return folder() + u'/' + kOriginal + inFileName(screenIdentifier) + numberInFileName(number) + kEnding;
}

QString WallpaperFiles::compositedPath(const QString& screenIdentifier, const QString& profileName, int number) const {
    return folder() + u'/' + compositedFile(screenIdentifier, profileName, number);
}

QString WallpaperFiles::restoredPath(const QString& screenIdentifier, int number) const {
    return folder() + u'/' + kRestored + inFileName(screenIdentifier) + u'-' + QString::number(number) + kEnding;
}

int WallpaperFiles::numberIn(const QString& name) {
    static const QRegularExpression form(u"^(composited|restored)-.*-([0-9]{1,9})\\.jpg$"_s);
    return form.match(name).captured(2).toInt();
}

bool WallpaperFiles::isThere() const {
    return m_files.exists(place());
}

bool WallpaperFiles::isOurs(const QString& path) const {
    return path.contains(kFolder + u'/') || holds(path);
}

QString WallpaperFiles::standardized(const QString& path) const {
    QString standard = QDir::cleanPath(path);
    try {
        standard = m_files.resolved(path);
    } catch (const FileError&) {
        // Nothing stands there, and there is no link to follow.
    }
    return standard.normalized(QString::NormalizationForm_C);
}

QString WallpaperFiles::nameOf(const QString& path) {
    return lastPathComponent(path).normalized(QString::NormalizationForm_C);
}

bool WallpaperFiles::holds(const QString& path) const {
    try {
        return m_files.resolved(path).startsWith(m_files.resolved(place()) + u'/');
    } catch (const FileError&) {
        return false;
    }
}

QStringList WallpaperFiles::names() const {
    return namesIn(m_files, folder());
}

bool WallpaperFiles::isComposited(const QString& name, const QString& screenIdentifier) {
    return name.startsWith(compositedPrefix(screenIdentifier));
}

bool WallpaperFiles::isForShow(const QString& name) {
    return name.startsWith(kComposited) || isRestored(name);
}

bool WallpaperFiles::isRestored(const QString& name) {
    return name.startsWith(kRestored);
}

QString WallpaperFiles::displayOfOriginal(const QString& name) {
    const bool isOriginal = name.startsWith(kOriginal) && name.endsWith(kEnding);
    return isOriginal ? name.mid(kOriginal.size()).chopped(kEnding.size()) : QString();
}

/// The whole of the program's folders may lie on another volume, but it is no folder of any other name.
bool WallpaperFiles::isRealFolder() const {
    try {
        return m_files.resolved(place()).endsWith(kFolder);
    } catch (const FileError&) {
        return false;
    }
}

void WallpaperFiles::remove(const QString& name) {
    if (!isRealFolder()) {
        return;
    }
    try {
        m_files.remove(folder() + u'/' + name);
    } catch (const FileError&) {
        return; // as promised
    }
}

} // namespace quorvane
