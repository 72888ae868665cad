// Each question and each alert of window and menu, word by word, as a user meets them.

#include "core/UserDefaultKeys.h"
#include "fakes/QuickWindowOnMac.h"
#include "platform/FileManager.h"
#include "snapshots/SnapshotManager.h"

namespace quorvane {

namespace {

const QStringList kOkay{u"OK"_s};

ShownAlert told(const QString& title, const QString& text) {
    return {title, text, kOkay, u"OK"_s};
}

/// Whose first button does what it says, on Return.
ShownAlert asked(const QString& title, const QString& text, const QString& button) {
    return {title, text, {button, u"Cancel"_s}, button};
}

/// Whose first button destroys something.
ShownAlert askedTwice(const QString& title, const QString& text, const QString& button) {
    return {title, text, {button, u"Cancel"_s}, u"Cancel"_s};
}

const ShownAlert kDefaultQuestion =
    asked(u"Apply Default Profile?"_s,
          u"This will restore standard macOS performance settings.\n\nYour Mac will need to restart for all changes to "
          "take full effect."_s,
          u"Apply"_s);
const QString kNoBaselineThere = u"No restore baseline found — standard macOS defaults will be applied."_s;
const QString kPleaseRestart = u"\n\nPlease restart your Mac."_s;
const QString kPleaseRestartFully = u"\n\nPlease restart your Mac for changes to take full effect."_s;

ShownAlert reinstateQuestionOf(const QString& source) {
    return askedTwice(u"Reinstate System"_s,
                      u"This will restore system settings to before optimization.\n\n"_s + source +
                          u"\n\nAre you sure you want to continue?"_s,
                      u"Reinstate"_s);
}

ShownAlert undoQuestionOf(const QString& source) {
    return asked(u"Undo Performance Tweaks?"_s, source, u"Undo"_s);
}

} // namespace

class AlertsByWindow : public QuickWindowOnMac {
protected:
    void SetUp() override {
        keepBaseline();
        saveProfile(u"live-set"_s);
        launchAndScan();
    }
    void apply(const QString& name) {
        clickProfile(name);
        processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
        press(Qt::Key_Return);
        authorize();
        answerByKey(
            told(u"Restart Required"_s,
                 u"\"%1\" has been applied.\n\nPlease reboot your Mac for all settings to take full effect."_s.arg(
                     name)),
            Qt::Key_Escape);
        press(Qt::Key_Escape);
        waitUntilRest();
    }
    /// Nothing runs, and the scan that follows has ended.
    void waitUntilRest() {
        processEventsUntil([this] { return session().turnstile.isIdle() && session().scans.isUpToDate(); });
    }
    void begin(const QString& row) {
        waitUntilRest();
        click(row);
    }
    /// By hand, so that neither the profile nor Default fits.
    void changeMostOfIt() {
        shell(u"defaults write com.apple.CrashReporter DialogType crashreport; "
              "defaults write com.apple.assistant.support 'Assistant Enabled' -bool true; "
              "defaults write NSGlobalDomain com.apple.sound.uiaudio.enabled -int 1; "
              "defaults write NSGlobalDomain NSAppSleepDisabled -bool false; "
              "defaults -currentHost write com.apple.notificationcenterui doNotDisturb -bool false"_s);
    }
    void openTweaks() {
        click(u"System Tweaks"_s);
        waitUntilSeen(u"Revert All"_s);
    }
};

TEST_F(AlertsByWindow, verifyTellsWhatFits) {
    begin(u"Verify Current System Settings"_s);
    answerByKey(
        told(u"System Verified"_s, u"Current system matches Default.\n\nAll 2 setting(s) verified on the system."_s),
        Qt::Key_Return);
    EXPECT_TRUE(isSeen(u"Standard macOS operation — All 2 setting(s) verified on the system."_s));

    apply(u"Live Set"_s);
    begin(u"Verify Current System Settings"_s);
    answerByKey(told(u"System Verified"_s, u"Current system matches saved profile \"Live Set\".\n\nAll 12 setting(s) "
                                           "verified on the system."_s),
                Qt::Key_Escape);
    EXPECT_TRUE(isSeen(u"Profile: Live Set"_s));

    shell(u"defaults write com.apple.NetworkBrowser DisableAirDrop -bool false"_s);
    begin(u"Verify Current System Settings"_s);
    answerByKey(told(u"System Verified"_s, u"Current system matches saved profile \"Live Set\".\n\n11 verified, 1 not "
                                           "confirmed. Check Logs for details."_s),
                Qt::Key_Return);
    EXPECT_TRUE(isSeen(u"11 verified, 1 not confirmed. Check Logs for details."_s));

    changeMostOfIt();
    begin(u"Verify Current System Settings"_s);
    answerByKey(told(u"No Match Found"_s, u"No saved profile fully matches your current system settings.\n\nCheck the "
                                          "Logs tab for details."_s),
                Qt::Key_Return);
    EXPECT_TRUE(isSeen(u"Profile: Live Set (unverified)"_s));
}

TEST_F(AlertsByWindow, questionsThatAreCancelledLeaveNoTrace) {
    const macsim::MacPicture before = picture();
    const auto cancel = [this](const ShownAlert& question) {
        answerByKey(question, Qt::Key_Escape);
        waitUntilRest();
        EXPECT_EQ(alertTitle(), QString());
    };
    begin(u"Reinstate System"_s);
    cancel(reinstateQuestionOf(kNoBaselineThere));
    chooseCommand(u"Undo Performance Tweaks"_s);
    cancel(undoQuestionOf(kNoBaselineThere));
    clickProfile(u"Default"_s);
    cancel(kDefaultQuestion);
    chooseInMenu(u"Restore Default"_s);
    cancel(kDefaultQuestion);
    clickDeleteOf(u"Live Set"_s);
    const ShownAlert deletion = askedTwice(
        u"Delete Profile?"_s,
        u"“Live Set” will be removed from saved profiles and the menu bar. This cannot be undone."_s, u"Delete"_s);
    cancel(deletion);

    // Return presses cancel as well where the other button destroys something.
    begin(u"Reinstate System"_s);
    answerByKey(reinstateQuestionOf(kNoBaselineThere), Qt::Key_Return);
    waitUntilRest();
    clickDeleteOf(u"Live Set"_s);
    answerByKey(deletion, Qt::Key_Return);
    waitUntilRest();
    EXPECT_EQ(picture().changesSince(before), QString());
    EXPECT_TRUE(profileRows().contains(u"Live Set"_s));
}

TEST_F(AlertsByWindow, waysBackWithoutABaselineSpeakOfStandards) {
    openTweaks();
    click(u"Revert All"_s);
    authorize();
    answerByKey(told(u"Success"_s, u"Standard operation restored."_s + kPleaseRestart), Qt::Key_Return);
    waitUntilRest();
    click(u"Performance"_s);

    chooseCommand(u"Undo Performance Tweaks"_s);
    answerByKey(undoQuestionOf(kNoBaselineThere), Qt::Key_Return);
    authorize();
    answerByKey(told(u"Success"_s, u"Standard operation restored."_s + kPleaseRestart), Qt::Key_Escape);

    waitUntilRest();
    clickProfile(u"Default"_s);
    answerByKey(kDefaultQuestion, Qt::Key_Return);
    authorize();
    answerByKey(told(u"Default Applied"_s, u"Standard macOS settings restored."_s + kPleaseRestart), Qt::Key_Return);

    waitUntilRest();
    chooseInMenu(u"Restore Default"_s);
    answerByKey(kDefaultQuestion, Qt::Key_Return);
    authorize();
    answerByKey(told(u"Defaults Restored"_s, u"Standard macOS settings restored."_s + kPleaseRestartFully),
                Qt::Key_Return);

    begin(u"Reinstate System"_s);
    answerAlert(u"Reinstate System"_s, u"Reinstate"_s);
    authorize();
    answerByKey(told(u"Success"_s, u"System has been restored to standard defaults."_s + kPleaseRestartFully),
                Qt::Key_Return);
    waitUntilRest();
}

TEST_F(AlertsByWindow, waysBackWithASnapshotSpeakOfIt) {
    EXPECT_FALSE(isSeen(u"Restore baseline saved"_s));
    begin(u"Create System Snapshot"_s);
    answerByKey(told(u"Snapshot Saved"_s, u"Your current system setup has been saved as the restore baseline."_s),
                Qt::Key_Return);
    waitUntilSeen(u"Restore baseline saved"_s);
    EXPECT_TRUE(isSeen(u"Revert and Reinstate use your saved snapshot when available. Create a new snapshot before "
                       "applying tweaks."_s));

    const QString sourceIsThere = u"Your saved restore baseline will be used."_s;
    chooseCommand(u"Undo Performance Tweaks"_s);
    answerByKey(undoQuestionOf(u"Your saved settings will be restored."_s), Qt::Key_Return);
    authorize();
    answerByKey(told(u"Success"_s, u"Performance tweaks restored from your saved snapshot."_s + kPleaseRestart),
                Qt::Key_Return);

    waitUntilRest();
    clickProfile(u"Default"_s);
    answerByKey(kDefaultQuestion, Qt::Key_Return);
    authorize();
    answerByKey(told(u"Default Applied"_s,
                     u"Standard macOS settings restored from your saved restore baseline."_s + kPleaseRestart),
                Qt::Key_Return);

    waitUntilRest();
    chooseInMenu(u"Restore Default"_s);
    answerByKey(kDefaultQuestion, Qt::Key_Return);
    authorize();
    answerByKey(told(u"Defaults Restored"_s,
                     u"Standard macOS settings restored from your saved restore baseline."_s + kPleaseRestartFully),
                Qt::Key_Return);

    begin(u"Reinstate System"_s);
    waitUntilAlert(u"Reinstate System"_s);
    EXPECT_EQ(alert(), reinstateQuestionOf(sourceIsThere));
    answerAlert(u"Reinstate System"_s, u"Reinstate"_s);
    authorize();
    answerByKey(told(u"Success"_s, u"System restored from your saved restore baseline."_s + kPleaseRestartFully),
                Qt::Key_Return);

    waitUntilRest();
    openTweaks();
    click(u"Revert All"_s);
    authorize();
    answerByKey(told(u"Success"_s, u"Performance tweaks restored from your saved restore baseline.\n\nLogin items, "
                                   "network, and launch agents are unchanged. Use Reinstate for a full restore."_s +
                                       kPleaseRestart),
                Qt::Key_Return);
    waitUntilRest();
}

TEST_F(AlertsByWindow, aRefusedPasswordIsTold) {
    openTweaks();
    click(u"Revert All"_s);
    cancelAuthorization();
    answerByKey(told(u"Cancelled"_s, u"System-level defaults were not restored."_s), Qt::Key_Return);
    waitUntilRest();
    click(u"Performance"_s);

    chooseCommand(u"Undo Performance Tweaks"_s);
    answerAlert(u"Undo Performance Tweaks?"_s, u"Undo"_s);
    cancelAuthorization();
    answerByKey(told(u"Cancelled"_s, u"System-level defaults were not restored. Check the Logs tab for details."_s),
                Qt::Key_Return);

    waitUntilRest();
    clickProfile(u"Default"_s);
    answerAlert(u"Apply Default Profile?"_s, u"Apply"_s);
    cancelAuthorization();
    answerByKey(told(u"Cancelled"_s, u"Default settings were not restored. Check the Logs tab for details."_s),
                Qt::Key_Return);

    waitUntilRest();
    chooseInMenu(u"Restore Default"_s);
    answerAlert(u"Apply Default Profile?"_s, u"Apply"_s);
    cancelAuthorization();
    answerByKey(told(u"Restore Cancelled"_s, u"System defaults were not restored. Check the Logs tab for details."_s),
                Qt::Key_Return);

    begin(u"Reinstate System"_s);
    answerAlert(u"Reinstate System"_s, u"Reinstate"_s);
    cancelAuthorization();
    answerByKey(told(u"Cancelled"_s, u"System restoration was cancelled or failed."_s), Qt::Key_Return);
    waitUntilRest();
}

TEST_F(AlertsByWindow, aSnapshotOfAProfileIsAskedFor) {
    apply(u"Live Set"_s);
    const ShownAlert question = askedTwice(u"Replace Restore Baseline?"_s,
                                           u"“Live Set” is active. A snapshot taken now saves its settings, and Revert "
                                           "and Reinstate will return to them."_s,
                                           u"Replace"_s);
    const QString snapshot =
        host->host().machine.homeFolder() + u"/Library/Application Support/Quorvane/system_snapshot.json"_s;
    begin(u"Create System Snapshot"_s);
    answerByKey(question, Qt::Key_Return);
    waitUntilRest();
    EXPECT_FALSE(host->host().files.exists(snapshot));
    begin(u"Create System Snapshot"_s);
    answerAlert(u"Replace Restore Baseline?"_s, u"Replace"_s);
    answerAlert(u"Snapshot Saved"_s);
    EXPECT_TRUE(host->host().files.exists(snapshot));
    waitUntilSeen(u"Restore baseline saved"_s);
}

TEST_F(AlertsByWindow, aboutAndQuittingWhileBusy) {
    chooseCommand(u"About Quorvane"_s);
    answerByKey(told(u"Quorvane"_s, u"Beta Release 1.0"_s), Qt::Key_Return);

    commands().hold();
    begin(u"Verify Current System Settings"_s);
    const ShownAlert question{u"Quit Quorvane?"_s,
                              u"Verifying system settings…\n\nWhat is done stays done; the rest is left out, and "
                              "nothing is verified."_s,
                              {u"Keep Running"_s, u"Quit"_s},
                              u"Keep Running"_s};
    for (const int key : {Qt::Key_Escape, Qt::Key_Return}) {
        press(Qt::Key_Q, Qt::ControlModifier);
        answerByKey(question, key);
        EXPECT_FALSE(hasTerminated);
    }
    commands().release();
    answerAlert(u"System Verified"_s);
    commands().hold();
    begin(u"Verify Current System Settings"_s);
    chooseInMenu(u"Quit Quorvane"_s);
    waitUntilAlert(u"Quit Quorvane?"_s);
    answerAlert(u"Quit Quorvane?"_s, u"Quit"_s);
    processEventsUntil([this] { return hasTerminated; });
    EXPECT_EQ(alertTitle(), QString()) << "none after the end";
    delegate.reset();
}

TEST_F(AlertsByWindow, aSignalAsksNobodyWhateverIsOpen) {
    clickProfile(u"Live Set"_s);
    processEventsUntil([] { return isUsable(u"Apply Profile"_s); });
    commands().hold();
    press(Qt::Key_Return);
    waitUntilSeen(u"Applying profile…"_s);
    delegate->quit();
    processEventsUntil([this] { return hasTerminated; });
    EXPECT_EQ(mainWindow(), nullptr);
    EXPECT_EQ(alertTitle(), QString());
    delegate.reset();
}

TEST_F(AlertsByWindow, aQuestionThatIsAboutToBeShownIsCancelledByTheLock) {
    WindowWorkspace workspace;
    WindowAlerts alerts(workspace, [] { return nullptr; });
    const Alert question{u"Delete Profile?"_s, u"“Live” will be removed."_s, {u"Delete"_s, u"Cancel"_s}, 1, 0};
    const QFuture<int> answer = alerts.present(question);
    const QFuture<int> later = alerts.present({u"Profile Deleted"_s, {}, {u"OK"_s}});
    alerts.setLocked(true); // as the lock does it
    alerts.cancelOpen();
    ASSERT_TRUE(answer.isFinished());
    EXPECT_EQ(answer.result(), question.cancelButton);
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_FALSE(later.isFinished()) << "it waits until the lock goes";
    alerts.setLocked(false);
    answerAlert(u"Profile Deleted"_s);
    EXPECT_TRUE(later.isFinished());
}

TEST_F(AlertsByWindow, whatIsAboutToBeShownEndsWithTheProgram) {
    WindowWorkspace workspace;
    WindowAlerts alerts(workspace, [] { return nullptr; });
    const QFuture<int> one = alerts.present({u"One?"_s, {}, {u"Yes"_s, u"No"_s}, 1});
    const QFuture<int> other = alerts.present({u"Other?"_s, {}, {u"Yes"_s, u"No"_s}, 1});
    alerts.shutDown();
    ASSERT_TRUE(one.isFinished() && other.isFinished());
    EXPECT_EQ(one.result() + other.result(), 2);
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
}

TEST_F(AlertsByWindow, aMenuThatKnowsNoProgramOffersItsWindow) {
    WindowWorkspace workspace;
    WindowAlerts alerts(workspace, [] { return nullptr; });
    PlacedStatusItem item;
    MenuBarManager menu(item, alerts);
    int requests = 0;
    QObject::connect(&menu, &MenuBarManager::windowRequested, [&requests] { ++requests; });
    const ShownAlert question =
        asked(u"Quorvane Not Ready"_s, u"Open the Quorvane window first, then try again from the menu bar."_s,
              u"Open Quorvane"_s);
    const auto choose = [&item] { item.menu->actions().at(2)->trigger(); };
    choose();
    answerByKey(question, Qt::Key_Escape);
    EXPECT_EQ(requests, 0);
    choose();
    answerByKey(question, Qt::Key_Return);
    processEventsUntil([&requests] { return requests == 1; });
}

class FullDiskByWindow : public AlertsByWindow {
protected:
    void SetUp() override {
        keepBaseline();
        saveProfile(u"live-set"_s);
        startHost(R"([{"adapter": "files", "change": 1, "error": "No space left on device"}])");
        launchAndScan();
    }
};

TEST_F(FullDiskByWindow, whatCanNotBeSavedOrDeletedIsTold) {
    begin(u"Create System Snapshot"_s);
    answerByKey(told(u"Snapshot Failed"_s, u"Could not save the restore baseline. Check the Logs tab for details."_s),
                Qt::Key_Return);
    waitUntilRest();
    EXPECT_FALSE(isSeen(u"Restore baseline saved"_s));
    clickDeleteOf(u"Live Set"_s);
    answerAlert(u"Delete Profile?"_s, u"Delete"_s);
    answerByKey(told(u"Error"_s, u"Could not delete profile \"Live Set\"."_s), Qt::Key_Return);
    waitUntilRest();
    EXPECT_TRUE(profileRows().contains(u"Live Set"_s));
}

} // namespace quorvane
