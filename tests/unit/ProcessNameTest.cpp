#include "platform/portable/ProcessName.h"

#include <QProcess>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(ProcessName, isThatOfThisProcessWhichRuns) {
    EXPECT_TRUE(isProcessRunning(ownProcessName()));
    EXPECT_EQ(ownProcessName(), ownProcessName());
}

TEST(ProcessName, ofOneThatHasEndedRunsNoMore) {
    QProcess child;
    child.start(u"/bin/cat"_s, QStringList());
    ASSERT_TRUE(child.waitForStarted());
    const QString name = ownProcessName().section(u'/', 0, 0) + u'/' + QString::number(child.processId());
    EXPECT_TRUE(isProcessRunning(name));
    child.closeWriteChannel();
    ASSERT_TRUE(child.waitForFinished());
    EXPECT_FALSE(isProcessRunning(name));
}

TEST(ProcessName, ofAnotherStartOfTheComputerIsNobodys) {
    const QString number = ownProcessName().section(u'/', -1);
    EXPECT_FALSE(isProcessRunning(u"00000000-0000-4000-8000-000000000000/"_s + number));
}

TEST(ProcessName, thatIsNoneIsNobodys) {
    const QString start = ownProcessName().section(u'/', 0, 0);
    for (const QString& name : {QString(), start, start + u"/"_s, start + u"/0"_s, start + u"/-1"_s,
                                start + u"/99999999999999"_s, start + u"/x"_s}) {
        EXPECT_FALSE(isProcessRunning(name)) << name.toStdString();
    }
}

} // namespace quorvane
