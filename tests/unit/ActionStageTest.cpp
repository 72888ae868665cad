// What all actions have in common, by actions that a test makes up.

#include "actions/ActionStage.h"

#include "actions/ActionTexts.h"
#include "fakes/ActionSystem.h"

namespace quorvane {

namespace {

class ActionStageTest : public ActionSystem {
protected:
    QCoro::Task<ActionOutcome> run(ActionStage::Body body) { return session->stage.run(*listener, std::move(body)); }
    /// Gate, question, bracket, flow, alert.
    QCoro::Task<ActionOutcome> runWhole() {
        return run([this](Action& action) -> QCoro::Task<void> {
            if (!co_await action.passesGate(u"dance"_s)) {
                co_return;
            }
            if (!co_await action.isAgreedTo(deleteQuestion(u"Live"_s))) {
                co_return;
            }
            {
                const Turnstile::Hold busy = action.carryingOut(u"Dancing…"_s, {.match = true});
                session->system.log(u"One step."_s);
            }
            action.outcome.succeeded = true;
            co_await action.tell({u"Danced"_s, u"Well."_s});
        });
    }
    void expectNothingCameOf(const ActionOutcome& outcome) {
        EXPECT_FALSE(outcome.wasCarriedOut);
        EXPECT_FALSE(outcome.succeeded);
        EXPECT_EQ(outcome.alert, std::nullopt);
        EXPECT_FALSE(session->system.isBusy() && steps.contains(u"busy: Dancing…"_s));
    }

