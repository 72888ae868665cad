#include "actions/ActionTexts.h"

#include "actions/ActionOutcome.h"
#include "fakes/HostileNames.h"
#include "maintenance/MaintenanceSelection.h"
#include "network/NetworkOperations.h"
#include "startup/apply/StartupVerification.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const RestoreOutcome kFailed{false, RestoreSource::Snapshot};
const RestoreOutcome kToDefaults{true, RestoreSource::StandardDefaults};
const RestoreOutcome kFromSnapshot{true, RestoreSource::Snapshot};
const RestoreOutcome kFromBaseline{true, RestoreSource::Baseline};

const ApplyVerificationResult kVerified{{{u"Siri"_s, u"disabled"_s}}, {}};
const ApplyVerificationResult kPartly{{{u"Siri"_s, u"disabled"_s}}, {{u"App Nap"_s, u"still active"_s}}};

void expectAlert(const ClosingAlert& alert, const QString& title, const QString& text) {
    EXPECT_EQ(alert.title, title);
    EXPECT_EQ(alert.text, text);
}

SystemConfigurationMatch profileMatch(const QString& name) {
    return {name, MatchedConfigurationKind::savedProfile, kVerified};
}

ApplyVerificationResult counted(int verified, int failed) {
    ApplyVerificationResult result;
    result.verified.fill({u"Siri"_s, u"disabled"_s}, verified);
    result.failed.fill({u"App Nap"_s, u"still active"_s}, failed);
    return result;
}

} // namespace

// ---- Questions

TEST(ActionQuestions, sayWhatTheyAreAboutAndWhichButtonDoesWhat) {
    enum class Return { Does, Cancels };
    const struct {
        Alert question;
        QString message;
        QString text;
        QString button;
        Return onReturn;
    } cases[] = {
        {snapshotQuestion(u"Live"_s), u"Replace Restore Baseline?"_s,
         u"“Live” is active. A snapshot taken now saves its settings, and Revert and Reinstate will return to them."_s,
         u"Replace"_s, Return::Cancels},
        {reinstateQuestion(true), u"Reinstate System"_s,
         u"This will restore system settings to before optimization.\n\nYour saved restore baseline will be "
         "used.\n\nAre you sure you want to continue?"_s,
         u"Reinstate"_s, Return::Cancels},
        {reinstateQuestion(false), u"Reinstate System"_s,
         u"This will restore system settings to before optimization.\n\nNo restore baseline found — standard macOS "
         "defaults will be applied.\n\nAre you sure you want to continue?"_s,
         u"Reinstate"_s, Return::Cancels},
        {defaultQuestion(), u"Apply Default Profile?"_s,
         u"This will restore standard macOS performance settings.\n\nYour Mac will need to restart for all changes to "
         "take full effect."_s,
         u"Apply"_s, Return::Does},
        {undoQuestion(true), u"Undo Performance Tweaks?"_s, u"Your saved settings will be restored."_s, u"Undo"_s,
         Return::Does},
        {undoQuestion(false), u"Undo Performance Tweaks?"_s,
         u"No restore baseline found — standard macOS defaults will be applied."_s, u"Undo"_s, Return::Does},
        {deleteQuestion(u"Live"_s), u"Delete Profile?"_s,
         u"“Live” will be removed from saved profiles and the menu bar. This cannot be undone."_s, u"Delete"_s,
         Return::Cancels},
        {*purgeQuestion({false, true, false}), u"Delete Permanently?"_s,
         u"Everything in the Trash will be deleted. This cannot be undone."_s, u"Delete"_s, Return::Cancels},
        {*purgeQuestion({true, false, true}), u"Delete Permanently?"_s,
         u"Everything in the Downloads folder will be deleted. This cannot be undone."_s, u"Delete"_s, Return::Cancels},
        {*purgeQuestion({false, true, true}), u"Delete Permanently?"_s,
         u"Everything in the Trash and the Downloads folder will be deleted. This cannot be undone."_s, u"Delete"_s,
         Return::Cancels},
        {restoreQuestion({u"Live"_s, u"Club"_s}, u"Latest Backup"_s), u"Replace Saved Profiles?"_s,
         u"Live, Club will be replaced by their versions from Latest Backup."_s, u"Replace"_s, Return::Cancels},
    };
    for (const auto& [question, message, text, button, onReturn] : cases) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(question.message, message);
        EXPECT_EQ(question.informativeText, text);
        EXPECT_EQ(question.buttons, QStringList({button, u"Cancel"_s}));
        EXPECT_EQ(question.cancelButton, 1);
        EXPECT_EQ(question.returnButton(), onReturn == Return::Does ? 0 : 1);
        EXPECT_EQ(question.destructiveButton, onReturn == Return::Does ? std::nullopt : std::optional(0));
    }
    EXPECT_EQ(purgeQuestion({true, false, false}), std::nullopt) << "caches come back by themselves";
}

