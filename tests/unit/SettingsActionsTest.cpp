// What a user sets, on scripted ports: the label's name, launching at login, the privacy settings, and what Settings shows of it.

#include "actions/AppPasswordEntry.h"
#include "actions/LockActions.h"
#include "actions/RowChoice.h"
#include "actions/SettingsTexts.h"
#include "fakes/ActionSystem.h"

namespace quorvane {

namespace {

using State = LoginService::State;

const UnifiedProfile kClub = numberedProfile(1, u"Club"_s);

class SettingsActionsTest : public ActionSystem {
protected:
    ActionOutcome launchAtLogin(bool isWanted) {
        steps.clear();
        return ending(session->settingsActions.setLaunchAtLogin(isWanted, *listener));
    }
    QString labelShown() {
        steps.clear();
        ending(session->settingsActions.showLabel({}, *listener));
        return steps.first();
    }
};

} // namespace

// ---- Launching at login

TEST_F(SettingsActionsTest, aLoginItemIsSwitchedOnAndOff) {
    EXPECT_TRUE(launchAtLogin(true).succeeded);
    EXPECT_EQ(takeSteps(), (QStringList{u"log: Login item enabled."_s, u"anew: "_s}));
    EXPECT_EQ(session->settingsStatus.current().launchAtLogin, State::Enabled);
    EXPECT_TRUE(launchAtLogin(false).succeeded);
    EXPECT_EQ(takeSteps(), (QStringList{u"log: Login item disabled."_s, u"anew: "_s}));
    EXPECT_EQ(session->settingsStatus.current().launchAtLogin, State::NotEnabled);
}

TEST_F(SettingsActionsTest, aFailureIsTold) {
    for (const bool isWanted : {true, false}) {
        loginService.failure.reset();
        loginService.current = isWanted ? State::NotEnabled : State::Enabled;
        loginService.failure = u"Operation not permitted"_s;
        EXPECT_FALSE(launchAtLogin(isWanted).succeeded);
        EXPECT_EQ(takeSteps(),
                  (QStringList{u"log: Failed to update login item: Operation not permitted"_s,
                               u"! Login Item | Could not update login item settings: Operation not permitted | OK"_s,
                               u"anew: "_s}));
    }
}

TEST_F(SettingsActionsTest, whatWaitsForApprovalIsNotTheFailureOfAnybody) {
    loginService.needsApproval = true;
    EXPECT_FALSE(launchAtLogin(true).succeeded);
    EXPECT_EQ(takeSteps(),
              (QStringList{u"log: Failed to update login item: Allow Quorvane in System Settings → General "
                           "→ Login Items."_s,
                           u"anew: "_s}));
    EXPECT_EQ(session->settingsStatus.current().launchAtLogin, State::RequiresApproval);
}

namespace {

/// Says yes, and does nothing.
class IdleLoginService final : public LoginService {
public:
    State state() const override { return State::NotEnabled; }
    std::optional<QString> registerProgram() override { return std::nullopt; }
    std::optional<QString> unregisterProgram() override { return std::nullopt; }
};

} // namespace

TEST_F(SettingsActionsTest, whatWasOnlyPromisedIsNotSaidToBeDone) {
    IdleLoginService idle;
    SettingsActions actions(session->stage,
                            {session->system, defaults, idle, *label, session->activeProfile, session->settingsStatus});
    EXPECT_FALSE(ending(actions.setLaunchAtLogin(true, *listener)).succeeded);
    EXPECT_EQ(takeSteps().at(1),
              u"! Login Item | Could not update login item settings: The system left it as it was. | OK"_s);
}

// ---- The label's name

TEST_F(SettingsActionsTest, theLabelTakesTheNameOfTheTitle) {
    addProfile(kClub);
    defaults.setString(kWallpaperProfileName, u"Old"_s);
    EXPECT_EQ(labelShown(), u"label on: Old"_s) << "without one the name that stood there";
    defaults.setString(kWallpaperProfileName, u"Default"_s);
    EXPECT_EQ(labelShown(), u"label on: "_s) << "which is never Default";
    defaults.setString(kQuorvaneLastAppliedProfileName, u"Club"_s);
    listProfiles();
    session->activeProfile.update();
    EXPECT_EQ(labelShown(), u"label on: Club"_s);
    makeActive(numberedProfile(2, u"Live"_s));
    EXPECT_EQ(labelShown(), u"label on: Live"_s);
}

TEST_F(SettingsActionsTest, anAnimatedPictureIsAskedAboutBeforeItIsCovered) {
    const QString question =
        u"! Show the Label? | macOS’s animated desktop picture will come back as a still picture. | "
        "Show Label, Cancel"_s;
    label->coversAnimated = true;
    alerts.press(1);
    EXPECT_FALSE(ending(session->settingsActions.showLabel(u"Live"_s, *listener)).succeeded);
    EXPECT_EQ(takeSteps(), QStringList(question)) << "nothing was changed";
    alerts.press(0);
    EXPECT_TRUE(ending(session->settingsActions.showLabel(u"Live"_s, *listener)).succeeded);
    EXPECT_EQ(takeSteps(), (QStringList{question, u"label on: Live"_s, u"anew: "_s}));
    EXPECT_TRUE(ending(session->settingsActions.removeLabel(*listener)).succeeded);
    EXPECT_EQ(takeSteps(), (QStringList{u"label off"_s, u"anew: "_s})) << "and only then";
}

// ---- What is shown

TEST_F(SettingsActionsTest, theFactsAreThoseOfNow) {
    int changes = 0;
    QObject::connect(&session->settingsStatus, &SettingsStatus::changed, [&changes] { ++changes; });
    session->settingsStatus.readAnew();
    EXPECT_EQ(session->settingsStatus.current(), SettingsFacts());
    EXPECT_EQ(changes, 0);
    files.createFolders(u"/Library/Application Support/com.apple.TCC"_s);
    defaults.setBoolean(kShowProfileOnWallpaper, true);
    defaults.setString(kWallpaperProfileName, u"Live"_s);
    loginService.current = State::Enabled;
    session->settingsStatus.readAnew();
    EXPECT_EQ(session->settingsStatus.current(),
              (SettingsFacts{true, true, true, false, State::Enabled, FullDiskAccess::Given}));
    EXPECT_EQ(changes, 1);
    label->isInPlace = false;
    Q_EMIT label->displaysLabelled({});
    EXPECT_FALSE(session->settingsStatus.current().isLabelInPlace);
    label->coversAnimated = true;
    Q_EMIT label->displaysLabelled({});
    EXPECT_TRUE(session->settingsStatus.current().hasAnimatedPicture);
    defaults.setString(kWallpaperProfileName, u"default"_s);
    session->settingsStatus.readAnew();
    EXPECT_FALSE(session->settingsStatus.current().hasLabelName);
}

// ---- The privacy settings

TEST_F(SettingsActionsTest, theStepsAreReadBeforeTheSettingsOpen) {
    const QString open = u"/usr/bin/open x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"_s;
    EXPECT_TRUE(ending(session->settingsActions.openPrivacySettings(*listener)).succeeded);
    EXPECT_EQ(trace.filter(u"/usr/bin/open"_s).size(), 1);
    EXPECT_TRUE(trace.filter(u"/usr/bin/open"_s).first().endsWith(open));
    const QStringList told = takeSteps();
    EXPECT_EQ(told.first(), u"log: Opening macOS Privacy & Security settings..."_s);
    EXPECT_TRUE(told.at(1).startsWith(u"! Full Disk Access Required | "_s));
}

// ---- The password

TEST_F(SettingsActionsTest, aPasswordIsAskedForUntilItIsRight) {
    LockActions actions(session->stage, *lock);
    QCoro::Task<ActionOutcome> action = actions.askPassword(AppPasswordSheetMode::enable, *listener);
    const auto entry = std::dynamic_pointer_cast<AppPasswordEntry>(listener->sheet);
    ASSERT_NE(entry, nullptr);
    EXPECT_FALSE(session->turnstile.isIdle()) << "its sheet is open";
    EXPECT_EQ(entry->biometry(), std::nullopt);
    entry->submit({{}, u"abc"_s, u"abc"_s});
    processEventsUntil([&entry] { return !entry->error().isEmpty(); });
    EXPECT_EQ(entry->error(), u"Password must be at least 4 characters."_s);
    entry->submit({{}, u"gig7"_s, u"gig7"_s});
    EXPECT_TRUE(QCoro::waitFor(action).succeeded);
    EXPECT_TRUE(entry->isOver());
    EXPECT_TRUE(lock->isLockEnabled());
    EXPECT_FALSE(lock->isUnlocked());
}

TEST_F(SettingsActionsTest, aDismissedEntryLeavesAllAsItWas) {
    enableLock();
    LockActions actions(session->stage, *lock);
    for (const auto mode : {AppPasswordSheetMode::change, AppPasswordSheetMode::disable}) {
        QCoro::Task<ActionOutcome> action = actions.askPassword(mode, *listener);
        listener->sheet->dismiss();
        EXPECT_FALSE(QCoro::waitFor(action).succeeded);
        EXPECT_TRUE(lock->unlockWithPassword(kPassword));
        EXPECT_TRUE(session->turnstile.isIdle());
    }
}

// ---- A choice of rows

TEST(RowChoiceTest, saysWhatItIsBusyWithAndNothingThatWasNotRead) {
    RowChoice choice(backupChoiceTexts());
    const QString none = u"No iCloud backups were found for Quorvane."_s;
    EXPECT_EQ(choice.text(), QString());
    choice.beginLoading();
    EXPECT_EQ(choice.text(), u"Loading iCloud backups…"_s);
    choice.endLoading(u"no cloud"_s);
    EXPECT_EQ(choice.text(), u"no cloud"_s);
    EXPECT_TRUE(choice.hasFailed());
    RowChoice read(backupChoiceTexts());
    read.beginLoading();
    read.endLoading({});
    EXPECT_EQ(read.text(), none);
    read.setRows({{u"latest.json"_s, {u"Latest Backup"_s, {}, {}}}});
    EXPECT_EQ(read.text(), QString());
    read.beginCarryingOut();
    EXPECT_EQ(read.text(), u"Restoring profiles from iCloud…"_s);
    read.dismiss();
    EXPECT_FALSE(read.isOver()) << "nothing closes it meanwhile";
    read.endCarryingOut(u"gone"_s);
    EXPECT_EQ(read.text(), u"gone"_s);
    read.dismiss();
    EXPECT_TRUE(read.isOver());
}

TEST(RowChoiceTest, givesWhatWasChosenOnceAndNoneAtItsEnd) {
    RowChoice choice(backupChoiceTexts());
    const QFuture<std::optional<QString>> first = choice.answer();
    choice.choose(u"a"_s);
    EXPECT_EQ(first.result(), u"a"_s);
    choice.choose(u"b"_s);
    const QFuture<std::optional<QString>> second = choice.answer();
    EXPECT_FALSE(second.isFinished());
    choice.end();
    EXPECT_EQ(second.result(), std::nullopt);
    EXPECT_EQ(choice.answer().result(), std::nullopt);
}

} // namespace quorvane
