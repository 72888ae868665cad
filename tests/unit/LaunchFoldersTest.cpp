#include "startup/LaunchFolders.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

TEST(LaunchFolders, theUsersFolderGoesBeforeTheSystems) {
    QStringList lines;
    for (const LaunchFolder& folder : launchFolders(u"/Users/alex"_s)) {
        lines.append(folder.path + u" → "_s + folder.backupFolder + (folder.isUsers ? u" user"_s : u""_s) +
                     (folder.isDaemons ? u" daemons"_s : u""_s));
    }
    EXPECT_EQ(
        lines,
        (QStringList{
            u"/Users/alex/Library/LaunchAgents → /Users/alex/.quorvane_backup/UserHome_Library_LaunchAgents user"_s,
            u"/Library/LaunchAgents → /Users/alex/.quorvane_backup/_Library_LaunchAgents"_s,
            u"/Library/LaunchDaemons → /Users/alex/.quorvane_backup/_Library_LaunchDaemons daemons"_s}));
}

TEST(LaunchFolders, theBackupFolderLiesInTheHome) {
    EXPECT_EQ(backupFolder(u"/Users/alex"_s), u"/Users/alex/.quorvane_backup"_s);
}

TEST(LaunchFolders, onlyAPlainFileNameIsALaunchPlistsName) {
    for (const QString& label : {u"com.example.helper.plist"_s, u"My Helper's \"$(x)\".plist"_s, u"-k.plist"_s,
                                 u"a..plist"_s, u"Jörg.plist"_s, u".plist"_s}) {
        SCOPED_TRACE(label.toStdString());
        EXPECT_TRUE(isLaunchPlistName(label));
    }
    for (const QString& label :
         {u""_s, u"."_s, u".."_s, u"plist"_s, u"com.example.helper"_s, u"a.PLIST"_s, u"a.plist "_s, u"../a.plist"_s,
          u"/a.plist"_s, u"x/.plist"_s, u"a\n.plist"_s, u"a\x7f.plist"_s, u"a.plist\n"_s, QString(u"a\0.plist"_s)}) {
        SCOPED_TRACE(label.toStdString());
        EXPECT_FALSE(isLaunchPlistName(label));
    }
}

TEST(LaunchFolders, theCommandTakesThePlistOutOfLaunchdBeforeItMovesIt) {
    const LaunchFolder daemons = launchFolders(u"/Users/alex"_s).at(2);
    EXPECT_EQ(disableLaunchPlistCommand(u"/Library/LaunchDaemons/com.x.plist"_s, daemons),
              u"mkdir -p '/Users/alex/.quorvane_backup/_Library_LaunchDaemons' && "
              "rm -f '/Users/alex/.quorvane_backup/_Library_LaunchDaemons/com.x.plist' && "
              "(launchctl bootout system '/Library/LaunchDaemons/com.x.plist' 2>/dev/null || "
              "launchctl unload -w '/Library/LaunchDaemons/com.x.plist' 2>/dev/null || true) && "
              "mv '/Library/LaunchDaemons/com.x.plist' "
              "'/Users/alex/.quorvane_backup/_Library_LaunchDaemons/com.x.plist'"_s);
}

TEST(LaunchFolders, pathsCantLeaveTheirQuotesInTheCommand) {
    const LaunchFolder folder{u"/L"_s, u"/Users/o'neil/%2"_s, false, false};
    EXPECT_EQ(disableLaunchPlistCommand(u"/L/a'; %1 $(x).plist"_s, folder),
              uR"(mkdir -p '/Users/o'\''neil/%2' && rm -f '/Users/o'\''neil/%2/a'\''; %1 $(x).plist' && )"
              R"((launchctl bootout system '/L/a'\''; %1 $(x).plist' 2>/dev/null || )"
              R"(launchctl unload -w '/L/a'\''; %1 $(x).plist' 2>/dev/null || true) && )"
              R"(mv '/L/a'\''; %1 $(x).plist' '/Users/o'\''neil/%2/a'\''; %1 $(x).plist')"_s);
}

} // namespace
} // namespace quorvane
