// What holds of every view in each of its states: a screen reader finds its controls, the Tab key comes round, and there is room
// for its texts. The same runs with text twice as large.

#include "actions/AppPasswordEntry.h"
#include "actions/MasterBaselineOffer.h"
#include "app/simulated/AuthorizationDialog.h"
#include "app/simulated/FingerDialog.h"
#include "fakes/ShownWindow.h"
#include "fakes/ViewWalk.h"
#include "ui/pieces/TextLabel.h"
#include "ui/symbols/Symbols.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMenu>
#include <QRegularExpression>
#include <QTextEdit>

namespace quorvane {

namespace {

/// @param tab  the selected one
QStringList sidebar(const QString& tab = u"Performance"_s) {
    QStringList rows{u"list Sidebar (focused)"_s,
                     u"row Optimization"_s,
                     u"row Performance"_s,
                     u"row Maintenance"_s,
                     u"row Network"_s,
                     u"row Diagnostics"_s,
                     u"row Logs"_s,
                     u"row Preferences"_s,
                     u"row Settings"_s,
                     u"button Documentation"_s};
    rows.replaceInStrings(QRegularExpression(u"^row %1$"_s.arg(tab)), u"row %1 (selected, focused)"_s.arg(tab));
    return rows;
}

class EveryView : public ShownWindow {
protected:
    static void expectUsable(QWidget* shown) {
        settle();
        EXPECT_EQ(accessibilityFaults(shown), QStringList());
        EXPECT_EQ(tabFaults(shown), QStringList());
        expectRoom(shown);
    }
    static void expectRoom(QWidget* shown) {
        settle();
        EXPECT_EQ(clippedTexts(shown), QStringList());
    }
    void expectUsable() const { expectUsable(mainWindow.get()); }
    /// What lies beneath a sheet is there, and can't be used.
    QStringList spokenAboveThePage() const {
        const QStringList spoken = spokenControls(mainWindow.get());
        const auto sheet = std::find_if(spoken.begin(), spoken.end(),
                                        [](const QString& control) { return control.startsWith(u"dialog "_s); });
        for (auto control = spoken.begin(); control != sheet; ++control) {
            EXPECT_TRUE(control->startsWith(u"row "_s) || control->contains(u"disabled"_s)) << control->toStdString();
        }
        return {sheet, spoken.end()};
    }

