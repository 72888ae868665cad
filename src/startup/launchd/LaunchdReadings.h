#pragma once

#include "startup/launchd/LaunchPlist.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QStringList>

namespace quorvane {

class FileManager;

/// A folder of launch plists and the names in it.
struct LaunchFolderListing {
    LaunchFolder folder;
    QStringList fileNames;
    bool isRead = true; ///< false for a folder that is there and whose names nobody tells
};
/// What doesn't exist, or is no folder, holds nothing.
QList<LaunchFolderListing> listedLaunchFolders(const QList<LaunchFolder>& folders, const FileManager& files);

/// Reads every plist among them. Any thread.
QList<LaunchPlist> readLaunchPlists(const QList<LaunchFolderListing>& listings, const PropertyLists& propertyLists);

/// launchd and its folders, at one moment.
class LaunchdReadings {
public:
    LaunchdReadings() = default;
    /// @param plists    in their places
    /// @param listings  of the folders
    LaunchdReadings(LaunchdOverrides overrides, QList<LaunchPlist> plists,
                    const QList<LaunchFolderListing>& listings = {});

    const LaunchdOverrides& overrides() const { return m_overrides; }
    const QList<LaunchPlist>& plists() const { return m_plists; }

    QList<LaunchPlist> named(const QString& fileName) const { return plistsAt(m_byFileName.values(fileName)); }
    QList<LaunchPlist> labelled(const QString& label) const { return plistsAt(m_byLabel.values(label)); }
    /// True for the path of a plist directly in one of this Mac's launch folders, also where it names the user's home by their
    /// number.
    bool isInLaunchFolder(const QString& path) const;
    /// The plist of a launch folder that a path means; none where it isn't there.
    std::optional<LaunchPlist> plistAt(const QString& path) const;
    /// False where nobody may look into the launch folder of a path: what isn't found there may be there.
    bool isFolderRead(const QString& path) const { return !m_unreadFolders.contains(folderOf(path)); }
    bool isEveryFolderRead() const { return m_unreadFolders.isEmpty(); }
    /// The same at a later moment, at which no plist can have moved.
    LaunchdReadings with(LaunchdOverrides overrides) const;

private:
    QString folderOf(const QString& path) const;
    QList<LaunchPlist> plistsAt(QList<qsizetype> places) const;

    LaunchdOverrides m_overrides;
    QString m_usersFolder; ///< the user's LaunchAgents
    QSet<QString> m_unreadFolders;
    QList<LaunchPlist> m_plists;
    QMultiHash<QString, qsizetype> m_byFileName;
    QMultiHash<QString, qsizetype> m_byLabel;
};

/// What the program had switched off and launchd shows on.
QSet<QString> labelsOnAgain(const QList<LaunchdService>& switchedOff, const LaunchdOverrides& overrides);

} // namespace quorvane
