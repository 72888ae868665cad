// The helpers inside applications: what an override keeps off stays where it is.

#include "fakes/StartupSystem.h"

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;

const QString kAsk = u"Please."_s;
const QString kHelper = u"com.chat.helper"_s;
const QString kTarget = u"gui/501/com.chat.helper"_s;
const QString kFile = u"/Applications/Chat.app/Contents/Library/LoginItems/Chat Helper.app"_s;
const QString kPlace = kQuarantine + u"com.chat.helper/Chat Helper.app"_s;
const QString kVerify = u"/usr/bin/codesign --verify /Applications/Chat.app"_s;
const QString kLeft = u"  [INFO] Left in its application: Chat Helper"_s;

class BackgroundHelpers : public StartupSystem {
protected:
    BackgroundHelpers() {
        files.addFile(kFile, "helper");
        commands.fail(kVerify, 1, "a sealed resource is missing or invalid\n");
        commands.launchd.stubborn.insert(kTarget); // its application switches it on again at once
        BackgroundTaskItem application = applicationRecord(u"Chat"_s, u"com.chat"_s);
        application.url = u"file:///Applications/Chat.app/"_s;
        cacheDump({application, backgroundRecord(u"Chat Helper"_s, kHelper, u"com.chat"_s)});
    }

    void switchOff() {
        system.deferBackgroundTaskFetchToAdminBatch();
        system.beginAdminBatch();
        StartupConfiguration configuration;
        configuration.items = {backgroundItemOff(kHelper)};
        QCoro::waitFor(system.applyStartupConfiguration(configuration));
        trace.clear();
        EXPECT_TRUE(QCoro::waitFor(system.finishAdminBatch(kAsk)));
    }
};

} // namespace

TEST_F(BackgroundHelpers, whatAnOverrideKeepsOffStaysInItsApplication) {
    commands.launchd.stubborn.clear();
    switchOff();
    EXPECT_EQ(trace.last(), kLeft);
    EXPECT_EQ(trace.filter(kVerify), QStringList()) << "nobody needs to know";
    EXPECT_TRUE(files.exists(kFile));
}

TEST_F(BackgroundHelpers, ofABrokenApplicationOneThatIsOnAllTheSameIsTakenOut) {
    switchOff();
    EXPECT_EQ(trace.mid(trace.size() - 2),
              (QStringList{u"$> "_s + kVerify, u"  [APPLIED] Quarantined bundled startup resource: "
                                               "Chat Helper.app"_s}));
    EXPECT_FALSE(files.exists(kFile));
    EXPECT_EQ(files.read(kPlace), "helper");
    EXPECT_EQ(prompts(), 0);
}

TEST_F(BackgroundHelpers, anApplicationThatIsWholeKeepsIt) {
    commands.answer(kVerify, ScriptedCommandLauncher::succeeded({}));
    switchOff();
    EXPECT_EQ(trace.last(), kLeft);
    EXPECT_TRUE(files.exists(kFile));
}

TEST_F(BackgroundHelpers, aToolThatSaysNothingOfTheSealLeavesIt) {
    for (const CommandOutcome& outcome : ScriptedCommandLauncher::unanswered()) {
        commands.answer(kVerify, outcome);
        switchOff();
        EXPECT_EQ(trace.last(), kLeft);
    }
    commands.fail(kVerify, 2, "Usage: codesign\n");
    switchOff();
    EXPECT_EQ(trace.last(), kLeft);
    EXPECT_TRUE(files.exists(kFile));
}

TEST_F(BackgroundHelpers, whereLaunchdDoesNotTellItStays) {
    commands.launchd.isMute = true;
    switchOff();
    EXPECT_EQ(trace.last(), kLeft);
    EXPECT_EQ(trace.filter(kVerify), QStringList());
}

TEST_F(BackgroundHelpers, whereNothingCouldBeWrittenDownNothingWasTriedAndItStays) {
    files.failOn(Operation::Write, u"/Users/alex/.quorvane/launchd-overrides.json"_s);
    switchOff();
    EXPECT_EQ(trace.last(), kLeft);
    EXPECT_TRUE(files.exists(kFile));
}

