// The review sheet from its presentation to its end, as the state that a view draws.

#include "actions/ActionTexts.h"
#include "fakes/EventOrders.h"
#include "fakes/WindowActions.h"

#include <QRegularExpression>

namespace quorvane {

namespace {

using ReviewState = ApplyReview::State;

const QString kRestart = u"! Restart Required | \"Live\" has been applied.\n\nPlease reboot your Mac for all settings "
                         "to take full effect. | OK"_s;

class ApplyReviewTest : public WindowActions {
protected:
    void present(const UnifiedProfile& profile) {
        reviews.presentProfile(profile, window, [this](const ProfileApplyResult& result) { results.append(result); });
    }
    void presentUntil(ReviewState state) {
        present(live);
        waitFor(ReviewState::Reviewing);
        if (state != ReviewState::Reviewing) {
            review()->apply();
            waitFor(state);
        }
    }
    /// An action of the test's own that changes the system as soon as the review is agreed to.
    QCoro::Task<ActionOutcome> run(const std::function<void()>& change) {
        return session->stage.run(window, [change](Action& action) -> QCoro::Task<void> {
            Review shown = reviewOf(ReviewSubject::Profile, u"Live"_s);
            shown.prepare = []() -> QCoro::Task<ReviewPreview> { co_return ProfileApplyPreview{u"Live"_s, {}, {}}; };
            if (!co_await action.isAgreedTo(shown)) {
                co_return;
            }
            const UnlockGate::AutoLockSuppression noAutoLock = action.suppressAutoLock();
            const Turnstile::Hold busy = action.carryingOut(u"Dancing…"_s);
            change();
        });
    }

    static PerformanceSettings tweaksWithSiri() {
        PerformanceSettings settings;
        settings.siri = true;
        return settings;
    }

