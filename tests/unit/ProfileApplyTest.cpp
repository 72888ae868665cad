#include "fakes/ReadingLines.h"
#include "fakes/StartupSystem.h"

#include "profiles/ApplyPreviews.h"
#include "profiles/UnifiedProfile.h"
#include "startup/background/BackgroundLoginItemChangePlan.h"

#include <algorithm>
#include <iterator>

namespace quorvane {

namespace {

UnifiedProfile soundsOff(const QString& name = u"Live"_s) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.name = name;
    profile.settings.uiSounds = true;
    profile.settings.spotlight = true;
    return profile;
}

const QString kSystemLine = u"mdutil -a -i off || true"_s;

const QString kSyncSoundsOff =
    u"\nSyncing performance tweaks to profile settings...\n"_s + kLookAtTweaks +
    u"  [INFO] Already as it was: App Nap\n"
    "  [INFO] Already as it was: Software Updates\n"
    "  [INFO] Already as it was: Notifications\n"
    "  [INFO] Already as it was: Siri\n"
    "  [INFO] Already as it was: Crash Reporter\n"
    "$ /usr/bin/defaults write com.apple.systemsound com.apple.sound.uiaudio.enabled -int 0\n"
    "$ /usr/bin/defaults write NSGlobalDomain com.apple.sound.uiaudio.enabled -int 0\n"
    "  [APPLIED] Muted UI sounds.\n"
    "  [INFO] Already as it was: AirDrop\n"
    "  [INFO] Already as it was: USB Power\n"
    "  [INFO] Already as it was: Motion Sensor\n"
    "  [INFO] Already as it was: Time Machine\n"
    "  [ACTION] Requesting Admin rights to sync system-level tweaks...\n"_s;

const QString kTweakReadings = reading::traced(reading::kTweaksOff);

const QString kTweaksOk = u"  [OK] App Nap — enabled\n"
                          "  [OK] Software Updates — enabled\n"
                          "  [OK] Notifications — enabled\n"
                          "  [OK] Siri — enabled\n"
                          "  [OK] Crash Reporter — enabled\n"
                          "  [OK] UI Sounds — muted\n"
                          "  [OK] AirDrop — enabled\n"
                          "  [OK] USB Power — standard sleep\n"
                          "  [OK] Motion Sensor — enabled\n"
                          "  [OK] Spotlight — indexing off\n"
                          "  [OK] Time Machine — enabled\n"_s;

const QString kCleanRebootReadings = reading::traced(reading::kCleanReboot);

// ---- A whole profile

const QString kHelper = u"com.getdropbox.dropbox.helper"_s;
const QString kHelperFile = u"/Applications/Dropbox.app/Contents/Library/LoginItems/Dropbox Helper.app"_s;
const QString kGigPrompt = u"Quorvane needs your administrator password to apply Gig."_s;
const QString kDaemonLine =
    u"mkdir -p '/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons' && "
    "cp -p '/Library/LaunchDaemons/com.vpn.plist' "
    "'/Library/Application Support/Quorvane/LaunchItems/_Library_LaunchDaemons/com.vpn.plist' && "
    "[ ! -L '/Users/alex/.quorvane_backup' ] && "
    "[ ! -L '/Users/alex/.quorvane_backup/_Library_LaunchDaemons' ] && "
    "mkdir -p '/Users/alex/.quorvane_backup/_Library_LaunchDaemons' && "
    "rm -f '/Users/alex/.quorvane_backup/_Library_LaunchDaemons/com.vpn.plist' && "
    "(/bin/launchctl bootout system '/Library/LaunchDaemons/com.vpn.plist' 2>/dev/null || true ; true) && "
    "mv '/Library/LaunchDaemons/com.vpn.plist' '/Users/alex/.quorvane_backup/_Library_LaunchDaemons/com.vpn.plist'"_s;
const QList<LoginItem> kLoginAfterGig{{u"Serato"_s, u"/Applications/Serato.app"_s, false},
                                      {u"Live"_s, u"/Applications/Live.app"_s, false}};

QList<BackgroundTaskItem> laptop() {
    return {applicationRecord(u"Dropbox"_s, u"com.getdropbox.dropbox"_s),
            backgroundRecord(u"Dropbox Helper"_s, kHelper, u"com.getdropbox.dropbox"_s),
            backgroundRecord(u"Player"_s, u"com.player.menu"_s), backgroundRecord(u"Sync"_s, u"com.x.sync"_s),
            backgroundRecord(u"Serato Helper"_s, u"com.x.helper"_s)};
}

/// A clean reboot; chat, the VPN and a background item off; Dropbox off; Live opens at login.
UnifiedProfile gig() {
    UnifiedProfile profile = soundsOff(u"Gig"_s);
    profile.settings.cleanReboot = true;
    profile.startup.items = {loginAppOff(u"Chat"_s), launchAgentOff(u"com.vpn.plist"_s),
                             backgroundItemOff(u"com.x.sync"_s),
                             StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false})};
    profile.startup.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
    return profile;
}

