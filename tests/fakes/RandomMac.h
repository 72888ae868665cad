#pragma once

#include "core/NotificationCenter.h"
#include "fakes/InProcessMac.h"
#include "simulator/Json.h"
#include "startup/items/StartupItem.h"
#include "system/SystemManager.h"

#include <QDir>
#include <QFileInfo>
#include <QStringList>
#include <QTemporaryDir>

#include <algorithm>
#include <random>

namespace quorvane {

using namespace Qt::StringLiterals;

// Random Macs and profiles, for tests of what must hold on any of them: what runs at login on them, some of it audio
// software's, some a cloud product's.

/// In memory where the host has such a place: a case makes and removes hundreds of small files.
QString caseFolder();

/// Everything that is drawn follows from the seed.
class Draw {
public:
    explicit Draw(quint64 seed)
        : m_engine(seed) {}

    int below(int bound);
    bool oneIn(int count);
    const QString& from(const QStringList& texts);

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

QString domainOf(const QString& launchFolder);

/// One file at a path; items may share it.
void addFileOnce(macsim::Json& description, const macsim::Json& file);

/// Plists in the three launch folders, and their jobs.
void addLaunchItems(macsim::Json& description, Draw& draw);

/// A record of each application; helpers and agents that belong to one, inside of it, or to nobody.
void addBackgroundTasks(macsim::Json& description, Draw& draw);
StartupItem randomItem(Draw& draw);

/// A fresh Mac with all applications, these login items, and launch items and background items that are drawn.
macsim::Json macWithStartupItems(const macsim::Json& loginItems, Draw& draw);

/// The program on a Mac of its own, whose tools run in this process.
class ProgramOnMac {
public:
    explicit ProgramOnMac(const macsim::Json& description);

    /// Lets the program read the background items, which needs root.
    void learnBackgroundItems();

private:
    QTemporaryDir m_folder{caseFolder()};

public:
    const QString macFolder = m_folder.path() + u"/Mac"_s;
    InProcessHost host;
    NotificationCenter notifications;
    SystemManager system{host.host(), notifications};
};

} // namespace quorvane
