// Each action on its own: what the lock, a question and a cancel make of it, and its steps in order.

#include "fakes/ActionSystem.h"
#include "fakes/ReadingLines.h"
#include "snapshots/SnapshotManager.h"

#include <QRegularExpression>

#include <functional>

namespace quorvane {

namespace {

using Archive = SystemManager::MasterArchive;
using Start = std::function<QCoro::Task<ActionOutcome>(Session& session, ActionListener& listener)>;

const UnifiedProfile kLive = numberedProfile(1, u"Live"_s);

/// Every action, the text that its gate says, and the title of the question or review that follows; empty without one.
struct Row {
    QString gate;
    QString question;
    Start start;
};

const QList<Row>& actions() {
    static const QList<Row> rows{
        {u"save a system snapshot"_s,
         {},
         [](Session& s, ActionListener& l) { return s.systemActions.saveSnapshot({}, Archive::No, l); }},
        {u"reinstate the system"_s, u"! Reinstate System"_s,
         [](Session& s, ActionListener& l) { return s.systemActions.reinstate(l); }},
        {u"apply startup changes"_s, u"review: Review Startup Changes"_s,
         [](Session& s, ActionListener& l) { return s.systemActions.applyStartup({}, l); }},
        {u"apply performance tweaks"_s, u"review: Review Performance Tweaks"_s,
         [](Session& s, ActionListener& l) { return s.tweakActions.execute({}, {}, l); }},
        {u"revert performance tweaks"_s, u"! Undo Performance Tweaks?"_s,
         [](Session& s, ActionListener& l) { return s.tweakActions.undo(l); }},
        {u"revert performance tweaks"_s, {}, [](Session& s, ActionListener& l) { return s.tweakActions.revertAll(l); }},
        {u"run maintenance"_s, u"! Delete Permanently?"_s,
         [](Session& s, ActionListener& l) {
             return s.maintenanceActions.execute({false, true, false}, l);
         }},
        {u"change the network"_s,
         {},
         [](Session& s, ActionListener& l) {
             return s.networkActions.execute({true, false, false, false}, l);
         }},
        {u"back up profiles"_s, {}, [](Session& s, ActionListener& l) { return s.backupActions.backUp(l); }},
        {u"restore profiles"_s,
         {},
         [](Session& s, ActionListener& l) { return s.backupActions.restore(u"latest.json"_s, l); }},
        {u"choose a restore baseline"_s,
         {},
         [](Session& s, ActionListener& l) { return s.baselineActions.use(u"latest"_s, l); }},
        {u"change the wallpaper label"_s,
         {},
         [](Session& s, ActionListener& l) { return s.settingsActions.showLabel(u"Live"_s, l); }},
        {u"change the wallpaper label"_s,
         {},
         [](Session& s, ActionListener& l) { return s.settingsActions.removeLabel(l); }},
        {u"change the login item settings"_s,
         {},
         [](Session& s, ActionListener& l) { return s.settingsActions.setLaunchAtLogin(true, l); }},
        {u"apply the Default profile"_s, u"! Apply Default Profile?"_s,
         [](Session& s, ActionListener& l) { return s.profileActions.restoreDefault(StartedFrom::Page, l); }},
        {u"restore default settings"_s, u"! Apply Default Profile?"_s,
         [](Session& s, ActionListener& l) { return s.profileActions.restoreDefault(StartedFrom::Menu, l); }},
        {u"switch profiles"_s, u"review: Review Profile: Live"_s,
         [](Session& s, ActionListener& l) {
             return s.profileActions.pick(kLive.name, kLive.id, StartedFrom::Page, l);
         }},
        {u"delete profiles"_s, u"! Delete Profile?"_s,
         [](Session& s, ActionListener& l) { return s.profileActions.remove(kLive.name, kLive.id, l); }}};
    return rows;
}

class ActionsTest : public ActionSystem {
protected:
    ActionsTest() {
        addProfile(kLive);
        keepWhatIsWritten();
    }

