// Pick, review, apply and everything that follows; Default; remove.

#include "fakes/ActionSystem.h"

#include <QRegularExpression>

namespace quorvane {

namespace {

const QString kDefaultQuestion = u"! Apply Default Profile? | This will restore standard macOS performance "
                                 "settings.\n\nYour Mac will need to restart for all changes to take full effect. | "
                                 "Apply, Cancel"_s;

/// Needs root.
UnifiedProfile withoutIndexing(UnifiedProfile profile) {
    profile.settings.spotlight = true;
    return profile;
}

class ProfileActionsTest : public ActionSystem {
protected:
    ProfileActionsTest() {
        keepWhatIsWritten();
        addProfile(live);
        listener->preparesReviews = true;
    }
    ActionOutcome pick(const UnifiedProfile& profile, StartedFrom from = StartedFrom::Page) {
        const ActionOutcome outcome = ending(session->profileActions.pick(profile.name, profile.id, from, *listener));
        processEventsUntil([this] { return session->tasks.count() == 0; });
        return outcome;
    }
    void refuseThePrompt() { scripts.failNext(u"User canceled."_s); }
    std::optional<QUuid> edited() const {
        const std::optional<UnifiedProfile>& profile = session->workingCopy.currentProfile();
        return profile ? std::optional(profile->id) : std::nullopt;
    }