    QList<ProfileApplyResult> results;
};

} // namespace

// ---- Presenting

TEST_F(ApplyReviewTest, theWindowComesForwardAndTheSheetOneTurnLater) {
    reviews.ensureMainWindowVisible = [this] { steps.append(u"window opened"_s); };
    QObject::connect(&reviews, &ApplyReviewCoordinator::requestChanged, [this] { steps.append(u"request"_s); });
    present(live);
    EXPECT_EQ(takeSteps(), (QStringList{u"activate"_s, u"window opened"_s, u"windows to the front"_s}));
    EXPECT_FALSE(reviews.request().has_value());
    waitFor(ReviewState::Reviewing);
    EXPECT_EQ(takeSteps().first(), u"request"_s);
}

TEST_F(ApplyReviewTest, eachPresentationIsAnotherRequest) {
    presentUntil(ReviewState::Reviewing);
    const QUuid first = reviews.request()->id;
    reviews.dismiss();
    waitForTasks();
    presentUntil(ReviewState::Reviewing);
    EXPECT_NE(reviews.request()->id, first);
    EXPECT_FALSE(first.isNull());
}

TEST_F(ApplyReviewTest, itGoesFromLoadingToItsResult) {
    commands.hold();
    present(live);
    waitFor(ReviewState::Loading);
    EXPECT_EQ(review()->preview(), std::nullopt);
    EXPECT_FALSE(review()->canApply());
    review()->apply();
    EXPECT_TRUE(isIn(ReviewState::Loading)) << "there is nothing to agree to yet";
    commands.release();
    commands.holdNoFurther();
    waitFor(ReviewState::Reviewing);
    EXPECT_EQ(std::get<ProfileApplyPreview>(*review()->preview()).startup.willDisable.size(), 1);
    EXPECT_TRUE(review()->canApply());

    commands.hold();
    review()->apply();
    EXPECT_TRUE(isIn(ReviewState::Applying));
    EXPECT_FALSE(review()->canApply());
    processEventsUntil([this] { return session->system.isBusy(); });
    review()->close();
    reviews.dismiss();
    EXPECT_TRUE(isIn(ReviewState::Applying)) << "nothing closes it";
    commands.release();
    commands.holdNoFurther();
    waitFor(ReviewState::Finished);
    EXPECT_EQ(review()->result()->verification, session->system.lastApplyVerification());
    EXPECT_TRUE(results.isEmpty());
    review()->close();
    waitForTasks();
    expectNothingLeft();
    ASSERT_EQ(results.size(), 1);
    EXPECT_EQ(results.first(), (ProfileApplyResult{true, *session->system.lastApplyVerification(), u"Live"_s}));
}

TEST_F(ApplyReviewTest, aPreviewWithNothingToDoCanNotBeApplied) {
    int count = 0;
    reviews.presentTweaks({}, {}, window, [&count](const TweaksApplyResult& result) {
        ++count;
        EXPECT_EQ(result, TweaksApplyResult{});
    });
    waitFor(ReviewState::Reviewing);
    EXPECT_TRUE(review()->preview().has_value());
    EXPECT_FALSE(review()->canApply());
    review()->apply();
    EXPECT_TRUE(isIn(ReviewState::Reviewing));
    review()->close();
    waitForTasks();
    EXPECT_EQ(count, 1);
    EXPECT_FALSE(trace.join(u'\n').contains(u"$> /usr/bin/defaults write"_s));
}

TEST_F(ApplyReviewTest, startupChangesGiveTheirOwnResult) {
    QList<StartupApplyResult> given;
    StartupConfiguration configuration;
    configuration.disableNetworkAtStartup = true;
    reviews.presentStartup(configuration, window, [&given](const StartupApplyResult& result) { given.append(result); });
    waitFor(ReviewState::Reviewing);
    review()->apply();
    waitFor(ReviewState::Finished);
    review()->close();
    waitForTasks();
    ASSERT_EQ(given.size(), 1);
    EXPECT_EQ(given.first().verification, *session->system.lastApplyVerification());
}

TEST_F(ApplyReviewTest, whileOneIsOpenThereIsNoOther) {
    presentUntil(ReviewState::Reviewing);
    const QUuid id = reviews.request()->id;
    takeSteps();
    reviews.presentProfile(numberedProfile(2, u"Club"_s), window,
                           [this](const ProfileApplyResult& result) { results.append(result); });
    EXPECT_EQ(takeSteps(), (QStringList{u"activate"_s, u"windows to the front"_s}));
    EXPECT_EQ(results, QList<ProfileApplyResult>(1, {false, {}, u"Club"_s}));
    EXPECT_EQ(reviews.request()->id, id);
    review()->close();
    waitForTasks();
    EXPECT_EQ(results.size(), 2);
    EXPECT_EQ(results.last().profileName, u"Live"_s) << "each has its own callback";
}

TEST_F(ApplyReviewTest, aCallbackIsForItsOwnPresentationOnly) {
    int earlier = 0;
    reviews.presentStartup({}, window, [&earlier](const StartupApplyResult&) { ++earlier; });
    waitFor(ReviewState::Reviewing);
    review()->close();
    waitForTasks();
    ASSERT_EQ(earlier, 1);

    presentUntil(ReviewState::Reviewing);
    review()->apply();
    waitFor(ReviewState::Finished);
    review()->close();
    waitForTasks();
    EXPECT_EQ(earlier, 1);
    EXPECT_EQ(results.size(), 1);
}

TEST_F(ApplyReviewTest, withoutACallbackItRunsAllTheSame) {
    reviews.presentProfile(live, window, {});
    waitFor(ReviewState::Reviewing);
    review()->close();
    waitForTasks();
    expectNothingLeft();
}

// ---- Closing, and what goes wrong

TEST_F(ApplyReviewTest, oneThatIsClosedWhileItLoadsIsGoneAtOnce) {
    commands.hold();
    present(live);
    waitFor(ReviewState::Loading);
    review()->close();
    EXPECT_FALSE(reviews.request().has_value());
    processEventsUntil([this] { return session->turnstile.isIdle(); });
    EXPECT_EQ(results.size(), 1) << "nobody waits for what it was about to show";
    commands.release();
    commands.holdNoFurther();
    waitForTasks();
    expectNothingLeft();
}

TEST_F(ApplyReviewTest, aPreviewThatCanNotBeReadEndsIt) {
    Review broken = reviewOf(ReviewSubject::Tweaks);
    broken.prepare = []() -> QCoro::Task<ReviewPreview> {
        throw std::runtime_error("no eyes");
        co_return TweaksApplyPreview{};
    };
    QCoro::Task<ActionOutcome> action = session->stage.run(window, [broken](Action& running) -> QCoro::Task<void> {
        running.outcome.succeeded = co_await running.isAgreedTo(broken);
    });
    EXPECT_FALSE(QCoro::waitFor(action).succeeded);
    EXPECT_EQ(session->system.logMessages(), QStringList(u"  [ERROR] no eyes"_s));
    expectNothingLeft();
}

TEST_F(ApplyReviewTest, anExceptionEndsItAsAFailedApply) {
    QCoro::Task<ActionOutcome> action = run([] { throw std::runtime_error("a leg is broken"); });
    waitFor(ReviewState::Reviewing);
    review()->apply();
    waitFor(ReviewState::Finished);
    EXPECT_EQ(review()->result()->title, u"Some changes could not be verified"_s);
    EXPECT_EQ(session->system.logMessages(), QStringList(u"  [ERROR] a leg is broken"_s));
    EXPECT_FALSE(session->system.isBusy());
    EXPECT_FALSE(lock->isAutoLockSuppressed());
    EXPECT_FALSE(session->turnstile.isIdle()) << "the sheet is open";
    review()->close();
    EXPECT_FALSE(QCoro::waitFor(action).succeeded);
    expectNothingLeft();
}

TEST_F(ApplyReviewTest, anApplyWithoutAWordOfItsOwnIsToldAsAFailedOne) {
    QCoro::Task<ActionOutcome> action = run([] {});
    waitFor(ReviewState::Reviewing);
    review()->apply();
    waitFor(ReviewState::Finished);
    EXPECT_EQ(review()->result()->symbol, u"exclamationmark.triangle.fill"_s);
    review()->close();
    QCoro::waitFor(action);
}

TEST_F(ApplyReviewTest, aLockThatComesBeforeTheFirstChangeTakesItAway) {
    enableLock();
    presentUntil(ReviewState::Reviewing);
    review()->apply();
    lock->lockIfEnabled(); // before anybody hears of it
    waitForTasks();
    expectNothingLeft();
    EXPECT_EQ(results, QList<ProfileApplyResult>(1, {false, {}, u"Live"_s}));
    EXPECT_EQ(lastApplied(), QString());
}

TEST_F(ApplyReviewTest, soDoesSomethingElseThatRuns) {
    presentUntil(ReviewState::Reviewing);
    review()->apply();
    session->system.beginBusy(u"Something else…"_s);
    waitForTasks();
    EXPECT_FALSE(reviews.request().has_value());
    EXPECT_EQ(results.size(), 1);
    session->system.endBusy();
    expectNothingLeft();
}

TEST_F(ApplyReviewTest, theLockLeavesAnOpenReviewWhereItIs) {
    enableLock();
    presentUntil(ReviewState::Reviewing);
    lock->lockIfEnabled();
    EXPECT_TRUE(isIn(ReviewState::Reviewing));
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    review()->apply();
    waitFor(ReviewState::Finished);
    EXPECT_EQ(lastApplied(), u"Live"_s);
}

TEST_F(ApplyReviewTest, afterTheShutDownThereIsNone) {
    shutDown();
    takeSteps();
    EXPECT_FALSE(QCoro::waitFor(window.review(reviewOf(ReviewSubject::Tweaks))));
    QCoro::waitFor(window.showResult({}));
    EXPECT_EQ(takeSteps(), QStringList());
    expectNothingLeft();
}

// ---- What follows an apply

TEST_F(ApplyReviewTest, theLockIsKeptOffOnlyWhileItApplies) {
    enableLock();
    alerts.hold();
    scripts.carryOut = [this](const QString&) {
        lock->applicationWillResignActive();
        EXPECT_TRUE(lock->isUnlocked()) << "its own prompt takes the active state away";
    };
    presentUntil(ReviewState::Finished);
    EXPECT_FALSE(session->system.isBusy());
    processEventsUntil([this] { return alerts.openCount() == 1; });
    EXPECT_EQ(takeSteps().last(), kRestart);
    lock->applicationWillResignActive();
    EXPECT_FALSE(lock->isUnlocked());
    EXPECT_EQ(alerts.openCount(), 0) << "it is answered with its only button";
    EXPECT_TRUE(isIn(ReviewState::Finished)) << "the result waits behind the lock";
    review()->close();
    waitForTasks();
    EXPECT_TRUE(results.first().applySucceeded);
    expectNothingLeft();
}

TEST_F(ApplyReviewTest, itLocksAsWellWhileTheResultIsUp) {
    enableLock();
    reviews.presentTweaks(tweaksWithSiri(), {}, window, {});
    waitFor(ReviewState::Reviewing);
    review()->apply();
    waitFor(ReviewState::Finished);
    lock->applicationWillResignActive();
    EXPECT_FALSE(lock->isUnlocked());
}

TEST_F(ApplyReviewTest, whatFollowsComesInItsOrder) {
    alerts.hold();
    QObject::connect(&reviews, &ApplyReviewCoordinator::requestChanged, [this] {
        if (review()) {
            QObject::connect(review().get(), &ApplyReview::changed, [this] {
                if (isIn(ReviewState::Finished)) {
                    steps.append(u"result"_s);
                }
            });
        }
    });
    reviews.presentProfile(live, window, [this](const ProfileApplyResult&) { steps.append(u"callback"_s); });
    waitFor(ReviewState::Reviewing);
    review()->apply();
    processEventsUntil([this] { return alerts.openCount() == 1; });
    const QStringList before = takeSteps();
    EXPECT_EQ(before.mid(before.indexOf(u"result"_s)),
              (QStringList{u"result"_s, u"idle"_s, u"post: QuorvaneProfileApplied"_s, u"label: Live"_s, kRestart}));
    EXPECT_EQ(session->activeProfile.current().name, u"Live"_s);
    EXPECT_EQ(session->workingCopy.currentProfile(), live);
    alerts.answer(0);
    review()->close();
    waitForTasks();
    EXPECT_EQ(takeSteps().filter(u"callback"_s).size(), 1);
}

TEST_F(ApplyReviewTest, tweaksWhosePromptWasRefusedAreReadBack) {
    scripts.failNext(u"User canceled."_s);
    PerformanceSettings settings;
    settings.siri = true;
    settings.usbPower = true;
    TweaksApplyResult given;
    reviews.presentTweaks(settings, {}, window, [&given](const TweaksApplyResult& result) { given = result; });
    waitFor(ReviewState::Reviewing);
    review()->apply();
    waitFor(ReviewState::Finished);
    EXPECT_EQ(review()->result()->title, u"Some changes could not be verified"_s);
    const ApplyVerificationResult shown = review()->result()->verification;
    EXPECT_EQ(shown.verified.size() + shown.failed.size(), 2) << "each that was to be applied";
    review()->close();
    waitForTasks();
    EXPECT_EQ(given, (TweaksApplyResult{false, shown}));
}

// ---- Whatever comes, in whatever order

namespace {

/// One review of a real profile up to a state, and then what a test lets happen to it.
class DisturbedReview final : public WindowActions {
public:
    enum class Stage { Presented, Loading, Reviewing, Agreed, Applying, Telling, Finished };
    enum class Event { Lock, WindowCloses, ShutDown, Exception };

