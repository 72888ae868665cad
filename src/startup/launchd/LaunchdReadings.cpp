#include "startup/launchd/LaunchdReadings.h"

#include "core/Paths.h"
#include "platform/FileManager.h"

#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kAgentsFolder = u"/Library/LaunchAgents"_s;
const QString kDaemonsFolder = u"/Library/LaunchDaemons"_s;

bool canHoldNothing(FileStatus::Kind kind) {
    return kind == FileStatus::Kind::Missing || kind == FileStatus::Kind::File;
}

/// As records name it that the whole Mac shares: "/Users/501/Library/LaunchAgents".
bool isNamedByNumber(const QString& folder) {
    static const QRegularExpression numbered(u"^/Users/[0-9]+/Library/LaunchAgents$"_s);
    return numbered.match(folder).hasMatch();
}

} // namespace

QList<LaunchFolderListing> listedLaunchFolders(const QList<LaunchFolder>& folders, const FileManager& files) {
    QList<LaunchFolderListing> listings;
    for (const LaunchFolder& folder : folders) {
        try {
            listings.append({folder, files.list(folder.path)});
        } catch (const FileError&) {
            listings.append({folder, {}, canHoldNothing(files.status(folder.path).kind)});
        }
    }
    return listings;
}

QList<LaunchPlist> readLaunchPlists(const QList<LaunchFolderListing>& listings, const PropertyLists& propertyLists) {
    QList<LaunchPlist> plists;
    for (const LaunchFolderListing& listing : listings) {
        for (const QString& fileName : listing.fileNames) {
            if (fileName.endsWith(u".plist"_s)) {
                plists.append(readLaunchPlist(listing.folder, fileName, propertyLists));
            }
        }
    }
    return plists;
}

LaunchdReadings::LaunchdReadings(LaunchdOverrides overrides, QList<LaunchPlist> plists,
                                 const QList<LaunchFolderListing>& listings)
    : m_overrides(std::move(overrides))
    , m_plists(std::move(plists)) {
    for (const LaunchFolderListing& listing : listings) {
        if (listing.folder.isUsers) {
            m_usersFolder = listing.folder.path;
        }
        if (!listing.isRead) {
            m_unreadFolders.insert(listing.folder.path);
        }
    }
    for (qsizetype place = 0; place < m_plists.size(); ++place) {
        m_byFileName.insert(m_plists.at(place).fileName, place);
        m_byLabel.insert(m_plists.at(place).label, place);
    }
}

/// In the order of the folders.
QList<LaunchPlist> LaunchdReadings::plistsAt(QList<qsizetype> places) const {
    std::sort(places.begin(), places.end());
    QList<LaunchPlist> found;
    for (const qsizetype place : places) {
        found.append(m_plists.at(place));
    }
    return found;
}

/// The launch folder of a path as it is listed; empty for any other folder.
QString LaunchdReadings::folderOf(const QString& path) const {
    const QString folder = parentFolder(path);
    if (folder == kAgentsFolder || folder == kDaemonsFolder || folder == m_usersFolder) {
        return folder;
    }
    return isNamedByNumber(folder) ? m_usersFolder : QString();
}

bool LaunchdReadings::isInLaunchFolder(const QString& path) const {
    return path.endsWith(u".plist"_s) && !folderOf(path).isEmpty();
}

std::optional<LaunchPlist> LaunchdReadings::plistAt(const QString& path) const {
    const QString folder = folderOf(path);
    for (const LaunchPlist& plist : named(lastPathComponent(path))) {
        if (plist.folder.path == folder) {
            return plist;
        }
    }
    return std::nullopt;
}

LaunchdReadings LaunchdReadings::with(LaunchdOverrides overrides) const {
    LaunchdReadings later = *this;
    later.m_overrides = std::move(overrides);
    return later;
}

QSet<QString> labelsOnAgain(const QList<LaunchdService>& switchedOff, const LaunchdOverrides& overrides) {
    QSet<QString> labels;
    for (const LaunchdService& service : switchedOff) {
        const OverrideState state = overrides.stateOf(service);
        if (state == OverrideState::Enabled || state == OverrideState::NotListed) {
            labels.insert(service.label);
        }
    }
    return labels;
}

} // namespace quorvane