    const UnifiedProfile live = withoutIndexing(numberedProfile(1, u"Live"_s));
    const QString kReview = u"review: Review Profile: Live | Apply Profile"_s;
};

} // namespace

// ---- Apply

TEST_F(ProfileActionsTest, whatFollowsAnAppliedProfileComesInOrder) {
    saveOwnSnapshot();
    const ActionOutcome outcome = ending(session->profileActions.review(live, *listener));
    EXPECT_TRUE(outcome.succeeded);
    EXPECT_EQ(outcome.preview->profileName, u"Live"_s);
    EXPECT_EQ(outcome.verification, session->system.lastApplyVerification());
    QStringList taken = takeSteps();
    const qsizetype panel = taken.indexOf(QRegularExpression(u"^panel: .*"_s));
    ASSERT_GE(panel, 0);
    taken[panel] = u"panel"_s;
    EXPECT_EQ(taken, (QStringList{kReview, u"busy: Applying profile…"_s, u"log: [PROFILE] Applying: Live"_s,
                                  u"post: QuorvaneSystemVerified"_s, u"panel"_s, u"idle"_s,
                                  u"post: QuorvaneProfileApplied"_s, u"label: Live"_s,
                                  u"! Restart Required | \"Live\" has been applied.\n\nPlease reboot your Mac for all "
                                  "settings to take full effect. | OK"_s,
                                  u"anew: match"_s}));
    EXPECT_EQ(edited(), live.id);
    EXPECT_EQ(lastApplied(), u"Live"_s);
    EXPECT_EQ(session->activeProfile.current().name, u"Live"_s);
}

TEST_F(ProfileActionsTest, afterAFailedApplyNamesStayAsTheyWere) {
    saveOwnSnapshot();
    defaults.setString(kQuorvaneLastAppliedProfileName, u"Club"_s);
    refuseThePrompt();
    const ActionOutcome outcome = ending(session->profileActions.review(live, *listener));
    EXPECT_TRUE(outcome.wasCarriedOut);
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(takeSteps(), (QStringList{kReview, u"busy: Applying profile…"_s, u"log: [PROFILE] Applying: Live"_s,
                                        u"panel: Some changes could not be verified"_s, u"idle"_s, u"anew: match"_s}));
    EXPECT_EQ(edited(), std::nullopt);
    EXPECT_EQ(lastApplied(), u"Club"_s);
}

TEST_F(ProfileActionsTest, theProgramsOwnPromptDoesNotLockIt) {
    enableLock();
    bool wasSuppressed = false;
    scripts.carryOut = [&](const QString&) {
        wasSuppressed = lock->isAutoLockSuppressed();
        lock->applicationWillResignActive();
    };
    EXPECT_TRUE(ending(session->profileActions.review(live, *listener)).succeeded);
    EXPECT_TRUE(wasSuppressed);
    EXPECT_TRUE(lock->isUnlocked());
    EXPECT_FALSE(lock->isAutoLockSuppressed()) << "it is over";
}

TEST_F(ProfileActionsTest, anApplyThatEndsWhileAnotherProgramIsActiveLocks) {
    enableLock();
    scripts.carryOut = [&](const QString&) {
        lock->applicationWillResignActive();
        workspace.isActiveNow = false;
    };
    EXPECT_TRUE(ending(session->profileActions.review(live, *listener)).succeeded);
    EXPECT_FALSE(lock->isUnlocked());
}

TEST_F(ProfileActionsTest, aReviewThatIsClosedAppliesNothing) {
    listener->agreesToReviews = false;
    bool isRootAsked = false;
    scripts.carryOut = [&isRootAsked](const QString&) { isRootAsked = true; };
    EXPECT_FALSE(ending(session->profileActions.review(live, *listener)).wasCarriedOut);
    EXPECT_EQ(takeSteps(), QStringList(kReview));
    EXPECT_FALSE(isRootAsked);
    EXPECT_FALSE(defaults.values.contains(kQuorvaneLastAppliedProfileName));
}

// ---- Pick

TEST_F(ProfileActionsTest, aPickedProfileIsLoadedAndReviewed) {
    listener->agreesToReviews = false;
    EXPECT_FALSE(pick(live).wasCarriedOut);
    EXPECT_EQ(takeSteps(), (QStringList{u"log: [PROFILE] Loaded: Live"_s, kReview}));
    EXPECT_EQ(edited(), live.id) << "it stays loaded";
}

TEST_F(ProfileActionsTest, aPickKeepsTheCopiesOfDefaultFresh) {
    cloud.account = true;
    cloud.container = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;
    listener->agreesToReviews = false;
    pick(live);
    EXPECT_TRUE(files.exists(*cloud.container + u"/Documents/Quorvane/ProfileBackups/default-current.json"_s));
    EXPECT_TRUE(session->system.logMessages().filter(u"[ERROR]"_s).isEmpty());
}

TEST_F(ProfileActionsTest, whatIsNotTheRowsProfileIsNotLoaded) {
    const QString told = u"! Error | Could not load profile \"Live\". | OK"_s;
    UnifiedProfile other = numberedProfile(2, u"Live"_s);
    EXPECT_FALSE(pick(other).wasCarriedOut);
    EXPECT_EQ(takeSteps(), QStringList(told));
    EXPECT_EQ(edited(), std::nullopt);
    EXPECT_FALSE(pick(other, StartedFrom::Menu).wasCarriedOut);
    EXPECT_EQ(takeSteps(), QStringList()) << "the menu tells nothing";
    session->profileStore.deleteProfile(u"Live"_s);
    EXPECT_FALSE(pick(live).wasCarriedOut);
    EXPECT_EQ(takeSteps(), QStringList(told));
}

TEST_F(ProfileActionsTest, aPickedDefaultTakesTheRoadOfDefault) {
    const UnifiedProfile own = numberedProfile(3, u"default"_s);
    addProfile(own);
    alerts.press(1);
    EXPECT_FALSE(pick(own).wasCarriedOut);
    EXPECT_EQ(takeSteps(), QStringList(kDefaultQuestion));
    EXPECT_EQ(edited(), std::nullopt) << "a cancel leaves no trace";
    alerts.press(0);
    EXPECT_TRUE(pick(own).succeeded);
    EXPECT_EQ(lastApplied(), u"Default"_s);
}

// ---- Default

TEST_F(ProfileActionsTest, whatFollowsDefaultComesInOrder) {
    makeActive(live);
    session->workingCopy.load(live);
    const ActionOutcome outcome = ending(session->profileActions.restoreDefault(StartedFrom::Page, *listener));
    EXPECT_TRUE(outcome.succeeded);
    EXPECT_EQ(outcome.restore, (RestoreOutcome{true, RestoreSource::StandardDefaults}));
    EXPECT_EQ(takeSteps(),
              (QStringList{kDefaultQuestion, u"busy: Restoring default settings…"_s,
                           u"log: Undoing Audio Performance tweaks (no snapshot — using standard defaults)..."_s,
                           u"idle"_s, u"label: Default"_s,
                           u"! Default Applied | Standard macOS settings restored.\n\nPlease restart your Mac. | OK"_s,
                           u"anew: match"_s}));
    EXPECT_EQ(edited(), std::nullopt);
    EXPECT_EQ(lastApplied(), u"Default"_s);
    EXPECT_FALSE(defaults.values.contains(kQuorvaneCurrentMode));
}

TEST_F(ProfileActionsTest, theMenusDefaultSetsTheModeAndHasItsOwnWords) {
    EXPECT_TRUE(ending(session->profileActions.restoreDefault(StartedFrom::Menu, *listener)).succeeded);
    EXPECT_TRUE(takeSteps().contains(u"! Defaults Restored | Standard macOS settings restored.\n\nPlease restart your "
                                     "Mac for changes to take full effect. | OK"_s));
    EXPECT_EQ(defaults.values.value(kQuorvaneCurrentMode).toString(), u"Default"_s);
}

TEST_F(ProfileActionsTest, aRefusedDefaultLeavesNamesAndWorkingCopy) {
    defaults.setString(kQuorvaneLastAppliedProfileName, u"Live"_s);
    session->workingCopy.load(live);
    for (const auto& [from, title] : {std::pair(StartedFrom::Page, u"! Cancelled | "_s),
                                      std::pair(StartedFrom::Menu, u"! Restore Cancelled | "_s)}) {
        refuseThePrompt();
        EXPECT_FALSE(ending(session->profileActions.restoreDefault(from, *listener)).succeeded);
        const QStringList taken = takeSteps();
        EXPECT_TRUE(taken.at(taken.size() - 2).startsWith(title)) << taken.join(u'\n').toStdString();
        EXPECT_EQ(taken.last(), u"anew: match"_s) << "what ran as the user has changed the system";
        EXPECT_TRUE(taken.filter(u"label"_s).isEmpty());
    }
    EXPECT_EQ(edited(), live.id);
    EXPECT_EQ(lastApplied(), u"Live"_s);
}

// ---- Remove

TEST_F(ProfileActionsTest, aRemovedProfileIsForgotten) {
    makeActive(live);
    listProfiles();
    session->workingCopy.load(live);
    EXPECT_TRUE(ending(session->profileActions.remove(u"Live"_s, live.id, *listener)).succeeded);
    EXPECT_EQ(takeSteps(),
              (QStringList{u"! Delete Profile? | “Live” will be removed from saved profiles and the menu bar. This "
                           "cannot be undone. | Delete, Cancel"_s,
                           u"post: QuorvaneProfilesChanged"_s, u"log: [PROFILE] Deleted: Live"_s,
                           u"! Profile Deleted | “Live” has been removed. | OK"_s, u"anew: match"_s}));
    EXPECT_EQ(session->profileStore.loadProfile(u"Live"_s), std::nullopt);
    EXPECT_EQ(edited(), std::nullopt);
    EXPECT_EQ(lastApplied(), u"Default"_s);
}

TEST_F(ProfileActionsTest, anotherProfileThatHasTakenTheNameStays) {
    const QUuid shown = numberedProfile(2, {}).id;
    EXPECT_FALSE(ending(session->profileActions.remove(u"Live"_s, shown, *listener)).succeeded);
    EXPECT_EQ(takeSteps().mid(1), (QStringList{u"! Error | Could not delete profile \"Live\". | OK"_s, u"anew: "_s}));
    EXPECT_TRUE(session->profileStore.loadProfile(u"Live"_s).has_value());
}

} // namespace quorvane