const QString kGigOk = u"  [OK] Clean Reboot — app restoration disabled\n"
                       "  [OK] Clean Reboot windows — window restoration disabled\n"
                       "  [OK] Clean Reboot login items — only permitted apps remain (Live)\n"
                       "  [OK] Background login items — only permitted items remain\n"
                       "  [OK] Login item: Chat — removed\n"
                       "  [OK] Launch item: com.vpn.plist — inactive\n"
                       "  [OK] Background item: Dropbox Helper — disabled at login\n"
                       "  [OK] Background item: Sync — disabled at login\n"
                       "  [OK] Cloud sync: Dropbox — disabled at login\n"
                       "  [OK] Cloud sync helper: Dropbox — background items disabled\n"
                       "  [OK] Startup app: Live — configured\n"
                       "  [VERIFY] All settings confirmed on system.\n"
                       "\n[PROFILE] Gig applied and verified successfully.\n"_s;

class ProfileApply : public StartupSystem {
protected:
    ProfileApply() {
        commands.print(reading::kPower, "AC Power:\n standby 1\n disksleep 10\n sleep 1\n sms 1\n");
        commands.print(reading::kSpotlight, reading::indexing("Indexing disabled."));
        setAutomaticBackups(true);
        commands.fail(reading::kAppNap, 1);
        commands.fail(reading::kDoNotDisturb, 1);
        commands.print(reading::kAssistant, "1\n");
        commands.print(reading::kSounds, "0\n");
        commands.print(reading::kAirDrop, "0\n");
        commands.print(reading::kLogoutState, "1\n");
        commands.fail(reading::kLoginRelaunch, 1);
        commands.fail(reading::kKeptWindows, 1);
    }

    bool apply(const UnifiedProfile& profile) { return QCoro::waitFor(system.applyProfile(profile)); }
    QStringList linesStartingWith(const QString& beginning) const {
        QStringList lines;
        std::copy_if(trace.begin(), trace.end(), std::back_inserter(lines),
                     [&beginning](const QString& line) { return line.startsWith(beginning); });
        return lines;
    }
    /// A DJ's laptop: chat, Dropbox with a helper, a player and a VPN daemon run besides the DJ software.
    void setUpLaptop() {
        login = {{u"Chat"_s, u"/Applications/Chat.app"_s, false},
                 {u"Dropbox"_s, u"/Applications/Dropbox.app"_s, false},
                 {u"Serato"_s, u"/Applications/Serato.app"_s, false}};
        files.addFile(kHelperFile, "helper");
        files.addFile(u"/Library/LaunchDaemons/com.vpn.plist"_s, "vpn");
        for (const QString& line : reading::kCleanReboot) {
            commands.print(line, "0\n");
        }
    }
    QString scriptWithPrompt(const QString& prompt) {
        return u"& do shell script \""_s + kSystemLine + u"\" with prompt \""_s + prompt +
               u"\" with administrator privileges"_s;
    }
};

} // namespace

