// The sheets of Settings: the app password, and the backups in iCloud.

#include "fakes/ProfileStore.h"
#include "fakes/QuickWindowOnMac.h"
#include "lock/LockManager.h"
#include "profiles/ProfileCloudBackup.h"

#include <QSignalSpy>
#include <QTest>

namespace quorvane {

namespace {

const QString kBackupFolder =
    u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app/Documents/Quorvane/ProfileBackups/"_s;

} // namespace

class SettingsSheetByWindow : public QuickWindowOnMac {
protected:
    explicit SettingsSheetByWindow(const QString& mac = u"fresh-macbook"_s)
        : QuickWindowOnMac(mac) {}
    void SetUp() override {
        keepBaseline();
        prepare();
        launch();
        if (isLockedAtStart) {
            unlock();
        }
        processEventsUntil([] { return isUsable(u"Sidebar"_s); });
        mainWindow()->resize(1000, 1600);
        chooseTab(u"Settings"_s);
        waitUntilSeen(u"Permissions"_s);
        waitUntilRest();
    }
    virtual void prepare() {}
    void waitUntilRest() {
        processEventsUntil([this] { return session().turnstile.isIdle() && session().scans.isUpToDate(); });
    }
    LockManager& lock() { return dynamic_cast<LockManager&>(*session().gate); }
    static QLineEdit* field(const QString& name) { return qobject_cast<QLineEdit*>(control(name)); }
    static void fill(const QString& name, const QString& text) {
        QLineEdit* const line = field(name);
        ASSERT_NE(line, nullptr);
        line->clear();
        QTest::keyClicks(line, text);
    }