    void showTweaks() {
        open();
        click(u"System Tweaks"_s);
        settle();
    }
    void showTab(Tab tab) {
        open();
        mainWindow->contentView().setSelectedTab(tab);
        waitForTasks();
        settle();
    }
    void showLogs() { showTab(Tab::logs); }
    /// What a screen reader finds on a page, behind the sidebar.
    QStringList spokenOnPage() const { return spokenControls(mainWindow.get()).mid(sidebar().size()); }
    /// What a screen reader says while the keys lead through a list; there may be room for few of its rows at a time.
    QStringList spokenAlong(const QString& list) const {
        named(list)->setFocus();
        press(Qt::Key_Home);
        QStringList spoken;
        while (spoken.isEmpty() || spoken.last() != spokenWithFocus()) {
            spoken.append(spokenWithFocus());
            press(Qt::Key_Down);
            settle();
        }
        return spoken;
    }
    /// The sidebar's row has the focus of its list.
    QString spokenWithFocus() const {
        return spokenControls(mainWindow.get()).filter(u"focused)"_s).filter(QRegularExpression(u"^row "_s)).last();
    }
    void signIn() {
        cloud.account = true;
        cloud.container = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;
    }
    /// @param state  from its opening on
    template <typename Change>
    void showPasswordSheet(AppPasswordSheetMode mode, Change state) {
        if (mode != AppPasswordSheetMode::enable) {
            enableLock();
        }
        open();
        session->tasks.start(lockActions.askPassword(mode, window));
        state(*std::dynamic_pointer_cast<AppPasswordEntry>(window.sheet()));
        settle();
    }
    static void expectSymbol(const QWidget* button, const QString& symbol) {
        const auto* const shown = qobject_cast<const QAbstractButton*>(button);
        ASSERT_NE(shown, nullptr);
        constexpr int kSize = 32;
        EXPECT_EQ(shown->icon().pixmap(kSize, kSize).toImage(),
                  symbolPixmap(symbol, kSize, themeOf(button).text, 1).toImage());
    }
    void closeSheet() {
        window.sheet()->end();
        waitForTasks();
    }
    /// The review of a profile that changes something, in a state.
    void showReview(ApplyReview::State state) {
        open();
        reviews.presentProfile(live, window, {});
        if (state != ApplyReview::State::Loading) {
            waitFor(ApplyReview::State::Reviewing);
        }
        if (state == ApplyReview::State::Applying) {
            commands.hold();
        }
        if (state == ApplyReview::State::Applying || state == ApplyReview::State::Finished) {
            review()->apply();
        }
        waitFor(state);
        settle();
    }
    std::shared_ptr<MasterBaselineOffer> showOffer() {
        open();
        auto offer = std::make_shared<MasterBaselineOffer>();
        window.showSheet(offer);
        settle();
        return offer;
    }
    void lockUp() {
        enableLock();
        open();
        lock->lockIfEnabled();
        settle();
    }
    /// A dialog of its own, in front.
    static void showDialog(QWidget& dialog) {
        dialog.show();
        dialog.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    }
};

const Alert kQuestion{u"Delete Profile?"_s, u"“Live” is removed from the disk."_s, {u"Delete"_s, u"Cancel"_s}, 1, 0,
                      AlertStyle::Warning};

const QStringList kStatusRows{
    u"button Verify Current System Settings: Compare live macOS settings against saved profiles and presets"_s,
    u"button Create System Snapshot: Save your current macOS setup as the restore baseline"_s,
    u"button Reinstate System: Restore from snapshot or standard defaults"_s};
const QString kReviewSheet =
    u"dialog Review Profile: Live: Review system tweaks and startup changes before applying this "
    "profile. Your Mac will need to restart afterward."_s;
const QString kOfferSheet =
    u"dialog Create Master System Baseline: Quorvane can capture your Mac’s current system settings "
    "as a protected master restore baseline."_s;
const QString kHeroCard =
    u"button Create Custom Profile: Step through system tweaks and startup optimization, then save to your menu bar."_s;
const QString kTweaksRow = u"button System Tweaks: Fine-tune macOS performance settings"_s;
const QString kStartupRow = u"button Startup Optimization: Manage login items and launch agents"_s;
const QString kPickOrDelete = u"Select the row to apply, or use Delete to remove this profile"_s;

} // namespace

TEST_F(EveryView, theMainPageWithoutAProfile) {
    session->savedProfiles.remove(live.name);
    open();
    EXPECT_EQ(spokenControls(mainWindow.get()),
              sidebar() + kStatusRows +
                  (QStringList{kHeroCard, u"list Saved Profiles"_s,
                               u"row Default: Standard macOS operation. Select the row to apply (focused)"_s,
                               kTweaksRow, kStartupRow}));
    expectUsable();
}

TEST_F(EveryView, theMainPageWithProfiles) {
    saveProfiles(2);
    open();
    EXPECT_EQ(
        spokenControls(mainWindow.get()),
        sidebar() + kStatusRows +
            (QStringList{
                kHeroCard, u"list Saved Profiles"_s, u"row Live: 1 disabled. "_s + kPickOrDelete + u" (focused)"_s,
                u"row Gig 1: Empty profile. "_s + kPickOrDelete, u"row Gig 2: Empty profile. "_s + kPickOrDelete,
                u"row Default: Standard macOS operation. Select the row to apply"_s, u"button Edit profile: Live"_s,
                u"button Delete profile: Live"_s, kTweaksRow, kStartupRow}));
    expectUsable();
}

TEST_F(EveryView, theMainPageWhileAProfileMatches) {
    makeActive(live);
    open();
    EXPECT_EQ(
        spokenControls(mainWindow.get()).filter(u"row Live"_s),
        QStringList(u"row Live: 1 disabled. Last applied. This profile matches current system settings (focused)"_s));
    expectUsable();
}

TEST_F(EveryView, theMainPageWithAFileThatCannotBeRead) {
    files.addFile(session->profileStore.profilesDirectory() + u"/Broken.json"_s, "{");
    open();
    EXPECT_EQ(
        spokenControls(mainWindow.get()).filter(u"Broken"_s),
        QStringList(
            u"row “Broken.json” can’t be read: Its file is damaged or from another program. It is left as it is."_s));
    expectUsable();
}

TEST_F(EveryView, theTweaksPage) {
    PerformanceSettings settings;
    settings.siri = true;
    session->workingCopy.setSettings(settings);
    showTweaks();
    const QStringList spoken = spokenControls(mainWindow.get());
    EXPECT_TRUE(spoken.contains(u"button Performance: Back (focused)"_s));
    EXPECT_EQ(spoken.filter(u"button Icon of "_s).size(), 12);
    EXPECT_EQ(spoken.filter(u"check box "_s).size(), 12);
    EXPECT_EQ(
        spoken.filter(u"(checked)"_s),
        QStringList(u"check box Deactivate Siri Core Services: Stop Siri voice processing and background listening "
                    "(checked)"_s));
    EXPECT_EQ(spoken.last(), u"button Execute Tweaks"_s);
    expectUsable();
}

TEST_F(EveryView, aTweaksNoteStandsUnderItAndIsSpoken) {
    machine.version = u"26.1"_s;
    showTweaks();
    const QStringList noted = spokenControls(mainWindow.get()).filter(u" — "_s);
    EXPECT_EQ(noted.size(), 5) << noted.join(u'\n').toStdString();
    EXPECT_TRUE(
        noted.contains(u"check box Suppress Notifications and Alerts: Disable Notification Center during sessions — "
                       "Stored; turn on a Focus as well"_s));
    EXPECT_TRUE(
        noted.contains(u"check box Disable HDD Sudden Motion Sensor: Prevent drive head parking from causing audio "
                       "dropouts — No effect on this Mac"_s));
    QStringList shown;
    const auto labels = mainWindow->findChildren<TextLabel*>();
    for (const TextLabel* text : labels) {
        if (text->isVisible()) {
            shown.append(text->text());
        }
    }
    EXPECT_EQ(shown.count(u"After the restart"_s), 3);
    EXPECT_TRUE(shown.contains(u"Stored; turn on a Focus as well"_s));
    EXPECT_TRUE(shown.contains(u"No effect on this Mac"_s));
    expectUsable();
}

TEST_F(EveryView, theStartupPage) {
    StartupItem gone;
    gone.id = u"launch:com.gone.plist"_s;
    gone.name = u"Gone Helper"_s;
    gone.kind = StartupItemKind::launchAgent;
    gone.runsAtStartup = false;
    UnifiedProfile profile = live;
    profile.startup.items = {gone};
    session->workingCopy.load(profile);
    session->workingCopy.addLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, true});
    QCoro::waitFor(session->system.discoverStartupItems(SystemManager::StartupRefresh::UseCache));
    open();
    click(u"Startup Optimization"_s);
    processEventsUntil([this] { return !session->startupEditing.isRefreshing(); });
    settle();
    const QStringList spoken = spokenControls(mainWindow.get());
    EXPECT_EQ(spoken.filter(u"field Search startup items…"_s).size(), 1);
    EXPECT_EQ(spoken.filter(u"list Startup Items: Control which apps, agents, "_s).size(), 1);
    EXPECT_EQ(spoken.last(), u"button Review Changes"_s);
    const QStringList rows = spokenAlong(u"Startup Items"_s);
    EXPECT_EQ(rows.filter(u" at login"_s).size(), 3) << rows.join(u'\n').toStdString();
    EXPECT_EQ(rows.filter(u"row Chat, App, runs at login"_s).filter(u"(checked"_s).size(), 1);
    EXPECT_TRUE(rows.last().startsWith(u"row Disable Network on Startup: "_s)) << rows.last().toStdString();
    named(u"Sidebar"_s)->setFocus();
    expectUsable();
}

