// Every way to save a profile: what is asked, what is stored, what follows.

#include "actions/ProfileSaveOffer.h"
#include "actions/ProfileWizard.h"
#include "fakes/WindowActions.h"
#include "platform/FileManager.h"

#include <QCoreApplication>

namespace quorvane {

namespace {

const QString kOverwriteLive =
    u"! Overwrite Profile? | This will replace the existing profile \"Live\" with your current settings. | Overwrite, Cancel"_s;
const QString kSaved = u"! Success | Profile \"%1\" saved. | OK"_s;

class ProfileSavingTest : public WindowActions {
protected:
    ProfileSavingTest() {
        addProfile(club);
        listProfiles();
        session->workingCopy.setSettings(siriOff());
        steps.clear();
    }
    void shutDownOffer() {
        if (shownOffer() != nullptr) {
            shownOffer()->dismiss();
        }
        waitForTasks();
    }
    static PerformanceSettings siriOff() {
        PerformanceSettings settings;
        settings.siri = true;
        return settings;
    }
    std::shared_ptr<ProfileSaveOffer> offer() const {
        return std::dynamic_pointer_cast<ProfileSaveOffer>(shownOffer());
    }
    void openSheet() {
        session->tasks.start(session->profileSaving.offer(window));
        ASSERT_NE(offer(), nullptr);
    }
    void saveAs(const QString& name) {
        openSheet();
        offer()->setName(name);
        press();
    }
    void press() { offer()->accept(); }
    QStringList told() const {
        QStringList lines;
        for (const QString& step : steps) {
            if (step.contains(u" | "_s)) {
                lines.append(step);
            }
        }
        return lines;
    }
    std::optional<UnifiedProfile> stored(const QString& name) { return session->profileStore.loadProfile(name); }
    qsizetype savedCount() { return session->profileStore.listProfiles().size(); }
    QString fileOf(const QString& name) { return session->profileStore.profilesDirectory() + u'/' + name + u".json"_s; }

    ProfileSaving::WizardEnd end() {
        return {[this](const UnifiedProfile& profile) { left.append(profile.name); }, [this] { ++failures; }};
    }
    ActionOutcome saveInWizard(const ProfileToSave& wanted,
                               ProfileSaving::Afterwards afterwards = ProfileSaving::Afterwards::Nothing) {
        const ActionOutcome outcome = ending(session->profileSaving.saveInWizard(wanted, afterwards, end(), window));
        waitForTasks();
        return outcome;
    }

