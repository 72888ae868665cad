#include "startup/LaunchFolders.h"

#include "core/Quoting.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

QString backupFolder(const QString& homeFolder) {
    return homeFolder + u"/.quorvane_backup"_s;
}

QList<LaunchFolder> launchFolders(const QString& homeFolder) {
    const QString backup = backupFolder(homeFolder) + u'/';
    return {{homeFolder + u"/Library/LaunchAgents"_s, backup + u"UserHome_Library_LaunchAgents"_s, true, false},
            {u"/Library/LaunchAgents"_s, backup + u"_Library_LaunchAgents"_s, false, false},
            {u"/Library/LaunchDaemons"_s, backup + u"_Library_LaunchDaemons"_s, false, true}};
}

bool isLaunchPlistName(const QString& label) {
    return label.endsWith(u".plist"_s) && std::none_of(label.begin(), label.end(), [](QChar c) {
               return c == u'/' || c.category() == QChar::Other_Control;
           });
}

QString disableLaunchPlistCommand(const QString& plist, const LaunchFolder& folder) {
    const QString source = shellQuoted(plist);
    const QString backup = shellQuoted(folder.backupFolder + plist.mid(plist.lastIndexOf(u'/')));
    return u"mkdir -p %1 && rm -f %2 && (launchctl bootout system %3 2>/dev/null || "
           "launchctl unload -w %3 2>/dev/null || true) && mv %3 %2"_s.arg(shellQuoted(folder.backupFolder), backup,
                                                                           source);
}

} // namespace quorvane