TEST_F(ProfileApply, runsSyncStartupOnePromptAndVerificationInThisOrder) {
    EXPECT_TRUE(apply(soundsOff()));
    EXPECT_EQ(takeTrace(), u"\n[PROFILE] Applying: Live\n"_s + kSyncSoundsOff +
                               u"  [INFO] Already as it was: Clean Reboot\n"
                               "\nPerformance Tweaks Synced! (Restart your Mac for full effect.)\n"
                               "\nApplying startup configuration...\n"
                               "\nStartup configuration applied.\n"
                               "& do shell script \"mdutil -a -i off || true\" with prompt \"Quorvane needs your "
                               "administrator password to apply Live.\" with "
                               "administrator privileges\n"_s +
                               kTweakReadings + reading::traced(reading::kAppRestoration) +
                               u"\n[VERIFY] Profile: Live\n"_s + kTweaksOk +
                               u"  [OK] Clean Reboot — app restoration enabled\n"
                               "  [VERIFY] All settings confirmed on system.\n"
                               "\n[PROFILE] Live applied and verified successfully.\n"_s);
}

TEST_F(ProfileApply, recordsTheProfileAsTheActiveOne) {
    EXPECT_TRUE(apply(soundsOff()));
    EXPECT_EQ(defaults.string(u"QuorvaneLastAppliedProfileName"_s), u"Live"_s);
    ASSERT_TRUE(system.systemMatch().has_value());
    EXPECT_EQ(system.systemMatch()->name, u"Live"_s);
    EXPECT_EQ(system.systemMatch()->kind, MatchedConfigurationKind::savedProfile);
    EXPECT_EQ(system.systemMatch()->verification.verified.size(), 12);
    EXPECT_TRUE(system.hasVerifiedSystem());
    ASSERT_EQ(posted.size(), 1);
    EXPECT_EQ(posted[0].first, u"QuorvaneSystemVerified"_s);
    EXPECT_EQ(posted[0].second, QVariantMap({{u"matchName"_s, u"Live"_s}, {u"matchKind"_s, u"profile"_s}}));
}

TEST_F(ProfileApply, aFailedCheckAloneLeavesTheApplyTrueWithAWarning) {
    commands.print(reading::kSounds, "1\n");
    EXPECT_TRUE(apply(soundsOff()));
    EXPECT_EQ(trace.last(), u"\n[PROFILE] Live applied with verification warnings — check logs."_s);
    EXPECT_EQ(system.lastApplyVerification()->failed.size(), 1);
    EXPECT_EQ(defaults.string(u"QuorvaneLastAppliedProfileName"_s), u"Live"_s);
}

TEST_F(ProfileApply, aCancelledApplyVerifiesAndRecordsNothing) {
    defaults.setString(u"QuorvaneLastAppliedProfileName"_s, u"Before"_s);
    commands.print(reading::kSpotlight, reading::indexing("Indexing enabled. "));
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(apply(soundsOff()));
    const QStringList log = system.logMessages();
    EXPECT_TRUE(log.contains(u"  [ERROR] Administrator authorization was cancelled or failed: User canceled."_s));
    EXPECT_TRUE(log.contains(u"  [MISSING] Spotlight — expected indexing off"_s));
    EXPECT_EQ(log.last(), u"\n[PROFILE] Live apply failed or was cancelled — check logs."_s);
    EXPECT_EQ(defaults.string(u"QuorvaneLastAppliedProfileName"_s), u"Before"_s);
    EXPECT_EQ(system.lastApplyVerification()->failed.size(), 1);
    EXPECT_FALSE(system.systemMatch().has_value());
    EXPECT_FALSE(system.hasVerifiedSystem());
    EXPECT_TRUE(posted.isEmpty());
}

TEST_F(ProfileApply, thePromptShowsTheNameAsItIsStored) {
    apply(soundsOff(u"  Día / 1: \\o/ "_s));
    EXPECT_TRUE(
        trace.contains(scriptWithPrompt(u"Quorvane needs your administrator password to apply   Día / 1: \\\\o/ ."_s)));
}

TEST_F(ProfileApply, thePromptShowsTheNameOnOneLineAndShortened) {
    EXPECT_TRUE(apply(soundsOff(u"Live.\nmacOS needs "_s + QString(100, u'x') + u" now"_s)));
    EXPECT_EQ(trace.filter(u"& "_s),
              QStringList(scriptWithPrompt(u"Quorvane needs your administrator password to apply Live. macOS needs "_s +
                                           QString(21, u'x') + u'…' + QString(36, u'x') + u" now."_s)));
}

