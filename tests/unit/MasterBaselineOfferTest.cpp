// The offer of a master baseline from its sheet to its end, and whatever gets in between.

#include "actions/MasterBaselineOffer.h"
#include "fakes/EventOrders.h"
#include "fakes/WindowActions.h"

namespace quorvane {

namespace {

using OfferState = MasterBaselineOffer::State;

const QString kQuestion =
    u"! Replace Restore Baseline? | “Live” is active. A snapshot taken now saves its settings, and "
    "Revert and Reinstate will return to them. | Replace, Cancel"_s;
const QString kNotSaved = u"The baseline could not be saved. Check the Logs tab for details."_s;

const QString kCurrent = u"/Users/alex/.quorvane/master-baseline-current.json"_s;

class MasterBaselineOfferTest : public WindowActions {
protected:
    void offer() {
        session->tasks.start(session->systemActions.offerMasterBaseline(window));
        ASSERT_NE(shownOffer(), nullptr);
    }
    QString text() const { return std::dynamic_pointer_cast<MasterBaselineOffer>(shownOffer())->text(); }
    void createAndWaitFor(OfferState state) {
        shownOffer()->accept();
        processEventsUntil([this, state] { return shownOffer() && shownOffer()->state() == state; });
    }
    void saves() {
        shownOffer()->accept();
        waitForTasks();
        expectNothingLeft();
        EXPECT_TRUE(files.exists(kCurrent));
    }
};

} // namespace

TEST_F(MasterBaselineOfferTest, aBaselineThatIsThereClosesIt) {
    int snapshotChanges = 0;
    QObject::connect(&window, &WindowListener::snapshotChanged, [&snapshotChanges] { ++snapshotChanges; });
    offer();
    EXPECT_EQ(shownOffer()->state(), OfferState::Offered);
    EXPECT_EQ(text(), QString());
    EXPECT_FALSE(session->turnstile.isIdle()) << "its sheet is open";
    commands.hold();
    createAndWaitFor(OfferState::Saving);
    EXPECT_EQ(text(), u"Capturing your current system settings…"_s);
    EXPECT_EQ(session->system.busyMessage(), text());
    shownOffer()->dismiss();
    shownOffer()->accept();
    EXPECT_EQ(shownOffer()->state(), OfferState::Saving) << "nothing closes it";
    commands.release();
    commands.holdNoFurther();
    waitForTasks();
    expectNothingLeft();
    EXPECT_TRUE(files.read(kCurrent).contains("Master baseline"));
    EXPECT_EQ(snapshotChanges, 1);
    EXPECT_EQ(takeSteps().filter(u"! "_s), QStringList()) << "the sheet has said it";
}

TEST_F(MasterBaselineOfferTest, notNowClosesIt) {
    offer();
    shownOffer()->dismiss();
    EXPECT_EQ(shownOffer(), nullptr);
    waitForTasks();
    expectNothingLeft();
    EXPECT_FALSE(files.exists(kCurrent));
}

TEST_F(MasterBaselineOfferTest, withoutABaselineItStaysAndSaysSo) {
    offer();
    files.failOn(MemoryFileManager::Operation::Write, kCurrent);
    createAndWaitFor(OfferState::Failed);
    EXPECT_EQ(text(), kNotSaved);
    EXPECT_FALSE(session->system.isBusy());
    files.addFile(kCurrent, "{}"); // from elsewhere
    saves();
}

TEST_F(MasterBaselineOfferTest, anExceptionLeavesItOfferedOnceMore) {
    offer();
    commands.respond = [](const QStringList&) -> std::optional<CommandOutcome> {
        throw std::runtime_error("out of order");
    };
    createAndWaitFor(OfferState::Failed);
    EXPECT_EQ(text(), kNotSaved);
    EXPECT_TRUE(session->system.logMessages().contains(u"  [ERROR] out of order"_s));
    EXPECT_FALSE(session->system.isBusy());
    shownOffer()->dismiss();
    waitForTasks();
    expectNothingLeft();
}

TEST_F(MasterBaselineOfferTest, aClosedGateLeavesItOffered) {
    enableLock();
    offer();
    lock->lockIfEnabled();
    EXPECT_EQ(shownOffer()->state(), OfferState::Offered) << "it waits behind the lock";
    takeSteps();
    shownOffer()->accept();
    processEventsUntil([this] { return !steps.isEmpty(); });
    EXPECT_EQ(takeSteps().last(),
              u"! Quorvane is Locked | Enter your app password in the Quorvane window to create the "
              "master system baseline. | OK"_s);
    QCoreApplication::processEvents();
    EXPECT_EQ(shownOffer()->state(), OfferState::Offered);
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    saves();
}

TEST_F(MasterBaselineOfferTest, whereAProfileIsInForceItAsks) {
    makeActive(live);
    alerts.press(1);
    offer();
    shownOffer()->accept();
    processEventsUntil([this] { return steps.contains(kQuestion); });
    QCoreApplication::processEvents();
    EXPECT_EQ(shownOffer()->state(), OfferState::Offered) << "cancelled";
    EXPECT_FALSE(files.exists(kCurrent));
    alerts.press(0);
    saves();
}

TEST_F(MasterBaselineOfferTest, anAnswerToAnOfferThatIsOverChangesNothing) {
    makeActive(live);
    alerts.hold();
    offer();
    shownOffer()->accept();
    processEventsUntil([this] { return alerts.openCount() == 1; });
    shownOffer()->dismiss();
    EXPECT_EQ(shownOffer(), nullptr);
    alerts.answer(0);
    waitForTasks();
    expectNothingLeft();
    EXPECT_FALSE(files.exists(kCurrent));
}

TEST_F(MasterBaselineOfferTest, afterTheShutDownThereIsNone) {
    window.shutDown();
    session->tasks.start(session->systemActions.offerMasterBaseline(window));
    EXPECT_EQ(shownOffer(), nullptr);
    waitForTasks();
    expectNothingLeft();
}

// ---- Whatever comes, in whatever order

namespace {

/// One offer up to a state, and then what a test lets happen to it.
class DisturbedOffer final : public WindowActions {
public:
    enum class Stage { Offered, Wanted, Asking, Saving, Failed };
    enum class Event { Lock, WindowCloses, ShutDown, Exception };