TEST_F(BackgroundHelpers, theOverrideOfItsJobCountsNotThatOfItsBundle) {
    commands.launchd.stubborn.clear();
    BackgroundTaskItem application = applicationRecord(u"Chat"_s, u"com.chat"_s);
    application.url = u"file:///Applications/Chat.app/"_s;
    BackgroundTaskItem helper = backgroundRecord(u"Chat Helper"_s, u"com.chat.job"_s, u"com.chat"_s, u"agent (0x8)"_s);
    helper.bundleIdentifier = kHelper;
    helper.url = u"Contents/Library/LoginItems/Chat Helper.app"_s;
    cacheDump({application, helper});
    switchOff();
    EXPECT_TRUE(commands.launchd.isOff(u"gui/501/com.chat.job"_s));
    EXPECT_EQ(trace.last(), kLeft);
    EXPECT_TRUE(files.exists(kFile));
}

TEST_F(BackgroundHelpers, rootTakesNothingOutOfApplications) {
    giveToRoot(u"/Applications/Chat.app"_s);
    switchOff();
    EXPECT_EQ(trace.last(), kLeft);
    EXPECT_EQ(prompts(), 0);
    EXPECT_TRUE(files.exists(kFile));
}

TEST_F(BackgroundHelpers, aRefusalLeavesEverythingAsItWasAndIsSaidWithItsPlace) {
    files.failOn(Operation::Move, kFile);
    switchOff();
    EXPECT_EQ(trace.mid(trace.size() - 2),
              (QStringList{u"  [ERROR] Failed to quarantine bundled startup resource: Chat Helper.app: "_s + kFile +
                               u": Operation not permitted"_s,
                           u"  [INFO] Allow Quorvane in System Settings → Privacy & Security → App Management to "
                           "change other applications."_s}));
    EXPECT_EQ(files.read(kFile), "helper");
    EXPECT_FALSE(files.exists(kPlace)) << "no copy is left behind";
}

TEST_F(BackgroundHelpers, aCopyThatIsThereAlreadyGetsANameOfItsOwn) {
    files.addFile(kPlace, "earlier");
    switchOff();
    EXPECT_EQ(files.read(kPlace), "helper");
    QList<QByteArray> kept;
    for (const QString& name : files.list(kQuarantine + kHelper)) {
        kept.append(files.read(kQuarantine + kHelper + u'/' + name));
    }
    EXPECT_TRUE(kept.contains("earlier"));
}

TEST_F(BackgroundHelpers, aLinkInThePlaceOfAFolderStopsIt) {
    files.addFolders(u"/Users/alex/elsewhere"_s);
    files.addLink(u"/Users/alex/.quorvane_backup"_s, u"/Users/alex/elsewhere"_s);
    switchOff();
    EXPECT_TRUE(files.exists(kFile));
    EXPECT_EQ(files.list(u"/Users/alex/elsewhere"_s), QStringList());
}

// ---- What an earlier run has left that was killed

TEST_F(BackgroundHelpers, aLeftoverOfWhichThereIsACopyGoes) {
    files.addFile(kPlace, "helper");
    files.move(kFile, kFile + u".removed"_s);
    switchOff();
    EXPECT_FALSE(files.exists(kFile + u".removed"_s));
    EXPECT_EQ(files.read(kPlace), "helper");
    EXPECT_TRUE(
        system.logMessages().contains(u"  [INFO] Removed what an interrupted run had left: Chat Helper.app.removed"_s));
}

TEST_F(BackgroundHelpers, aLeftoverWhoseCopyIsNotWholeIsPutBack) {
    commands.launchd.stubborn.clear();
    files.addFile(kPlace, "hel");
    files.move(kFile, kFile + u".removed"_s);
    switchOff();
    EXPECT_TRUE(
        system.logMessages().contains(u"  [INFO] Put back what an interrupted run had left: Chat Helper.app"_s));
    EXPECT_EQ(files.read(kFile), "helper");
}

TEST_F(BackgroundHelpers, whatNoCopyStandsForIsNotTheProgramsAndStays) {
    const QString folder = parentFolder(kFile);
    files.addFile(folder + u"/Other.app.removed"_s, "mine");
    files.addFile(folder + u"/notes.removed"_s, "mine");
    switchOff();
    EXPECT_TRUE(files.exists(folder + u"/Other.app.removed"_s));
    EXPECT_TRUE(files.exists(folder + u"/notes.removed"_s));
}

TEST_F(BackgroundHelpers, whatLeadsOutOfTheApplicationIsNeverMoved) {
    files.removeAsRoot(kFile);
    files.addFile(u"/Users/alex/Music/Chat Helper.app"_s, "song");
    files.addLink(kFile, u"/Users/alex/Music/Chat Helper.app"_s);
    switchOff();
    EXPECT_EQ(files.read(u"/Users/alex/Music/Chat Helper.app"_s), "song");
    EXPECT_FALSE(files.exists(kPlace));
}

} // namespace quorvane