    bool isLockedAtStart = false;
};

// ---- Set

TEST_F(SettingsSheetByWindow, thePasswordIsSetAndLocksAtOnce) {
    click(u"Set App Password…"_s);
    waitUntilSeen(u"Set App Password"_s);
    EXPECT_EQ(focused(), u"Password"_s);
    EXPECT_FALSE(isUsable(u"Enable App Lock"_s));
    EXPECT_FALSE(isUsable(u"Set App Password…"_s)) << "the page is out of reach";
    type(u"abc"_s);
    EXPECT_FALSE(isUsable(u"Enable App Lock"_s));
    press(Qt::Key_Tab);
    EXPECT_EQ(focused(), u"Confirm Password"_s);
    type(u"abc"_s);
    EXPECT_TRUE(isUsable(u"Enable App Lock"_s));
    press(Qt::Key_Return);
    letEventsPass();
    EXPECT_TRUE(isSeen(u"Password must be at least 4 characters."_s));
    fill(u"Password"_s, u"gig7"_s);
    press(Qt::Key_Return);
    letEventsPass();
    EXPECT_TRUE(isSeen(u"Passwords do not match."_s));
    EXPECT_FALSE(lock().isLockEnabled());
    fill(u"Confirm Password"_s, u"gig7"_s);
    click(u"Enable App Lock"_s);
    processEventsUntil([] { return isSeen(u"Quorvane is Locked"_s); });
    EXPECT_FALSE(isSeen(u"Confirm Password"_s));
    unlock(u"gig7"_s);
    processEventsUntil([] { return isUsable(u"Lock Now"_s); });
    EXPECT_TRUE(isSeen(u"App lock is active"_s));
    EXPECT_FALSE(isSeen(u"Set App Password…"_s));
    EXPECT_EQ(focused(), u"Remove App Lock…"_s);
    waitUntilRest();
}

TEST_F(SettingsSheetByWindow, aKeychainThatRefusesIsSaid) {
    host->mac().state().update("keychain", [](macsim::Json& state) { state = {{"refusesWriting", true}}; });
    click(u"Set App Password…"_s);
    waitUntilSeen(u"Confirm Password"_s);
    fill(u"Password"_s, u"gig7"_s);
    fill(u"Confirm Password"_s, u"gig7"_s);
    press(Qt::Key_Return);
    letEventsPass();
    EXPECT_TRUE(isSeen(u"Could not save the password securely."_s));
    EXPECT_FALSE(lock().isLockEnabled());
    press(Qt::Key_Escape);
    letEventsPass();
    EXPECT_FALSE(isSeen(u"Confirm Password"_s));
    EXPECT_EQ(focused(), u"Set App Password…"_s);
    EXPECT_TRUE(session().turnstile.isIdle());
}

TEST_F(SettingsSheetByWindow, aSheetThatIsClosedKeepsNothingOfWhatWasTyped) {
    for (const bool byKey : {true, false}) {
        click(u"Set App Password…"_s);
        waitUntilSeen(u"Confirm Password"_s);
        EXPECT_EQ(field(u"Password"_s)->text(), QString());
        const QPointer<QLineEdit> typed(field(u"Password"_s));
        fill(u"Password"_s, u"stage door"_s);
        if (byKey) {
            press(Qt::Key_Escape);
        } else {
            click(u"Cancel"_s);
        }
        EXPECT_TRUE(typed == nullptr || typed->text().isEmpty());
        waitUntilRest();
    }
    click(u"Set App Password…"_s);
    waitUntilSeen(u"Confirm Password"_s);
    mainWindow()->close();
    EXPECT_EQ(mainWindow(), nullptr) << "it goes with its window";
    waitUntilIdle();
}

// ---- Change, remove

class LockedSheetByWindow : public SettingsSheetByWindow {
protected:
    LockedSheetByWindow()
        : LockedSheetByWindow(u"fresh-macbook"_s) {}
    explicit LockedSheetByWindow(const QString& mac)
        : SettingsSheetByWindow(mac) {
        isLockedAtStart = true;
    }
    void prepare() override { enableLock(); }
};

TEST_F(LockedSheetByWindow, thePasswordIsChanged) {
    click(u"Change Password…"_s);
    waitUntilSeen(u"Change App Password"_s);
    EXPECT_EQ(focused(), u"Current Password"_s);
    EXPECT_FALSE(isSeen(u"Use Touch ID"_s));
    fill(u"Current Password"_s, u"guess"_s);
    fill(u"New Password"_s, u"abc"_s);
    EXPECT_FALSE(isUsable(u"Save Password"_s));
    fill(u"Confirm Password"_s, u"stage door"_s);
    press(Qt::Key_Return);
    letEventsPass();
    EXPECT_TRUE(isSeen(u"Current password is incorrect."_s));
    fill(u"Current Password"_s, kLockPassword);
    press(Qt::Key_Return);
    letEventsPass();
    EXPECT_TRUE(isSeen(u"New password must be at least 4 characters."_s));
    fill(u"New Password"_s, u"stage doors"_s);
    press(Qt::Key_Return);
    letEventsPass();
    EXPECT_TRUE(isSeen(u"New passwords do not match."_s));
    fill(u"New Password"_s, u"stage door"_s);
    press(Qt::Key_Return);
    waitUntilRest();
    EXPECT_FALSE(isSeen(u"Change App Password"_s));
    EXPECT_EQ(focused(), u"Change Password…"_s);
    resignActive();
    unlock(kLockPassword);
    EXPECT_TRUE(isSeen(u"Incorrect password."_s));
    unlock(u"stage door"_s);
    processEventsUntil([this] { return lock().isUnlocked(); });
}

TEST_F(LockedSheetByWindow, theLockIsTakenOff) {
    click(u"Remove App Lock…"_s);
    waitUntilSeen(u"Remove Lock"_s);
    EXPECT_FALSE(isSeen(u"New Password"_s));
    fill(u"Current Password"_s, u"guess"_s);
    press(Qt::Key_Return);
    letEventsPass();
    EXPECT_TRUE(isSeen(u"Incorrect password."_s));
    EXPECT_TRUE(lock().isLockEnabled());
    fill(u"Current Password"_s, kLockPassword);
    press(Qt::Key_Return);
    waitUntilRest();
    EXPECT_FALSE(lock().isLockEnabled());
    EXPECT_EQ(focused(), u"Set App Password…"_s);
    EXPECT_FALSE(isSeen(u"Lock Now"_s));
}

TEST_F(LockedSheetByWindow, theLockEmptiesTheFieldsAndLeavesTheSheet) {
    click(u"Change Password…"_s);
    waitUntilSeen(u"Change App Password"_s);
    fill(u"Current Password"_s, kLockPassword);
    field(u"New Password"_s)->setFocus();
    type(u"half a pass"_s);
    const QPointer<QLineEdit> current(field(u"Current Password"_s));
    const QPointer<QLineEdit> next(field(u"New Password"_s));
    resignActive();
    EXPECT_TRUE(isSeen(u"Quorvane is Locked"_s));
    EXPECT_FALSE(isSeen(u"Change App Password"_s));
    EXPECT_EQ(current->text(), QString());
    EXPECT_EQ(next->text(), QString());
    unlock();
    processEventsUntil([] { return isUsable(u"New Password"_s); });
    EXPECT_FALSE(isUsable(u"Save Password"_s));
    EXPECT_EQ(focused(), u"New Password"_s);
    press(Qt::Key_Escape);
    waitUntilRest();
}

class FingerSheetByWindow : public LockedSheetByWindow {
protected:
    FingerSheetByWindow()
        : LockedSheetByWindow(u"studio-desktop"_s) {}
    void SetUp() override {
        keepBaseline();
        enableLock();
        launch();
        answerFinger(u"Enrolled Finger"_s);
        processEventsUntil([] { return isUsable(u"Sidebar"_s); });
        mainWindow()->resize(1000, 1600);
        chooseTab(u"Settings"_s);
        waitUntilSeen(u"Permissions"_s);
        waitUntilRest();
    }
};

TEST_F(FingerSheetByWindow, aFingerFillsInTheCurrentPasswordAndDoesNotLock) {
    click(u"Remove App Lock…"_s);
    waitUntilSeen(u"Remove Lock"_s);
    click(u"Use Touch ID"_s);
    waitForFingerDialog();
    EXPECT_TRUE(isSeen(u"Verify your identity to remove app lock"_s));
    resignActive();
    becomeActive();
    EXPECT_TRUE(lock().isUnlocked()) << "the program has asked for it itself";
    answerFinger(u"Another Finger"_s);
    waitUntilSeen(u"Touch ID verification failed."_s);
    EXPECT_EQ(field(u"Current Password"_s)->text(), QString());
    click(u"Use Touch ID"_s);
    answerFinger(u"Enrolled Finger"_s);
    processEventsUntil([] { return isUsable(u"Remove Lock"_s); });
    EXPECT_FALSE(isSeen(u"Touch ID verification failed."_s));
    EXPECT_EQ(field(u"Current Password"_s)->text(), kLockPassword);
    click(u"Remove Lock"_s);
    waitUntilRest();
    EXPECT_FALSE(lock().isLockEnabled());
}

TEST_F(FingerSheetByWindow, theSentenceForChangingIsAnother) {
    click(u"Change Password…"_s);
    waitUntilSeen(u"Save Password"_s);
    click(u"Use Touch ID"_s);
    waitForFingerDialog();
    EXPECT_TRUE(isSeen(u"Verify your identity to change the app password"_s));
    answerFinger(u"Cancel"_s);
    waitUntilSeen(u"Touch ID verification failed."_s);
    press(Qt::Key_Escape);
    waitUntilRest();
}

TEST_F(FingerSheetByWindow, aSheetThatGoesWithItsWindowTakesNothingOfAFingerThatComesLater) {
    click(u"Remove App Lock…"_s);
    waitUntilSeen(u"Remove Lock"_s);
    click(u"Use Touch ID"_s);
    waitForFingerDialog();
    EXPECT_FALSE(isUsable(u"Use Touch ID"_s));
    mainWindow()->close();
    EXPECT_EQ(mainWindow(), nullptr);
    answerFinger(u"Enrolled Finger"_s);
    waitUntilIdle();
    EXPECT_TRUE(lock().isLockEnabled());
}

// ---- Restore

class RestoreSheetByWindow : public SettingsSheetByWindow {
protected:
    void prepare() override {
        saveProfile(numberedProfile(1, u"Live"_s));
        cloud = {{"account", true}, {"container", true}};
        addBackup(u"latest.json"_s, {changed(), numberedProfile(2, u"Club"_s)}, {});
        putCloud();
    }
    static UnifiedProfile changed() {
        UnifiedProfile profile = numberedProfile(1, u"Live"_s);
        profile.settings.siri = !profile.settings.siri;
        return profile;
    }
    /// @param looks  after so many it has come; none where it is on the disk
    void addBackup(const QString& name, const QList<UnifiedProfile>& profiles, std::optional<int> looks) {
        ProfileCloudBackup backup;
        backup.createdAt = QDateTime(QDate(2026, 3, 14), QTime(20, 30), Qt::UTC);
        backup.deviceName = u"Booth"_s;
        backup.profiles = profiles;
        const QByteArray bytes = encodeProfileCloudBackup(backup);
        const QString path = kBackupFolder + name;
        if (looks) {
            cloud["files"][path.toStdString()] = {{"text", bytes.toStdString()}, {"looks", *looks}};
        } else {
            host->host().files.createFolders(kBackupFolder.chopped(1));
            host->host().files.writeAtomically(path, bytes);
        }
    }
    void putCloud() {
        host->mac().state().update("cloud", [this](macsim::Json& state) { state = cloud; });
    }
    void openSheet() {
        processEventsUntil([] { return isUsable(u"Restore Profiles from iCloud"_s); }); // copies may be under way
        click(u"Restore Profiles from iCloud"_s);
        waitUntilSeen(u"Restore from iCloud"_s);
    }
    UnifiedProfile saved(const QString& name) {
        return ProfileManager(host->host().files, profilesDirectory(host->host().machine))
            .loadProfile(name)
            .value_or(UnifiedProfile());
    }
    static QString restoreOf(const QString& title) { return u"Restore: "_s + title; }