TEST(ActionQuestions, quittingWhileBusyIsNeverOnReturnOrEscape) {
    const QString rest = u"What is done stays done; the rest is left out, and nothing is verified."_s;
    const Alert question = quitQuestion(u"Applying profile…"_s);
    EXPECT_EQ(question.message, u"Quit Quorvane?"_s);
    EXPECT_EQ(question.informativeText, u"Applying profile…\n\n"_s + rest);
    EXPECT_EQ(question.buttons, QStringList({u"Keep Running"_s, u"Quit"_s}));
    EXPECT_EQ(question.cancelButton, 0);
    EXPECT_EQ(question.returnButton(), std::optional(0));
    EXPECT_EQ(question.destructiveButton, 1);
    EXPECT_EQ(quitQuestion({}).informativeText, rest);
}

TEST(ActionQuestions, aMenuWithoutItsProgramSendsToTheWindow) {
    const Alert question = notReadyQuestion();
    EXPECT_EQ(question.message, u"Quorvane Not Ready"_s);
    EXPECT_EQ(question.informativeText, u"Open the Quorvane window first, then try again from the menu bar."_s);
    EXPECT_EQ(question.buttons, QStringList({u"Open Quorvane"_s, u"Cancel"_s}));
    EXPECT_EQ(question.cancelButton, 1);
    EXPECT_EQ(question.returnButton(), std::optional(0));
}

// ---- Names and styles of both

TEST(ActionTexts, aNameStaysAName) {
    for (const QString& name : hostileNames()) {
        expectNameInside(snapshotQuestion(name).informativeText, name);
        expectNameInside(deleteQuestion(name).informativeText, name);
        expectNameInside(restoreQuestion({name}, u"Latest Backup"_s).informativeText, name);
        expectNameInside(restoreQuestion({u"Live"_s}, name).informativeText, name);
        expectNameInside(systemMatchAlert(profileMatch(name)).text.section(u"\n\n"_s, 0, 0), name);
        expectNameInside(restartAlert(name).text.section(u"\n\n"_s, 0, 0), name);
        expectNameInside(notLoadedAlert(name).text, name);
        expectNameInside(deletedAlert(name, true).text, name);
        expectNameInside(deletedAlert(name, false).text, name);
        expectNameInside(reviewOf(ReviewSubject::Profile, name).title, name);
    }
}

TEST(ActionTexts, whatFailsOrCannotSimplyBeUndoneIsAWarning) {
    const struct {
        AlertStyle style;
        QString title;
    } cases[] = {
        {snapshotQuestion(u"Live"_s).style, u"warning: snapshot?"_s},
        {reinstateQuestion(true).style, u"warning: reinstate?"_s},
        {defaultQuestion().style, u"warning: default?"_s},
        {undoQuestion(true).style, u"undo?"_s},
        {deleteQuestion(u"Live"_s).style, u"warning: delete?"_s},
        {quitQuestion({}).style, u"warning: quit?"_s},
        {notReadyQuestion().style, u"not ready?"_s},
        {snapshotAlert({true, false}, MasterArchive::No).style, u"snapshot"_s},
        {snapshotAlert({true, false}, MasterArchive::Yes).style, u"warning: not archived"_s},
        {snapshotAlert({}, MasterArchive::No).style, u"warning: no snapshot"_s},
        {undoAlert(kToDefaults).style, u"undone"_s},
        {undoAlert(kFailed).style, u"warning: not undone"_s},
        {revertAllAlert(kFromSnapshot, LoginItemsAre::Changed).style, u"reverted"_s},
        {revertAllAlert(kFailed, LoginItemsAre::Changed).style, u"warning: not reverted"_s},
        {defaultAlert(kToDefaults).style, u"Default"_s},
        {defaultAlert(kFailed).style, u"warning: not Default"_s},
        {menuDefaultAlert(kToDefaults).style, u"Default by the menu"_s},
        {menuDefaultAlert(kFailed).style, u"warning: not Default by the menu"_s},
        {reinstateAlert(kToDefaults).style, u"reinstated"_s},
        {reinstateAlert(kFailed).style, u"warning: not reinstated"_s},
        {systemMatchAlert({}).style, u"no match"_s},
        {restartAlert(u"Live"_s).style, u"restart"_s},
        {startupAlert({true, kVerified}).style, u"startup"_s},
        {startupAlert({true, kPartly}).style, u"warning: startup in part"_s},
        {notLoadedAlert(u"Live"_s).style, u"warning: not loaded"_s},
        {deletedAlert(u"Live"_s, true).style, u"deleted"_s},
        {deletedAlert(u"Live"_s, false).style, u"warning: not deleted"_s},
        {maintenanceAlert({true, {}}).style, u"maintenance"_s},
        {maintenanceAlert({false, {}}).style, u"warning: maintenance"_s},
        {networkAlert({{u"One."_s}, true}).style, u"network"_s},
        {networkAlert({{}, false}).style, u"warning: network"_s},
        {aboutAlert().style, u"about"_s},
    };
    for (const auto& [style, title] : cases) {
        EXPECT_EQ(style == AlertStyle::Warning, title.startsWith(u"warning"_s)) << title.toStdString();
    }
}

