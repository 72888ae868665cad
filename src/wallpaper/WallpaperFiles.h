#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

class FileManager;
class Machine;
struct Display;

/// How the program calls a display: "display-1", or by its name and place where the system has no number for it.
QString screenIdentifier(const Display& display);
/// What is known of a display beside its number and place: "Color LCD-1280x800". The system may give its number to another.
QString screenDescription(const Display& display);
/// A profile's name in a file name: "my-gig" for "My Gig!"; "profile" when no letter or digit is in it.
QString wallpaperSlug(const QString& profileName);

/// The work folder of the wallpaper label: the copies of the user's pictures, the labelled pictures, and the manifest that
/// says whose is which. Main thread.
///
/// Pictures of the user's that are copied and shown from here may be the last ones of their kind. So nothing is removed but
/// what lies in the folder itself: not where it is a link to some other folder, and not what a link in it leads to.
class WallpaperFiles {
public:
    WallpaperFiles(FileManager& files, const Machine& machine);

    /// "~/Library/Application Support/Quorvane/WallpaperOverlay", created with its parents; a failure to create it is left
    /// to the operation that follows.
    QString folder() const;
    QString manifestPath() const;
    /// @param number  which of the names that the display's file may have: the first, unless that is in use
    QString originalPath(const QString& screenIdentifier, int number = 1) const;
    /// @param number  another one for each picture that is shown: the system draws a path that it knows as it was
    QString compositedPath(const QString& screenIdentifier, const QString& profileName, int number) const;
    /// Of the copy as it is shown where the user's own file is gone. @param number  see above
    QString restoredPath(const QString& screenIdentifier, int number) const;
    /// The number in the name of one of these files; 0 where there is none.
    static int numberIn(const QString& name);

    /// Whether the folder is there; it isn't created.
    bool isThere() const;

    /// True for the path of a picture that the program has made: it says so, or leads into the folder.
    bool isOurs(const QString& path) const;
    /// True for a file that lies in the folder once links are resolved.
    bool holds(const QString& path) const;
    /// The path in the one form in which paths can be compared: the system may give back another than it was given.
    QString standardized(const QString& path) const;

    /// A file's name in the one form in which names can be compared.
    static QString nameOf(const QString& path);
    /// The names in the folder; none when it can't be read.
    QStringList names() const;
    /// Whether the file is a labelled picture of the display, for any profile.
    static bool isComposited(const QString& name, const QString& screenIdentifier);
    /// Whether the file is made to be shown: a labelled picture of any display, or the copy of its user's.
    static bool isForShow(const QString& name);
    /// Whether the file is the latter.
    static bool isRestored(const QString& name);
    /// The display whose original the file is; empty for any other file.
    static QString displayOfOriginal(const QString& name);
    /// Removes a file of the folder. A failure is ignored: it is tried again with the next change.
    void remove(const QString& name);

private:
    QString place() const;
    bool isRealFolder() const;

    FileManager& m_files;
    const Machine& m_machine;
};

} // namespace quorvane
