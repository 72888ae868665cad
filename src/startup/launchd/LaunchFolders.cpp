#include "startup/launchd/LaunchFolders.h"

#include "core/AdminScript.h"
#include "core/Paths.h"
#include "core/Quoting.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kKeep = u"/Library/Application Support/Quorvane/LaunchItems/"_s;

/// True for a link that leads nowhere, too.
QString somethingIsAt(const QString& quotedPath) {
    return u"[ -e %1 ] || [ -L %1 ]"_s.arg(quotedPath);
}

/// Of what goes back into launchd.
QStringList launchctlCommands(const KeptLaunchPlist& plist, quint32 userId) {
    QStringList commands;
    if (!plist.isRecorded && !plist.label.isEmpty()) {
        commands += {u"launchctl enable "_s + shellQuoted(u"system/"_s + plist.label),
                     u"launchctl enable "_s + shellQuoted(u"gui/"_s + QString::number(userId) + u'/' + plist.label)};
    }
    if (plist.folder.isDaemons && plist.isLoadedAgain && !plist.label.isEmpty()) {
        commands.append(u"launchctl bootstrap system "_s + shellQuoted(plist.path()));
    }
    return commands;
}

} // namespace

QString backupFolder(const QString& homeFolder) {
    return homeFolder + u"/.quorvane_backup"_s;
}

QList<LaunchFolder> launchFolders(const QString& homeFolder) {
    const QString backup = backupFolder(homeFolder) + u'/';
    const QString agents = u"_Library_LaunchAgents"_s;
    const QString daemons = u"_Library_LaunchDaemons"_s;
    return {{homeFolder + u"/Library/LaunchAgents"_s, backup + u"UserHome_Library_LaunchAgents"_s, {}, true, false},
            {u"/Library/LaunchAgents"_s, backup + agents, kKeep + agents, false, false},
            {u"/Library/LaunchDaemons"_s, backup + daemons, kKeep + daemons, false, true}};
}

bool isLaunchPlistName(const QString& label) {
    return label.endsWith(u".plist"_s) && std::none_of(label.begin(), label.end(), [](QChar c) {
               return c == u'/' || c.category() == QChar::Other_Control;
           });
}

QString disableLaunchPlistCommand(const QString& plist, const LaunchFolder& folder, const QStringList& outOfLaunchd) {
    const QString backup = shellQuoted(folder.backupFolder + u'/' + lastPathComponent(plist));
    const QStringList steps{u"mkdir -p "_s + shellQuoted(folder.backupFolder), u"rm -f "_s + backup,
                            u'(' + (outOfLaunchd + QStringList(u"true"_s)).join(u" ; "_s) + u')',
                            u"mv "_s + shellQuoted(plist) + u' ' + backup};
    return steps.join(u" && "_s);
}

QString keepLaunchPlistCommand(const QString& plist, const LaunchFolder& folder) {
    return u"mkdir -p %1 && cp -p %2 %3"_s.arg(shellQuoted(folder.keepFolder), shellQuoted(plist),
                                               shellQuoted(folder.keepFolder + u'/' + lastPathComponent(plist)));
}

QString requireRealBackupFolderCommand(const LaunchFolder& folder) {
    return requireNoLinksCommand({parentFolder(folder.backupFolder), folder.backupFolder});
}

QString reinstateLaunchPlistCommand(const KeptLaunchPlist& plist, quint32 userId) {
    const QString place = shellQuoted(plist.path());
    const QString kept = shellQuoted(plist.keptPath());
    // By way of a name that launchd doesn't look at: a plist must never stand there half.
    const QString copy = shellQuoted(plist.keptPath() + u".new"_s);
    const QString putBack = u"cp -p %1 %2 && mv %2 %3"_s.arg(kept, copy, place);
    const QString setAside = u"mv %1 %2"_s.arg(kept, shellQuoted(plist.keptPath() + u".replaced"_s));
    const QStringList started = launchctlCommands(plist, userId);
    const QString whenTaken = (started + QStringList{setAside, u"true"_s}).join(u" ; "_s);
    const QString whenPutBack = (started + QStringList(u"rm -f "_s + kept)).join(u" ; "_s);
    // Joined, not by arg(): the texts hold names, which may hold a "%1".
    // "( (" with a blank: "((" begins arithmetic.
    return u"( ("_s + somethingIsAt(place) + u") && ("_s + whenTaken + u") || ("_s + putBack + u" && ("_s +
           whenPutBack + u"))) 2>/dev/null || true"_s;
}

} // namespace quorvane
