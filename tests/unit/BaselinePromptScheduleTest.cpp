// When the master baseline is offered.

#include "fakes/LaunchedWindow.h"

namespace quorvane {

namespace {

using namespace std::chrono_literals;

class BaselinePromptScheduleTest : public LaunchedWindow {
protected:
    bool isOffered() const { return shownOffer() != nullptr; }
    void waitForTheOffer() {
        processEventsUntil([this] { return isOffered(); });
    }
    /// Everything is over that the launch has begun, and nothing was offered by then.
    void expectNoOffer() {
        waitForTasks();
        EXPECT_FALSE(isOffered());
    }
    /// The first look for a baseline has begun, and takes its time.
    void duringTheLook(const std::function<void()>& something) {
        clock.whenAskedFor = [something, isFirst = true](std::chrono::milliseconds duration) mutable {
            if (duration == 250ms && std::exchange(isFirst, false)) {
                something();
            }
        };
    }
    void addBaseline() { files.addFile(u"/Users/alex/.quorvane/master-baseline-current.json"_s, "{}"); }
};

} // namespace

TEST_F(BaselinePromptScheduleTest, itComesAMomentAfterTheWindow) {
    launch.windowAppeared();
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>(1, 800ms));
    launch.windowPainted();
    EXPECT_FALSE(isOffered());
    waitForTheOffer();
    EXPECT_TRUE(session->system.hasVerifiedSystem()) << "not before the scan";
    EXPECT_FALSE(session->system.isVerifyingSystem());
}

TEST_F(BaselinePromptScheduleTest, itWaitsForTheScanOfTheLaunch) {
    commands.hold();
    appearAndPaint();
    processEventsUntil([this] { return steps.contains(u"label at start: "_s); });
    EXPECT_FALSE(isOffered());
    commands.release();
    commands.holdNoFurther();
    waitForTheOffer();
}

TEST_F(BaselinePromptScheduleTest, withoutAScanThereIsNone) {
    launch.windowAppeared();
    expectNoOffer();
}

TEST_F(BaselinePromptScheduleTest, whereThereIsABaselineItIsNeverOffered) {
    addBaseline();
    appearAndPaint();
    expectNoOffer();
    EXPECT_FALSE(clock.waits.contains(250ms)) << "nobody waited for one";
}

TEST_F(BaselinePromptScheduleTest, itComesOncePerStart) {
    appearAndPaint();
    waitForTheOffer();
    shownOffer()->dismiss();
    launch.windowClosed();
    appearAndPaint();
    session->scans.request();
    expectNoOffer();
}

TEST_F(BaselinePromptScheduleTest, aWindowThatIsClosedBeforeLeavesItToTheNext) {
    appearAndPaint();
    launch.windowClosed();
    expectNoOffer();
    appearAndPaint();
    waitForTheOffer();
}

TEST_F(BaselinePromptScheduleTest, oneThatIsClosedWhileItIsLookedForToo) {
    duringTheLook([this] {
        EXPECT_TRUE(session->turnstile.isIdle()) << "the look is in nobody's way";
        launch.windowClosed();
    });
    appearAndPaint();
    expectNoOffer();
    appearAndPaint();
    waitForTheOffer();
}

TEST_F(BaselinePromptScheduleTest, itWaitsBehindTheLock) {
    enableLock();
    appearAndPaint();
    expectNoOffer();
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    waitForTheOffer();
}

TEST_F(BaselinePromptScheduleTest, itWaitsForWhatRunsOrIsOpen) {
    {
        const Turnstile::Hold sheet = session->turnstile.open();
        appearAndPaint();
        expectNoOffer();
    }
    waitForTheOffer();
}

TEST_F(BaselinePromptScheduleTest, whatBeginsWhileItIsLookedForComesFirst) {
    std::optional<Turnstile::Hold> action;
    duringTheLook([this, &action] { action.emplace(session->turnstile.busy(u"Working…"_s)); });
    appearAndPaint();
    expectNoOffer();
    ASSERT_TRUE(action.has_value());
    action.reset();
    waitForTheOffer();
}

TEST_F(BaselinePromptScheduleTest, aBaselineThatCameMeanwhileIsSeen) {
    {
        const Turnstile::Hold action = session->turnstile.busy(u"Working…"_s);
        appearAndPaint();
        expectNoOffer();
        addBaseline();
    }
    expectNoOffer();
}

TEST_F(BaselinePromptScheduleTest, itDoesNotComeWhileASavedProfileIsInForce) {
    UnifiedProfile plain = live;
    plain.startup = {};
    addProfile(plain);
    session->savedProfiles.list();
    QCoro::waitFor(session->finished());
    session->scans.request();
    waitForTasks();
    makeActive(plain);
    launch.windowAppeared();
    expectNoOffer();
    session->system.recordAppliedConfiguration(numberedProfile(9, u"Gone"_s), {});
    expectNoOffer();
    commands.print(u"/usr/bin/defaults read com.apple.NetworkBrowser DisableAirDrop"_s,
                   "1"); // neither Live nor Default
    session->scans.request();
    waitForTheOffer();
}

} // namespace quorvane
