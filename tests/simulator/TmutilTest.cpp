#include "simulator/tools/Tmutil.h"

#include "ToolRun.h"
#include "simulator/PreferenceStore.h"
#include "simulator/tools/Defaults.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class Tmutil : public testing::Test {
protected:
    ToolRun run(const QString& verb, Actor actor = Actor::User) {
        return runTool(mac, runTmutil, {u"tmutil"_s, verb}, actor);
    }
    std::optional<PropertyList> autoBackup() {
        return PreferenceStore(mac.mac, mac.mac.volume(Actor::Root))
            .read({u"/Library/Preferences/com.apple.TimeMachine"_s}, u"AutoBackup"_s);
    }

    SimulatedMacFolder mac;
};

} // namespace

TEST_F(Tmutil, anIdleBackupDoesNotRun) {
    const ToolRun expected{0,
                           "Backup session status:\n{\n    ClientID = \"com.apple.backupd\";\n    Percent = \"-1\";\n"
                           "    Running = 0;\n}\n",
                           {}};
    EXPECT_EQ(run(u"status"_s), expected);
    setState(mac, "timeMachine", {{"running", false}, {"phase", "Copying"}});
    EXPECT_EQ(run(u"status"_s), expected);
}

TEST_F(Tmutil, aRunningBackupTellsItsPhase) {
    setState(mac, "timeMachine",
             {{"running", true},
              {"phase", "ThinningPostBackup"},
              {"percent", "0.25"},
              {"destination", {{"name", "Tape"}, {"kind", "Local"}, {"mountPoint", "/Volumes/Tape"}, {"id", "5B-1"}}}});
    EXPECT_EQ(run(u"status"_s), (ToolRun{0,
                                         "Backup session status:\n"
                                         "{\n"
                                         "    BackupPhase = ThinningPostBackup;\n"
                                         "    ClientID = \"com.apple.backupd\";\n"
                                         "    DestinationID = \"5B-1\";\n"
                                         "    DestinationMountPoint = \"/Volumes/Tape\";\n"
                                         "    Percent = \"0.25\";\n"
                                         "    Progress =     {\n"
                                         "        Percent = \"0.25\";\n"
                                         "    };\n"
                                         "    Running = 1;\n"
                                         "    Stopping = 0;\n"
                                         "}\n",
                                         {}}));
}

TEST_F(Tmutil, stopEndsARunningBackupAndDisableDoesNot) {
    setState(mac, "timeMachine", {{"running", true}});
    EXPECT_EQ(run(u"disable"_s, Actor::Root), (ToolRun{0, {}, {}}));
    EXPECT_TRUE(run(u"status"_s).output.contains("Running = 1;"));
    EXPECT_EQ(run(u"stopbackup"_s), (ToolRun{0, {}, {}}));
    EXPECT_TRUE(run(u"status"_s).output.contains("Running = 0;"));
}

TEST_F(Tmutil, rootSwitchesAutomaticBackups) {
    EXPECT_EQ(autoBackup(), std::nullopt);
    EXPECT_EQ(run(u"disable"_s, Actor::Root), (ToolRun{0, {}, {}}));
    EXPECT_EQ(autoBackup(), PropertyList(false));
    EXPECT_EQ(run(u"enable"_s, Actor::Root), (ToolRun{0, {}, {}}));
    EXPECT_EQ(autoBackup(), PropertyList(true));
}

TEST_F(Tmutil, theUserMayNotSwitch) {
    EXPECT_EQ(run(u"disable"_s), (ToolRun{1, {}, "tmutil: disable requires root privileges.\n"}));
    EXPECT_EQ(run(u"enable"_s), (ToolRun{1, {}, "tmutil: enable requires root privileges.\n"}));
    EXPECT_EQ(autoBackup(), std::nullopt);
}