TEST_F(ProfileApply, aNameWithADoubleQuoteFailsTheApplyAndRunsNoScript) {
    EXPECT_FALSE(apply(soundsOff(u"x\" with administrator privileges --"_s)));
    EXPECT_EQ(linesStartingWith(u"& "_s), QStringList());
    EXPECT_TRUE(trace.contains(
        u"  [ERROR] Administrator authorization was cancelled or failed: The authorization prompt can't contain a "
        u"double "
        "quote: Quorvane needs your administrator password to apply x\" with administrator privileges --."_s));
}

TEST_F(ProfileApply, aNameWithADoubleQuoteAppliesWhileTheNeutralPromptStandsIn) {
    EXPECT_TRUE(apply(soundsOff()));
    trace.clear();
    EXPECT_TRUE(apply(soundsOff(u"7\" mix"_s)));
    EXPECT_TRUE(trace.contains(scriptWithPrompt(u"Quorvane is applying system changes."_s)));
}

TEST_F(ProfileApply, aStartupStepThatFailsFailsTheApplyThoughTheBatchSucceeds) {
    UnifiedProfile profile = soundsOff();
    profile.startup.disableNetworkAtStartup = true; // no service is listed
    EXPECT_FALSE(apply(profile));
    EXPECT_TRUE(system.logMessages().contains(u"\nStartup configuration applied with errors."_s));
    EXPECT_EQ(system.logMessages().last(), u"\n[PROFILE] Live apply failed or was cancelled — check logs."_s);
    EXPECT_EQ(prompts(), 1);
    EXPECT_EQ(system.lastApplyVerification()->verified.size(), 12);
    EXPECT_EQ(system.lastApplyVerification()->failed,
              QList<ApplyVerificationResult::Item>({{u"Network"_s, u"expected all interfaces disabled"_s}}));
    EXPECT_TRUE(defaults.values.isEmpty());
    EXPECT_FALSE(system.systemMatch().has_value());
}

// ---- Whole profiles