TEST_F(EveryView, theIconPicker) {
    showTweaks();
    click(u"Icon of Deactivate Siri Core Services"_s);
    settle();
    QWidget* const search = named(u"Search icon"_s);
    ASSERT_NE(search, nullptr);
    EXPECT_TRUE(search->hasFocus());
    EXPECT_EQ(accessibilityFaults(mainWindow.get()), QStringList());
    expectRoom(mainWindow.get());
}

TEST_F(EveryView, theReviewWhileItLoads) {
    commands.hold();
    showReview(ApplyReview::State::Loading);
    EXPECT_EQ(spokenAboveThePage(),
              (QStringList{kReviewSheet, u"button Close (focused)"_s, u"button Apply Profile (disabled)"_s}));
    expectUsable();
    commands.release();
}

TEST_F(EveryView, theReview) {
    showReview(ApplyReview::State::Reviewing);
    EXPECT_EQ(spokenAboveThePage(),
              (QStringList{kReviewSheet, u"button Close"_s, u"button Apply Profile (focused)"_s}));
    expectUsable();
}

TEST_F(EveryView, theReviewWhileItApplies) {
    showReview(ApplyReview::State::Applying);
    expectRoom(mainWindow.get());
    EXPECT_EQ(accessibilityFaults(mainWindow.get()), QStringList());
    EXPECT_EQ(spokenAboveThePage(),
              (QStringList{kReviewSheet, u"button Close (disabled)"_s, u"button Apply Profile (disabled)"_s}));
    commands.holdNoFurther();
    commands.release();
}