    void saveSnapshot() {
        ASSERT_TRUE(ending(session->systemActions.saveSnapshot({}, Archive::No, *listener)).succeeded);
        steps.clear();
        trace.clear();
    }
    void answerReadings(const QList<std::pair<QString, QByteArray>>& readings) {
        for (const auto& [line, value] : readings) {
            commands.print(line, value + '\n');
        }
    }
    void putEveryTweakInForce() {
        answerReadings({{reading::kAppNap, "1"},
                        {reading::kSystemUpdateDownload, "0"},
                        {reading::kSystemUpdateInstall, "0"},
                        {reading::kSystemStoreUpdate, "0"},
                        {reading::kDoNotDisturb, "1"},
                        {reading::kAssistant, "0"},
                        {reading::kCrashReporter, "none"},
                        {reading::kSounds, "0"},
                        {reading::kAirDrop, "1"},
                        {reading::kPower, " standby 0\n disksleep 0\n sleep 0\n sms 0"},
                        {reading::kSpotlight, reading::indexing("Indexing disabled.")},
                        {reading::kTimeMachine, "0"},
                        {reading::kLogoutState, "1"},
                        {reading::kLoginRelaunch, "1"}});
    }
    void takeBackEveryTweak() {
        answerReadings({{reading::kAppNap, "0"},
                        {reading::kSystemUpdateDownload, "1"},
                        {reading::kSystemUpdateInstall, "1"},
                        {reading::kSystemStoreUpdate, "1"},
                        {reading::kDoNotDisturb, "0"},
                        {reading::kAssistant, "1"},
                        {reading::kCrashReporter, "crashreport"},
                        {reading::kSounds, "1"},
                        {reading::kPower, " standby 1\n disksleep 10\n sleep 1\n sms 1"},
                        {reading::kSpotlight, reading::indexing("Indexing enabled. ")},
                        {reading::kTimeMachine, "1"}});
    }
    bool commandsWereRun() const { return !trace.isEmpty(); }
};

} // namespace

// ---- The lock, questions, cancelling

TEST_F(ActionsTest, theLockKeepsEachFromBeginning) {
    enableLock();
    lock->lockIfEnabled();
    steps.clear();
    const auto before = defaults.values;
    for (const Row& row : actions()) {
        SCOPED_TRACE(row.gate.toStdString());
        EXPECT_FALSE(ending(row.start(*session, *listener)).wasCarriedOut);
        EXPECT_EQ(takeSteps(), (QStringList{u"activate"_s, u"windows to the front"_s,
                                            u"! Quorvane is Locked | Enter your app password in the Quorvane window "
                                            "to "_s +
                                                row.gate + u". | OK"_s}));
    }
    EXPECT_FALSE(commandsWereRun());
    EXPECT_EQ(defaults.values, before);
}

TEST_F(ActionsTest, cancelledNoneLeavesATrace) {
    alerts.press(1);
    listener->agreesToReviews = false;
    const auto before = defaults.values;
    for (const Row& row : actions()) {
        if (row.question.isEmpty()) {
            continue;
        }
        SCOPED_TRACE(row.gate.toStdString());
        const ActionOutcome outcome = ending(row.start(*session, *listener));
        EXPECT_FALSE(outcome.wasCarriedOut);
        EXPECT_EQ(outcome.alert, std::nullopt);
        const QStringList asked = takeSteps().filter(QRegularExpression(u"^(!|review)"_s));
        ASSERT_EQ(asked.size(), 1);
        EXPECT_TRUE(asked.first().startsWith(row.question)) << asked.first().toStdString();
        EXPECT_TRUE(session->turnstile.isIdle());
    }
    EXPECT_FALSE(commandsWereRun());
    EXPECT_EQ(defaults.values, before);
    EXPECT_EQ(namesOf(session->profileStore.listProfiles()), QStringList(u"Live"_s));
}

TEST_F(ActionsTest, lockedWhileTheyAskNoneGoesOn) {
    enableLock();
    for (const Row& row : actions()) {
        if (row.question.isEmpty()) {
            continue;
        }
        SCOPED_TRACE(row.gate.toStdString());
        ASSERT_TRUE(lock->unlockWithPassword(kPassword));
        alerts.hold();
        listener->held.emplace().start();
        steps.clear();
        QCoro::Task<ActionOutcome> action = row.start(*session, *listener);
        processEventsUntil([&] { return steps.filter(row.question).size() == 1; });
        alerts.answer(0);
        listener->held->finish();
        lock->lockIfEnabled();
        EXPECT_FALSE(QCoro::waitFor(action).wasCarriedOut);
    }
    EXPECT_FALSE(commandsWereRun());
}

TEST_F(ActionsTest, noneBeginsWhileAnotherIsAsking) {
    alerts.hold();
    QCoro::Task<ActionOutcome> first = session->tweakActions.undo(*listener);
    processEventsUntil([this] { return alerts.openCount() == 1; });
    steps.clear();
    for (const Row& row : actions()) {
        EXPECT_FALSE(ending(row.start(*session, *listener)).wasCarriedOut) << row.gate.toStdString();
    }
    EXPECT_EQ(takeSteps(), QStringList());
    alerts.cancelOpen();
    EXPECT_FALSE(QCoro::waitFor(first).wasCarriedOut);
}

// ---- The system

TEST_F(ActionsTest, verifyTellsWhatFits) {
    UnifiedProfile wanting = kLive;
    wanting.settings.siri = true;
    addProfile(wanting);
    const ActionOutcome outcome = ending(session->systemActions.verify(*listener));
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(outcome.match, std::nullopt);
    EXPECT_EQ(takeSteps(), (QStringList{u"busy: Verifying system settings…"_s,
                                        u"log: [VERIFY] Scanning current system settings..."_s,
                                        u"post: QuorvaneSystemVerified"_s, u"idle"_s,
                                        u"! No Match Found | No saved profile fully matches your current system "
                                        "settings.\n\nCheck the Logs tab for details. | OK"_s,
                                        u"anew: "_s}));
}

TEST_F(ActionsTest, anUndoneProfileIsKeptButNotVerified) {
    UnifiedProfile profile = numberedProfile(2, u"Full"_s);
    profile.settings = PerformanceSettings::fullSelection();
    addProfile(profile);
    noteEveryTweakChanged();
    putEveryTweakInForce();
    ASSERT_TRUE(ending(session->profileActions.review(profile, *listener)).succeeded);
    ASSERT_EQ(session->system.lastApplyVerification()->failed, QList<ApplyVerificationResult::Item>());
    scripts.carryOut = [this](const QString&) {
        takeBackEveryTweak();
        for (const QString& deleted :
             {reading::kSystemUpdateDownload, reading::kSystemUpdateInstall, reading::kSystemStoreUpdate}) {
            commands.fail(deleted, 1, {});
        }
    };
    ASSERT_TRUE(ending(session->tweakActions.undo(*listener)).succeeded);
    EXPECT_EQ(session->system.lastApplyVerification(), std::nullopt);
    QCoro::waitFor(session->finished());
    const QStringList another{u"/usr/bin/defaults"_s, u"write"_s, u"com.apple.NetworkBrowser"_s,
                              u"DisableAirDrop"_s,    u"-bool"_s, u"YES"_s};
    ASSERT_EQ(commands.run(another, OutputCapture::Discard).result().code, 0); // another program
    steps.clear();
    const ActionOutcome scanned = ending(session->systemActions.verify(*listener));
    EXPECT_FALSE(scanned.succeeded);
    EXPECT_EQ(scanned.match, (SystemConfigurationMatch{u"Full"_s, MatchedConfigurationKind::savedProfile, {}, true}));
    QCoro::waitFor(session->finished());
    EXPECT_EQ(takeSteps(), (QStringList{u"busy: Verifying system settings…"_s,
                                        u"log: [VERIFY] Scanning current system settings..."_s, u"idle"_s,
                                        u"! No Match Found | No saved profile fully matches your current system "
                                        "settings.\n\nCheck the Logs tab for details. | OK"_s,
                                        u"anew: "_s}));
    // What was only kept isn't in force, so nothing of it would be captured.
    EXPECT_TRUE(ending(session->systemActions.saveSnapshot({}, Archive::No, *listener)).succeeded);
    EXPECT_TRUE(takeSteps().filter(u"! Replace Restore Baseline?"_s).isEmpty());
}

TEST_F(ActionsTest, eachApplyAndEachWayBackForgetsWhatTheLastApplyFound) {
    saveOwnSnapshot();
    for (const Row& row : actions()) {
        const bool isApply = row.gate.startsWith(u"apply"_s) || row.gate == u"switch profiles"_s;
        const bool isWayBack = row.gate.startsWith(u"re"_s) && row.gate != u"restore profiles"_s;
        if (!isApply && !isWayBack) {
            continue;
        }
        SCOPED_TRACE(row.gate.toStdString());
        putEveryTweakInForce();
        QCoro::waitFor(session->system.applyPerformanceTweaks(PerformanceSettings::fullSelection()));
        ASSERT_TRUE(session->system.lastApplyVerification().has_value());
        std::optional<bool> isForgotten;
        const auto connection =
            QObject::connect(&session->system, &SystemManager::messageLogged, [&](const QString& line) {
                const bool isOfLoading = line.startsWith(u"\n[PROFILE] Loaded: "_s);
                if (!isOfLoading && !isForgotten) {
                    isForgotten = !session->system.lastApplyVerification();
                }
            });
        ending(row.start(*session, *listener));
        QObject::disconnect(connection);
        EXPECT_EQ(isForgotten, true) << "before its first line";
    }
}

TEST_F(ActionsTest, aSnapshotThatCannotBeArchivedIsNotAllThatWasAskedFor) {
    cloud.account = true; // without a container
    const ActionOutcome outcome = ending(session->systemActions.saveSnapshot({}, Archive::Yes, *listener));
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(outcome.capture, (SnapshotCapture{true, false}));
    EXPECT_EQ(outcome.alert->title, u"Baseline Not Archived"_s);
}

TEST_F(ActionsTest, aSnapshotIsSavedUnasked) {
    EXPECT_TRUE(ending(session->systemActions.saveSnapshot(u"Manual snapshot"_s, Archive::No, *listener)).succeeded);
    EXPECT_EQ(
        takeSteps(),
        (QStringList{u"busy: Saving system snapshot…"_s, u"log: Capturing system snapshot..."_s,
                     u"post: QuorvaneRestoreBaselineSaved"_s, u"idle"_s,
                     u"! Snapshot Saved | Your current system setup has been saved as the restore baseline. | OK"_s,
                     u"anew: snapshot"_s}));
}

TEST_F(ActionsTest, aSnapshotOfAnActiveProfileIsAskedFor) {
    makeActive(kLive);
    alerts.press(1);
    EXPECT_FALSE(ending(session->systemActions.saveSnapshot({}, Archive::No, *listener)).wasCarriedOut);
    EXPECT_EQ(takeSteps(),
              QStringList(u"! Replace Restore Baseline? | “Live” is active. A snapshot taken now saves "
                          "its settings, and Revert and Reinstate will return to them. | Replace, Cancel"_s));
    alerts.press(0);
    EXPECT_TRUE(ending(session->systemActions.saveSnapshot({}, Archive::No, *listener)).succeeded);
}

TEST_F(ActionsTest, reinstateLooksForTheBaselineWhileItIsBusyAndAsks) {
    const ActionOutcome outcome = ending(session->systemActions.reinstate(*listener));
    EXPECT_TRUE(outcome.succeeded);
    EXPECT_EQ(outcome.restore, (RestoreOutcome{true, RestoreSource::StandardDefaults}));
    EXPECT_EQ(takeSteps(),
              (QStringList{u"busy: "_s, u"idle"_s,
                           u"! Reinstate System | This will restore system settings to before optimization.\n\nNo "
                           "restore baseline found — standard macOS defaults will be applied.\n\nAre you sure you want "
                           "to continue? | Reinstate, Cancel"_s,
                           u"busy: Reinstating system…"_s, u"log: [REINSTATE] Restoring system..."_s, u"idle"_s,
                           u"! Success | System has been restored to standard defaults.\n\nPlease restart your Mac for "
                           "changes to take full effect. | OK"_s,
                           u"anew: match, items"_s}));
    saveSnapshot();
    EXPECT_TRUE(ending(session->systemActions.reinstate(*listener)).succeeded);
    EXPECT_TRUE(
        takeSteps().filter(u"! Reinstate System"_s).first().contains(u"Your saved restore baseline will be used."_s));
}

TEST_F(ActionsTest, reinstateAndUndoGoByWhatWasFoundForTheirQuestion) {
    const Start ways[] = {[](Session& s, ActionListener& l) { return s.systemActions.reinstate(l); },
                          [](Session& s, ActionListener& l) { return s.tweakActions.undo(l); }};
    const SnapshotManager snapshots(files, machine);
    for (const Start& start : ways) {
        alerts.hold();
        QCoro::Task<ActionOutcome> running = start(*session, *listener);
        processEventsUntil([this] { return alerts.openCount() == 1; });
        SystemSnapshot snapshot; // from elsewhere, while the question stands open
        snapshot.id = QUuid::createUuid();
        snapshot.dateCreated = clock.time;
        snapshots.save(snapshot);
        alerts.answer(0);
        processEventsUntil([this] { return alerts.openCount() == 1; });
        alerts.answer(0);
        EXPECT_EQ(ending(std::move(running)).restore, (RestoreOutcome{true, RestoreSource::StandardDefaults}));
        files.remove(snapshots.snapshotFileURL());
    }
}

TEST_F(ActionsTest, startupIsReviewedAppliedAndTold) {
    StartupConfiguration configuration;
    configuration.disableNetworkAtStartup = true;
    listener->preparesReviews = true;
    const ActionOutcome outcome = ending(session->systemActions.applyStartup(configuration, *listener));
    EXPECT_TRUE(outcome.wasCarriedOut);
    EXPECT_TRUE(outcome.verification.has_value());
    EXPECT_TRUE(std::get<StartupChangePreview>(*listener->preview).disableNetwork);
    const QStringList taken = takeSteps();
    EXPECT_EQ(taken.first(), u"review: Review Startup Changes | Apply Changes"_s);
    const qsizetype panel = taken.indexOf(QRegularExpression(u"^panel: .*"_s));
    ASSERT_GT(panel, 0) << taken.join(u'\n').toStdString();
    EXPECT_EQ(taken.at(panel + 1), u"idle"_s);
    EXPECT_TRUE(taken.contains(u"busy: Applying startup changes…"_s));
    EXPECT_TRUE(taken.at(panel + 2).startsWith(u"! Startup "_s));
    EXPECT_EQ(taken.last(), u"anew: match, items"_s);
}

// ---- Tweaks

TEST_F(ActionsTest, tweaksAreReviewedAndApplied) {
    saveOwnSnapshot();
    PerformanceSettings settings;
    settings.siri = true;
    listener->preparesReviews = true;
    EXPECT_TRUE(ending(session->tweakActions.execute(settings, {}, *listener)).wasCarriedOut);
    EXPECT_EQ(std::get<TweaksApplyPreview>(*listener->preview).enabledTweaks, selectedTweakTitles(settings));
    EXPECT_EQ(takeSteps(), (QStringList{u"review: Review Performance Tweaks | Apply Changes"_s,
                                        u"busy: Applying performance tweaks…"_s,
                                        u"log: Starting Audio Performance optimizations..."_s,
                                        u"panel: All changes verified"_s, u"idle"_s, u"anew: match"_s}));
}

TEST_F(ActionsTest, theReviewOfTweaksShowsWhatTheirCleanRebootTakes) {
    PerformanceSettings settings;
    settings.cleanReboot = true;
    StartupItem chat;
    chat.id = u"btm:com.chat"_s;
    chat.name = u"Chat"_s;
    chat.kind = StartupItemKind::backgroundLoginItem;
    chat.runsAtStartup = false;
    chat.launchIdentifier = u"com.chat"_s;
    StartupConfiguration startup;
    startup.items = {chat};
    listener->preparesReviews = true;
    ending(session->tweakActions.execute(settings, {{}, startup, {}}, *listener));
    const QList<ReviewSection> sections = reviewSections(std::get<TweaksApplyPreview>(*listener->preview));
    ASSERT_EQ(sections.size(), 3) << "one tells that the login items couldn't be read";
    EXPECT_EQ(sections.at(0).title, u"Could not be read"_s);
    EXPECT_EQ(sections.at(1).rows, (QList<ReviewSection::Row>{{u"Start Clean on Reboot"_s, {}}}));
    EXPECT_EQ(sections.last(),
              (ReviewSection{u"Will disable at login"_s,
                             u"minus.circle.fill"_s,
                             {{u"Chat"_s, u"Background Item"_s},
                              {u"Background items that aren't permitted"_s, u"known when the password is given"_s}}}));
}

TEST_F(ActionsTest, undoAsksAndRevertAllDoesNot) {
    EXPECT_TRUE(ending(session->tweakActions.undo(*listener)).succeeded);
    const QString log = u"log: Undoing Audio Performance tweaks (no snapshot — using standard defaults)..."_s;
    EXPECT_EQ(takeSteps(),
              (QStringList{u"! Undo Performance Tweaks? | No restore baseline found — standard macOS defaults will be "
                           "applied. | Undo, Cancel"_s,
                           u"busy: Reverting performance tweaks…"_s, log, u"idle"_s,
                           u"! Success | Standard operation restored.\n\nPlease restart your Mac. | OK"_s,
                           u"anew: match"_s}));
    EXPECT_TRUE(ending(session->tweakActions.revertAll(*listener)).succeeded);
    EXPECT_EQ(takeSteps(), (QStringList{u"busy: Reverting performance tweaks…"_s, log, u"idle"_s,
                                        u"! Success | Standard operation restored.\n\nPlease restart your Mac. | OK"_s,
                                        u"anew: match"_s}));
    saveSnapshot();
    EXPECT_TRUE(ending(session->tweakActions.undo(*listener)).succeeded);
    EXPECT_TRUE(takeSteps().first().contains(u"Your saved settings will be restored."_s));
    EXPECT_TRUE(ending(session->tweakActions.revertAll(*listener)).succeeded);
    EXPECT_TRUE(takeSteps().filter(u"! Success"_s).first().contains(u"launch agents are unchanged."_s));
}

TEST_F(ActionsTest, aRefusedPromptIsTold) {
    scripts.failNext(u"User canceled."_s);
    const ActionOutcome outcome = ending(session->tweakActions.revertAll(*listener));
    EXPECT_TRUE(outcome.wasCarriedOut);
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(takeSteps().mid(3),
              (QStringList{u"! Cancelled | System-level defaults were not restored. | OK"_s, u"anew: match"_s}));
}

// ---- Maintenance and network

TEST_F(ActionsTest, maintenanceAsksOnlyWhereSomethingIsDeletedForGood) {
    EXPECT_TRUE(ending(session->maintenanceActions.execute({true, false, false}, *listener)).succeeded);
    EXPECT_EQ(takeSteps(), (QStringList{u"busy: Running maintenance…"_s, u"log: Starting cache cleanup..."_s, u"idle"_s,
                                        u"! Success | System caches cleared. | OK"_s, u"anew: "_s}));
    EXPECT_TRUE(ending(session->maintenanceActions.execute({false, true, true}, *listener)).succeeded);
    EXPECT_EQ(takeSteps().first(), u"! Delete Permanently? | Everything in the Trash and the Downloads folder will be "
                                   "deleted. This cannot be undone. | Delete, Cancel"_s);
}

TEST_F(ActionsTest, theNetworkIsScannedAfterwards) {
    EXPECT_TRUE(ending(session->networkActions.execute({true, false, false, false}, *listener)).succeeded);
    EXPECT_EQ(
        takeSteps(),
        (QStringList{u"busy: Running network operations…"_s, u"log: Starting DNS & DHCP Cache Flush..."_s, u"idle"_s,
                     u"! Success | DNS and DHCP caches flushed successfully. | OK"_s, u"anew: match"_s}));
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(ending(session->networkActions.execute({true, false, false, false}, *listener)).succeeded);
}

// ---- The label

TEST_F(ActionsTest, theLabelGetsTheActiveName) {
    EXPECT_TRUE(ending(session->settingsActions.showLabel(u"Club"_s, *listener)).succeeded);
    makeActive(kLive);
    label->isInPlace = false;
    EXPECT_FALSE(ending(session->settingsActions.showLabel({}, *listener)).succeeded) << "a display was left out";
    EXPECT_TRUE(ending(session->settingsActions.removeLabel(*listener)).succeeded);
    EXPECT_EQ(takeSteps(), (QStringList{u"label on: Live"_s, u"anew: "_s, u"label off"_s, u"anew: "_s}));
}

TEST_F(ActionsTest, aLabelThatThrowsEndsItsActionAlone) {
    label->isBroken = true;
    EXPECT_FALSE(ending(session->settingsActions.removeLabel(*listener)).succeeded);
    EXPECT_EQ(takeSteps(), (QStringList{u"label off"_s, u"log: [ERROR] no paint"_s, u"anew: "_s}));
    EXPECT_TRUE(session->turnstile.isIdle());
}

// ---- Backups

namespace {

class BackupActionsTest : public ActionsTest {
protected:
    BackupActionsTest() {
        cloud.account = true;
        cloud.container = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;
    }
    static inline const QString kLatest = u"latest.json"_s;
};

} // namespace

TEST_F(BackupActionsTest, aBackupTellsWhatWasWritten) {
    EXPECT_TRUE(ending(session->backupActions.backUp(*listener)).succeeded);
    EXPECT_EQ(takeSteps(), (QStringList{u"busy: Syncing profiles with iCloud…"_s, u"idle"_s,
                                        u"! Backup Complete | Saved 1 profile(s) to iCloud.\n\nLatest Backup\nDefault "
                                        "Profile (Current)\nDefault Profile (Previous) | OK"_s,
                                        u"anew: backups"_s}));
    EXPECT_TRUE(ending(session->backupActions.refresh(*listener)).succeeded);
    EXPECT_EQ(takeSteps(), (QStringList{u"busy: Syncing profiles with iCloud…"_s, u"idle"_s, u"anew: backups"_s}));
    EXPECT_FALSE(session->cloudBackups.backups().isEmpty());
}

TEST_F(BackupActionsTest, aBackupTellsWhatIsNotInIt) {
    files.addFile(session->profileStore.profilesDirectory() + u"/Club.json"_s, "{");
    EXPECT_TRUE(ending(session->backupActions.backUp(*listener)).succeeded);
    EXPECT_TRUE(takeSteps().at(2).endsWith(u"\n\nNot saved, because it can't be read: Club | OK"_s));
}

TEST_F(BackupActionsTest, withoutAnAccountItIsAnError) {
    cloud.account = false;
    EXPECT_FALSE(ending(session->backupActions.backUp(*listener)).succeeded);
    EXPECT_TRUE(takeSteps().at(2).startsWith(u"! Error | iCloud Drive is not available."_s));
    EXPECT_FALSE(ending(session->backupActions.restore(kLatest, *listener)).wasCarriedOut);
    EXPECT_TRUE(takeSteps().last().startsWith(u"! Error | iCloud Drive is not available."_s));
}

TEST_F(BackupActionsTest, aRestoreAsksOnlyWhereASavedProfileWouldBecomeAnother) {
    ASSERT_TRUE(ending(session->backupActions.backUp(*listener)).succeeded);
    steps.clear();
    EXPECT_TRUE(ending(session->backupActions.restore(kLatest, *listener)).succeeded);
    EXPECT_FALSE(takeSteps().join(u'\n').contains(u"Replace Saved Profiles?"_s)) << "it is the same";

    UnifiedProfile edited = kLive;
    edited.settings.siri = true;
    addProfile(edited);
    session->savedProfiles.tellChanged();
    steps.clear();
    alerts.press(1);
    EXPECT_FALSE(ending(session->backupActions.restore(kLatest, *listener)).wasCarriedOut);
    EXPECT_TRUE(session->profileStore.loadProfile(u"Live"_s)->settings.siri);
    alerts.press(0);
    steps.clear();
    EXPECT_TRUE(ending(session->backupActions.restore(kLatest, *listener)).succeeded);
    EXPECT_EQ(takeSteps(),
              (QStringList{u"busy: Restoring profiles from iCloud…"_s, u"idle"_s,
                           u"! Replace Saved Profiles? | Live will be replaced by their versions from "
                           "Latest Backup. | Replace, Cancel"_s,
                           u"busy: Restoring profiles from iCloud…"_s, u"idle"_s, u"post: QuorvaneProfilesChanged"_s,
                           u"! Profiles Restored | 1 updated | OK"_s, u"anew: match"_s}));
    EXPECT_FALSE(session->profileStore.loadProfile(u"Live"_s)->settings.siri);
}

TEST_F(BackupActionsTest, afterARestoreThatStopsHalfWayTheListIsReadAnew) {
    addProfile(numberedProfile(2, u"Club"_s));
    ASSERT_TRUE(ending(session->backupActions.backUp(*listener)).succeeded);
    session->profileStore.deleteProfile(u"Live"_s);
    session->profileStore.deleteProfile(u"Club"_s);
    session->savedProfiles.tellChanged();
    listProfiles();
    steps.clear();
    files.failAtChange(2);
    EXPECT_FALSE(ending(session->backupActions.restore(kLatest, *listener)).succeeded);
    listProfiles();
    EXPECT_TRUE(takeSteps().contains(u"post: QuorvaneProfilesChanged"_s));
    EXPECT_EQ(session->savedProfiles.known().profiles.size(), 1);
}

TEST_F(BackupActionsTest, aBackupThatIsNotThereIsAnError) {
    EXPECT_FALSE(ending(session->backupActions.restore(u"none.json"_s, *listener)).wasCarriedOut);
    EXPECT_EQ(takeSteps().last(), u"! Error | The selected iCloud backup could not be found. | OK"_s);
}

TEST(NamesReplacedBy, areThoseOfProfilesWithAnotherContent) {
    UnifiedProfile edited = kLive;
    edited.settings.siri = true;
    UnifiedProfile renamed = kLive;
    renamed.name = u"Late"_s;
    const struct {
        QList<UnifiedProfile> backedUp;
        QStringList names;
    } cases[] = {{{}, {}},
                 {{kLive}, {}},
                 {{edited}, {u"Live"_s}},
                 {{renamed}, {u"Live"_s}},
                 {{numberedProfile(2, u"Live"_s)}, {}}};
    for (const auto& [backedUp, names] : cases) {
        EXPECT_EQ(namesReplacedBy(backedUp, {kLive, numberedProfile(3, u"Club"_s)}), names);
    }
}

} // namespace quorvane