TEST_F(ProfileApply, aWholeProfileShowsOnePromptWhereTheListWasKnown) {
    setUpLaptop();
    cacheDump(laptop());
    EXPECT_TRUE(apply(gig()));
    EXPECT_EQ(takeTrace(),
              u"\n[PROFILE] Applying: Gig\n"_s + kSyncSoundsOff +
                  u"$ /usr/bin/defaults write com.apple.loginwindow TALLogoutSavesState -bool false\n"
                  "$ /usr/bin/defaults write com.apple.loginwindow LoginwindowLaunchesRelaunchApps -bool false\n"
                  "$ /usr/bin/defaults write NSGlobalDomain NSQuitAlwaysKeepsWindows -bool false\n"
                  "  [APPLIED] Disabled app and window restoration on reboot.\n"
                  "$> osascript: list\n"
                  "  [ACTION] Removing 2 login item(s) not in permitted startup list...\n"
                  "$> osascript: delete where name is Chat; delete where name is Dropbox\n"
                  "  [APPLIED] Removed login item: Chat\n"
                  "  [APPLIED] Removed login item: Dropbox\n"
                  "  [ACTION] Disabling 1 launch item(s) for clean reboot...\n"
                  "? launchd\n"
                  "  [ACTION] Requesting Admin rights to disable 1 system launch item(s)...\n"
                  "  [ACTION] Queued disable for launch item: com.vpn.plist @ /Library/LaunchDaemons\n"
                  "\nPerformance Tweaks Synced! (Restart your Mac for full effect.)\n"
                  "\nApplying startup configuration...\n"
                  "$> osascript: list\n"
                  "  [ACTION] Disabling 1 login item(s)...\n"
                  "$> osascript: delete where name is Chat\n"
                  "$> osascript: list\n"
                  "  [ACTION] Disabling 1 launch item(s)...\n"
                  "  [INFO] Launch item already disabled: com.vpn.plist\n"
                  "  [ACTION] Disabling 2 background item(s)...\n"
                  "  [APPLIED] Disabled cloud sync at startup: Dropbox\n"
                  "  [ACTION] Configuring 1 application(s) to start at login...\n"
                  "$> osascript: add /Applications/Live.app hidden:false\n"
                  "  [APPLIED] Added login item: Live\n"
                  "\nStartup configuration applied.\n"_s +
                  prompted(kSystemLine + u" ; "_s + kDaemonLine + u" ; "_s + dumpLine(), kGigPrompt) + kLookAtLaunchd +
                  u"? open /System/Library/Frameworks/ServiceManagement.framework/ServiceManagement\n"
                  "  [INFO] ServiceManagement BTM APIs unavailable; using launchctl and quarantine fallback.\n"_s +
                  kLookAtJobs + launchctlLines(kHelper) + launchctlLines(u"com.player.menu"_s) +
                  launchctlLines(u"com.x.sync"_s) + kLookAtLaunchd +
                  u"  [APPLIED] Disabled background login label: com.getdropbox.dropbox.helper\n"
                  "  [APPLIED] Disabled background login label: com.player.menu\n"
                  "  [APPLIED] Disabled background login label: com.x.sync\n"
                  "  [INFO] Left in its application: Dropbox Helper\n"
                  "  [APPLIED] Disabled launch item: com.vpn.plist @ /Library/LaunchDaemons\n"_s +
                  kTweakReadings + kCleanRebootReadings +
                  u"$> osascript: list\n"
                  "\n[VERIFY] Profile: Gig\n"_s +
                  kTweaksOk + kGigOk);
    EXPECT_EQ(login, kLoginAfterGig);
    EXPECT_EQ(files.read(u"/Users/alex/.quorvane_backup/_Library_LaunchDaemons/com.vpn.plist"_s), "vpn");
    EXPECT_TRUE(files.exists(kHelperFile));
}

TEST_F(ProfileApply, aWholeProfileShowsOnePromptWhereTheListComesWithIt) {
    setUpLaptop();
    dump = dumpOf(laptop());
    EXPECT_TRUE(apply(gig()));
    EXPECT_EQ(linesStartingWith(u"& "_s).join(u'\n') + u'\n',
              prompted(kSystemLine + u" ; "_s + kDaemonLine + u" ; "_s + dumpLine(), kGigPrompt));
    EXPECT_EQ(system.lastApplyVerification()->failed, QList<ApplyVerificationResult::Item>());
    EXPECT_EQ(login, kLoginAfterGig);
    EXPECT_TRUE(files.exists(kHelperFile));
}

TEST_F(ProfileApply, appliedTwiceAProfileChangesNothingTheSecondTime) {
    setUpLaptop();
    dump = dumpOf(laptop());
    EXPECT_TRUE(apply(gig()));
    const int changes = files.changes();
    trace.clear();
    EXPECT_TRUE(apply(gig()));
    EXPECT_EQ(prompts(), 1);
    EXPECT_EQ(login, kLoginAfterGig);
    QStringList changed = files.changedPaths().mid(changes);
    changed.removeIf([](const QString& path) { return path.startsWith(u"/Users/alex/.quorvane/"_s); }); // its records
    EXPECT_EQ(changed.size(), 1) << "the dump that root has left is cleared away: " << changed.join(u' ').toStdString();
    EXPECT_EQ(trace.last(), u"\n[PROFILE] Gig applied and verified successfully."_s);
    EXPECT_TRUE(trace.contains(u"  [APPLIED] Login items already match permitted startup list."_s));
    EXPECT_TRUE(trace.contains(u"  [INFO] Launch item already disabled: com.vpn.plist"_s));
    EXPECT_TRUE(trace.contains(u"  [SKIPPED] Already configured to start at login: Live"_s));
}