TEST_F(EveryView, theReviewWithItsResult) {
    showReview(ApplyReview::State::Finished);
    EXPECT_EQ(spokenAboveThePage(), (QStringList{u"dialog Review Profile: Live"_s, u"button Done (focused)"_s}));
    expectUsable();
}

TEST_F(EveryView, theOfferOfABaseline) {
    showOffer();
    EXPECT_EQ(spokenAboveThePage(),
              (QStringList{kOfferSheet, u"button Not Now"_s, u"button Create Master Baseline (focused)"_s}));
    expectUsable();
}

TEST_F(EveryView, theOfferOfABaselineWhileItIsSaved) {
    showOffer()->beginSaving();
    EXPECT_EQ(accessibilityFaults(mainWindow.get()), QStringList());
    expectRoom(mainWindow.get());
}

TEST_F(EveryView, theOfferOfABaselineThatCouldNotBeSaved) {
    const std::shared_ptr<MasterBaselineOffer> offer = showOffer();
    offer->beginSaving();
    offer->endSaving(false);
    expectUsable();
}

TEST_F(EveryView, theLockScreen) {
    lockUp();
    EXPECT_EQ(spokenControls(mainWindow.get()),
              (QStringList{u"field Password: Password (password, focused)"_s, u"button Unlock"_s}));
    expectUsable();
}

TEST_F(EveryView, theLockScreenWithAFinger) {
    biometrics.isUsable = true;
    biometrics.kind = BiometryType::TouchId;
    workspace.isActiveNow = false; // or it would ask at once
    lockUp();
    EXPECT_EQ(spokenControls(mainWindow.get()), (QStringList{u"field Password: Password (password, focused)"_s,
                                                             u"button Unlock"_s, u"button Unlock with Touch ID"_s}));
    expectSymbol(named(u"Unlock with Touch ID"_s), u"touchid"_s);
    expectUsable();
}

TEST_F(EveryView, theLogs) {
    showLogs();
    EXPECT_EQ(spokenControls(mainWindow.get()),
              sidebar(u"Logs"_s) +
                  (QStringList{u"field Search log: Search log…"_s, u"button Previous (disabled)"_s,
                               u"button Next (disabled)"_s, u"button Run: This Run: Opens a menu"_s,
                               u"button Shown: All Messages: Opens a menu"_s, u"check box Verbose Debug Logging"_s,
                               u"button Copy"_s, u"button Clear Log"_s, u"button Export Log…"_s,
                               u"list Log: "_s + kNoLogMessages}));
    expectUsable();
}

TEST_F(EveryView, theLogOfAnEarlierRunThatIsGone) {
    const QString run = u"/Users/alex/Library/Logs/Quorvane/Quorvane 2026-12-23 10.58.07 (4711).log"_s;
    files.addFile(run, "Ready.\n");
    showLogs();
    click(u"Run: This Run"_s);
    settle();
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    files.removeAsRoot(run);
    menu->actions().last()->trigger();
    menu->close();
    processEventsUntil([this] { return session->tasks.count() == 0; });
    settle();
    const QStringList controls = spokenControls(mainWindow.get());
    EXPECT_TRUE(controls.contains(u"button Run: Dec 23, 2026 at 10:58 AM: Opens a menu (focused)"_s))
        << controls.join(u'\n').toStdString();
    EXPECT_TRUE(controls.contains(u"button Clear Log (disabled)"_s));
    EXPECT_EQ(controls.last(), u"list Log: "_s + kLogOfRunIsGone);
    expectUsable();
}

