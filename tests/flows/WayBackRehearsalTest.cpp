// Snapshots, the ways back and the scan as a person rehearses them.

#include "fakes/RehearsalProgram.h"

#include <algorithm>

namespace quorvane {

namespace {

using macsim::Json;

class WayBackRehearsal : public RehearsalTest {
protected:
    Json json(const QStringList& arguments) {
        const QByteArray output = rehearse(QStringList(u"--json"_s) + arguments).output;
        return Json::parse(output.cbegin(), output.cend());
    }
    QByteArray preference(const QString& domainAndKey) { return shell(u"defaults read "_s + domainAndKey).trimmed(); }
};

} // namespace

TEST_F(WayBackRehearsal, aSnapshotSaysWhatTheWindowSays) {
    EXPECT_EQ(rehearse({u"snapshot"_s}).output,
              "\nCapturing system snapshot...\n"
              "  [SNAPSHOT] Saved system baseline.\n"
              "\nSnapshot Saved\n"
              "  Your current system setup has been saved as the restore baseline.\n");
    const Ending master = rehearse({u"snapshot"_s, u"Before the gig"_s, u"--master"_s});
    EXPECT_EQ(master.status, 0);
    EXPECT_TRUE(master.output.contains("  [SNAPSHOT] Saved system baseline for \"Before the gig\".\n"));
    EXPECT_TRUE(master.output.contains("  [MASTER] Archived protected baseline as master-baseline-"));
    EXPECT_EQ(shell(u"ls ~/.quorvane"_s).count("master-baseline-"), 2);
}

TEST_F(WayBackRehearsal, revertTakesTheSnapshotBack) {
    ASSERT_EQ(rehearse({u"snapshot"_s, u"Before"_s}).status, 0);
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0);
    ASSERT_EQ(preference(u"com.apple.Siri Status"_s), "Disabled");
    const Json reverted = json({u"revert"_s});
    EXPECT_EQ(reverted.at("succeeded"), true);
    EXPECT_EQ(reverted.at("restore"), Json({{"source", "snapshot"}}));
    EXPECT_EQ(reverted.at("alert"),
              Json({{"title", "Success"},
                    {"text", "Performance tweaks restored from your saved snapshot.\n\nPlease restart your Mac."}}));
    EXPECT_EQ(preference(u"com.apple.Siri Status"_s), "") << "as it was: not set";
}

TEST_F(WayBackRehearsal, reinstateTakesTheSnapshotBack) {
    ASSERT_EQ(rehearse({u"snapshot"_s, u"Before"_s}).status, 0);
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0);
    const Ending reinstated = rehearse({u"reinstate"_s});
    EXPECT_EQ(reinstated.status, 0);
    EXPECT_TRUE(reinstated.output.startsWith("\n[REINSTATE] Restoring system...\n"
                                             "\nReinstating from saved system snapshot (Before)...\n"));
    EXPECT_TRUE(reinstated.output.endsWith("\nSuccess\n"
                                           "  System restored from your saved restore baseline.\n"
                                           "  Please restart your Mac for changes to take full effect.\n"));
    EXPECT_EQ(preference(u"com.apple.Siri Status"_s), "") << "as it was: not set";
}

TEST_F(WayBackRehearsal, whoNeverTookASnapshotGetsBackToTheirOwnSettings) {
    shell(u"defaults write com.apple.Siri Status -string Mine"_s);
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0);
    ASSERT_EQ(preference(u"com.apple.Siri Status"_s), "Disabled");
    const Ending reverted = rehearse({u"revert"_s});
    EXPECT_EQ(reverted.status, 0);
    EXPECT_TRUE(reverted.output.startsWith("  [INFO] Using your settings as they were before Quorvane.\n"
                                           "\nRestoring from saved system snapshot (Before Quorvane)...\n"))
        << reverted.output.toStdString();
    EXPECT_EQ(preference(u"com.apple.Siri Status"_s), "Mine");
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0);
    EXPECT_EQ(shell(u"ls ~/.quorvane"_s).count("before-quorvane"), 1) << "and it was captured once";
    EXPECT_EQ(json({u"reinstate"_s}).at("restore"), Json({{"source", "beforeQuorvane"}}));
    EXPECT_EQ(preference(u"com.apple.Siri Status"_s), "Mine");
}

