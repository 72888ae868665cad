#include "actions/SystemScans.h"

#include "fakes/ActionSystem.h"
#include "fakes/ReadingLines.h"

namespace quorvane {

namespace {

class SystemScansTest : public ActionSystem {
protected:
    int scanCount() const {
        return static_cast<int>(
            session->system.logMessages().count(u"\n[VERIFY] Scanning current system settings..."_s));
    }
    void waitForTasks() {
        processEventsUntil([this] { return session->tasks.count() == 0; });
    }
};

} // namespace

TEST_F(SystemScansTest, aRequestedScanRunsByItself) {
    session->scans.request();
    waitForTasks();
    EXPECT_EQ(scanCount(), 1);
    EXPECT_TRUE(session->system.hasVerifiedSystem());
}

TEST_F(SystemScansTest, requestsWhileSomethingIsOpenFollowOnce) {
    {
        const Turnstile::Hold sheet = session->turnstile.open();
        session->scans.request();
        session->scans.request();
        EXPECT_EQ(scanCount(), 0);
    }
    waitForTasks();
    EXPECT_EQ(scanCount(), 1);
}

TEST_F(SystemScansTest, oneThatAnActionHasOvertakenIsRepeatedAfterIt) {
    commands.hold();
    session->scans.request();
    EXPECT_EQ(scanCount(), 1);
    EXPECT_TRUE(session->turnstile.isIdle()) << "nobody has to wait for it";
    {
        const Turnstile::Hold action = session->turnstile.open();
        commands.release();
        waitForTasks();
        EXPECT_EQ(scanCount(), 1);
    }
    waitForTasks();
    EXPECT_EQ(scanCount(), 2);
}

TEST_F(SystemScansTest, oneThatAnActionOvertakesIsGivenUp) {
    const auto commandsRun = [this] { return trace.filter(u"$> "_s).size(); };
    session->scans.request();
    waitForTasks();
    const qsizetype commandCount = commandsRun();
    ASSERT_GT(commandCount, 10);
    for (qsizetype overtaken = 1; overtaken <= commandCount; ++overtaken) {
        SCOPED_TRACE(overtaken);
        trace.clear();
        steps.clear();
        std::optional<Turnstile::Hold> action;
        commands.respond = [&, left = overtaken](const QStringList&) mutable {
            if (--left == 0) {
                action.emplace(session->turnstile.open());
                commands.print(reading::kAppNap, QByteArray::number(overtaken % 2)); // the action changes the Mac
            }
            return std::optional<CommandOutcome>();
        };
        session->scans.request();
        waitForTasks();
        EXPECT_EQ(commandsRun(), overtaken) << "it ends at its next reading";
        EXPECT_EQ(takeSteps(), QStringList(u"log: [VERIFY] Scanning current system settings..."_s));
        action.reset();
        waitForTasks();
        EXPECT_EQ(takeSteps(), (QStringList{u"log: [VERIFY] Scanning current system settings..."_s,
                                            u"post: QuorvaneSystemVerified"_s}))
            << "repeated, whole";
        EXPECT_FALSE(session->system.isVerifyingSystem());
    }
}

TEST_F(SystemScansTest, aWindowsListenerHasOneFollow) {
    listener->requestsScans = true;
    EXPECT_TRUE(ending(session->networkActions.execute({}, *listener)).succeeded);
    waitForTasks();
    EXPECT_EQ(scanCount(), 1);
}

} // namespace quorvane