    const UnifiedProfile club = numberedProfile(2, u"Club"_s);
    QStringList left; ///< the wizard, by the names of what was saved
    int failures = 0;
};

} // namespace

// ---- The sheet

TEST_F(ProfileSavingTest, aFreeNameMakesANewProfileAndLeavesTheLoadedOne) {
    session->workingCopy.load(live);
    session->workingCopy.setSettings(siriOff());
    saveAs(u"  Tour "_s);
    waitForTasks();
    const std::optional<UnifiedProfile> tour = stored(u"Tour"_s);
    ASSERT_TRUE(tour.has_value());
    EXPECT_NE(tour->id, live.id);
    EXPECT_EQ(tour->dateCreated, clock.now());
    EXPECT_TRUE(tour->settings.siri);
    EXPECT_EQ(savedCount(), 3);
    EXPECT_EQ(stored(u"Live"_s)->settings, live.settings);
    EXPECT_EQ(session->workingCopy.currentProfile()->id, tour->id);
    EXPECT_EQ(told(), QStringList(kSaved.arg(u"Tour"_s)));
    EXPECT_TRUE(steps.contains(u"busy: Saving profile…"_s));
    EXPECT_TRUE(steps.contains(u"post: QuorvaneProfilesChanged"_s));
    expectNothingLeft();
}

TEST_F(ProfileSavingTest, aTakenNameAsksAndReplacesThatProfile) {
    for (const QString& name : {u"Live"_s, u" lIVE "_s, u"Live"_s}) {
        openSheet();
        offer()->setName(name);
        EXPECT_EQ(offer()->button(), u"Update"_s) << name.toStdString();
        press();
        waitForTasks();
        const QString form = name.trimmed();
        const std::optional<UnifiedProfile> replaced = stored(form);
        ASSERT_TRUE(replaced.has_value());
        EXPECT_EQ(replaced->name, form);
        EXPECT_EQ(replaced->id, live.id);
        EXPECT_EQ(replaced->dateCreated, live.dateCreated);
        EXPECT_EQ(replaced->settings, siriOff());
        EXPECT_EQ(savedCount(), 2) << "one file, in its new spelling";
    }
    EXPECT_TRUE(told().contains(kOverwriteLive));
    expectNothingLeft();
}

TEST_F(ProfileSavingTest, aCancelledQuestionLeavesTheSheetAndTheFile) {
    const QByteArray before = files.read(fileOf(u"Live"_s));
    alerts.press(1);
    openSheet();
    offer()->setName(u"Live"_s);
    offer()->accept();
    processEventsUntil([this] { return told().contains(kOverwriteLive); });
    for (int turn = 0; turn < 20; ++turn) {
        QCoreApplication::processEvents();
    }
    ASSERT_NE(offer(), nullptr);
    EXPECT_EQ(offer()->state(), SheetOffer::State::Offered);
    EXPECT_EQ(files.read(fileOf(u"Live"_s)), before);
    EXPECT_EQ(session->workingCopy.currentProfile(), std::nullopt);
    shutDownOffer();
    expectNothingLeft();
}

TEST_F(ProfileSavingTest, aNameGoesByTheFileThatItWouldBeWrittenTo) {
    UnifiedProfile dashed = numberedProfile(5, u"Live-Set"_s);
    addProfile(dashed);
    session->savedProfiles.tellChanged();
    saveAs(u"Live/Set"_s);
    waitForTasks();
    EXPECT_EQ(stored(u"Live-Set"_s)->id, dashed.id);
    EXPECT_EQ(stored(u"Live-Set"_s)->settings, siriOff());
    EXPECT_EQ(told().last(), kSaved.arg(u"Live-Set"_s)) << "as it is stored";
}

TEST_F(ProfileSavingTest, anUnreadableFileIsOnlyReplacedWhenTheUserWantsIt) {
    files.addFile(fileOf(u"Broken"_s), "{ not a profile");
    session->savedProfiles.tellChanged();
    saveAs(u"broken"_s);
    waitForTasks();
    EXPECT_TRUE(told().contains(u"! Overwrite Profile? | This will replace the file \"Broken\", which can’t be read. | "
                                "Overwrite, Cancel"_s));
    ASSERT_TRUE(stored(u"broken"_s).has_value());
    EXPECT_EQ(savedCount(), 3);
}

TEST_F(ProfileSavingTest, whatIsLeftOutIsEmpty) {
    StartupConfiguration startup;
    startup.disableNetworkAtStartup = true;
    session->workingCopy.setStartup(startup);
    openSheet();
    EXPECT_EQ(offer()->tweaksText(), u"1 tweaks selected"_s);
    EXPECT_EQ(offer()->startupText(), u"network off"_s);
    offer()->setName(u"Nothing"_s);
    offer()->setIncludesTweaks(false);
    offer()->setIncludesStartup(false);
    press();
    waitForTasks();
    EXPECT_EQ(stored(u"Nothing"_s)->settings, PerformanceSettings{});
    EXPECT_EQ(stored(u"Nothing"_s)->startup, StartupConfiguration{});
    EXPECT_EQ(session->workingCopy.startup(), StartupConfiguration{}) << "as it is stored";
}

TEST_F(ProfileSavingTest, aNameThatNoFileCanHaveIsRefusedBeforeAnythingIsCaptured) {
    for (const QString& name : {QString(300, u'x'), QString(130, u'é'), u"a"_s + QChar::Null}) {
        openSheet();
        EXPECT_FALSE(offer()->canSave() && offer()->wanted().name.isEmpty());
        offer()->setName(name);
        offer()->setSavesBaseline(true);
        EXPECT_TRUE(offer()->canSave());
        offer()->accept();
        processEventsUntil([this] { return !told().isEmpty(); });
        EXPECT_EQ(told(), QStringList(u"! Error | Could not save profile: Profile name is invalid. | OK"_s));
        EXPECT_FALSE(steps.contains(u"busy: Saving profile…"_s));
        EXPECT_EQ(savedCount(), 2);
        shutDownOffer();
        steps.clear();
    }
    openSheet();
    offer()->setName(u" \t "_s);
    EXPECT_FALSE(offer()->canSave());
    shutDownOffer();
}

TEST_F(ProfileSavingTest, aFullDiskKeepsTheOldFileAndTheSheet) {
    const QByteArray before = files.read(fileOf(u"Live"_s));
    files.failOn(MemoryFileManager::Operation::Write, fileOf(u"Live"_s));
    openSheet();
    offer()->setName(u"Live"_s);
    offer()->setSavesBaseline(true);
    offer()->accept();
    processEventsUntil([this] { return offer()->state() == SheetOffer::State::Failed; });
    EXPECT_TRUE(told().last().startsWith(u"! Error | Could not save profile: "_s)) << told().last().toStdString();
    EXPECT_FALSE(offer()->wanted().savesBaseline) << "it was written already";
    EXPECT_EQ(files.read(fileOf(u"Live"_s)), before);
    EXPECT_EQ(session->workingCopy.currentProfile(), std::nullopt);
    shutDownOffer();
    expectNothingLeft();
}

TEST_F(ProfileSavingTest, theBaselineComesFirstAndIsTold) {
    openSheet();
    offer()->setName(u"Tour"_s);
    offer()->setSavesBaseline(true);
    press();
    waitForTasks();
    EXPECT_EQ(told(), QStringList(u"! Success | Profile \"Tour\" saved with restore baseline. | OK"_s));
    EXPECT_TRUE(files.exists(u"/Users/alex/.quorvane/master-baseline-current.json"_s));
    EXPECT_TRUE(files.read(u"/Users/alex/.quorvane/master-baseline-current.json"_s).contains("Profile: Tour"));
}

TEST_F(ProfileSavingTest, aBaselineThatFailsIsToldAndTheProfileIsSaved) {
    files.failOn(MemoryFileManager::Operation::Write, u"/Users/alex/.quorvane/master-baseline-current.json"_s);
    openSheet();
    offer()->setName(u"Tour"_s);
    offer()->setSavesBaseline(true);
    press();
    waitForTasks();
    EXPECT_EQ(told(), QStringList(u"! Success | Profile \"Tour\" saved, but the restore baseline could not be saved. "
                                  "Check the Logs tab. | OK"_s));
    EXPECT_TRUE(stored(u"Tour"_s).has_value());
}

TEST_F(ProfileSavingTest, aDefaultProfilesCopiesInICloudAreWhatItIsAndWhatItWas) {
    cloud.account = true;
    cloud.container = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;
    addProfile(numberedProfile(9, u"Default"_s));
    session->savedProfiles.tellChanged();
    saveAs(u"default"_s);
    waitForTasks();
    EXPECT_TRUE(stored(u"default"_s)->settings.siri);
    QCoro::waitFor(session->cloudBackups.refreshBackups());
    QMap<ProfileCloudBackupKind, bool> isSiriOff;
    for (const ProfileCloudBackupInfo& info : session->cloudBackups.backups()) {
        const ProfileCloudBackup backup = QCoro::waitFor(session->cloudBackups.contents(info));
        isSiriOff.insert(info.kind, backup.profiles.first().settings.siri);
    }
    const QMap<ProfileCloudBackupKind, bool> expected{{ProfileCloudBackupKind::defaultCurrent, true},
                                                      {ProfileCloudBackupKind::defaultPrevious, false}};
    EXPECT_EQ(isSiriOff, expected);
}

TEST_F(ProfileSavingTest, aCaptureInAProfileThatIsInForceAsks) {
    makeActive(live);
    listProfiles();
    openSheet();
    offer()->setName(u"Tour"_s);
    offer()->setSavesBaseline(true);
    press();
    waitForTasks();
    EXPECT_EQ(told().first(),
              u"! Replace Restore Baseline? | “Live” is active. A snapshot taken now saves its settings, "
              "and Revert and Reinstate will return to them. | Replace, Cancel"_s);
}

TEST_F(ProfileSavingTest, whatTheMacIsInIsUnverifiedWhenItsProfileHasChanged) {
    makeActive(live);
    listProfiles();
    ASSERT_FALSE(session->activeProfile.current().isKept);
    saveAs(u"Live"_s);
    waitForTasks();
    EXPECT_EQ(session->system.systemMatch()->name, u"Live"_s);
    EXPECT_TRUE(steps.contains(u"log: [VERIFY] Scanning current system settings..."_s)) << "looked at anew";

    makeActive(*stored(u"Live"_s));
    listProfiles();
    steps.clear();
    saveAs(u"Other"_s);
    waitForTasks();
    EXPECT_FALSE(session->activeProfile.current().isKept);
    EXPECT_FALSE(steps.contains(u"log: [VERIFY] Scanning current system settings..."_s));
}

TEST_F(ProfileSavingTest, aRenameTakesTheNamesAlong) {
    makeActive(live);
    defaults.values[kWallpaperProfileName] = u"Live"_s;
    listProfiles();
    saveAs(u"LIVE"_s);
    waitForTasks();
    EXPECT_EQ(lastApplied(), u"LIVE"_s);
    EXPECT_TRUE(steps.contains(u"label: LIVE"_s)) << steps.join(u'\n').toStdString();
}

TEST_F(ProfileSavingTest, lockedNothingIsSavedAndTheSheetStays) {
    enableLock();
    openSheet();
    offer()->setName(u"Tour"_s);
    lock->lockIfEnabled();
    offer()->accept();
    processEventsUntil([this] { return !told().isEmpty(); });
    EXPECT_EQ(told(), QStringList(u"! Quorvane is Locked | Enter your app password in the Quorvane window to save "
                                  "profiles. | OK"_s));
    EXPECT_EQ(savedCount(), 2);
    ASSERT_NE(offer(), nullptr);
    shutDownOffer();
    expectNothingLeft();
}

// ---- The wizard

TEST_F(ProfileSavingTest, theWizardTellsAndLogs) {
    EXPECT_TRUE(saveInWizard({.name = u"Tour"_s}).succeeded);
    EXPECT_EQ(left, QStringList(u"Tour"_s));
    EXPECT_EQ(
        told(),
        QStringList(u"! Profile Saved | \"Tour\" is now available from the menu bar and profile dropdown. | OK"_s));
    EXPECT_TRUE(session->system.logMessages().contains(u"\n[WIZARD] Profile saved: Tour"_s));
}

TEST_F(ProfileSavingTest, editingRenamesWhereTheNameIsFree) {
    session->workingCopy.load(live);
    EXPECT_TRUE(saveInWizard({.name = u"Main Stage"_s, .edited = live}).succeeded);
    EXPECT_EQ(told().size(), 1) << "nothing is asked";
    EXPECT_EQ(stored(u"Main Stage"_s)->id, live.id);
    EXPECT_EQ(stored(u"Main Stage"_s)->dateCreated, live.dateCreated);
    EXPECT_EQ(stored(u"Live"_s), std::nullopt);
    EXPECT_EQ(savedCount(), 2);
}

TEST_F(ProfileSavingTest, editingUnderItsOwnNameAsksNothing) {
    for (const QString& name : {u"Live"_s, u"LIVE"_s}) {
        EXPECT_TRUE(saveInWizard({.name = name, .edited = live}).succeeded);
        EXPECT_EQ(told().size(), 1);
        EXPECT_EQ(stored(name)->id, live.id);
        steps.clear();
    }
    session->profileStore.deleteProfile(u"LIVE"_s);
    EXPECT_TRUE(saveInWizard({.name = u"LIVE"_s, .edited = live}).succeeded) << "deleted meanwhile";
    EXPECT_EQ(stored(u"LIVE"_s)->id, live.id);
}

TEST_F(ProfileSavingTest, editingUnderAnotherOnesNameReplacesThatOneAndKeepsTheEdited) {
    EXPECT_TRUE(saveInWizard({.name = u"Club"_s, .edited = live}).succeeded);
    EXPECT_EQ(
        told().first(),
        u"! Overwrite Profile? | This will replace the existing profile \"Club\" with your current settings. | Overwrite, Cancel"_s);
    EXPECT_EQ(stored(u"Club"_s)->id, club.id);
    EXPECT_EQ(stored(u"Live"_s)->id, live.id);
    EXPECT_EQ(stored(u"Live"_s)->settings, live.settings);
    EXPECT_EQ(savedCount(), 2);
}

TEST_F(ProfileSavingTest, aNewOneUnderATakenNameAsksToo) {
    alerts.press(1);
    EXPECT_FALSE(saveInWizard({.name = u"Live"_s}).succeeded);
    EXPECT_EQ(told(), QStringList(kOverwriteLive));
    EXPECT_EQ(left, QStringList());
    EXPECT_EQ(failures, 0) << "nothing was done";
    EXPECT_EQ(stored(u"Live"_s)->settings, live.settings);
}

TEST_F(ProfileSavingTest, theWizardIsToldWhatFailed) {
    files.failOn(MemoryFileManager::Operation::Write, fileOf(u"Tour"_s));
    EXPECT_FALSE(saveInWizard({.name = u"Tour"_s}).succeeded);
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(left, QStringList());
}

TEST_F(ProfileSavingTest, savedAndAppliedInOneGoIsReviewed) {
    session->tasks.start(
        session->profileSaving.saveInWizard({.name = u"Tour"_s}, ProfileSaving::Afterwards::Apply, end(), window));
    waitFor(ApplyReview::State::Reviewing);
    EXPECT_EQ(left, QStringList(u"Tour"_s));
    EXPECT_EQ(told(), QStringList()) << "the review takes the alert's place";
    review()->close();
    waitForTasks();
    EXPECT_EQ(session->workingCopy.currentProfile()->name, u"Tour"_s) << "it stays saved";
    expectNothingLeft();
}

TEST_F(ProfileSavingTest, aBaselineThatFailedIsToldFirst) {
    files.failOn(MemoryFileManager::Operation::Write, u"/Users/alex/.quorvane/master-baseline-current.json"_s);
    EXPECT_TRUE(saveInWizard({.name = u"Tour"_s, .savesBaseline = true}).succeeded);
    EXPECT_EQ(
        told(),
        (QStringList{u"! Profile Saved | \"Tour\" was saved, but the restore baseline could not be saved. "
                     "Check the Logs tab. | OK"_s,
                     u"! Profile Saved | \"Tour\" is now available from the menu bar and profile dropdown. | OK"_s}));
}

// ---- The composing

TEST_F(ProfileSavingTest, aNewOneLeavesTheLoadedProfileAndACancelGivesItBack) {
    session->workingCopy.load(live);
    {
        const auto wizard = ProfileWizard::forNew(session->workingCopy, session->savedProfiles);
        EXPECT_EQ(session->workingCopy.currentProfile(), std::nullopt);
        EXPECT_EQ(session->workingCopy.settings(), live.settings);
        EXPECT_EQ(wizard->title(), u"Create Profile"_s);
        EXPECT_EQ(wizard->wanted().name, QString());
        EXPECT_FALSE(wizard->canSave());
        EXPECT_FALSE(wizard->goBack()) << "out of it";
    }
    EXPECT_EQ(session->workingCopy.currentProfile()->id, live.id);
}

TEST_F(ProfileSavingTest, whatWasSavedOrDeletedMeanwhileIsNotGivenBack) {
    session->workingCopy.load(live);
    {
        const auto wizard = ProfileWizard::forNew(session->workingCopy, session->savedProfiles);
        wizard->saved();
        session->workingCopy.clear();
    }
    EXPECT_EQ(session->workingCopy.currentProfile(), std::nullopt);
    session->workingCopy.load(live);
    {
        const auto wizard = ProfileWizard::forNew(session->workingCopy, session->savedProfiles);
        ending(session->profileActions.remove(live.name, live.id, window));
        listProfiles();
    }
    EXPECT_EQ(session->workingCopy.currentProfile(), std::nullopt);
}

TEST_F(ProfileSavingTest, stepsAreTakenInOrderAndVisitedOnesAtOnce) {
    const auto wizard = ProfileWizard::forNew(session->workingCopy, session->savedProfiles);
    EXPECT_EQ(wizard->stepTitle(), u"System Tweaks"_s);
    wizard->goTo(WizardStep::save);
    EXPECT_EQ(wizard->step(), WizardStep::tweaks) << "not visited";
    wizard->goOn();
    EXPECT_EQ(wizard->stepTitle(), u"Startup Optimization"_s);
    wizard->goOn();
    EXPECT_EQ(wizard->stepTitle(), u"Save Profile"_s);
    wizard->goOn();
    EXPECT_EQ(wizard->step(), WizardStep::save);
    wizard->goTo(WizardStep::tweaks);
    wizard->goTo(WizardStep::save);
    EXPECT_EQ(wizard->step(), WizardStep::save);
    EXPECT_TRUE(wizard->goBack());
    EXPECT_EQ(wizard->step(), WizardStep::startup);
}

TEST_F(ProfileSavingTest, theEditedOnesNoteSaysWhatBecomesOfItsName) {
    session->workingCopy.load(live);
    const auto wizard = ProfileWizard::forEdit(session->workingCopy, session->savedProfiles);
    EXPECT_EQ(wizard->title(), u"Edit Profile"_s);
    EXPECT_EQ(wizard->wanted().name, u"Live"_s);
    EXPECT_EQ(wizard->note(), QString());
    wizard->setName(u"Main Stage"_s);
    EXPECT_EQ(wizard->note(), u"“Live” will be renamed."_s);
    wizard->setName(u"LIVE"_s);
    EXPECT_EQ(wizard->note(), u"“Live” will be renamed."_s);
    wizard->setName(u"Club"_s);
    EXPECT_EQ(wizard->note(), QString()) << "the edited one stays";
    wizard->setName(u" default"_s);
    EXPECT_EQ(wizard->note(), u"“Default” is standard macOS operation: applying it brings back your saved settings, or "
                              "macOS’s own where none are saved."_s);
}

} // namespace quorvane