TEST_F(WayBackRehearsal, aFullDiskIsSaidBeforeTheFirstChange) {
    const QString full =
        file(u"full.json"_s, R"([{"adapter": "files", "change": 1, "error": "No space left on device"}])");
    const Ending run = rehearse({u"--faults"_s, full, u"network"_s, u"--disable"_s});
    EXPECT_TRUE(run.output.startsWith("  [ERROR] Failed to save your settings before the first change: "))
        << run.output.toStdString();
    EXPECT_TRUE(run.output.contains("No space left on device\n\nDisabling all network connections...\n"))
        << "whoever types the command is not asked";
}

TEST_F(WayBackRehearsal, anyKeptBaselineCanBeChosen) {
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0);
    ASSERT_EQ(rehearse({u"snapshot"_s, u"Too late"_s}).status, 0);
    const Json listed = json({u"baselines"_s}).at("baselines");
    ASSERT_EQ(listed.size(), 3U);
    EXPECT_EQ(listed.at(0).at("title"), "The Latest");
    EXPECT_EQ(listed.at(0).at("isUsed"), true);
    EXPECT_EQ(listed.at(1).at("title"), "Too late");
    EXPECT_EQ(listed.at(1).at("note"), "No setting differs from now.");
    EXPECT_EQ(listed.at(2).at("title"), "Before Quorvane");
    EXPECT_EQ(rehearse({u"use-baseline"_s, u"2"_s}).status, 0);
    EXPECT_EQ(json({u"baselines"_s}).at("baselines").at(2).at("isUsed"), true);
    EXPECT_EQ(json({u"revert"_s}).at("restore"), Json({{"source", "chosen"}}));
    EXPECT_EQ(preference(u"com.apple.Siri Status"_s), "");
    EXPECT_EQ(rehearse({u"use-baseline"_s, u"0"_s}).status, 0);
    EXPECT_EQ(json({u"baselines"_s}).at("baselines").at(0).at("isUsed"), true);
    for (const QString& number : {u"3"_s, u"-1"_s, u"x"_s}) {
        EXPECT_EQ(rehearse({u"use-baseline"_s, number}).status, 2) << number.toStdString();
    }
}

TEST_F(WayBackRehearsal, anApplyThatDiedIsFinishedOrTakenBack) {
    EXPECT_EQ(rehearse({u"resume"_s}).output, "\nNothing to Take Up\n  No apply and no way back was interrupted.\n");
    shell(u"defaults write com.apple.Siri Status -string Mine"_s);
    ASSERT_EQ(rehearse({u"snapshot"_s}).status, 0);
    const QString death = file(u"death.json"_s, R"([{"adapter": "commands", "kill": true, "run": 45}])");
    const auto dieInAnApply = [&] { rehearse({u"--faults"_s, death, u"apply"_s, example(u"live-set"_s)}); };
    dieInAnApply();
    ASSERT_EQ(preference(u"com.apple.Siri Status"_s), "Disabled") << "some is done";
    EXPECT_TRUE(rehearse({u"scan"_s}).output.startsWith("“Live Set” was being applied when Quorvane ended. "));
    const Ending back = rehearse({u"rollback"_s});
    EXPECT_EQ(back.status, 0) << back.output.toStdString();
    EXPECT_TRUE(back.output.startsWith("\n[ROLLBACK] Going back to what was there before: Live Set\n"));
    EXPECT_TRUE(back.output.contains("\nSuccess\n  Your Mac is as it was before “Live Set” was applied.\n"));
    EXPECT_EQ(preference(u"com.apple.Siri Status"_s), "Mine");
    dieInAnApply();
    const Ending finished = rehearse({u"resume"_s});
    EXPECT_EQ(finished.status, 0) << finished.output.toStdString();
    EXPECT_TRUE(finished.output.startsWith("\n[RESUME] Finishing what was interrupted: Live Set\n"));
    EXPECT_TRUE(finished.output.contains("[PROFILE] Live Set applied and verified successfully."));
    EXPECT_EQ(preference(u"com.apple.Siri Status"_s), "Disabled");
    EXPECT_TRUE(rehearse({u"rollback"_s}).output.contains("Nothing to Take Up"));
}

