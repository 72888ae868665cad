// The Settings tab: what each of its sections shows and does.

#include "core/UserDefaultKeys.h"
#include "fakes/Pictures.h"
#include "fakes/ProfileStore.h"
#include "fakes/QuickWindowOnMac.h"
#include "platform/FileManager.h"
#include "platform/UserDefaults.h"
#include "ui/QuorvaneStyle.h"

#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QRadioButton>
#include <QTest>

namespace quorvane {

namespace {

const QString kLogin = u"Launch at Login"_s;
const QString kWallpaper = u"Show Current Profile on Wallpaper"_s;
const QString kAllow = u"Allow Quorvane in System Settings → General → Login Items."_s;

ShownAlert settingsAlert(const QString& title, const QString& text) {
    return {title, text, {u"OK"_s}, u"OK"_s};
}

} // namespace

class SettingsByWindow : public QuickWindowOnMac {
protected:
    explicit SettingsByWindow(const QString& mac = u"fresh-macbook"_s)
        : QuickWindowOnMac(mac) {}
    void SetUp() override {
        keepBaseline();
        prepare();
        launchAndScan();
        mainWindow()->resize(1000, 1600);
        showSettings();
    }
    /// Before the launch.
    virtual void prepare() {}
    void showSettings() {
        chooseTab(u"Settings"_s);
        waitUntilSeen(u"Permissions"_s);
        waitUntilRest();
    }
    void waitUntilRest() {
        processEventsUntil([this] { return session().turnstile.isIdle() && session().scans.isUpToDate(); });
        letEventsPass();
    }
    void setState(const char* subject, const macsim::Json& state) {
        host->mac().state().update(subject, [&state](macsim::Json& stored) { stored = state; });
    }
    static bool isOn(const QString& name) {
        const auto* const box = qobject_cast<QCheckBox*>(control(name));
        return box != nullptr && box->isChecked();
    }
    static QString descriptionOf(const QString& name) {
        const QWidget* const found = control(name);
        return found != nullptr ? found->accessibleDescription() : QString();
    }
    static QString shownMode() {
        for (const auto* const choice : mainWindow()->findChildren<QRadioButton*>()) {
            if (choice->isChecked()) {
                return choice->accessibleName();
            }
        }
        return {};
    }
    QString preference(const QString& key) { return shell(u"defaults read com.quorvane.app "_s + key).trimmed(); }
    UserDefaults& preferences() { return host->host().defaults; }
};

TEST_F(SettingsByWindow, theSectionsStandInTheirOrder) {
    int last = 0;
    for (const QString& title :
         {u"Appearance"_s, u"App Security"_s, u"Profile Backup"_s, u"Wallpaper"_s, u"Startup"_s, u"Permissions"_s}) {
        const auto labels = mainWindow()->findChildren<QLabel*>();
        const auto found = std::find_if(labels.begin(), labels.end(), [&title](const QLabel* label) {
            return label->text() == title && label->isVisible();
        });
        ASSERT_NE(found, labels.end()) << title.toStdString();
        const int place = (*found)->mapTo(mainWindow(), QPoint()).y();
        EXPECT_GT(place, last) << title.toStdString();
        last = place;
    }
}

// ---- Appearance

TEST_F(SettingsByWindow, aLookIsChosenByClickAndByKeys) {
    const auto scheme = [] { return qobject_cast<const QuorvaneStyle*>(QApplication::style())->theme().look().scheme; };
    EXPECT_EQ(shownMode(), u"Follow macOS"_s);
    EXPECT_EQ(preferences().string(kAppearanceMode), std::nullopt) << "nothing is stored unasked";
    click(u"Dark Mode"_s);
    EXPECT_EQ(scheme(), ColorScheme::Dark);
    EXPECT_EQ(preferences().string(kAppearanceMode), u"dark"_s);
    press(Qt::Key_Up);
    EXPECT_EQ(shownMode(), u"Light Mode"_s);
    EXPECT_EQ(scheme(), ColorScheme::Light);
    EXPECT_EQ(preferences().string(kAppearanceMode), u"light"_s);
    press(Qt::Key_Up);
    EXPECT_EQ(preferences().string(kAppearanceMode), u"system"_s);
}

class UnknownLookByWindow : public SettingsByWindow {
protected:
    void prepare() override { preferences().setString(kAppearanceMode, u"sepia"_s); }
};

TEST_F(UnknownLookByWindow, meansFollowMacOSAndStaysStored) {
    EXPECT_EQ(shownMode(), u"Follow macOS"_s);
    EXPECT_EQ(preferences().string(kAppearanceMode), u"sepia"_s);
}

// ---- Startup

TEST_F(SettingsByWindow, launchingAtLoginIsSwitchedOnAndOff) {
    EXPECT_FALSE(isOn(kLogin));
    click(kLogin);
    waitUntilRest();
    EXPECT_TRUE(isOn(kLogin));
    EXPECT_TRUE(log().contains(u"Login item enabled."_s));
    EXPECT_EQ(focused(), kLogin);
    press(Qt::Key_Space);
    waitUntilRest();
    EXPECT_FALSE(isOn(kLogin));
    EXPECT_TRUE(log().contains(u"Login item disabled."_s));
}

TEST_F(SettingsByWindow, aRefusedLoginItemLeavesTheSwitchOffAndIsTold) {
    setState("loginService", {{"registeringFails", "Operation not permitted"}});
    click(kLogin);
    waitUntilAlert(u"Login Item"_s);
    EXPECT_FALSE(log().contains(u"Login item enabled."_s));
    EXPECT_TRUE(log().contains(u"Failed to update login item: Operation not permitted"_s));
    answerByKey(settingsAlert(u"Login Item"_s, u"Could not update login item settings: Operation not permitted"_s),
                Qt::Key_Return);
    waitUntilRest();
    EXPECT_FALSE(isOn(kLogin));
}

TEST_F(SettingsByWindow, aLoginItemThatCannotBeTakenOffStaysOn) {
    click(kLogin);
    waitUntilRest();
    setState("loginService", {{"unregisteringFails", "Try later"}});
    click(kLogin);
    answerByKey(settingsAlert(u"Login Item"_s, u"Could not update login item settings: Try later"_s), Qt::Key_Escape);
    waitUntilRest();
    EXPECT_TRUE(isOn(kLogin));
}

TEST_F(SettingsByWindow, aLoginItemThatNeedsApprovalStaysOffAndTheRowSaysWhatToDo) {
    setState("loginService", {{"needsApproval", true}});
    click(kLogin);
    waitUntilRest();
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_FALSE(isOn(kLogin));
    EXPECT_TRUE(isSeen(kAllow));
    EXPECT_FALSE(log().contains(u"Login item enabled."_s));
    // The user allows it, and comes back.
    setState("loginService", macsim::Json::object());
    resignActive();
    becomeActive();
    EXPECT_TRUE(isOn(kLogin));
    EXPECT_FALSE(isSeen(kAllow));
}

TEST_F(SettingsByWindow, theSwitchDoesNotMoveBeforeTheThingHasHappened) {
    auto* const box = qobject_cast<QCheckBox*>(control(kLogin));
    setState("loginService", {{"registeringFails", "no"}});
    bool hasMoved = false;
    QObject::connect(box, &QCheckBox::toggled, box, [&hasMoved] { hasMoved = true; });
    click(kLogin);
    answerAlert(u"Login Item"_s);
    waitUntilRest();
    EXPECT_FALSE(hasMoved);
}

TEST_F(SettingsByWindow, aScreenReaderAsksAsAClickDoes) {
    auto* const box = qobject_cast<QCheckBox*>(control(kLogin));
    setState("loginService", {{"registeringFails", "no"}});
    box->toggle();
    EXPECT_FALSE(box->isChecked());
    answerAlert(u"Login Item"_s);
    waitUntilRest();
    EXPECT_FALSE(isOn(kLogin));
    setState("loginService", macsim::Json::object());
    box->toggle();
    waitUntilRest();
    EXPECT_TRUE(isOn(kLogin));
}

TEST_F(SettingsByWindow, theProgramsOwnLoginItemIsNotAmongTheStartupItems) {
    click(kLogin);
    waitUntilRest();
    EXPECT_TRUE(shell(u"osascript -e 'tell application \"System Events\" to get the name of every login item'"_s)
                    .contains(u"Quorvane"_s));
    bool hasEnded = false;
    const auto discover = [](Session& session, bool& ended) -> QCoro::Task<void> {
        co_await session.system.discoverStartupItems(SystemManager::StartupRefresh::Force);
        ended = true;
    };
    session().tasks.start(discover(session(), hasEnded));
    processEventsUntil([&hasEnded] { return hasEnded; });
    for (const StartupItem& item : session().workingCopy.startup().items) {
        EXPECT_FALSE(item.name.contains(u"Quorvane"_s)) << item.id.toStdString();
    }
}

// ---- Permissions

TEST_F(SettingsByWindow, fullDiskAccessIsShownAsItIs) {
    EXPECT_TRUE(isSeen(u"Full Disk Access"_s));
    const auto access = [] {
        for (const QLabel* const row : mainWindow()->findChildren<QLabel*>()) {
            if (row->accessibleName() == u"Full Disk Access"_s) {
                return row->accessibleDescription();
            }
        }
        return QString();
    };
    EXPECT_EQ(access(), u"Quorvane has it."_s);
    setState("permissions", {{"fullDiskAccess", false}});
    resignActive();
    becomeActive();
    EXPECT_EQ(access(), u"Quorvane doesn’t have it."_s);
    setState("permissions", {{"fullDiskAccess", true}});
    shell(u"echo"_s);
    QDir(macFolder() + u"/Library/Application Support/com.apple.TCC"_s).removeRecursively();
    resignActive();
    becomeActive();
    EXPECT_EQ(access(), u"Whether Quorvane has it can’t be told."_s);
}

TEST_F(SettingsByWindow, theStepsComeBeforeTheSystemsSettings) {
    const QString url = u"x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"_s;
    QStringList opened;
    click(u"Open System Settings…"_s);
    waitUntilAlert(u"Full Disk Access Required"_s);
    EXPECT_TRUE(log().contains(u"Opening macOS Privacy & Security settings..."_s));
    commands().hold();
    EXPECT_EQ(commands().heldLines(), QStringList());
    answerByKey(settingsAlert(u"Full Disk Access Required"_s,
                              u"To allow Quorvane to optimize Time Machine and Spotlight:\n\n"
                              "1. Click the '+' button in System Settings.\n"
                              "2. Add 'Quorvane' from your Applications folder.\n"
                              "3. Ensure the toggle is switched ON."_s),
                Qt::Key_Return);
    processEventsUntil([this] { return !commands().heldLines().isEmpty(); });
    EXPECT_EQ(commands().heldLines(), QStringList(u"/usr/bin/open "_s + url));
    commands().release();
    waitUntilRest();
}

// ---- Wallpaper

TEST_F(SettingsByWindow, withoutAnyProfileTheLabelWaitsForOne) {
    click(kWallpaper);
    answerAlert(u"Show the Label?"_s, u"Show Label"_s); // macOS's own picture is the one that comes with a Mac
    waitUntilRest();
    EXPECT_TRUE(isOn(kWallpaper));
    EXPECT_TRUE(isSeen(u"Shown after a profile was applied."_s));
    EXPECT_TRUE(log().contains(u"  [INFO] Wallpaper overlay enabled but no custom profile name is available."_s));
    click(kWallpaper);
    waitUntilRest();
    EXPECT_FALSE(isOn(kWallpaper));
    EXPECT_FALSE(isSeen(u"Shown after a profile was applied."_s));
}

TEST_F(SettingsByWindow, theLabelIsNotShownOverAnAnimatedPictureThatIsToStay) {
    click(kWallpaper);
    waitUntilAlert(u"Show the Label?"_s);
    EXPECT_EQ(alert().text, u"macOS’s animated desktop picture will come back as a still picture."_s);
    answerAlert(u"Show the Label?"_s, u"Cancel"_s);
    waitUntilRest();
    EXPECT_FALSE(isOn(kWallpaper));
    EXPECT_FALSE(preferences().boolean(kShowProfileOnWallpaper));
}

class LabelByWindow : public SettingsByWindow {
protected:
    void prepare() override {
        saveProfile(u"live-set"_s);
        preferences().setString(kQuorvaneLastAppliedProfileName, u"Live Set"_s);
        host->host().files.createFolders(u"/Users/alex/Pictures"_s);
        host->host().files.writeAtomically(u"/Users/alex/Pictures/Stage.png"_s,
                                           pngFile(plainPicture(QSize(320, 200), QColor(40, 60, 120))));
        setDisplays(1);
    }
    void setDisplays(int count) {
        macsim::Json displays = macsim::Json::array();
        for (int number = 1; number <= count; ++number) {
            displays.push_back({{"number", number},
                                {"localizedName", "Display " + std::to_string(number)},
                                {"frame", {0, 0, 320, 200}},
                                {"scale", 1},
                                {"picture", "/Users/alex/Pictures/Stage.png"}});
        }
        if (count > 1) {
            displays[1]["settingFails"] = "The picture could not be set.";
        }
        setState("displays", displays);
    }
};

TEST_F(LabelByWindow, theNameOfTheTitleIsShown) {
    click(kWallpaper);
    waitUntilRest();
    EXPECT_TRUE(isOn(kWallpaper));
    EXPECT_EQ(preferences().string(kWallpaperProfileName), u"Live Set"_s);
    EXPECT_FALSE(isSeen(u"Shown after a profile was applied."_s));
    EXPECT_FALSE(isSeen(u"Could not be shown on every display. Check the Logs tab."_s));
    click(kWallpaper);
    waitUntilRest();
    EXPECT_FALSE(isOn(kWallpaper));
    EXPECT_EQ(preferences().string(kWallpaperProfileName), u"Default"_s);
}

TEST_F(LabelByWindow, theRowFollowsWhatIsAppliedMeanwhile) {
    click(kWallpaper);
    waitUntilRest();
    ASSERT_FALSE(isSeen(u"Shown after a profile was applied."_s));
    chooseInMenu(u"Restore Default"_s);
    answerAlert(u"Apply Default Profile?"_s, u"Apply"_s);
    authorize();
    answerAlert(u"Defaults Restored"_s);
    waitUntilRest();
    EXPECT_TRUE(isOn(kWallpaper));
    EXPECT_TRUE(isSeen(u"Shown after a profile was applied."_s));
}

TEST_F(LabelByWindow, anAnimatedPictureIsCoveredOnlyWithTheUsersConsent) {
    const QString note = u"Not shown where macOS animates the picture. Switch this off and on to show it there, too."_s;
    const auto animate = [this] {
        setDisplays(1);
        macsim::Json displays = host->mac().state().read("displays");
        displays[0]["animation"] = "Sonoma Horizon";
        setState("displays", displays);
    };
    animate();
    click(kWallpaper);
    answerAlert(u"Show the Label?"_s, u"Cancel"_s);
    waitUntilRest();
    EXPECT_FALSE(isOn(kWallpaper));
    EXPECT_TRUE(host->mac().state().read("displays")[0].contains("animation"));
    click(kWallpaper);
    answerAlert(u"Show the Label?"_s, u"Show Label"_s);
    waitUntilRest();
    EXPECT_TRUE(isOn(kWallpaper));
    EXPECT_FALSE(isSeen(note));
    EXPECT_FALSE(host->mac().state().read("displays")[0].contains("animation"));
    animate();
    processEventsUntil([&note] { return isSeen(note); });
    EXPECT_TRUE(host->mac().state().read("displays")[0].contains("animation")) << "it was found later";
}

TEST_F(LabelByWindow, aDisplayThatWasLeftOutIsSaid) {
    setDisplays(2);
    click(kWallpaper);
    waitUntilRest();
    EXPECT_TRUE(isOn(kWallpaper));
    EXPECT_TRUE(isSeen(u"Could not be shown on every display. Check the Logs tab."_s));
}

// ---- Profile Backup

TEST_F(SettingsByWindow, withoutICloudNothingIsSaidButThatItIsMissing) {
    EXPECT_TRUE(isSeen(u"iCloud Drive is unavailable"_s));
    EXPECT_EQ(alertTitle(), QString());
    click(u"Back Up Profiles to iCloud"_s);
    answerByKey(settingsAlert(u"Error"_s, u"iCloud Drive is not available. Sign in to iCloud in System Settings and "
                                          "enable iCloud Drive."_s),
                Qt::Key_Return);
    waitUntilRest();
}

TEST_F(SettingsByWindow, whoSignsInToICloudAndComesBackFindsItAvailable) {
    ASSERT_TRUE(isSeen(u"iCloud Drive is unavailable"_s));
    resignActive();
    setState("cloud", {{"account", true}, {"container", true}});
    becomeActive();
    waitUntilSeen(u"iCloud Drive is available"_s);
    EXPECT_FALSE(isSeen(u"iCloud Drive is unavailable"_s));
    waitUntilRest();
}

class CloudByWindow : public SettingsByWindow {
protected:
    void prepare() override {
        setState("cloud", {{"account", true}, {"container", true}});
        saveProfile(u"live-set"_s);
    }
};

TEST_F(CloudByWindow, theProfilesAreBackedUpAndTheRowSaysWhen) {
    EXPECT_TRUE(isSeen(u"iCloud Drive is available"_s));
    EXPECT_FALSE(seenTexts(mainWindow()).join(u' ').contains(u"Latest backup"_s));
    click(u"Back Up Profiles to iCloud"_s);
    answerByKey(settingsAlert(u"Backup Complete"_s,
                              u"Saved 1 profile(s) to iCloud.\n\nLatest Backup\nDefault Profile (Current)\n"
                              "Default Profile (Previous)"_s),
                Qt::Key_Return);
    waitUntilRest();
    const auto rows = mainWindow()->findChildren<QLabel*>();
    EXPECT_TRUE(std::any_of(rows.begin(), rows.end(), [](const QLabel* row) {
        return row->accessibleName() == u"iCloud Drive is available"_s &&
               row->accessibleDescription().startsWith(u"Latest backup: "_s) &&
               row->accessibleDescription().endsWith(u"(1 profile(s))"_s);
    }));
}

TEST_F(CloudByWindow, openingTheTabMakesTheCopiesOfTheDefaultProfile) {
    const macsim::Volume disk = host->mac().volume(macsim::Actor::User);
    const QString place = u"/Users/"_s + host->mac().machine().userName +
                          u"/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app/Documents/Quorvane/ProfileBackups"_s;
    processEventsUntil([&disk, &place] { return disk.exists(place + u"/default-previous.json"_s); });
    EXPECT_TRUE(disk.exists(place + u"/default-current.json"_s));
}

class BrokenCloudByWindow : public SettingsByWindow {
protected:
    void prepare() override {
        setState("cloud", {{"account", true}, {"container", true}, {"writesFail", "Disk full"}});
    }
};

TEST_F(BrokenCloudByWindow, whatFailsOnOpeningIsSilent) {
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_TRUE(session().turnstile.isIdle());
    EXPECT_TRUE(isSeen(u"iCloud Drive is available"_s));
}

// ---- The lock

class LockedSettingsByWindow : public SettingsByWindow {
protected:
    void prepare() override { enableLock(); }
    void SetUp() override {
        keepBaseline();
        prepare();
        launch();
        unlock();
        mainWindow()->resize(1000, 1600);
        processEventsUntil([] { return isUsable(u"Sidebar"_s); });
        showSettings();
    }
};

TEST_F(LockedSettingsByWindow, lockNowLocksAtOnce) {
    click(u"Lock Now"_s);
    EXPECT_TRUE(isSeen(u"Quorvane is Locked"_s));
    unlock();
    processEventsUntil([] { return isUsable(u"Lock Now"_s); });
    EXPECT_EQ(focused(), u"Lock Now"_s);
}

TEST_F(LockedSettingsByWindow, theLockTakesTheStepsAwayAndOpensNothing) {
    click(u"Open System Settings…"_s);
    waitUntilAlert(u"Full Disk Access Required"_s);
    commands().hold();
    resignActive();
    EXPECT_EQ(alertTitle(), QString());
    waitUntilIdle();
    EXPECT_FALSE(commands().heldLines().contains(
        u"/usr/bin/open x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"_s));
    commands().release();
}

} // namespace quorvane