TEST_F(ProfileApply, aRefusedPromptFailsWhatNeedsRootItemByItemAndKeepsTheRest) {
    setUpLaptop();
    cacheDump(laptop());
    defaults.setString(u"QuorvaneLastAppliedProfileName"_s, u"Before"_s);
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(apply(gig()));
    EXPECT_EQ(
        system.lastApplyVerification()->failed,
        QList<ApplyVerificationResult::Item>({{u"Background item: Dropbox Helper"_s, u"still enabled at login"_s},
                                              {u"Background item: Player"_s, u"still enabled at login"_s},
                                              {u"Background item: Sync"_s, u"still enabled at login"_s},
                                              {u"Launch item: com.vpn.plist"_s, u"still active"_s},
                                              {u"Background item: Dropbox Helper"_s, u"still enabled at login"_s},
                                              {u"Background item: Sync"_s, u"still enabled at login"_s},
                                              {u"Cloud sync: Dropbox"_s, u"still active"_s},
                                              {u"Cloud sync helper: Dropbox"_s, u"still enabled: Dropbox Helper"_s}}));
    EXPECT_EQ(login, kLoginAfterGig) << "went as the user";
    EXPECT_TRUE(files.exists(kHelperFile));
    EXPECT_EQ(defaults.string(u"QuorvaneLastAppliedProfileName"_s), u"Before"_s);
    EXPECT_FALSE(system.systemMatch().has_value());
    EXPECT_EQ(system.adminBatchDepth(), 0);
    EXPECT_EQ(system.backgroundTaskItemsFetchMode(), SystemManager::BackgroundTaskItemsFetchMode::automatic);
    EXPECT_FALSE(system.pendingBackgroundLoginItemChanges().has_value());

    EXPECT_TRUE(apply(gig()));
    EXPECT_EQ(system.lastApplyVerification()->failed, QList<ApplyVerificationResult::Item>());
}

TEST_F(ProfileApply, cloudServicesAloneTakeTheDumpWithTheBatch) {
    dump = dumpOf({backgroundRecord(u"Dropbox Helper"_s, kHelper)});
    UnifiedProfile profile = soundsOff();
    profile.startup.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
    EXPECT_TRUE(apply(profile));
    EXPECT_EQ(
        linesStartingWith(u"& "_s).join(u'\n') + u'\n',
        prompted(kSystemLine + u" ; "_s + dumpLine(), u"Quorvane needs your administrator password to apply Live."_s));
    EXPECT_FALSE(isActive(kHelper));
}

TEST_F(ProfileApply, backgroundLabelsAloneTakeTheDumpWithTheBatch) {
    dump = dumpOf({backgroundRecord(u"Sync"_s, u"com.x.sync"_s)});
    UnifiedProfile profile = soundsOff();
    profile.startup.items = {backgroundItemOff(u"com.x.sync"_s)};
    EXPECT_TRUE(apply(profile));
    EXPECT_EQ(
        linesStartingWith(u"& "_s).join(u'\n') + u'\n',
        prompted(kSystemLine + u" ; "_s + dumpLine(), u"Quorvane needs your administrator password to apply Live."_s));
    EXPECT_FALSE(isActive(u"com.x.sync"_s));
}

TEST_F(ProfileApply, cachesAreDroppedAfterASuccessOnly) {
    login = {{u"Chat"_s, u"/Applications/Chat.app"_s, false}};
    UnifiedProfile profile = soundsOff();
    profile.startup.items = {loginAppOff(u"Chat"_s)};
    scripts.failNext(u"User canceled."_s);
    const auto discover = [this] {
        return QCoro::waitFor(system.discoverStartupItems(SystemManager::StartupRefresh::UseCache)).size();
    };
    EXPECT_FALSE(apply(profile));
    EXPECT_EQ(discover(), 1) << "as it was found before";
    EXPECT_TRUE(apply(profile));
    EXPECT_EQ(discover(), 0);
}

// ---- The review

/// The startup sections of the review, each row with its detail.
QStringList startupRows(const ProfileApplyPreview& preview) {
    QStringList rows;
    for (const ReviewSection& section : reviewSections(preview).mid(1)) {
        rows.append(section.title);
        for (const ReviewSection::Row& row : section.rows) {
            rows.append(u"  "_s + row.text + u" — "_s + row.detail);
        }
    }
    return rows;
}

