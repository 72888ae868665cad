// Before an action's first change to a Mac its settings are captured, whichever road leads to it, and where that fails its user is
// asked.

#include "actions/ActionTexts.h"
#include "fakes/ActionSystem.h"
#include "fakes/ReadingLines.h"
#include "snapshots/FirstBaseline.h"

#include <functional>

namespace quorvane {

namespace {

const QString kFirstFile = u"/Users/alex/.quorvane/before-quorvane.json"_s;
const QString kSaving = u"busy: Saving your settings as they are…"_s;

using Start = std::function<QCoro::Task<ActionOutcome>(Session& session, ActionListener& listener)>;

const UnifiedProfile kBand = numberedProfile(1, u"Club"_s);

/// Every road to a change, with what it is busy with then.
struct Road {
    const char* name;
    QString busy;
    Start start;
};

const QList<Road>& roads() {
    static const QList<Road> all{
        {"a profile", u"busy: Applying profile…"_s,
         [](Session& s, ActionListener& l) { return s.profileActions.review(kBand, l); }},
        {"a row of the performance page", u"busy: Applying profile…"_s,
         [](Session& s, ActionListener& l) {
             return s.profileActions.pick(kBand.name, kBand.id, StartedFrom::Page, l);
         }},
        {"the menu", u"busy: Applying profile…"_s,
         [](Session& s, ActionListener& l) {
             return s.profileActions.pick(kBand.name, kBand.id, StartedFrom::Menu, l);
         }},
        {"the tweaks alone", u"busy: Applying performance tweaks…"_s,
         [](Session& s, ActionListener& l) {
             return s.tweakActions.execute(PerformanceSettings::fullSelection(), {}, l);
         }},
        {"what runs at login", u"busy: Applying startup changes…"_s,
         [](Session& s, ActionListener& l) { return s.systemActions.applyStartup({}, l); }},
        {"the network", u"busy: Running network operations…"_s, [](Session& s, ActionListener& l) {
             return s.networkActions.execute({false, false, true, false}, l);
         }}};
    return all;
}

class FirstChange : public ActionSystem {
protected:
    FirstChange() { addProfile(kBand); }
    void refuseAReading() { commands.answer(reading::kAppNap, ScriptedCommandLauncher::unanswered().first()); }
    void startAnew() {
        if (files.exists(kFirstFile)) {
            files.remove(kFirstFile);
        }
        defaults.values.clear();
        steps.clear();
        trace.clear();
    }
    QString question() const {
        for (const QString& step : steps) {
            if (step.startsWith(u"! Apply Without a Way Back?"_s)) {
                return step;
            }
        }
        return {};
    }
};

} // namespace

TEST_F(FirstChange, everyRoadCapturesFirst) {
    for (const Road& road : roads()) {
        SCOPED_TRACE(road.name);
        startAnew();
        EXPECT_TRUE(ending(road.start(*session, *listener)).wasCarriedOut);
        const qsizetype saving = steps.indexOf(kSaving);
        ASSERT_GE(saving, 0) << steps.join(u'\n').toStdString();
        EXPECT_LT(saving, steps.indexOf(road.busy));
        EXPECT_TRUE(files.exists(kFirstFile));
        EXPECT_EQ(question(), QString());
        EXPECT_TRUE(session->system.logMessages().contains(
            u"  [SNAPSHOT] Saved your settings as they were before Quorvane."_s));
        steps.clear();
        ending(road.start(*session, *listener));
        EXPECT_FALSE(steps.contains(kSaving)) << "and only first";
        session->system.clearLog();
    }
}

TEST_F(FirstChange, nothingIsCapturedForWhatThereIsNoWayBackFrom) {
    EXPECT_TRUE(ending(session->networkActions.execute({true, false, false, false}, *listener)).wasCarriedOut);
    ending(session->maintenanceActions.execute({true, false, false}, *listener));
    ending(session->tweakActions.undo(*listener));
    EXPECT_FALSE(files.exists(kFirstFile));
}

TEST_F(FirstChange, nothingIsCapturedWithoutConsent) {
    listener->agreesToReviews = false;
    ending(session->profileActions.review(kBand, *listener));
    EXPECT_FALSE(files.exists(kFirstFile));
    EXPECT_FALSE(takeSteps().contains(kSaving));
}

TEST_F(FirstChange, aFailureIsAskedAboutOnEveryRoad) {
    refuseAReading();
    for (const Road& road : roads()) {
        SCOPED_TRACE(road.name);
        startAnew();
        alerts.press(1);
        const ActionOutcome refused = ending(road.start(*session, *listener));
        EXPECT_FALSE(refused.wasCarriedOut);
        EXPECT_FALSE(refused.succeeded);
        EXPECT_TRUE(question().endsWith(u" | Apply, Cancel"_s)) << question().toStdString();
        EXPECT_FALSE(steps.contains(road.busy));
        EXPECT_TRUE(steps.last().startsWith(u"! Apply Without"_s) || steps.last() == u"review withdrawn"_s)
            << steps.last().toStdString();
        startAnew();
        alerts.press(0);
        EXPECT_TRUE(ending(road.start(*session, *listener)).wasCarriedOut);
        EXPECT_TRUE(steps.contains(road.busy));
        EXPECT_FALSE(files.exists(kFirstFile));
    }
}

TEST_F(FirstChange, theQuestionSaysWhatFailed) {
    files.failOn(MemoryFileManager::Operation::Write, kFirstFile);
    alerts.press(1);
    ending(session->systemActions.applyStartup({}, *listener));
    EXPECT_TRUE(
        question().startsWith(u"! Apply Without a Way Back? | Your settings as they are now could not be saved, so "
                              "Quorvane could not bring them back later.\n\n"_s +
                              kFirstFile))
        << question().toStdString();
    EXPECT_EQ(alerts.lastStyle(), AlertStyle::Warning);
}

TEST_F(FirstChange, theQuestionNamesTheTweaksThatCouldNotBeRead) {
    refuseAReading();
    commands.answer(reading::kLiveAppNap, ScriptedCommandLauncher::unanswered().first());
    commands.answer(reading::kCrashReporter, ScriptedCommandLauncher::unanswered().first());
    alerts.press(1);
    ending(session->systemActions.applyStartup({}, *listener));
    EXPECT_TRUE(question().endsWith(u"\n\nCould not read App Nap, Crash Reporter. | Apply, Cancel"_s))
        << question().toStdString();
}

TEST_F(FirstChange, aCaptureThatThrowsIsAFailureLikeAnyOther) {
    commands.respond = [](const QStringList&) -> std::optional<CommandOutcome> {
        throw std::runtime_error("the tools are gone");
    };
    alerts.press(1);
    EXPECT_FALSE(ending(session->systemActions.applyStartup({}, *listener)).wasCarriedOut);
    EXPECT_TRUE(question().contains(u"the tools are gone"_s)) << question().toStdString();
}

TEST_F(FirstChange, returnAndEscapeCancelTheQuestion) {
    const Alert question = noWayBackQuestion(u"No space left on device"_s);
    EXPECT_EQ(question.buttons, (QStringList{u"Apply"_s, u"Cancel"_s}));
    EXPECT_EQ(question.cancelButton, 1);
    EXPECT_EQ(question.returnButton(), 1);
}

TEST_F(FirstChange, whoeverIsLockedOutMeanwhileChangesNothing) {
    enableLock();
    refuseAReading();
    commands.respond = [this](const QStringList& arguments) -> std::optional<CommandOutcome> {
        if (commandLine(arguments) == reading::kSpotlightOfAll) {
            lock->lockIfEnabled();
        }
        return std::nullopt;
    };
    alerts.press(0);
    EXPECT_FALSE(ending(session->systemActions.applyStartup({}, *listener)).wasCarriedOut);
}

TEST_F(FirstChange, theProgramDoesNotLockItselfDuringTheCapture) {
    enableLock();
    bool wasSuppressed = false;
    commands.respond = [&](const QStringList& arguments) -> std::optional<CommandOutcome> {
        if (commandLine(arguments) == reading::kSpotlightOfAll) {
            wasSuppressed = lock->isAutoLockSuppressed();
        }
        return std::nullopt;
    };
    EXPECT_TRUE(ending(session->profileActions.review(kBand, *listener)).wasCarriedOut);
    EXPECT_TRUE(wasSuppressed);
}

TEST_F(FirstChange, theSnapshotThatIsShownStaysNone) {
    EXPECT_EQ(session->snapshotStatus.current(), std::nullopt);
    ending(session->profileActions.review(kBand, *listener));
    EXPECT_EQ(session->snapshotStatus.current(), std::nullopt);
    EXPECT_FALSE(QCoro::waitFor(session->system.masterBaselines().hasMasterBaseline()));
    EXPECT_TRUE(FirstBaselines(files, machine).own());
}

} // namespace quorvane