// ---- Snapshots and the ways back

TEST(RestoreAlerts, aSnapshotIsSavedOrNot) {
    const QString saved = u"Your current system setup has been saved as the restore baseline."_s;
    expectAlert(snapshotAlert({true, false}, MasterArchive::No), u"Snapshot Saved"_s, saved);
    expectAlert(snapshotAlert({true, true}, MasterArchive::Yes), u"Snapshot Saved"_s, saved);
    expectAlert(snapshotAlert({true, false}, MasterArchive::Yes), u"Baseline Not Archived"_s,
                u"Your current system setup has been saved, but not as a master baseline. Check the Logs tab for "
                "details."_s);
    expectAlert(snapshotAlert({}, MasterArchive::No), u"Snapshot Failed"_s,
                u"Could not save the restore baseline. Check the Logs tab for details."_s);
}

TEST(ActionAlerts, everyWayBackNamesWhatHasNotComeBack) {
    const RestoreOutcome outcome{false, RestoreSource::Snapshot, {u"App Nap"_s, u"login item %1"_s}};
    const QString text = u"2 setting(s) could not be restored:\nApp Nap\nlogin item %1"_s;
    for (const ClosingAlert& alert : {undoAlert(outcome), revertAllAlert(outcome, LoginItemsAre::Unchanged),
                                      defaultAlert(outcome), menuDefaultAlert(outcome), reinstateAlert(outcome)}) {
        expectAlert(alert, u"Restored, With Exceptions"_s, text);
        EXPECT_EQ(alert.style, AlertStyle::Warning);
    }
}

TEST(RestoreAlerts, anUndoSpeaksOfASnapshotWhereTheUsersOwnValuesCameBack) {
    const QString own = u"Performance tweaks restored from your saved snapshot.\n\nPlease restart your Mac."_s;
    expectAlert(undoAlert(kFromSnapshot), u"Success"_s, own);
    expectAlert(undoAlert(kFromBaseline), u"Success"_s, own);
    expectAlert(undoAlert(kToDefaults), u"Success"_s, u"Standard operation restored.\n\nPlease restart your Mac."_s);
    expectAlert(undoAlert(kFailed), u"Cancelled"_s,
                u"System-level defaults were not restored. Check the Logs tab for details."_s);
}

TEST(RestoreAlerts, revertingAllSpeaksOfWhatItLeaves) {
    const QString restored = u"Performance tweaks restored from your saved restore baseline.\n\n"_s;
    const QString unchanged =
        u"Login items, network, and launch agents are unchanged. Use Reinstate for a full restore.\n\n"_s;
    const QString restart = u"Please restart your Mac."_s;
    for (const RestoreOutcome& outcome : {kFromSnapshot, kFromBaseline}) {
        expectAlert(revertAllAlert(outcome, LoginItemsAre::Unchanged), u"Success"_s, restored + unchanged + restart);
        expectAlert(revertAllAlert(outcome, LoginItemsAre::Changed), u"Success"_s, restored + restart);
    }
    expectAlert(revertAllAlert(kToDefaults, LoginItemsAre::Unchanged), u"Success"_s,
                u"Standard operation restored.\n\n"_s + restart);
    expectAlert(revertAllAlert(kFailed, LoginItemsAre::Unchanged), u"Cancelled"_s,
                u"System-level defaults were not restored."_s);
}