    explicit DisturbedReview(Stage stage) {
        enableLock();
        alerts.hold();
        commands.hold();
        commands.respond = [this, answer = commands.respond](const QStringList& arguments) {
            if (isBroken) {
                throw std::runtime_error("out of order");
            }
            return answer(arguments);
        };
        reviews.presentProfile(live, window, [this](const ProfileApplyResult&) { ++callbacks; });
        advanceTo(stage);
    }
    ~DisturbedReview() override { shutDown(); }

    void happens(Event event) {
        switch (event) {
        case Event::Lock:
            lock->lockIfEnabled();
            break;
        case Event::WindowCloses:
            reviews.dismiss();
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
    /// The Mac answers, and the user sees to what is still open.
    void comesToItsEnd() {
        processEventsUntil([this] {
            commands.release();
            alerts.answer(0);
            lock->unlockWithPassword(kPassword);
            reviews.dismiss();
            return session->tasks.count() == 0;
        });
        EXPECT_EQ(callbacks, 1);
        expectNothingLeft();
    }

private:
    void TestBody() override {}
    void advanceTo(Stage stage) {
        if (stage >= Stage::Loading) {
            waitFor(ReviewState::Loading);
        }
        if (stage >= Stage::Reviewing) {
            commands.release();
            commands.holdNoFurther();
            waitFor(ReviewState::Reviewing);
        }
        if (stage >= Stage::Agreed) {
            commands.hold();
            review()->apply();
        }
        if (stage >= Stage::Applying) {
            processEventsUntil([this] { return session->system.isBusy(); });
        }
        if (stage >= Stage::Telling) {
            commands.release();
            commands.holdNoFurther();
            processEventsUntil([this] { return alerts.openCount() == 1; });
        }
        if (stage >= Stage::Finished) {
            alerts.answer(0);
            processEventsUntil([this] { return isIn(ReviewState::Finished) && alerts.openCount() == 0; });
        }
    }

    bool isBroken = false;
    int callbacks = 0;
};

} // namespace

TEST(DisturbedReviewTest, leavesNothingBehindWhateverHappensInWhateverOrder) {
    using Stage = DisturbedReview::Stage;
    using Event = DisturbedReview::Event;
    const QList<Event> events{Event::Lock, Event::WindowCloses, Event::ShutDown, Event::Exception};
    for (const Stage stage : {Stage::Presented, Stage::Loading, Stage::Reviewing, Stage::Agreed, Stage::Applying,
                              Stage::Telling, Stage::Finished}) {
        for (const QList<Event>& order : ordersOf(events)) {
            for (const bool takesTurns : {false, true}) {
                SCOPED_TRACE(traceOf(stage, order));
                DisturbedReview disturbed(stage);
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