TEST_F(ProfileApply, theReviewOfAProfileWithoutStartupWorkReadsNothing) {
    login = {{u"Chat"_s, u"/Applications/Chat.app"_s, false}};
    EXPECT_EQ(QCoro::waitFor(system.previewProfile(soundsOff())).startup, StartupChangePreview());
    EXPECT_EQ(trace, QStringList());
}

TEST_F(ProfileApply, theReviewShowsWhatACleanRebootTakes) {
    UnifiedProfile profile = soundsOff();
    profile.settings.cleanReboot = true;
    profile.startup.items = {loginAppOff(u"Chat"_s), launchAgentOff(u"com.x.plist"_s),
                             StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false})};
    login = {{u"Zoom"_s, u"/Applications/zoom.us.app"_s, false},
             {u"Chat"_s, u"/Applications/Chat.app"_s, false},
             {u"Deck"_s, u"/Applications/Traktor Pro 4.app"_s, false},
             {u"Sync Agent"_s, u"missing value"_s, false},
             {u"Live"_s, u"/Applications/Live.app/"_s, false}};
    files.addFile(u"/Users/alex/Library/LaunchAgents/com.x.plist"_s, "");
    const QStringList known{u"Will disable at login"_s, u"  Chat — App"_s, u"  com.x.plist — Launch Agent"_s,
                            u"  Sync Agent — Background Agent"_s, u"  Zoom — App"_s};
    const QString unknown = u"  Background items that aren't permitted — known when the password is given"_s;
    EXPECT_EQ(startupRows(QCoro::waitFor(system.previewProfile(profile))), known + QStringList(unknown));
    EXPECT_EQ(prompts(), 0);

    BackgroundTaskItem off = backgroundRecord(u"Off"_s, u"com.off"_s);
    off.disposition = u"[disabled, allowed, notified] (0xa)"_s;
    cacheDump({backgroundRecord(u"Updater"_s, u"com.up"_s), backgroundRecord(u"Live Helper"_s, u"com.live.helper"_s),
               off, backgroundRecord(u"Traktor Sync"_s, u"com.t"_s), applicationRecord(u"Mail"_s, u"com.mail"_s)});
    EXPECT_EQ(startupRows(QCoro::waitFor(system.previewProfile(profile))),
              (QStringList{u"Will disable at login"_s, u"  Chat — App"_s, u"  com.x.plist — Launch Agent"_s,
                           u"  Sync Agent — Background Agent"_s, u"  Updater — Background Item"_s, u"  Zoom — App"_s}));

    ASSERT_TRUE(apply(profile));
    EXPECT_EQ(startupRows(QCoro::waitFor(system.previewProfile(profile))), QStringList());
}

TEST_F(ProfileApply, theReviewShowsTheHelpersOfACloudServiceThatAreKnown) {
    UnifiedProfile profile = soundsOff();
    profile.startup.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
    QCoro::waitFor(system.previewProfile(profile)); // discovers before the list is known
    const BackgroundTaskItem helper = backgroundRecord(u"Helper"_s, u"com.x"_s, u"com.getdropbox.dropbox"_s);
    BackgroundTaskItem protectedHelper = backgroundRecord(u"VST"_s, u"com.y"_s);
    protectedHelper.url = u"/Applications/Dropbox.app/y"_s;
    cacheDump({helper, protectedHelper});
    const ProfileApplyPreview preview = QCoro::waitFor(system.previewProfile(profile));
    ASSERT_EQ(preview.startup.willDisable.size(), 1);
    EXPECT_EQ(preview.startup.willDisable.first().launchIdentifier, u"com.x"_s);
}

TEST_F(ProfileApply, verifyProfileReadsOnlyAndKeepsNothing) {
    const ApplyVerificationResult result = QCoro::waitFor(system.verifyProfile(soundsOff()));
    EXPECT_EQ(result.verified.size(), 12);
    EXPECT_FALSE(system.lastApplyVerification().has_value());
    EXPECT_TRUE(system.logMessages().isEmpty());
    EXPECT_EQ(linesStartingWith(u"$> "_s), trace);
}

} // namespace quorvane