TEST(RestoreAlerts, defaultSpeaksOfABaselineWhereItWasTheSource) {
    const QString fromBaseline = u"Standard macOS settings restored from your saved restore baseline.\n\n"
                                 "Please restart your Mac."_s;
    expectAlert(defaultAlert(kFromSnapshot), u"Default Applied"_s, fromBaseline);
    expectAlert(defaultAlert(kFromBaseline), u"Default Applied"_s, fromBaseline);
    expectAlert(defaultAlert(kToDefaults), u"Default Applied"_s,
                u"Standard macOS settings restored.\n\nPlease restart your Mac."_s);
    expectAlert(defaultAlert(kFailed), u"Cancelled"_s,
                u"Default settings were not restored. Check the Logs tab for details."_s);
}

TEST(RestoreAlerts, theMenuSpeaksOfDefaultInItsOwnWords) {
    const QString restart = u"\n\nPlease restart your Mac for changes to take full effect."_s;
    expectAlert(menuDefaultAlert(kFromSnapshot), u"Defaults Restored"_s,
                u"Standard macOS settings restored from your saved restore baseline."_s + restart);
    expectAlert(menuDefaultAlert(kToDefaults), u"Defaults Restored"_s,
                u"Standard macOS settings restored."_s + restart);
    expectAlert(menuDefaultAlert(kFailed), u"Restore Cancelled"_s,
                u"System defaults were not restored. Check the Logs tab for details."_s);
}

TEST(RestoreAlerts, aReinstatementSpeaksOfABaselineWhereItWasTheSource) {
    const QString fromBaseline = u"System restored from your saved restore baseline.\n\n"
                                 "Please restart your Mac for changes to take full effect."_s;
    expectAlert(reinstateAlert(kFromSnapshot), u"Success"_s, fromBaseline);
    expectAlert(reinstateAlert(kFromBaseline), u"Success"_s, fromBaseline);
    expectAlert(reinstateAlert(kToDefaults), u"Success"_s,
                u"System has been restored to standard defaults.\n\n"
                "Please restart your Mac for changes to take full effect."_s);
    expectAlert(reinstateAlert(kFailed), u"Cancelled"_s, u"System restoration was cancelled or failed."_s);
}

// ---- Other alerts

TEST(ActionAlerts, aMatchIsToldByTheNameOfAProfileOrAsDefault) {
    EXPECT_EQ(systemMatchAlert(
                  SystemConfigurationMatch{u"Club 100%1"_s, MatchedConfigurationKind::savedProfile, counted(12, 0)}),
              (ClosingAlert{u"System Verified"_s, u"Current system matches saved profile \"Club 100%1\".\n\n"
                                                  "All 12 setting(s) verified on the system."_s}));
    EXPECT_EQ(
        systemMatchAlert(SystemConfigurationMatch{u"Default"_s, MatchedConfigurationKind::builtinMode, counted(2, 0)}),
        (ClosingAlert{u"System Verified"_s,
                      u"Current system matches Default.\n\nAll 2 setting(s) verified on the system."_s}));
    const ClosingAlert none{u"No Match Found"_s, u"No saved profile fully matches your current system settings.\n\n"
                                                 "Check the Logs tab for details."_s};
    EXPECT_EQ(systemMatchAlert({}), none);
    const SystemConfigurationMatch kept{u"Club"_s, MatchedConfigurationKind::savedProfile, {}, true};
    EXPECT_EQ(systemMatchAlert(kept), none);
}

TEST(ActionAlerts, ofProfiles) {
    expectAlert(restartAlert(u"Live"_s), u"Restart Required"_s,
                u"\"Live\" has been applied.\n\nPlease reboot your Mac for all settings to take full effect."_s);
    expectAlert(notLoadedAlert(u"Live"_s), u"Error"_s, u"Could not load profile \"Live\"."_s);
    expectAlert(deletedAlert(u"Live"_s, true), u"Profile Deleted"_s, u"“Live” has been removed."_s);
    expectAlert(deletedAlert(u"Live"_s, false), u"Error"_s, u"Could not delete profile \"Live\"."_s);
}

TEST(ActionAlerts, startupIsVerifiedOnlyWhereAllOfItIs) {
    const QString restart = u"\n\nPlease restart your Mac."_s;
    expectAlert(startupAlert({true, kVerified}), u"Startup Verified"_s,
                u"All 1 setting(s) verified on the system."_s + restart);
    expectAlert(startupAlert({true, kPartly}), u"Startup Partially Applied"_s,
                u"1 verified, 1 not confirmed. Check Logs for details."_s + restart);
    expectAlert(startupAlert({false, kVerified}), u"Startup Partially Applied"_s,
                u"All 1 setting(s) verified on the system."_s + restart);
}