    const QString kQuestion = u"! Delete Profile? | “Live” will be removed from saved profiles and the menu bar. This "
                              "cannot be undone. | Delete, Cancel"_s;
    const QStringList kCarriedOut{u"busy: Dancing…"_s, u"log: One step."_s, u"idle"_s, u"! Danced | Well. | OK"_s,
                                  u"anew: match"_s};
};

} // namespace

TEST_F(ActionStageTest, takesItsStepsInOrder) {
    const ActionOutcome outcome = ending(runWhole());
    EXPECT_TRUE(outcome.wasCarriedOut);
    EXPECT_TRUE(outcome.succeeded);
    EXPECT_EQ(outcome.alert, (ClosingAlert{u"Danced"_s, u"Well."_s}));
    EXPECT_EQ(takeSteps(), QStringList(kQuestion) + kCarriedOut);
    EXPECT_TRUE(session->turnstile.isIdle());
}

TEST_F(ActionStageTest, whatIsToldKeepsItsStyle) {
    QCoro::waitFor(listener->tell({u"Danced"_s, u"Well."_s}));
    EXPECT_EQ(alerts.lastStyle(), AlertStyle::Informational);
    QCoro::waitFor(listener->tell({u"Fell"_s, u"Off the stage."_s, AlertStyle::Warning}));
    EXPECT_EQ(alerts.lastStyle(), AlertStyle::Warning);
}

TEST_F(ActionStageTest, theLockEndsItWithAWord) {
    enableLock();
    lock->lockIfEnabled();
    expectNothingCameOf(ending(runWhole()));
    EXPECT_EQ(takeSteps(),
              (QStringList{u"activate"_s, u"windows to the front"_s,
                           u"! Quorvane is Locked | Enter your app password in the Quorvane window to dance. | OK"_s}));
    EXPECT_TRUE(session->turnstile.isIdle());
}

TEST_F(ActionStageTest, theCancelButtonEndsItWithoutATrace) {
    alerts.press(1);
    expectNothingCameOf(ending(runWhole()));
    EXPECT_EQ(takeSteps(), QStringList(kQuestion));
    EXPECT_TRUE(session->turnstile.isIdle());
}

TEST_F(ActionStageTest, whoIsNotAskedAgrees) {
    class SilentListener final : public ActionListener {
    public:
        bool asks() const override { return false; }
        QCoro::Task<bool> ask(Alert) override { co_return false; }
        QCoro::Task<void> tell(ClosingAlert) override { co_return; }
        QCoro::Task<bool> review(Review) override { co_return false; }
        QCoro::Task<void> showResult(ResultPanel) override { co_return; }
        void withdrawReview() override {}
        void showSheet(std::shared_ptr<SheetModel>) override {}
        QCoro::Task<void> readAnew(Anew) override { co_return; }
    };
    SilentListener silent;
    const auto body = [](Action& action) -> QCoro::Task<void> {
        action.outcome.succeeded = co_await action.isAgreedTo(defaultQuestion());
    };
    EXPECT_TRUE(ending(session->stage.run(silent, body)).succeeded);
}

TEST_F(ActionStageTest, aLockThatEngagesMeanwhileCancelsTheQuestion) {
    enableLock();
    alerts.hold();
    QCoro::Task<ActionOutcome> action = runWhole();
    EXPECT_EQ(alerts.openCount(), 1);
    lock->lockIfEnabled();
    EXPECT_EQ(alerts.openCount(), 0);
    expectNothingCameOf(QCoro::waitFor(action));
    EXPECT_EQ(takeSteps(), QStringList(kQuestion));
}

TEST_F(ActionStageTest, itIsOverWhereTheProgramIsLockedWhenTheAnswerComes) {
    enableLock();
    alerts.hold();
    QCoro::Task<ActionOutcome> action = runWhole();
    alerts.answer(0);
    lock->lockIfEnabled(); // before anybody hears of the answer
    expectNothingCameOf(QCoro::waitFor(action));
    EXPECT_EQ(takeSteps(), QStringList(kQuestion));
}

TEST_F(ActionStageTest, itIsOverWhereSomethingElseRunsWhenTheAnswerComes) {
    alerts.hold();
    QCoro::Task<ActionOutcome> action = runWhole();
    session->system.beginBusy(u"Something else…"_s);
    alerts.answer(0);
    expectNothingCameOf(QCoro::waitFor(action));
    EXPECT_EQ(takeSteps(), (QStringList{kQuestion, u"busy: Something else…"_s}));
}

TEST_F(ActionStageTest, aShutDownCancelsTheQuestion) {
    alerts.hold();
    QCoro::Task<ActionOutcome> action = runWhole();
    session->endPorts();
    expectNothingCameOf(QCoro::waitFor(action));
    EXPECT_EQ(takeSteps(), QStringList(kQuestion));
    expectNothingCameOf(ending(runWhole()));
    EXPECT_EQ(takeSteps(), QStringList()) << "later ones aren't even shown";
}

TEST_F(ActionStageTest, ofTwoAtOnceTheSecondDoesNotBegin) {
    alerts.hold();
    QCoro::Task<ActionOutcome> first = runWhole();
    EXPECT_FALSE(session->turnstile.isIdle()) << "a question is open";
    expectNothingCameOf(ending(runWhole()));
    EXPECT_EQ(takeSteps(), QStringList(kQuestion));
    alerts.answer(0);
    processEventsUntil([this] { return alerts.openCount() == 1; });
    expectNothingCameOf(ending(runWhole()));
    alerts.answer(0);
    EXPECT_TRUE(QCoro::waitFor(first).succeeded);
    EXPECT_EQ(takeSteps(), kCarriedOut);
}

TEST_F(ActionStageTest, whileSomethingIsBusyNoneBegins) {
    session->system.beginBusy(u"Scanning…"_s);
    takeSteps();
    expectNothingCameOf(ending(runWhole()));
    EXPECT_EQ(takeSteps(), QStringList());
    session->system.endBusy();
    EXPECT_TRUE(ending(runWhole()).succeeded);
}

TEST_F(ActionStageTest, anExceptionEndsItAsAFailedOne) {
    const ActionOutcome outcome = ending(run([](Action& action) -> QCoro::Task<void> {
        const Turnstile::Hold busy = action.carryingOut(u"Dancing…"_s, {.match = true});
        const UnlockGate::AutoLockSuppression noAutoLock = action.suppressAutoLock();
        action.outcome.succeeded = true;
        throw std::runtime_error("a leg is broken");
        co_return;
    }));
    EXPECT_TRUE(outcome.wasCarriedOut);
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(session->system.logMessages(), QStringList(u"  [ERROR] a leg is broken"_s));
    EXPECT_EQ(takeSteps(),
              (QStringList{u"busy: Dancing…"_s, u"idle"_s, u"log: [ERROR] a leg is broken"_s, u"anew: match"_s}))
        << "it may have changed the system before";
    EXPECT_FALSE(lock->isAutoLockSuppressed());
    EXPECT_TRUE(session->turnstile.isIdle());
}

TEST_F(ActionStageTest, aReviewGivesItsPreviewToTheOutcome) {
    listener->preparesReviews = true;
    const auto body = [](Action& action) -> QCoro::Task<void> {
        Review review = reviewOf(ReviewSubject::Profile, u"Live"_s);
        review.prepare = []() -> QCoro::Task<ReviewPreview> { co_return ProfileApplyPreview{u"Live"_s, {}, {}}; };
        action.outcome.succeeded = co_await action.isAgreedTo(review);
    };
    const ActionOutcome outcome = ending(run(body));
    EXPECT_TRUE(outcome.succeeded);
    EXPECT_EQ(outcome.preview, (ProfileApplyPreview{u"Live"_s, {}, {}}));
    EXPECT_EQ(takeSteps(), (QStringList{u"review: Review Profile: Live | Apply Profile"_s, u"review withdrawn"_s}))
        << "nothing was carried out";
}

TEST_F(ActionStageTest, aClosedReviewAndOneThatTheLockHasOvertakenEndIt) {
    enableLock();
    const auto body = [](Action& action) -> QCoro::Task<void> {
        action.outcome.succeeded = co_await action.isAgreedTo(reviewOf(ReviewSubject::Tweaks));
    };
    listener->agreesToReviews = false;
    EXPECT_FALSE(ending(run(body)).succeeded);
    listener->agreesToReviews = true;
    listener->held.emplace().start();
    QCoro::Task<ActionOutcome> action = run(body);
    lock->lockIfEnabled();
    listener->held->finish();
    EXPECT_FALSE(QCoro::waitFor(action).succeeded);
}

} // namespace quorvane
