#pragma once

#include "platform/Displays.h"
#include "profiles/ProfileLabel.h"
#include "wallpaper/WallpaperFiles.h"
#include "wallpaper/WallpaperManifest.h"
#include "wallpaper/WallpaperOwners.h"
#include "wallpaper/WallpaperPorts.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QSet>
#include <QSizeF>
#include <QString>

#include <functional>
#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

using LogAction = std::function<void(const QString& line)>;

/// A profile's name on the desktop picture of every display. It shows a labelled copy of the user's own picture, and puts
/// that back.
///
/// No picture of the user's is lost: what a display shows is kept, and so is what will be needed by a display that isn't
/// connected or on which no picture could be set. A display whose picture the program hasn't made is the user's: it is
/// labelled, and never put back to an older one. Each display fails alone, with a line in the log, and then shows its
/// user's own picture rather than a label that is wrong.
///
/// The system draws a path that it knows as it was when it was first shown. So each picture that is shown from the work
/// folder has a name that none has had before.
///
/// Main thread; the pixels are worked on off it. One operation at a time.
class DesktopLabel {
public:
    /// @param log  where lines go
    DesktopLabel(const WallpaperPorts& ports, LogAction log);

    /// The displays that get a label, each with those before it.
    enum class Attempt {
        Untried,     ///< not those on which the same label failed over the same picture
        All,         ///< but those whose picture macOS animates
        AnimatedToo, ///< the user knows that a still one will come back
    };
    /// Labels the displays' pictures. One that has its label isn't composed again.
    /// @return what became of it on each of them
    QCoro::Task<QList<DisplayLabel>> show(QString name, Attempt attempt);
    /// Puts the user's own pictures back, and removes what is then not needed any more.
    void restoreOriginals();
    /// Notes which of the displays are there, and what they show. To be called when that may have changed, so that a
    /// display which takes another's number isn't taken for it.
    void keepTrack();
    /// Another Space is visible: its picture is no choice in the place of the label that stands on the one before.
    void noteAnotherSpace();
    /// To be called before the displays are looked at or changed.
    /// @param assumed  where the system has told of no other Space: Unknown for what somebody else has begun
    void begin(Spaces assumed);
    /// All is as it should be: what stands in the place of a label was chosen, and what it has replaced isn't needed.
    void takeChoices();

    /// True when each display shows the label, as this process has composed it for that display.
    bool isInPlace(const QString& name) const;
    /// The same, but for the displays on which it has failed, and those that were left without one.
    bool isInPlaceWhereItCan(const QString& name) const;
    /// True when macOS animates or manages the picture of a display, as far as that can be told.
    bool hasAnimatedPicture() const;
    /// True when a display shows a picture of the program's in the place of one that could be put back.
    bool hasLeftOver() const;
    /// True when a display has lately been given another picture than was found there, by somebody else.
    bool wasOvertaken() const { return m_wasOvertaken; }

private:
    /// Why a display can't have its label.
    enum class Trouble { None, NotLoaded, NotComposited, NotSaved, NotSet, FailedBefore, Animated };
    /// One display, while it is worked on.
    struct Target {
        Display display;
        QString id;
        QString name;                    ///< the label
        std::optional<QString> picture;  ///< what the display showed at the beginning
        QString composited;              ///< where its labelled picture is kept; empty where it gets none
        QString original;                ///< where the copy of the user's picture is kept; empty where there is none
        QString usersPicture;            ///< of which a lost copy is made anew; empty where it isn't known or is gone
        Trouble trouble = Trouble::None; ///< why there is none
    };
    /// What a display showed when its label couldn't be put there.
    struct Failure {
        std::optional<QString> picture;
        QString name;
        QString detail;
    };
    /// What was composed into a file.
    struct Composed {
        QString screenIdentifier;
        QString name;
        QSizeF canvas;

        bool operator==(const Composed&) const = default;
    };

    QList<Target> targets(const QString& name) const;
    void nameFiles(QList<Target>& targets);
    int takeNumber();
    bool isOurs(const Target& target) const;
    bool isLabelled(const Target& target) const;
    bool hasFailedBefore(const Target& target) const;
    Trouble knownTrouble(const Target& target, Attempt attempt) const;
    static Composed composedFor(const Target& target);
    QCoro::Task<DisplayLabel> showOn(Target target);
    DisplayLabel leaveAnimated(const Target& target);
    DisplayLabel showComposed(const Target& target);
    DisplayLabel giveUp(const Target& target, const QString& detail);
    static DisplayLabel labelOn(const Target& target);
    static QString detailOf(const Target& target);
    QCoro::Task<Trouble> compose(Target target);
    QCoro::Task<QImage> loadOriginal(Target target);
    void removeFormerPictures(const QList<Target>& targets);
    void logSummary(const QString& name, const QList<DisplayLabel>& labels) const;
    void logTrouble(Trouble trouble, const Target& target) const;
    bool writeFile(const QString& path, const QByteArray& bytes);
    std::optional<QString> setPicture(const Display& display, const QString& path);
    QSet<QString> shownPictures() const;

    // DesktopLabel+Originals.cpp
    QCoro::Task<QList<Target>> withOriginals(QList<Target> targets, WallpaperManifest originals);
    QCoro::Task<Trouble> copyPicture(QString from, QString to);
    void takeExisting(Target& target, WallpaperManifest& originals) const;
    static ScreenWallpaperRecord newRecord(const Target& target);
    std::optional<WallpaperManifest> storedManifest() const;
    WallpaperManifest manifest() const;
    WallpaperManifest settled() const;
    QList<ShownWallpaper> shownWallpapers() const;
    std::optional<QString> copyFor(const QString& id, const WallpaperManifest& originals) const;
    QString freeCopyPath(const QString& id, const WallpaperManifest& originals) const;
    bool keep(const WallpaperManifest& originals);

    // DesktopLabel+Animated.cpp
    bool isAnimated(const Display& display, const std::optional<QString>& picture) const;
    bool wasLeftAnimated(const Target& target) const;
    void rememberStill(const Display& display, const QString& picture);
    void forgetWhatIsNotShown();
    QStringList stillShown(const QStringList& pictures) const;

    // DesktopLabel+Restore.cpp
    std::optional<QString> restore(const Display& display, WallpaperManifest& originals);
    QString newlyNamedCopy(const Display& display, const QString& copy, WallpaperManifest& originals);
    bool isUsersAgain(const Display& display, const std::optional<QString>& restored) const;
    std::optional<QString> pictureToRestore(const Display& display, const WallpaperManifest& originals) const;
    bool isPutBack(const QString& picture, const QString& shown, const ScreenWallpaperRecord* record) const;
    std::optional<QString> usersPicture(const ScreenWallpaperRecord& record) const;
    void clearFolder(const WallpaperManifest& kept);
    bool isNeededBy(const WallpaperManifest& kept, const QString& name) const;

    WallpaperPorts m_ports;
    LogAction m_log;
    WallpaperFiles m_files;
    QHash<QString, Failure> m_failures;           ///< by display
    QHash<QString, Composed> m_composed;          ///< by file
    QStringList m_leftAnimated;                   ///< displays that were left without a label, and what they show
    std::optional<WallpaperManifest> m_unwritten; ///< what the manifest should say but couldn't be made to
    Spaces m_spaces = Spaces::TheSame;            ///< as far as it is known
    bool m_isOnAnotherSpace = false;              ///< since the last beginning
    bool m_wasOvertaken = false;
};

} // namespace quorvane
