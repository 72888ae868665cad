#include "startup/launchd/LaunchFolders.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

TEST(LaunchFolders, theUsersFolderGoesBeforeTheSystems) {
    QStringList lines;
    for (const LaunchFolder& folder : launchFolders(u"/Users/alex"_s)) {
        lines.append(folder.path + u" → "_s + folder.backupFolder + u" | "_s + folder.keepFolder +
                     (folder.isUsers ? u" user"_s : u""_s) + (folder.isDaemons ? u" daemons"_s : u""_s));
    }
    EXPECT_EQ(
        lines,
        (QStringList{
            u"/Users/alex/Library/LaunchAgents → /Users/alex/.quorvane_backup/UserHome_Library_LaunchAgents |  user"_s,
            u"/Library/LaunchAgents → /Users/alex/.quorvane_backup/_Library_LaunchAgents | "
            "/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchAgents"_s,
            u"/Library/LaunchDaemons → /Users/alex/.quorvane_backup/_Library_LaunchDaemons | "
            "/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons daemons"_s}));
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
    EXPECT_EQ(disableLaunchPlistCommand(u"/Library/LaunchDaemons/com.x.plist"_s, daemons,
                                        {u"take it out"_s, u"keep it out"_s}),
              u"mkdir -p '/Users/alex/.quorvane_backup/_Library_LaunchDaemons' && "
              "rm -f '/Users/alex/.quorvane_backup/_Library_LaunchDaemons/com.x.plist' && "
              "(take it out ; keep it out ; true) && "
              "mv '/Library/LaunchDaemons/com.x.plist' "
              "'/Users/alex/.quorvane_backup/_Library_LaunchDaemons/com.x.plist'"_s);
}

TEST(LaunchFolders, pathsCantLeaveTheirQuotesInTheCommand) {
    const LaunchFolder folder{u"/L"_s, u"/Users/o'neil/%2"_s, u"/K'%3"_s, false, true};
    EXPECT_EQ(disableLaunchPlistCommand(u"/L/a'; %1 $(x).plist"_s, folder, {u"out %1"_s}),
              uR"(mkdir -p '/Users/o'\''neil/%2' && rm -f '/Users/o'\''neil/%2/a'\''; %1 $(x).plist' && )"
              R"((out %1 ; true) && )"
              R"(mv '/L/a'\''; %1 $(x).plist' '/Users/o'\''neil/%2/a'\''; %1 $(x).plist')"_s);
    EXPECT_EQ(keepLaunchPlistCommand(u"/L/a'; %1 $(x).plist"_s, folder),
              uR"(mkdir -p '/K'\''%3' && cp -p '/L/a'\''; %1 $(x).plist' '/K'\''%3/a'\''; %1 $(x).plist')"_s);
    EXPECT_EQ(requireRealBackupFolderCommand(folder),
              uR"([ ! -L '/Users/o'\''neil' ] && [ ! -L '/Users/o'\''neil/%2' ])"_s);
    const QString started = uR"(launchctl enable 'system/b'\''; %1' ; launchctl enable 'gui/501/b'\''; %1' ; )"
                            R"(launchctl bootstrap system '/L/a'\''; %2.plist' ; )"_s;
    EXPECT_EQ(reinstateLaunchPlistCommand({u"a'; %2.plist"_s, folder, u"b'; %1"_s}, 501),
              uR"(( ([ -e '/L/a'\''; %2.plist' ] || [ -L '/L/a'\''; %2.plist' ]) && ()"_s + started +
                  uR"(mv '/K'\''%3/a'\''; %2.plist' '/K'\''%3/a'\''; %2.plist.replaced' ; true) || ()"
                  R"(cp -p '/K'\''%3/a'\''; %2.plist' '/K'\''%3/a'\''; %2.plist.new' && )"
                  R"(mv '/K'\''%3/a'\''; %2.plist.new' '/L/a'\''; %2.plist' && ()"_s +
                  started + uR"(rm -f '/K'\''%3/a'\''; %2.plist'))) 2>/dev/null || true)"_s);
}

TEST(LaunchFolders, aCopyOfASystemPlistGoesIntoAFolderOfRoot) {
    const LaunchFolder agents = launchFolders(u"/Users/alex"_s).at(1);
    EXPECT_EQ(keepLaunchPlistCommand(u"/Library/LaunchAgents/com.x.plist"_s, agents),
              u"mkdir -p '/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchAgents' && "
              "cp -p '/Library/LaunchAgents/com.x.plist' "
              "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchAgents/com.x.plist'"_s);
}

TEST(LaunchFolders, aLinkInThePlaceOfABackupFolderStopsTheLineOfRoot) {
    EXPECT_EQ(requireRealBackupFolderCommand(launchFolders(u"/Users/alex"_s).at(2)),
              u"[ ! -L '/Users/alex/.quorvane_backup' ] && "
              "[ ! -L '/Users/alex/.quorvane_backup/_Library_LaunchDaemons' ]"_s);
}

TEST(LaunchFolders, onlyADaemonIsLoadedByRootAndOnlyUnderALabelAnythingIs) {
    const QList<LaunchFolder> folders = launchFolders(u"/Users/alex"_s);
    const QString kept = u"'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchAgents/x.plist"_s;
    const QString taken =
        u"( ([ -e '/Library/LaunchAgents/x.plist' ] || [ -L '/Library/LaunchAgents/x.plist' ]) && ("_s;
    const QString setAside = u"mv "_s + kept + u"' "_s + kept + u".replaced' ; true) || (cp -p "_s + kept + u"' "_s +
                             kept + u".new' && mv "_s + kept + u".new' '/Library/LaunchAgents/x.plist' && ("_s;
    const QString end = u"rm -f "_s + kept + u"'))) 2>/dev/null || true"_s;
    const QString started = u"launchctl enable 'system/com.x' ; launchctl enable 'gui/502/com.x' ; "_s;
    EXPECT_EQ(reinstateLaunchPlistCommand({u"x.plist"_s, folders.at(1), u"com.x"_s}, 502),
              taken + started + setAside + started + end);
    EXPECT_EQ(reinstateLaunchPlistCommand({u"x.plist"_s, folders.at(1), {}}, 502), taken + setAside + end);
    const QString daemon = reinstateLaunchPlistCommand({u"x.plist"_s, folders.at(2), u"com.x"_s}, 502);
    EXPECT_EQ(daemon.count(u" ; launchctl bootstrap system '/Library/LaunchDaemons/x.plist' ; "_s), 2);
}

TEST(LaunchFolders, aPlistWhoseOverrideIsRecordedLiftsNoOther) {
    const QList<LaunchFolder> folders = launchFolders(u"/Users/alex"_s);
    const QString agent = reinstateLaunchPlistCommand({u"x.plist"_s, folders.at(1), u"com.x"_s, true}, 502);
    EXPECT_EQ(agent, reinstateLaunchPlistCommand({u"x.plist"_s, folders.at(1), {}}, 502));
    const QString daemon = reinstateLaunchPlistCommand({u"x.plist"_s, folders.at(2), u"com.x"_s, true}, 502);
    EXPECT_FALSE(daemon.contains(u"launchctl enable"_s));
    EXPECT_EQ(daemon.count(u"launchctl bootstrap system '/Library/LaunchDaemons/x.plist' ; "_s), 2);
}

} // namespace
} // namespace quorvane