    macsim::Json cloud;
};

TEST_F(RestoreSheetByWindow, aBackupIsRestoredAndTold) {
    openSheet();
    EXPECT_EQ(focused(), u"Close"_s);
    processEventsUntil([] { return isUsable(restoreOf(u"Latest Backup"_s)); });
    EXPECT_TRUE(isSeen(u"2 profile(s) from Booth"_s));
    EXPECT_TRUE(isSeen(u"Default Profile (Current)"_s)) << "which opening the tab has made";
    click(restoreOf(u"Latest Backup"_s));
    answerByKey({u"Replace Saved Profiles?"_s,
                 u"Live will be replaced by their versions from Latest Backup."_s,
                 {u"Replace"_s, u"Cancel"_s},
                 u"Cancel"_s},
                Qt::Key_Return);
    letEventsPass();
    EXPECT_TRUE(saved(u"Live"_s).hasSameContent(numberedProfile(1, u"Live"_s)));
    EXPECT_TRUE(isUsable(restoreOf(u"Latest Backup"_s))) << "the sheet stays";
    EXPECT_FALSE(isSeen(u"Restoring profiles from iCloud…"_s));
    click(restoreOf(u"Latest Backup"_s));
    answerAlert(u"Replace Saved Profiles?"_s, u"Replace"_s);
    answerByKey({u"Profiles Restored"_s, u"1 imported, 1 updated"_s, {u"OK"_s}, u"OK"_s}, Qt::Key_Return);
    EXPECT_FALSE(isSeen(u"Restore from iCloud"_s));
    waitUntilRest();
    EXPECT_TRUE(saved(u"Live"_s).hasSameContent(changed()));
    EXPECT_EQ(saved(u"Club"_s).name, u"Club"_s);
    EXPECT_EQ(focused(), u"Restore Profiles from iCloud"_s);
}

TEST_F(RestoreSheetByWindow, aMatchWhoseProfileHasChangedIsUnverifiedAndTheMacIsLookedAtAnew) {
    session().system.recordAppliedConfiguration(saved(u"Live"_s), {});
    ASSERT_FALSE(session().activeProfile.current().isKept);
    const QSignalSpy scans(&session().system, &SystemManager::isVerifyingSystemChanged);
    openSheet();
    processEventsUntil([] { return isUsable(restoreOf(u"Latest Backup"_s)); });
    click(restoreOf(u"Latest Backup"_s));
    answerAlert(u"Replace Saved Profiles?"_s, u"Replace"_s);
    waitUntilAlert(u"Profiles Restored"_s);
    EXPECT_EQ(session().activeProfile.current().name, u"Live"_s);
    EXPECT_TRUE(session().activeProfile.current().isKept);
    EXPECT_EQ(scans.size(), 0) << "what is told comes first";
    answerAlert(u"Profiles Restored"_s);
    waitUntilRest();
    EXPECT_EQ(scans.size(), 2) << "one has begun and ended";
}

TEST_F(RestoreSheetByWindow, aBackupOfNothingIsSaidInTheSheet) {
    addBackup(u"backup-2026-03-15T20:30:00Z.json"_s, {}, {});
    chooseTab(u"Logs"_s);
    chooseTab(u"Settings"_s);
    openSheet();
    processEventsUntil([] { return isSeen(u"0 profile(s) from Booth"_s); });
    const QString title = host->host().machine.dateAndTimeText(QDateTime(QDate(2026, 3, 14), QTime(20, 30), Qt::UTC));
    control(restoreOf(title))->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    waitUntilSeen(u"The selected backup does not contain any profiles."_s);
    EXPECT_EQ(focused(), restoreOf(title)) << "the keys are where they were";
    EXPECT_EQ(alertTitle(), QString());
    press(Qt::Key_Escape);
    waitUntilRest();
    EXPECT_FALSE(isSeen(u"Restore from iCloud"_s));
}

TEST_F(RestoreSheetByWindow, whileABackupIsLookedIntoNothingElseCanBePressed) {
    openSheet();
    processEventsUntil([] { return isUsable(restoreOf(u"Latest Backup"_s)); });
    processEventsUntil([] { return !isSeen(u"Loading iCloud backups…"_s); });
    addBackup(u"latest.json"_s, {changed()}, 3); // from another Mac, a moment ago
    putCloud();
    control(restoreOf(u"Latest Backup"_s))->setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    waitUntilSeen(u"Restoring profiles from iCloud…"_s);
    EXPECT_FALSE(isUsable(restoreOf(u"Latest Backup"_s)));
    EXPECT_FALSE(isUsable(u"Close"_s));
    press(Qt::Key_Escape);
    mainWindow()->close();
    ASSERT_NE(mainWindow(), nullptr);
    EXPECT_TRUE(isSeen(u"Restore from iCloud"_s));
    letTimePassUntil([] { return alertTitle() == u"Replace Saved Profiles?"_s; });
    EXPECT_FALSE(isSeen(u"Restoring profiles from iCloud…"_s)) << "nothing is restored unasked";
    answerAlert(u"Replace Saved Profiles?"_s, u"Cancel"_s);
    processEventsUntil([] { return isUsable(u"Close"_s); });
    EXPECT_EQ(focused(), restoreOf(u"Latest Backup"_s));
    press(Qt::Key_Escape);
    waitUntilRest();
    EXPECT_FALSE(isSeen(u"Restore from iCloud"_s));
    EXPECT_TRUE(saved(u"Live"_s).hasSameContent(numberedProfile(1, u"Live"_s)));
}

TEST_F(RestoreSheetByWindow, anUneditedWorkingCopyIsLoadedAnewAndAnEditedOneStays) {
    for (const bool isEdited : {true, false}) {
        saveProfile(numberedProfile(1, u"Live"_s));
        session().savedProfiles.tellChanged();
        session().workingCopy.load(numberedProfile(1, u"Live"_s));
        PerformanceSettings settings = session().workingCopy.settings();
        if (isEdited) {
            settings.airdrop = !settings.airdrop;
            session().workingCopy.setSettings(settings);
        }
        openSheet();
        processEventsUntil([] { return isUsable(restoreOf(u"Latest Backup"_s)); });
        click(restoreOf(u"Latest Backup"_s));
        answerAlert(u"Replace Saved Profiles?"_s, u"Replace"_s);
        answerAlert(u"Profiles Restored"_s);
        waitUntilRest();
        EXPECT_EQ(session().workingCopy.settings(), isEdited ? settings : changed().settings);
        EXPECT_EQ(session().workingCopy.isEdited(), isEdited);
        chooseTab(u"Performance"_s);
        click(u"System Tweaks"_s);
        waitUntilSeen(u"Execute Tweaks"_s);
        EXPECT_EQ(isSeen(u"Edited"_s), isEdited);
        click(u"Performance"_s);
        chooseTab(u"Settings"_s);
    }
}

TEST_F(RestoreSheetByWindow, aBackupThatHasGoneIsSaidInTheSheet) {
    openSheet();
    processEventsUntil([] { return isUsable(restoreOf(u"Latest Backup"_s)); });
    host->host().files.remove(kBackupFolder + u"latest.json"_s);
    click(restoreOf(u"Latest Backup"_s));
    waitUntilSeen(u"The selected iCloud backup could not be found."_s);
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_TRUE(isUsable(u"Close"_s));
    press(Qt::Key_Escape);
    waitUntilRest();
    EXPECT_FALSE(isSeen(u"Restore from iCloud"_s));
}

TEST_F(RestoreSheetByWindow, theLockHidesItAndCancelsItsQuestion) {
    enableLock();
    ASSERT_EQ(lock().enableLock(kLockPassword, kLockPassword), std::nullopt);
    unlock();
    processEventsUntil([] { return isUsable(u"Restore Profiles from iCloud"_s); });
    openSheet();
    processEventsUntil([] { return isUsable(restoreOf(u"Latest Backup"_s)); });
    click(restoreOf(u"Latest Backup"_s));
    waitUntilAlert(u"Replace Saved Profiles?"_s);
    resignActive();
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_FALSE(isSeen(u"Restore from iCloud"_s));
    letEventsPass();
    unlock();
    activateWhatIsInFront();
    processEventsUntil([] { return isUsable(restoreOf(u"Latest Backup"_s)); });
    EXPECT_TRUE(saved(u"Live"_s).hasSameContent(numberedProfile(1, u"Live"_s)));
    press(Qt::Key_Escape);
    waitUntilRest();
}

class SlowRestoreByWindow : public RestoreSheetByWindow {
protected:
    void SetUp() override {
        keepBaseline();
        saveProfile(numberedProfile(1, u"Live"_s));
        cloud = {{"account", true}, {"container", true}};
        addBackup(u"default-current.json"_s, {UnifiedProfile::defaultProfile()}, {});
        addBackup(u"default-previous.json"_s, {UnifiedProfile::defaultProfile()}, {});
        addBackup(u"latest.json"_s, {changed()}, 3);
        putCloud();
        launch();
        processEventsUntil([] { return isUsable(u"Sidebar"_s); });
        mainWindow()->resize(1000, 1600);
        chooseTab(u"Settings"_s);
        waitUntilSeen(u"Permissions"_s);
    }
};

TEST_F(SlowRestoreByWindow, whatIsHereIsShownAtOnceAndTheRestWhenItHasCome) {
    openSheet();
    processEventsUntil([] { return isUsable(restoreOf(u"Default Profile (Current)"_s)); });
    EXPECT_TRUE(isSeen(u"Loading iCloud backups…"_s));
    EXPECT_FALSE(isSeen(restoreOf(u"Latest Backup"_s)));
    control(restoreOf(u"Default Profile (Current)"_s))->setFocus(Qt::TabFocusReason);
    letTimePassUntil([] { return isUsable(restoreOf(u"Latest Backup"_s)); });
    EXPECT_EQ(focused(), restoreOf(u"Default Profile (Current)"_s)) << "although another row stands above it now";
    letTimePassUntil([] { return !isSeen(u"Loading iCloud backups…"_s); });
    press(Qt::Key_Escape);
    waitUntilRest();
}

class EmptyCloudByWindow : public SettingsSheetByWindow {
protected:
    void prepare() override {
        host->mac().state().update("cloud", [this](macsim::Json& state) { state = cloud; });
    }
    macsim::Json cloud{{"account", false}};
};

TEST_F(EmptyCloudByWindow, ofAListThatWasNotReadNobodySaysThatItIsEmpty) {
    click(u"Restore Profiles from iCloud"_s);
    waitUntilSeen(u"iCloud Drive is not available. Sign in to iCloud in System Settings and enable iCloud Drive."_s);
    EXPECT_FALSE(isSeen(u"No iCloud backups were found for Quorvane."_s));
    press(Qt::Key_Escape);
    waitUntilRest();
    // What can't be written isn't there: the copies of the Default profile neither.
    host->mac().state().update("cloud", [](macsim::Json& state) {
        state = {{"account", true}, {"container", true}, {"writesFail", "no room"}};
    });
    click(u"Restore Profiles from iCloud"_s);
    waitUntilSeen(u"No iCloud backups were found for Quorvane."_s);
    EXPECT_EQ(alertTitle(), QString());
    press(Qt::Key_Escape);
    waitUntilRest();
}

} // namespace quorvane