    explicit DisturbedOffer(Stage stage) {
        enableLock();
        makeActive(live);
        alerts.hold();
        commands.hold();
        commands.respond = [this, answer = commands.respond](const QStringList& arguments) {
            if (isBroken) {
                throw std::runtime_error("out of order");
            }
            return answer(arguments);
        };
        session->tasks.start(session->systemActions.offerMasterBaseline(window));
        advanceTo(stage);
    }
    ~DisturbedOffer() override { shutDown(); }

    void happens(Event event) {
        switch (event) {
        case Event::Lock:
            lock->lockIfEnabled();
            break;
        case Event::WindowCloses:
            windowCloses();
            break;
        case Event::ShutDown:
            window.shutDown();
            session->endPorts();
            break;
        case Event::Exception:
            isBroken = true;
            commands.release();
            break;
        }
    }
    void comesToItsEnd() {
        processEventsUntil([this] {
            commands.release();
            alerts.answer(0);
            lock->unlockWithPassword(kPassword);
            windowCloses();
            return session->tasks.count() == 0;
        });
        expectNothingLeft();
    }

private:
    void TestBody() override {}
    void windowCloses() {
        if (const std::shared_ptr<SheetOffer> offer = shownOffer()) {
            offer->dismiss();
        }
    }
    void advanceTo(Stage stage) {
        if (stage >= Stage::Wanted) {
            shownOffer()->accept();
        }
        if (stage >= Stage::Asking) {
            processEventsUntil([this] { return alerts.openCount() == 1; });
        }
        if (stage >= Stage::Saving) {
            alerts.answer(0);
            processEventsUntil([this] { return shownOffer()->state() == OfferState::Saving; });
        }
        if (stage >= Stage::Failed) {
            files.failOn(MemoryFileManager::Operation::Write, kCurrent);
            commands.release();
            commands.holdNoFurther();
            processEventsUntil([this] { return shownOffer()->state() == OfferState::Failed; });
        }
    }

    bool isBroken = false;
};

} // namespace

TEST(DisturbedOfferTest, leavesNothingBehindWhateverHappensInWhateverOrder) {
    using Stage = DisturbedOffer::Stage;
    using Event = DisturbedOffer::Event;
    const QList<Event> events{Event::Lock, Event::WindowCloses, Event::ShutDown, Event::Exception};
    for (const Stage stage : {Stage::Offered, Stage::Wanted, Stage::Asking, Stage::Saving, Stage::Failed}) {
        for (const QList<Event>& order : ordersOf(events)) {
            for (const bool takesTurns : {false, true}) {
                SCOPED_TRACE(traceOf(stage, order));
                DisturbedOffer disturbed(stage);
                for (const Event event : order) {
                    disturbed.happens(event);
                    if (takesTurns) {
                        QCoreApplication::processEvents();
                    }
                }
                disturbed.comesToItsEnd();
                ASSERT_FALSE(::testing::Test::HasFailure());
            }
        }
    }
}

} // namespace quorvane