TEST(ActionAlerts, recordsBringTheirSentencesAlong) {
    expectAlert(maintenanceAlert({false, {u"One."_s, u"Two."_s}}), u"Completed with Issues"_s, u"One.\n\nTwo."_s);
    EXPECT_EQ(maintenanceAlert({true, {}}).style, AlertStyle::Success);
    expectAlert(networkAlert({{u"One."_s}, true}), u"Success"_s, u"One."_s);
    expectAlert(errorAlert(u"No."_s), u"Error"_s, u"No."_s);
    expectAlert(aboutAlert(), u"Quorvane"_s, u"Beta Release 1.0"_s);
}

// ---- Reviews

TEST(ActionReviews, haveTheirTitlesButtonsAndWhatIsSaidWhereThereIsNothingToDo) {
    const struct {
        Review review;
        QString title;
        QString subtitle;
        QString button;
        QString nothingToDo;
        QString busyText;
    } cases[] = {{reviewOf(ReviewSubject::Profile, u"Live"_s), u"Review Profile: Live"_s,
                  u"Review system tweaks and startup changes before applying this profile. Your Mac will need to "
                  "restart afterward."_s,
                  u"Apply Profile"_s, u"This profile has no settings to apply."_s, u"Applying profile…"_s},
                 {reviewOf(ReviewSubject::Tweaks), u"Review Performance Tweaks"_s,
                  u"Review which performance tweaks will be applied to this Mac."_s, u"Apply Changes"_s,
                  u"No performance tweaks are selected."_s, u"Applying performance tweaks…"_s},
                 {reviewOf(ReviewSubject::Startup), u"Review Startup Changes"_s,
                  u"Review what will change on this Mac before you restart."_s, u"Apply Changes"_s,
                  u"No startup changes are selected."_s, u"Applying startup changes…"_s}};
    for (const auto& [review, title, subtitle, button, nothingToDo, busyText] : cases) {
        EXPECT_EQ(review.title, title);
        EXPECT_EQ(review.subtitle, subtitle);
        EXPECT_EQ(review.button, button);
        EXPECT_EQ(review.nothingToDo, nothingToDo);
        EXPECT_EQ(review.busyText, busyText);
    }
}

TEST(ActionReviews, canBeAppliedWhereThereIsSomethingToDo) {
    StartupChangePreview network;
    network.disableNetwork = true;
    EXPECT_TRUE(canApply(ProfileApplyPreview{})) << "it puts all tweaks back";
    EXPECT_FALSE(canApply(TweaksApplyPreview{}));
    EXPECT_TRUE(canApply(TweaksApplyPreview{{u"Siri"_s}, {}}));
    EXPECT_FALSE(canApply(StartupChangePreview{}));
    EXPECT_TRUE(canApply(network));
}

TEST(ActionReviews, theResultIsGoodOnlyWhereAllIsVerified) {
    ActionOutcome outcome;
    outcome.succeeded = true;
    outcome.verification = kVerified;
    const ResultPanel whole = resultPanel(ReviewSubject::Profile, outcome);
    EXPECT_EQ(whole, (ResultPanel{u"All changes verified"_s, u"checkmark.seal.fill"_s,
                                  u"Restart your Mac for all changes to take full effect."_s, kVerified}));
    EXPECT_EQ(resultPanel(ReviewSubject::Startup, outcome), whole);
    EXPECT_EQ(resultPanel(ReviewSubject::Tweaks, outcome).text, u"Restart your Mac for tweaks to take full effect."_s);

    outcome.verification = kPartly;
    const ResultPanel partly = resultPanel(ReviewSubject::Profile, outcome);
    EXPECT_EQ(partly.title, u"Some changes could not be verified"_s);
    EXPECT_EQ(partly.symbol, u"exclamationmark.triangle.fill"_s);
    EXPECT_EQ(partly.text, u"Check the Logs tab for details. Grant Automation permission for System Events if login "
                           "item changes failed."_s);
    EXPECT_EQ(partly.verification, kPartly);

    outcome.succeeded = false;
    outcome.verification = kVerified;
    EXPECT_EQ(resultPanel(ReviewSubject::Profile, outcome).title, partly.title);
}

} // namespace quorvane