TEST_F(WayBackRehearsal, aCancelledWayBackEndsWithStatusOne) {
    const QStringList cancelled{u"--mac"_s, macFolder(), u"--authorize"_s, u"cancel"_s};
    for (const QString& command : {u"revert"_s, u"reinstate"_s, u"default"_s}) {
        const Ending run = start(cancelled + QStringList(command));
        EXPECT_EQ(run.status, 1) << command.toStdString();
        EXPECT_TRUE(
            run.output.contains("  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"));
        EXPECT_TRUE(run.output.contains("\nCancelled\n")) << run.output.toStdString();
    }
    EXPECT_EQ(preference(u"com.quorvane.app QuorvaneLastAppliedProfileName"_s), "");
}

TEST_F(WayBackRehearsal, defaultIsDoneWhateverTheScanFinds) {
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0);
    const Ending run = rehearse({u"default"_s});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.output.endsWith("\nDefault Applied\n"
                                    "  Standard macOS settings restored from your saved restore baseline.\n"
                                    "  Please restart your Mac.\n"
                                    "\n[VERIFY] Scanning current system settings...\n"
                                    "\n[VERIFY] System matches: Default\n"
                                    "  [OK] Default preset — no performance optimizations active\n"
                                    "  [OK] Clean Reboot — standard app restoration\n"
                                    "  [VERIFY] All settings confirmed on system.\n"
                                    "  [VERIFY] Active configuration: Default (default)\n"))
        << run.output.toStdString();
    EXPECT_EQ(preference(u"com.quorvane.app QuorvaneLastAppliedProfileName"_s), "Default");
    const Json report = json({u"default"_s});
    EXPECT_EQ(report.at("restore"), Json({{"source", "beforeQuorvane"}}));
    EXPECT_EQ(report.at("match").at("name"), "Default");
}

TEST_F(WayBackRehearsal, aScanNamesTheSavedProfileThatFits) {
    EXPECT_EQ(rehearse({u"scan"_s}).status, 0) << "Default, as it comes";
    ASSERT_EQ(rehearse({u"shell"_s, u"defaults write NSGlobalDomain NSAppSleepDisabled -bool YES"_s}).status, 0);
    EXPECT_EQ(rehearse({u"scan"_s}).status, 1);
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0);
    const Ending run = rehearse({u"scan"_s});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.output.endsWith("  [VERIFY] Active configuration: Live Set (saved profile)\n"
                                    "\nSystem Verified\n"
                                    "  Current system matches saved profile \"Live Set\".\n"
                                    "  All 12 setting(s) verified on the system.\n"))
        << run.output.toStdString();
    const Json match = json({u"scan"_s}).at("match");
    EXPECT_EQ(match.at("name"), "Live Set");
    EXPECT_EQ(match.at("kind"), "savedProfile");
    EXPECT_EQ(match.at("verification").at("failed"), Json::array());
}

TEST_F(WayBackRehearsal, aScanThatOnlyKeepsTheLastProfileEndsWithStatusOne) {
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0);
    ASSERT_EQ(rehearse({u"revert"_s}).status, 0);
    shell(u"defaults write com.apple.NetworkBrowser DisableAirDrop -bool YES"_s); // so that it isn't Default either
    const Ending run = rehearse({u"scan"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, "\n[VERIFY] Scanning current system settings...\n"
                          "  [INFO] 1 setting has changed since your settings were restored\n"
                          "  [INFO] AirDrop: DisableAirDrop is 1, was not set\n"
                          "\nNo Match Found\n"
                          "  No saved profile fully matches your current system settings.\n"
                          "  Check the Logs tab for details.\n");
    EXPECT_EQ(json({u"scan"_s}).at("match"),
              Json({{"name", "Live Set"},
                    {"kind", "savedProfile"},
                    {"verification", {{"verified", Json::array()}, {"failed", Json::array()}}},
                    {"isKept", true}}));
}

