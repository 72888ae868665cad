#include "core/OpenBatch.h"

#include "fakes/MemoryFileManager.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(OpenBatch, entriesJoinInOrderAndAreTakenOnce) {
    OpenBatch batch;
    EXPECT_TRUE(batch.isEmpty());
    batch.queue(u"first && second"_s);
    batch.queueTolerantly({u"mdutil -a -i off"_s, u"pmset -a sms 0"_s});
    batch.queueLabel(u"com.example.helper"_s, {u"third"_s, u"fourth"_s}, {});
    batch.queueLaunchPlistBack(u"/Library/LaunchAgents/a.plist"_s, u"fifth"_s);
    EXPECT_FALSE(batch.isEmpty());
    EXPECT_EQ(batch.takeLine(),
              u"first && second ; mdutil -a -i off || true ; pmset -a sms 0 ; third ; fourth ; fifth"_s);
    EXPECT_TRUE(batch.isEmpty());
}

TEST(OpenBatch, anEntryThatIsQueuedFirstStandsBeforeAllOthers) {
    OpenBatch batch;
    batch.queue(u"second"_s);
    batch.queueFirst(u"first"_s);
    batch.queue(u"third"_s);
    EXPECT_EQ(batch.takeLine(), u"first ; second ; third"_s);
}

TEST(OpenBatch, aMovedFileIsKnownUnderEverySpellingThatItsFolderDoesNotTellApart) {
    MemoryFileManager files;
    files.addFile(u"/Library/LaunchAgents/Tool.plist"_s, "x");
    OpenBatch batch;
    batch.rememberMove(u"/Library/LaunchAgents/Tool.plist"_s);
    EXPECT_TRUE(batch.moves(u"/Library/LaunchAgents/Tool.plist"_s, files));
    EXPECT_TRUE(batch.moves(u"/Library/LaunchAgents/TOOL.plist"_s, files));
    EXPECT_FALSE(batch.moves(u"/Library/LaunchAgents/Other.plist"_s, files));
    files.addFile(u"/Library/LaunchAgents/TOOL.plist"_s, "y");
    EXPECT_FALSE(batch.moves(u"/Library/LaunchAgents/TOOL.plist"_s, files)) << "two files where the folder lists both";
    batch.forgetMoves();
    EXPECT_FALSE(batch.moves(u"/Library/LaunchAgents/Tool.plist"_s, files));
}

TEST(OpenBatch, aLabelThatIsOffByOtherMeansHasNothingToPutBack) {
    OpenBatch batch;
    batch.queueLabel(u"a"_s, {u"first"_s}, {u"[enabled]"_s});
    batch.queueLabel(u"b"_s, {u"second"_s}, {u"[enabled, allowed]"_s});
    EXPECT_TRUE(batch.switchesOff(u"a"_s));
    EXPECT_FALSE(batch.switchesOff(u"c"_s));
    batch.keepLabelOff(u"a"_s);
    EXPECT_TRUE(batch.switchesOff(u"a"_s)) << "its commands still wait";
    const QHash<QString, QStringList> before{{u"b"_s, {u"[enabled, allowed]"_s}}};
    EXPECT_EQ(batch.dispositionsBefore(), before);
}

TEST(OpenBatch, knowsTheLaunchPlistsThatItBringsBack) {
    OpenBatch batch;
    batch.queueLaunchPlistBack(u"/Library/LaunchAgents/a.plist"_s, u"first"_s);
    EXPECT_TRUE(batch.bringsBack(u"/Library/LaunchAgents/a.plist"_s));
    EXPECT_FALSE(batch.bringsBack(u"/Library/LaunchDaemons/a.plist"_s));
    EXPECT_EQ(batch.plistsBroughtBack(), QStringList(u"/Library/LaunchAgents/a.plist"_s));
}

} // namespace quorvane