TEST_F(EveryView, theLogsWithMessages) {
    for (int number = 0; number < 200; ++number) {
        session->system.log(u"  [APPLIED] line %1"_s.arg(number));
    }
    showLogs();
    named(u"Log"_s)->setFocus();
    press(Qt::Key_Home);
    EXPECT_EQ(spokenControls(mainWindow.get()).filter(u"Latest"_s).size(), 1);
    named(u"Sidebar"_s)->setFocus();
    expectUsable();
}

TEST_F(EveryView, theDocumentation) {
    open();
    click(kDocumentation);
    settle();
    QWidget* const shown = QApplication::activeWindow();
    ASSERT_NE(shown, nullptr);
    processEventsUntil([shown] { return shown->findChild<QTextEdit*>()->toPlainText().contains(u"Copyright"); });
    expectUsable(shown);
}

TEST_F(EveryView, maintenance) {
    showTab(Tab::maintenance);
    EXPECT_EQ(spokenOnPage(),
              (QStringList{u"check box Clear System Caches: Remove user and system cache files to free disk space"_s,
                           u"check box Clean User Trash: Permanently delete all items in the Trash"_s,
                           u"check box Purge Downloads Folder: Remove all files from the Downloads directory"_s,
                           u"button Execute Maintenance (disabled)"_s}));
    expectUsable();
    click(u"Clean User Trash"_s);
    EXPECT_TRUE(spokenOnPage().contains(
        u"check box Clean User Trash: Permanently delete all items in the Trash (checked, focused)"_s));
    EXPECT_EQ(spokenOnPage().last(), u"button Execute Maintenance"_s);
    expectUsable();
}

TEST_F(EveryView, network) {
    showTab(Tab::network);
    EXPECT_EQ(spokenOnPage().size(), 5);
    EXPECT_EQ(spokenOnPage().filter(u"check box "_s).size(), 4);
    EXPECT_EQ(spokenOnPage().last(), u"button Execute Network"_s);
    expectUsable();
}

TEST_F(EveryView, settings) {
    showTab(Tab::settings);
    EXPECT_EQ(spokenOnPage(),
              (QStringList{u"choice Follow macOS: Automatically match your system theme (checked)"_s,
                           u"choice Light Mode: Always use light appearance"_s,
                           u"choice Dark Mode: Always use dark appearance"_s, u"button Set App Password…"_s,
                           u"button Back Up Profiles to iCloud"_s, u"button Restore Profiles from iCloud"_s,
                           u"button Choose a Restore Baseline…"_s,
                           u"check box Show Current Profile on Wallpaper: Displays the profile name in bold at the "
                           "top-left of your wallpaper"_s,
                           u"check box Launch at Login: Automatically start Quorvane when you log in"_s,
                           u"button Open System Settings…"_s}));
    expectUsable();
}

TEST_F(EveryView, settingsWithEverythingOn) {
    signIn();
    enableLock();
    files.createFolders(u"/Library/Application Support/com.apple.TCC"_s);
    loginService.current = LoginService::State::RequiresApproval;
    defaults.setBoolean(kShowProfileOnWallpaper, true);
    showTab(Tab::settings);
    const QStringList spoken = spokenOnPage();
    EXPECT_TRUE(spoken.contains(u"button Lock Now"_s));
    EXPECT_TRUE(spoken.contains(u"button Change Password…"_s));
    EXPECT_TRUE(spoken.contains(u"button Remove App Lock…"_s));
    EXPECT_FALSE(spoken.contains(u"button Set App Password…"_s));
    EXPECT_TRUE(spoken.contains(u"check box Launch at Login: Automatically start Quorvane when you log in. Allow "
                                "Quorvane in System Settings → General → Login Items."_s));
    EXPECT_EQ(spoken.filter(u"Shown after a profile was applied."_s).size(), 1);
    expectUsable();
}

TEST_F(EveryView, theSheetThatSetsAPassword) {
    showPasswordSheet(AppPasswordSheetMode::enable, [](AppPasswordEntry&) {});
    EXPECT_EQ(spokenAboveThePage(), (QStringList{u"dialog Set App Password"_s, u"field Password (password, focused)"_s,
                                                 u"field Confirm Password (password)"_s, u"button Cancel"_s,
                                                 u"button Enable App Lock (disabled)"_s}));
    expectUsable();
    closeSheet();
}

