#include "actions/SystemScans.h"

#include "fakes/ActionSystem.h"

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

TEST_F(SystemScansTest, aWindowsListenerHasOneFollow) {
    listener->requestsScans = true;
    EXPECT_TRUE(ending(session->networkActions.execute({}, *listener)).succeeded);
    waitForTasks();
    EXPECT_EQ(scanCount(), 1);
}

} // namespace quorvane
