#pragma once

#include "simulator/Json.h"
#include "startup/items/StartupItem.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <random>

namespace quorvane {

using namespace Qt::StringLiterals;

// Random Macs and profiles, for tests of what must hold on any of them: what runs at login on them, some of it audio
// software's, some a cloud product's.

/// In memory where the host has such a place: a case makes and removes hundreds of small files.
inline QString caseFolder() {
    const QFileInfo memory(u"/dev/shm"_s);
    return (memory.isDir() && memory.isWritable() ? memory.filePath() : QDir::tempPath()) + u"/quorvane-XXXXXX"_s;
}

/// Everything that is drawn follows from the seed.
class Draw {
public:
    explicit Draw(quint64 seed)
        : m_engine(seed) {}

    int below(int bound) { return static_cast<int>(m_engine() % static_cast<quint64>(bound)); }
    bool oneIn(int count) { return below(count) == 0; }
    const QString& from(const QStringList& texts) { return texts[below(static_cast<int>(texts.size()))]; }

private:
    std::mt19937_64 m_engine;
};

// Names that several items share, in one case or another, some of them cloud products'.
inline const QStringList kNames{u"Helper"_s,         u"helper"_s,     u"Updater"_s, u"UPDATER"_s,
                                u"Dropbox"_s,        u"Sync"_s,       u"Chat"_s,    u"Google Drive"_s,
                                u"Traktor Helper"_s, u"Sync Agent"_s, u"VST Scan"_s};
// The last two are plug-ins, one of which bears a cloud product's name.
inline const QStringList kApplications{u"/Applications/Chat.app"_s,
                                       u"/Applications/Dropbox.app"_s,
                                       u"/Applications/Google Drive.app"_s,
                                       u"/Applications/Notes.app"_s,
                                       u"/Applications/rekordbox 7.app"_s,
                                       u"/Applications/Traktor Pro 4.app"_s,
                                       u"/Library/Audio/Plug-Ins/Dropbox Sync.app"_s,
                                       u"/Applications/Serato DJ Pro.app"_s};
inline const QStringList kLabels{u"com.chat.helper"_s,
                                 u"com.dropbox.sync"_s,
                                 u"com.getdropbox.dropbox.helper"_s,
                                 u"com.google.drivefs"_s,
                                 u"com.x.updater"_s,
                                 u"com.x.helper"_s,
                                 u"com.traktor.helper"_s,
                                 u"com.dropbox.vst3.scanner"_s,
                                 u"com.ableton.agent"_s,
                                 u"com.x.updater.agent"_s,
                                 u"com.serato.sync.agent"_s,
                                 u"com.dropbox.update.agent"_s,
                                 u"COM.X.HELPER"_s,
                                 u"com.google.drive.agent"_s,
                                 u"sync"_s,
                                 u"com.rekordbox.dropbox"_s};
inline const QStringList kLaunchFolders{u"/Users/alex/Library/LaunchAgents"_s, u"/Library/LaunchAgents"_s,
                                        u"/Library/LaunchDaemons"_s};

inline QString domainOf(const QString& launchFolder) {
    return launchFolder.endsWith(u"Daemons"_s) ? u"system"_s : u"gui/501"_s;
}

/// One file at a path; items may share it.
inline void addFileOnce(macsim::Json& description, const macsim::Json& file) {
    const macsim::Json& files = description["files"];
    if (std::none_of(files.begin(), files.end(),
                     [&file](const macsim::Json& other) { return other["path"] == file["path"]; })) {
        description["files"].push_back(file);
    }
}

/// Plists in the three launch folders, and their jobs.
inline void addLaunchItems(macsim::Json& description, Draw& draw) {
    for (int count = draw.below(9); count > 0; --count) {
        const QString folder = draw.from(kLaunchFolders);
        const std::string label = draw.from(kLabels).toStdString();
        const std::string path = folder.toStdString() + "/" + label + ".plist";
        macsim::Json& job = description["launchd"]["jobs"][domainOf(folder).toStdString()][label];
        if (job.is_null()) {
            job = {{"path", path}, {"pid", nullptr}};
            description["files"].push_back({{"path", path}, {"propertyList", {{"Label", label}, {"Program", "/x"}}}});
        }
    }
}

/// A record of each application; helpers and agents that belong to one, inside of it, or to nobody.
inline void addBackgroundTasks(macsim::Json& description, Draw& draw) {
    macsim::Json records = macsim::Json::array();
    for (int i = 0; i < kApplications.size(); ++i) {
        records.push_back({{"uid", 501},
                           {"name", "Application " + std::to_string(i)},
                           {"type", "app"},
                           {"identifier", "2.com.app" + std::to_string(i)},
                           {"url", kApplications[i].toStdString()},
                           {"enabled", draw.oneIn(2)}});
    }
    for (int count = draw.below(12); count > 0; --count) {
        const int application = draw.below(static_cast<int>(kApplications.size()));
        const QString name = draw.from(kNames);
        const QString label = draw.from(kLabels);
        const bool isAgent = draw.oneIn(2);
        const QString inside = u"Contents/Library/"_s + (isAgent ? u"LaunchAgents/"_s + label + u".plist"_s
                                                                 : u"LoginItems/"_s + name + u".app"_s);
        macsim::Json record{{"uid", 501},
                            {"name", name.toStdString()},
                            {"type", isAgent ? "agent" : "login item"},
                            {"identifier", (isAgent ? "8." : "4.") + label.toStdString()},
                            {"url", inside.toStdString()},
                            {"allowed", !draw.oneIn(6)}};
        if (draw.oneIn(4)) {
            record["url"] = (kApplications[application] + u'/' + inside).toStdString();
        } else {
            record["parent"] = "2.com.app" + std::to_string(application);
        }
        if (draw.oneIn(4)) {
            record["executablePath"] = (draw.from(kApplications) + u"/Contents/MacOS/x"_s).toStdString();
        }
        records.push_back(record);
        const std::string file =
            (kApplications[application] + u'/' + inside + (isAgent ? u""_s : u"/x"_s)).toStdString();
        addFileOnce(description, {{"path", file}, {"text", label.toStdString()}});
    }
    description["backgroundTasks"]["records"] = records;
    if (draw.oneIn(2)) {
        description["backgroundTasks"]["entryPoints"] = {"SMLoginItemSetUserAllowed_4BTM",
                                                         "SMLaunchdPlistSetUserAllowed_4BTM"};
    }
}

inline StartupItem randomItem(Draw& draw) {
    StartupItem item;
    item.kind = allStartupItemKinds()[draw.below(static_cast<int>(allStartupItemKinds().size()))];
    item.name = draw.from(kNames);
    item.path = draw.from(kApplications) + (draw.oneIn(2) ? u""_s : u"/Contents/"_s + item.name + u".app"_s);
    item.runsAtStartup = draw.oneIn(4);
    if (item.kind == StartupItemKind::launchAgent || item.kind == StartupItemKind::launchDaemon ||
        (item.kind == StartupItemKind::backgroundAgent && draw.oneIn(2))) {
        item.launchIdentifier = draw.from(kLabels) + u".plist"_s;
        item.id = launchItemId(*item.launchIdentifier);
        item.path = draw.from(kLaunchFolders) + u'/' + *item.launchIdentifier;
    } else if (item.kind == StartupItemKind::backgroundLoginItem) {
        item.launchIdentifier = draw.from(kLabels);
        item.id = backgroundItemId(*item.launchIdentifier);
    } else {
        item.id = item.kind == StartupItemKind::addedApp ? addedItemId(item.path) : loginItemId(item.name, item.path);
    }
    return item;
}

} // namespace quorvane