TEST_F(Tmutil, rootNeedsFullDiskAccessToo) {
    setState(mac, "permissions", {{"fullDiskAccess", false}});
    EXPECT_EQ(run(u"disable"_s, Actor::Root),
              (ToolRun{80,
                       {},
                       "tmutil: disable requires Full Disk Access privileges.\n"
                       "To allow this operation, select Full Disk Access in the Privacy\n"
                       "tab of the Security & Privacy preference pane, and add Terminal\n"
                       "to the list of applications which are allowed Full Disk Access.\n"}));
    EXPECT_EQ(autoBackup(), std::nullopt);
}

TEST_F(Tmutil, itsSettingReadsAsMissingWithoutFullDiskAccess) {
    EXPECT_EQ(run(u"disable"_s, Actor::Root), kSilent);
    const QStringList read{u"defaults"_s, u"read"_s, u"/Library/Preferences/com.apple.TimeMachine"_s, u"AutoBackup"_s};
    EXPECT_EQ(runTool(mac, runDefaults, read), (ToolRun{0, "0\n", {}}));
    setState(mac, "permissions", {{"fullDiskAccess", false}});
    for (const Actor actor : {Actor::User, Actor::Root}) {
        const ToolRun refused = runTool(mac, runDefaults, read, actor);
        EXPECT_EQ(refused.status, 1);
        EXPECT_TRUE(refused.error.endsWith("The domain/default pair of (/Library/Preferences/com.apple.TimeMachine, "
                                           "AutoBackup) does not exist\n"))
            << refused.error.toStdString();
    }
    const QStringList write{u"defaults"_s, u"write"_s, read.at(2), read.at(3), u"-bool"_s, u"YES"_s};
    EXPECT_NE(runTool(mac, runDefaults, write, Actor::Root).status, 0);
    setState(mac, "permissions", {{"fullDiskAccess", true}});
    EXPECT_EQ(autoBackup(), PropertyList(false));
}

TEST_F(Tmutil, whatNeedsNoRightAnswersWithoutFullDiskAccess) {
    setState(mac, "permissions", {{"fullDiskAccess", false}});
    EXPECT_EQ(run(u"destinationinfo"_s), (ToolRun{1, {}, "tmutil: No destinations configured.\n"}));
    EXPECT_EQ(run(u"status"_s).status, 0);
}

TEST(TmutilOnTahoe, saysItInOneLine) {
    SimulatedMacFolder mac({}, {{"userName", "alex"}, {"systemVersion", "26.3"}});
    setState(mac, "permissions", {{"fullDiskAccess", false}});
    EXPECT_EQ(runTool(mac, runTmutil, {u"tmutil"_s, u"enable"_s}, Actor::Root),
              (ToolRun{80, {}, "tmutil: enable requires Full Disk Access privileges.\n"}));
}

TEST_F(Tmutil, tellsTheDestination) {
    EXPECT_EQ(run(u"destinationinfo"_s), (ToolRun{1, {}, "tmutil: No destinations configured.\n"}));
    setState(mac, "timeMachine",
             {{"destination", {{"name", "Tape"}, {"kind", "Local"}, {"mountPoint", "/Volumes/Tape"}, {"id", "5B-1"}}}});
    EXPECT_EQ(run(u"destinationinfo"_s), (ToolRun{0,
                                                  "====================================================\n"
                                                  "Name          : Tape\nKind          : Local\n"
                                                  "Mount Point   : /Volumes/Tape\nID            : 5B-1\n",
                                                  {}}));
}

TEST_F(Tmutil, removedAndUnknownVerbsAreNotRecognized) {
    EXPECT_EQ(run(u"disablelocal"_s, Actor::Root), (ToolRun{64, {}, "disablelocal: Unrecognized verb.\n"}));
    EXPECT_EQ(run(u"startbackup"_s), (ToolRun{70, {}, "tmutil: startbackup: not simulated\n"}));
    EXPECT_EQ(runTool(mac, runTmutil, {u"tmutil"_s, u"status"_s, u"-X"_s}).status, 70);
}

} // namespace macsim
