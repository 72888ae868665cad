#include "simulator/tools/Pmset.h"

#include "ToolRun.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

const QByteArray kUsage = "Usage: pmset <options>\nSee pmset(1) for details: 'man pmset'\n";

class Pmset : public testing::Test {
protected:
    void SetUp() override {
        setState(mac, "power",
                 {{"sources",
                   {{"Battery Power",
                     {{"standbydelayhigh", 86400},
                      {"standbydelaylow", 10800},
                      {"standby", 1},
                      {"powernap", 1},
                      {"SleepServices", 1},
                      {"hibernatefile", "/var/vm/sleepimage"},
                      {"displaysleep", 2},
                      {"sleep", 1},
                      {"disksleep", 10},
                      {"lessbright", 1},
                      {"lowpowermode", 0}}},
                    {"AC Power",
                     {{"womp", 1},
                      {"standbydelayhigh", 86400},
                      {"standbydelaylow", 10800},
                      {"standby", 1},
                      {"Sleep On Power Button", 1},
                      {"displaysleep", 10},
                      {"sleep", 1},
                      {"disksleep", 10},
                      {"tcpkeepalive", 1},
                      {"lowpowermode", 0}}}}},
                  {"activeSource", "AC Power"},
                  {"sleepDisabled", nullptr},
                  {"sleepPreventedBy", {"coreaudiod", "coreaudiod"}}});
    }

    ToolRun run(const QString& line, Actor actor = Actor::Root) {
        return runTool(mac, runPmset, u"pmset "_s.append(line).split(u' '), actor);
    }
    Json power() const { return mac.mac.state().read("power"); }
    Json battery() const { return power()["sources"]["Battery Power"]; }
    Json adapter() const { return power()["sources"]["AC Power"]; }

    SimulatedMacFolder mac;
};

/// One without a battery, whose timers contradict each other.
class PmsetOfDesktop : public Pmset {
protected:
    void SetUp() override {
        setState(mac, "power",
                 {{"sources", {{"AC Power", {{"standby", 0}, {"displaysleep", 10}, {"sleep", 5}, {"disksleep", 10}}}}},
                  {"activeSource", "AC Power"}});
    }
};

} // namespace

TEST_F(Pmset, customShowsEverySourceInItsStoredOrder) {
    const ToolRun expected{0,
                           "Battery Power:\n"
                           " standbydelayhigh     86400\n"
                           " standbydelaylow      10800\n"
                           " standby              1\n"
                           " powernap             1\n"
                           " SleepServices        1\n"
                           " hibernatefile        /var/vm/sleepimage\n"
                           " displaysleep         2\n"
                           " sleep                1\n"
                           " disksleep            10\n"
                           " lessbright           1\n"
                           " lowpowermode         0\n"
                           "AC Power:\n"
                           " womp                 1\n"
                           " standbydelayhigh     86400\n"
                           " standbydelaylow      10800\n"
                           " standby              1\n"
                           " Sleep On Power Button 1\n"
                           " displaysleep         10\n"
                           " sleep                1\n"
                           " disksleep            10\n"
                           " tcpkeepalive         1\n"
                           " lowpowermode         0\n",
                           {}};
    EXPECT_EQ(run(u"-g custom"_s, Actor::User), expected);
    EXPECT_EQ(run(u"-g disk"_s, Actor::User), expected);
}

TEST_F(Pmset, liveShowsTheActiveSourceAndWhoPreventsSleep) {
    const ToolRun live = run(u"-g"_s, Actor::User);
    EXPECT_EQ(live.status, 0);
    EXPECT_TRUE(live.output.startsWith("System-wide power settings:\nCurrently in use:\n womp                 1\n"));
    EXPECT_TRUE(live.output.contains("\n sleep                1 (sleep prevented by coreaudiod, coreaudiod)\n"));
    EXPECT_TRUE(live.output.contains("\n displaysleep         10\n"));
    EXPECT_FALSE(live.output.contains("lessbright"));
    EXPECT_EQ(run(u"-g LIVE"_s), live);
}

