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
    batch.queue(u"third"_s);
    batch.queueLaunchPlistBack(u"/Library/LaunchAgents/a.plist"_s, u"fifth"_s);
    EXPECT_FALSE(batch.isEmpty());
    EXPECT_EQ(batch.takeLine(), u"first && second ; mdutil -a -i off || true ; pmset -a sms 0 ; third ; fifth"_s);
    EXPECT_TRUE(batch.isEmpty());
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

TEST(OpenBatch, knowsTheLaunchPlistsThatItBringsBack) {
    OpenBatch batch;
    batch.queueLaunchPlistBack(u"/Library/LaunchAgents/a.plist"_s, u"first"_s);
    EXPECT_TRUE(batch.bringsBack(u"/Library/LaunchAgents/a.plist"_s));
    EXPECT_FALSE(batch.bringsBack(u"/Library/LaunchDaemons/a.plist"_s));
    EXPECT_EQ(batch.plistsBroughtBack(), QStringList(u"/Library/LaunchAgents/a.plist"_s));
}

} // namespace quorvane
