// What happens by itself when a window appears.

#include "fakes/LaunchedWindow.h"

namespace quorvane {

namespace {

class LaunchTest : public LaunchedWindow {
protected:
    LaunchTest() { files.addFile(kBaseline, "{}"); }

    qsizetype logged(const QString& line) const { return session->system.logMessages().count(line); }

    const QString kBaseline = u"/Users/alex/.quorvane/master-baseline-current.json"_s;
    const QString kScan = u"\n[VERIFY] Scanning current system settings..."_s;
};

} // namespace

TEST_F(LaunchTest, beforeTheFirstPictureItLooksAtNothing) {
    enableLock();
    takeSteps();
    trace.clear();
    const int listings = files.listings();
    launch.windowAppeared();
    EXPECT_EQ(look.schemes.size(), 1);
    EXPECT_FALSE(lock->isUnlocked());
    EXPECT_EQ(
        session->system.logMessages(),
        (QStringList{u"Ready."_s, u"Excluded keywords: ableton, logic, vst, plugin, traktor, serato, rekordbox"_s}));
    EXPECT_EQ(trace.filter(u"$"_s), QStringList());
    EXPECT_EQ(files.listings(), listings);
    EXPECT_FALSE(session->system.isBusy());
    waitForTasks();
    EXPECT_EQ(logged(kScan), 0);
}

TEST_F(LaunchTest, thenItLooksAround) {
    files.addFolders(u"/Applications/Traktor Pro 3.app"_s);
    appearAndPaint();
    waitForTasks();
    EXPECT_EQ(session->savedProfiles.known().profiles, QList<UnifiedProfile>(1, live));
    EXPECT_EQ(logged(kScan), 1);
    EXPECT_TRUE(session->system.hasVerifiedSystem());
    EXPECT_EQ(takeSteps().filter(u"label"_s), QStringList(u"label at start: "_s));
    EXPECT_FALSE(defaults.values.contains(kQuorvaneLastAppliedProfileName)) << "nothing was applied";
    EXPECT_TRUE(session->turnstile.isIdle());
    const int listings = files.listings();
    session->system.performanceApplications();
    EXPECT_EQ(files.listings(), listings) << "they are known";
}

TEST_F(LaunchTest, itAsksSystemEventsOnlyForProfilesWithStartupWork) {
    ProfileManager(files, profilesDirectory(machine)).deleteProfile(live.name);
    addProfile(numberedProfile(3, u"Gig"_s));
    appearAndPaint();
    waitForTasks();
    EXPECT_EQ(logged(kScan), 1);
    EXPECT_EQ(trace.filter(u"System Events"_s), QStringList()) << "nobody has asked for what runs at login";
    EXPECT_EQ(trace.filter(u"launchctl"_s), QStringList());
}

TEST_F(LaunchTest, itAsksSystemEventsForAProfileWithStartupWork) {
    ASSERT_FALSE(live.startup.items.isEmpty());
    appearAndPaint();
    waitForTasks();
    EXPECT_FALSE(trace.filter(u"System Events"_s).isEmpty());
}

TEST_F(LaunchTest, aSecondWindowIsLockedAndListsAnewButLooksNoFurther) {
    enableLock();
    appearAndPaint();
    waitForTasks();
    launch.windowClosed();
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    addProfile(numberedProfile(2, u"Club"_s));
    takeSteps();
    appearAndPaint();
    EXPECT_FALSE(lock->isUnlocked()) << "whatever it was before";
    waitForTasks();
    EXPECT_EQ(look.schemes.size(), 2);
    EXPECT_EQ(logged(u"Ready."_s), 2);
    EXPECT_EQ(session->savedProfiles.known().profiles.size(), 2);
    EXPECT_EQ(logged(kScan), 1);
    EXPECT_EQ(takeSteps().filter(u"label"_s), QStringList());
}

TEST_F(LaunchTest, nobodyWaitsForIt) {
    commands.hold();
    appearAndPaint();
    processEventsUntil([this] { return steps.contains(u"label at start: "_s); });
    EXPECT_TRUE(session->turnstile.isIdle());
    EXPECT_FALSE(session->system.isBusy());
    commands.release();
    commands.holdNoFurther();
    waitForTasks();
}

} // namespace quorvane