TEST_F(WayBackRehearsal, aSnapshotThatCannotBeArchivedEndsWithStatusOne) {
    shell(u"mkdir ~/.quorvane; touch ~/.quorvane/x; chmod 500 ~/.quorvane"_s);
    const QString faults =
        file(u"faults.json"_s, R"([{"adapter": "files", "error": "No space left on device", "change": 3}])");
    const Ending run = start({u"--mac"_s, macFolder(), u"--faults"_s, faults, u"snapshot"_s, u"--master"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(
        run.output.contains("  [SNAPSHOT] Saved system baseline.\n  [ERROR] Could not archive master baseline: "));
    EXPECT_TRUE(run.output.contains("\nBaseline Not Archived\n"
                                    "  Your current system setup has been saved, but not as a master baseline. Check "
                                    "the Logs tab for details.\n"))
        << run.output.toStdString();
}

TEST_F(WayBackRehearsal, aCaptureThatSystemEventsRefusesLeavesTheSnapshot) {
    ASSERT_EQ(rehearse({u"snapshot"_s, u"Before"_s}).status, 0);
    const QString path = u"cat ~/Library/'Application Support'/Quorvane/system_snapshot.json"_s;
    const QByteArray before = shell(path);
    const QString faults = file(u"faults.json"_s, R"([{"tool": "osascript", "status": 1, "error": "Not authorized"}])");
    const Ending run = start({u"--mac"_s, macFolder(), u"--faults"_s, faults, u"snapshot"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output,
              "\nCapturing system snapshot...\n"
              "  [ERROR] Could not read login items: Not authorized\n"
              "  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security.\n"
              "  [ERROR] Failed to save snapshot: Could not read login items.\n"
              "\nSnapshot Failed\n"
              "  Could not save the restore baseline. Check the Logs tab for details.\n");
    EXPECT_EQ(shell(path), before);
}

TEST_F(WayBackRehearsal, theDefaultProfileTakesTheRoadOfDefault) {
    const QString profile = file(u"default.json"_s, encodeProfile(UnifiedProfile::defaultProfile()));
    const Json report = json({u"apply"_s, profile});
    EXPECT_EQ(report.at("succeeded"), true);
    EXPECT_EQ(report.at("alert").at("title"), "Default Applied");
    EXPECT_EQ(preference(u"com.quorvane.app QuorvaneLastAppliedProfileName"_s), "Default");
}

TEST_F(WayBackRehearsal, theirArgumentsAreLookedAt) {
    expectRefused({u"revert"_s, u"x"_s}, "quorvane-rehearsal: revert: superfluous argument: x\n");
    expectRefused({u"scan"_s, u"--master"_s}, "quorvane-rehearsal: unknown option: --master\n");
    expectRefused({u"snapshot"_s, u"one"_s, u"two"_s}, "quorvane-rehearsal: snapshot: superfluous argument: two\n");
}

// ---- The program dies

TEST_F(WayBackRehearsal, itDiesWhenItIsAboutToRunACommandThatKillsIt) {
    const macsim::MacPicture before(macFolder());
    const QString faults = file(u"faults.json"_s, R"([{"adapter": "commands", "run": 3, "kill": true}])");
    const Ending run = start({u"--mac"_s, macFolder(), u"--faults"_s, faults, u"snapshot"_s});
    EXPECT_EQ(run.status, -1);
    EXPECT_EQ(run.output, "\nCapturing system snapshot...\n");
    EXPECT_EQ(macsim::MacPicture(macFolder()).changesSince(before), QString());
}

TEST_F(WayBackRehearsal, faultsOfItsOwnAdaptersThatCannotBeUnderstoodAreRefused) {
    const QByteArrayList rules{R"({"adapter": "commands", "run": 1})", R"({"adapter": "commands", "kill": true})",
                               R"({"adapter": "files", "change": 1, "kill": true, "at": "noon"})"};
    for (const QByteArray& rule : rules) {
        const QString faults = file(u"faults.json"_s, '[' + rule + ']');
        const Ending run = start({u"--mac"_s, macFolder(), u"--faults"_s, faults, u"scan"_s});
        EXPECT_EQ(run.status, 2) << rule.toStdString();
        EXPECT_TRUE(run.error.startsWith("quorvane-rehearsal: " + faults.toUtf8() + ": ")) << run.error.toStdString();
    }
}

} // namespace quorvane