TEST_F(EveryView, theSheetThatChangesAPassword) {
    biometrics.isUsable = true;
    biometrics.kind = BiometryType::TouchId;
    showPasswordSheet(AppPasswordSheetMode::change,
                      [](AppPasswordEntry& entry) { entry.fail(u"Current password is incorrect."_s); });
    EXPECT_EQ(spokenAboveThePage(),
              (QStringList{u"dialog Change App Password"_s, u"field Current Password (password, focused)"_s,
                           u"field New Password (password)"_s, u"field Confirm Password (password)"_s,
                           u"button Use Touch ID"_s, u"button Cancel"_s, u"button Save Password (disabled)"_s}));
    expectSymbol(named(u"Use Touch ID"_s), u"touchid"_s);
    expectUsable();
    closeSheet();
}

TEST_F(EveryView, theSheetThatTakesTheLockOff) {
    showPasswordSheet(AppPasswordSheetMode::disable, [](AppPasswordEntry&) {});
    EXPECT_EQ(spokenAboveThePage(),
              (QStringList{u"dialog Remove App Lock"_s, u"field Current Password (password, focused)"_s,
                           u"button Cancel"_s, u"button Remove Lock (disabled)"_s}));
    expectUsable();
    closeSheet();
}

TEST_F(EveryView, theBackups) {
    signIn();
    open();
    ASSERT_TRUE(ending(session->backupActions.backUp(*listener)).succeeded);
    session->tasks.start(session->backupActions.chooseAndRestore(window));
    processEventsUntil([this] { return session->tasks.count() == 1; }); // all is read
    settle();
    EXPECT_EQ(spokenAboveThePage().filter(u"button "_s).first(),
              u"button Restore: Latest Backup: 1 profile(s) from Studio"_s);
    EXPECT_EQ(spokenAboveThePage().last(), u"button Close (focused)"_s);
    expectUsable();
    closeSheet();
}

TEST_F(EveryView, theBackupsThatCannotBeRead) {
    open();
    session->tasks.start(session->backupActions.chooseAndRestore(window));
    settle();
    EXPECT_EQ(spokenAboveThePage().last(), u"button Close (focused)"_s);
    expectUsable();
    closeSheet();
}

TEST_F(EveryView, theOverlay) {
    showLogs();
    const Turnstile::Hold busy = session->turnstile.busy(u"Reading the current configuration of this Mac…"_s);
    settle();
    EXPECT_EQ(spokenControls(mainWindow.get()).filter(u"Log:"_s),
              (QStringList{u"list Log: "_s + kNoLogMessages + u" (disabled)"_s}));
    expectUsable();
}

TEST_F(EveryView, anAlert) {
    AlertDialog alert(kQuestion);
    showDialog(alert);
    EXPECT_EQ(spokenControls(&alert), (QStringList{u"dialog Delete Profile?: “Live” is removed from the disk."_s,
                                                   u"button Cancel (focused)"_s, u"button Delete"_s}));
    expectUsable(&alert);
}

TEST_F(EveryView, theDialogOfTheSystem) {
    macsim::Machine simulated;
    simulated.userName = u"dj"_s;
    simulated.password = u"quorvane"_s;
    AuthorizationDialog dialog(u"Quorvane needs your administrator password to apply Live."_s, simulated);
    showDialog(dialog);
    EXPECT_EQ(spokenControls(&dialog),
              (QStringList{u"dialog Quorvane needs your administrator password to apply Live."_s,
                           u"field Password: Password (password, focused)"_s, u"button Cancel"_s, u"button OK"_s}));
    expectUsable(&dialog);
}

TEST_F(EveryView, theDialogOfTheSensor) {
    FingerDialog dialog(u"Unlock Quorvane"_s);
    showDialog(dialog);
    EXPECT_EQ(spokenControls(&dialog),
              (QStringList{u"dialog Unlock Quorvane"_s, u"button Cancel"_s, u"button Mac’s Password"_s,
                           u"button Another Finger"_s, u"button Enrolled Finger (focused)"_s}));
    expectUsable(&dialog);
}

} // namespace quorvane