TEST_F(Pmset, highPowerModeOfTheActiveSourceRenamesTheSetting) {
    mac.mac.state().update("power", [](Json& state) { state["highPowerModeSources"] = {"AC Power"}; });
    EXPECT_TRUE(run(u"-g"_s).output.contains("\n powermode            0\n"));
    EXPECT_EQ(run(u"-c powermode 2"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(adapter()["lowpowermode"], 2);
    mac.mac.state().update("power", [](Json& state) { state["activeSource"] = "Battery Power"; });
    EXPECT_FALSE(run(u"-g custom"_s).output.contains("powermode            2\n "));
    EXPECT_TRUE(run(u"-g custom"_s).output.contains("\n lowpowermode         2\n"));
}

TEST_F(Pmset, writesAllSourcesAndKeepsTheOtherKeysAndTheirOrder) {
    Json expected = power();
    expected["sources"]["Battery Power"]["standby"] = 0;
    expected["sources"]["AC Power"]["standby"] = 0;
    EXPECT_EQ(run(u"-a standby 0"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(power().dump(), expected.dump());
}

TEST_F(Pmset, noFlagMeansAllSources) {
    EXPECT_EQ(run(u"disksleep 5"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(battery()["disksleep"], 5);
    EXPECT_EQ(adapter()["disksleep"], 5);
}

TEST_F(Pmset, aLineMayChangeTheSourceOnItsWay) {
    EXPECT_EQ(run(u"-b disksleep 3 -c disksleep 4 standby 0"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(battery()["disksleep"], 3);
    EXPECT_EQ(battery()["standby"], 1);
    EXPECT_EQ(adapter()["disksleep"], 4);
    EXPECT_EQ(adapter()["standby"], 0);
}

TEST_F(Pmset, readsValuesAsStrtolDoes) {
    const struct {
        const char16_t* line;
        const char* key;
        int value;
    } cases[] = {{u"-c disksleep 0x10", "disksleep", 16},
                 {u"-c disksleep 010", "disksleep", 8},
                 {u"-c DiskSleep 7", "disksleep", 7},
                 {u"-c spindown 9", "disksleep", 9},
                 {u"-c standby 5", "standby", 1},
                 {u"-c womp 0", "womp", 0},
                 {u"-c powerbutton 0", "Sleep On Power Button", 0}};
    for (const auto& one : cases) {
        EXPECT_EQ(run(QString::fromUtf16(one.line)), (ToolRun{0, {}, {}}));
        EXPECT_EQ(adapter()[one.key], one.value) << one.key;
    }
}

TEST_F(Pmset, oneDelayWritesTheTwoThatReplacedIt) {
    EXPECT_EQ(run(u"-a standbydelay 60"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(battery()["standbydelaylow"], 60);
    EXPECT_EQ(battery()["standbydelayhigh"], 60);
    EXPECT_FALSE(battery().contains("standbydelay"));
}

TEST_F(Pmset, powerNapTakesSleepServicesAlong) {
    EXPECT_EQ(run(u"-b powernap 0"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(battery()["powernap"], 0);
    EXPECT_EQ(battery()["SleepServices"], 0);
}

TEST_F(Pmset, whatTheMachineDoesNotSupportIsSilentAndNeverShown) {
    const Json before = power();
    for (const QString& line : {u"-a sms 0"_s, u"-a lidwake 0"_s, u"-u sleep 10"_s, u"-c lessbright 0"_s}) {
        EXPECT_EQ(run(line), (ToolRun{0, {}, {}})) << line.toStdString();
    }
    EXPECT_EQ(power(), before);
}

TEST_F(PmsetOfDesktop, hasOneSection) {
    const QByteArray settings = " standby              0\n displaysleep         10\n"
                                " sleep                5\n disksleep            10\n";
    EXPECT_EQ(run(u"-g custom"_s, Actor::User), (ToolRun{0, "AC Power:\n" + settings, {}}));
    EXPECT_EQ(run(u"-g"_s, Actor::User),
              (ToolRun{0, "System-wide power settings:\nCurrently in use:\n" + settings, {}}));
}

TEST_F(PmsetOfDesktop, theBatteryIsWrittenToWithoutAWordAndWithoutEffect) {
    const Json before = power();
    for (const QString& line :
         {u"-b sleep 0"_s, u"-b standby 0 disksleep 0 sleep 0"_s, u"-b sleep 20"_s, u"-u sleep 0"_s}) {
        EXPECT_EQ(run(line), kSilent) << line.toStdString();
        EXPECT_EQ(power(), before) << line.toStdString();
    }
}

TEST_F(PmsetOfDesktop, whatIsWrittenToAllSourcesIsWrittenToTheOneThatIsThere) {
    EXPECT_EQ(run(u"-a standby 1 sleep 0"_s), kSilent);
    EXPECT_EQ(adapter()["standby"], 1);
    EXPECT_FALSE(power()["sources"].contains("Battery Power"));
    EXPECT_FALSE(run(u"-b sleep 3 -c sleep 5"_s).error.isEmpty())
        << "the second is there, and the timers are looked at";
}

TEST_F(Pmset, aLineWithOneMistakeWritesNothing) {
    const Json before = power();
    for (const QString& line : {u"-a standby 0 nonsense 1"_s, u"-a standby 0 sleep"_s, u"-a standby 0 sleep -1"_s,
                                u"-a standby 0 sleep ten"_s, u"-a standby 0 sleep 5x"_s, u"-x sleep 5"_s,
                                u"-a disablesleep"_s, u"-g nonsense"_s}) {
        EXPECT_EQ(run(line), (ToolRun{1, kUsage, {}})) << line.toStdString();
        EXPECT_EQ(power(), before) << line.toStdString();
    }
}

TEST_F(Pmset, onlyRootWrites) {
    const Json before = power();
    EXPECT_EQ(run(u"-a standby 0"_s, Actor::User), (ToolRun{1, "'pmset' must be run as root...\n", {}}));
    EXPECT_EQ(runTool(mac, runPmset, {u"/usr/bin/pmset"_s, u"-a"_s, u"standby"_s, u"0"_s}),
              (ToolRun{1, "'/usr/bin/pmset' must be run as root...\n", {}}));
    EXPECT_EQ(run(u"-a disablesleep 1"_s, Actor::User), (ToolRun{0, "'pmset' must be run as root...\n", {}}));
    EXPECT_EQ(run(u"-a nonsense 0"_s, Actor::User), (ToolRun{1, kUsage, {}}));
    EXPECT_EQ(power(), before);
}

TEST_F(Pmset, disabledSleepIsASwitchOfTheWholeSystem) {
    const QByteArray custom = run(u"-g custom"_s).output;
    EXPECT_EQ(run(u"-a disablesleep 1"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(run(u"-g custom"_s).output, custom);
    EXPECT_TRUE(
        run(u"-g"_s).output.startsWith("System-wide power settings:\n SleepDisabled\t\t1\nCurrently in use:\n"));
    EXPECT_EQ(run(u"disablesleep 0"_s), (ToolRun{0, {}, {}}));
    EXPECT_TRUE(run(u"-g"_s).output.contains(" SleepDisabled\t\t0\n"));
}

TEST_F(Pmset, warnsThatKeepAliveMatters) {
    const ToolRun off = run(u"-c tcpkeepalive 0"_s);
    EXPECT_EQ(off.status, 0);
    EXPECT_TRUE(off.output.startsWith("Warning: This option disables TCP Keep Alive mechanism"));
    EXPECT_EQ(adapter()["tcpkeepalive"], 0);
    EXPECT_EQ(run(u"-c tcpkeepalive 1"_s), (ToolRun{0, {}, {}}));
}

TEST_F(Pmset, warnsOfTimersThatContradictEachOther) {
    const QByteArray warning = "Warning: Idle sleep timings for \"AC Power\" may not behave as expected.\n";
    const QByteArray display = "- Display sleep should have a lower timeout than system sleep.\n";
    const QByteArray disk = "- Disk sleep should be non-zero whenever system sleep is non-zero.\n";
    const struct {
        const char16_t* line;
        QByteArray error;
    } cases[] = {{u"-c sleep 1 displaysleep 10", {}},
                 {u"-c sleep 5", warning + display},
                 {u"-c displaysleep 0", warning + display},
                 {u"-c displaysleep 5", {}},
                 {u"-c disksleep 0", warning + disk},
                 // Every source is looked at, whichever was written.
                 {u"-b standby 0", warning + disk},
                 {u"-c displaysleep 6", warning + display + disk},
                 {u"-c sleep 0", {}}};
    for (const auto& one : cases) {
        EXPECT_EQ(run(QString::fromUtf16(one.line)), (ToolRun{0, {}, one.error}))
            << QString::fromUtf16(one.line).toStdString();
    }
}

TEST_F(Pmset, whatIsNotSimulatedFailsLoudly) {
    for (const QString& line :
         {u"-g batt"_s, u"-g log"_s, u"sleepnow"_s, u"repeat cancel"_s, u"-a restoredefaults"_s}) {
        const ToolRun refused = run(line);
        EXPECT_EQ(refused.status, 70) << line.toStdString();
        EXPECT_TRUE(refused.error.endsWith(": not simulated\n")) << line.toStdString();
    }
}

} // namespace macsim
