// Profiles that leave the Mac as files, and come to it: what is asked, what is stored, what follows.

#include "fakes/ActionSystem.h"
#include "profiles/ProfileJson.h"

namespace quorvane {

namespace {

class ProfileExchangeTest : public ActionSystem {
protected:
    ProfileExchangeTest() {
        files.createFolders(u"/Volumes/Stick"_s);
        addProfile(live);
        listProfiles();
        steps.clear();
    }

    static UnifiedProfile withSiri(UnifiedProfile profile) {
        profile.settings.siri = true;
        return profile;
    }
    ActionOutcome exported() { return ending(session->profileExchange.exportCurrent(*listener)); }
    ActionOutcome imported() { return ending(session->profileExchange.importChosen(*listener)); }
    /// @return what is told or asked, in order
    QStringList linesOfImporting(const QByteArray& bytes) {
        files.addFile(kPath, bytes);
        filePanels.choose(kPath);
        steps.clear();
        imported();
        return takeSteps().filter(u"! "_s);
    }
    QList<UnifiedProfile> saved() { return session->profileStore.listProfiles(); }

    const UnifiedProfile live = numberedProfile(1, u"Live"_s);
    const UnifiedProfile club = numberedProfile(2, u"Club"_s);
    const QString kPath = u"/Volumes/Stick/Gig.json"_s;
};

} // namespace

// ---- Export

TEST_F(ProfileExchangeTest, theLoadedProfileIsExportedAsThePagesShowIt) {
    session->workingCopy.load(live);
    session->workingCopy.setSettings(withSiri(live).settings);
    filePanels.choose(kPath);
    steps.clear();
    EXPECT_TRUE(exported().succeeded);
    EXPECT_EQ(filePanels.asked, QStringList(u"save: Export Profile | Live.json"_s));
    EXPECT_EQ(filePanels.lastKind, FileKind::Profile);
    const UnifiedProfile written = decodeProfile(files.read(kPath));
    EXPECT_EQ(written.id, live.id);
    EXPECT_EQ(written.dateCreated, live.dateCreated);
    EXPECT_TRUE(written.hasSameContent(withSiri(live)));
    EXPECT_FALSE(saved().first().settings.siri) << "nothing is saved by it";
    EXPECT_TRUE(session->workingCopy.isEdited());
    EXPECT_EQ(takeSteps(),
              QStringList({u"! Export Successful | Profile successfully exported."_s + kOkay, u"anew: "_s}));
}

TEST_F(ProfileExchangeTest, whatIsNotLoadedOrNotWantedIsNotExported) {
    filePanels.choose(kPath);
    EXPECT_FALSE(exported().wasCarriedOut);
    EXPECT_TRUE(filePanels.asked.isEmpty());
    session->workingCopy.load(live);
    filePanels.choose(std::nullopt);
    EXPECT_FALSE(exported().wasCarriedOut);
    EXPECT_EQ(filePanels.asked.size(), 1);
    EXPECT_FALSE(files.exists(kPath));
}

TEST_F(ProfileExchangeTest, anExportThatFailsIsToldAndLeavesTheOldFile) {
    session->workingCopy.load(live);
    files.addFile(kPath, "mine");
    filePanels.choose(kPath);
    files.failAtChange(1);
    steps.clear();
    EXPECT_FALSE(exported().succeeded);
    EXPECT_TRUE(
        takeSteps().first().startsWith(u"! Export Error | Failed to save profile: /Volumes/Stick/Gig.json: "_s));
    EXPECT_EQ(files.read(kPath), "mine");

    files.failOn(MemoryFileManager::Operation::Read, kPath);
    EXPECT_FALSE(exported().succeeded) << "nobody has seen it written";
}

// ---- Import

TEST_F(ProfileExchangeTest, aNewProfileIsSavedAndNothingElseChanges) {
    session->workingCopy.load(live);
    session->workingCopy.setSettings(withSiri(live).settings);
    EXPECT_EQ(
        linesOfImporting(encodeProfile(club)),
        QStringList(u"! Profile Imported | “Club” is now available from the menu bar and profile dropdown."_s + kOkay));
    EXPECT_EQ(filePanels.asked, QStringList(u"open: Import Profile"_s));
    EXPECT_EQ(filePanels.lastKind, FileKind::Profile);
    EXPECT_EQ(saved().size(), 2);
    EXPECT_TRUE(session->profileStore.loadProfile(u"Club"_s)->hasSameContent(club));
    EXPECT_EQ(session->workingCopy.currentProfile()->name, u"Live"_s);
    EXPECT_TRUE(session->workingCopy.isEdited());
    EXPECT_EQ(session->savedProfiles.known().profiles.size(), 2);
}

TEST_F(ProfileExchangeTest, anotherProfileOfTheSameNameIsImportedBesideIt) {
    EXPECT_EQ(
        linesOfImporting(encodeProfile(numberedProfile(3, u"live"_s))),
        QStringList(u"! Profile Imported | “live” was imported under another name, since it is taken: live → live 2"_s +
                    kOkay));
    EXPECT_EQ(saved().size(), 2);
    EXPECT_TRUE(session->profileStore.loadProfile(u"Live"_s)->hasSameContent(live));
}

TEST_F(ProfileExchangeTest, anotherVersionOfASavedProfileReplacesItOnlyWhenAgreedTo) {
    const QString question =
        u"! Replace Saved Profiles? | Live will be replaced by their versions from Gig.json. | Replace, Cancel"_s;
    session->workingCopy.load(live);
    makeActive(live);
    alerts.press(1);
    EXPECT_EQ(linesOfImporting(encodeProfile(withSiri(live))), QStringList(question));
    EXPECT_FALSE(saved().first().settings.siri);
    EXPECT_TRUE(session->activeProfile.current().verification.has_value());

    alerts.press(0);
    EXPECT_EQ(
        linesOfImporting(encodeProfile(withSiri(live))),
        QStringList({question, u"! Profile Imported | “Live” was replaced by its version from Gig.json."_s + kOkay}));
    EXPECT_EQ(saved().size(), 1);
    EXPECT_TRUE(saved().first().settings.siri);
    EXPECT_TRUE(session->workingCopy.settings().siri) << "it wasn't edited, so it is loaded anew";
    EXPECT_FALSE(session->activeProfile.current().verification.has_value()) << "what was verified was another";
}

TEST_F(ProfileExchangeTest, aProfileThatCameIntoTheFolderMeanwhileIsAskedFor) {
    addProfile(club); // by somebody else: nobody has told
    EXPECT_TRUE(
        linesOfImporting(encodeProfile(withSiri(club))).first().startsWith(u"! Replace Saved Profiles? | Club "_s));
}

TEST_F(ProfileExchangeTest, theSameVersionAsksNothing) {
    EXPECT_EQ(linesOfImporting(encodeProfile(live)).size(), 1);
    EXPECT_EQ(saved().size(), 1);
}

TEST_F(ProfileExchangeTest, whatWasEditedStaysWhenItsProfileIsReplaced) {
    session->workingCopy.load(live);
    PerformanceSettings edited = live.settings;
    edited.spotlight = true;
    session->workingCopy.setSettings(edited);
    EXPECT_EQ(linesOfImporting(encodeProfile(withSiri(live))).size(), 2);
    EXPECT_TRUE(saved().first().settings.siri);
    EXPECT_EQ(session->workingCopy.settings(), edited);
    EXPECT_TRUE(session->workingCopy.isEdited());
}

TEST_F(ProfileExchangeTest, profilesThatExchangeTheirNamesKeepWhatGoesByThem) {
    addProfile(club);
    session->savedProfiles.tellChanged();
    listProfiles();
    makeActive(live);
    defaults.setString(kQuorvaneLastAppliedProfileName, u"Live"_s);
    defaults.setString(kWallpaperProfileName, u"Live"_s);
    const QList<UnifiedProfile> before{live, club};
    UnifiedProfile liveNow = live;
    liveNow.name = u"Club"_s;
    UnifiedProfile clubNow = club;
    clubNow.name = u"Live"_s;
    files.addFile(session->profileStore.profilesDirectory() + u"/Club.json"_s, encodeProfile(liveNow));
    files.addFile(session->profileStore.profilesDirectory() + u"/Live.json"_s, encodeProfile(clubNow));
    steps.clear();
    QCoro::waitFor(session->profileChanges.followArrival(before));
    EXPECT_EQ(lastApplied(), u"Club"_s);
    EXPECT_EQ(session->system.systemMatch()->name, u"Club"_s);
    EXPECT_TRUE(takeSteps().contains(u"label: Club"_s));
}

TEST_F(ProfileExchangeTest, whatIsNoProfileIsRefusedAndChangesNothing) {
    const struct {
        QByteArray bytes;
        QString problem;
    } cases[] = {{"", u""_s}, {"{", u""_s}, {"[]", u""_s}, {"\xff\xfe", u""_s}, {R"({"id": 7})", u"\"id\""_s}};
    for (const auto& [bytes, problem] : cases) {
        const QStringList lines = linesOfImporting(bytes);
        ASSERT_EQ(lines.size(), 1) << bytes.constData();
        EXPECT_TRUE(lines.first().startsWith(u"! Import Error | Could not import the profile: "_s + problem))
            << lines.first().toStdString();
        EXPECT_EQ(saved().size(), 1);
    }
    UnifiedProfile nameless = club;
    nameless.name = u" / "_s;
    nameless.name.clear();
    EXPECT_EQ(linesOfImporting(encodeProfile(nameless)),
              QStringList(u"! Import Error | Could not import the profile: Profile name is invalid."_s + kOkay));
    EXPECT_EQ(saved().size(), 1);
}

TEST_F(ProfileExchangeTest, aFileThatCannotBeReadOrSavedIsTold) {
    filePanels.choose(u"/Volumes/Stick/none.json"_s);
    EXPECT_FALSE(imported().wasCarriedOut);
    EXPECT_TRUE(
        takeSteps().first().startsWith(u"! Import Error | Could not import the profile: /Volumes/Stick/none.json: "_s));

    files.addFile(kPath, encodeProfile(club));
    filePanels.choose(kPath);
    files.failAtChange(1);
    const ActionOutcome outcome = imported();
    EXPECT_TRUE(outcome.wasCarriedOut);
    EXPECT_FALSE(outcome.succeeded);
    EXPECT_EQ(takeSteps().filter(u"! Import Error"_s).size(), 1);
    EXPECT_EQ(saved().size(), 1);
}

TEST_F(ProfileExchangeTest, theLockStandsBeforeAnImport) {
    enableLock();
    lock->lockIfEnabled();
    alerts.press(1);
    filePanels.choose(kPath);
    files.addFile(kPath, encodeProfile(club));
    EXPECT_FALSE(imported().wasCarriedOut);
    EXPECT_TRUE(filePanels.asked.isEmpty());
    EXPECT_EQ(saved().size(), 1);
}

TEST_F(ProfileExchangeTest, anImportEndsWhenTheProgramIsLockedBehindThePanel) {
    enableLock();
    files.addFile(kPath, encodeProfile(club));
    filePanels.hold();
    const QCoro::Task<ActionOutcome> running = session->profileExchange.importChosen(*listener);
    processEventsUntil([this] { return filePanels.openCount() == 1; });
    lock->lockIfEnabled();
    filePanels.answer(kPath);
    processEventsUntil([this] { return session->turnstile.isIdle(); });
    EXPECT_EQ(saved().size(), 1);
}

} // namespace quorvane
