#include "simulator/tools/Killall.h"

#include "ToolRun.h"
#include "simulator/ProcessTable.h"

#include <algorithm>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class Killall : public testing::Test {
protected:
    void SetUp() override {
        setState(
            mac, "processes",
            {{{"pid", 100}, {"name", "mDNSResponder"}, {"uid", 0}},
             {{"pid", 101},
              {"name", "coreaudiod"},
              {"uid", 0},
              {"label", "com.apple.audio.coreaudiod"},
              {"keepAlive", true}},
             {{"pid", 400}, {"name", "Dock"}, {"uid", 501}, {"label", "com.apple.Dock.agent"}, {"keepAlive", true}},
             {{"pid", 401}, {"name", "Live"}, {"uid", 501}},
             {{"pid", 402}, {"name", "Live"}, {"uid", 501}},
             {{"pid", 403}, {"name", "Helper"}, {"uid", 501}, {"label", "com.x.helper"}},
             {{"pid", 404}, {"name", "Guarded"}, {"uid", 501}, {"protected", true}}});
        setState(mac, "launchd",
                 {{"jobs",
                   {{"gui/501",
                     {{"com.apple.Dock.agent", {{"path", "/System/x.plist"}, {"pid", 400}, {"lastExitStatus", 0}}},
                      {"com.x.helper", {{"path", "/y.plist"}, {"pid", 403}, {"lastExitStatus", nullptr}}}}},
                    {"system", {{"com.apple.audio.coreaudiod", {{"path", "/System/z.plist"}, {"pid", 101}}}}}}}});
    }

    ToolRun run(const QString& words, Actor actor = Actor::User) {
        return runTool(mac, runKillall, QString(u"killall "_s + words).split(u' '), actor);
    }
    std::vector<int> pids(const QString& name) const {
        std::vector<int> found;
        for (const Process& process : ProcessTable(mac.mac.state()).list()) {
            if (process.name == name) {
                found.push_back(process.pid);
            }
        }
        return found;
    }
    Json job(const char* domain, const char* label) const {
        return mac.mac.state().read("launchd")["jobs"][domain][label];
    }

    SimulatedMacFolder mac;
};

using Pids = std::vector<int>;

} // namespace

TEST_F(Killall, endsEveryProcessOfTheName) {
    EXPECT_EQ(run(u"Live"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(pids(u"Live"_s), Pids());
    EXPECT_EQ(pids(u"Dock"_s), Pids{400});
}

TEST_F(Killall, comparesTheWholeNameAndItsCase) {
    for (const QString& name : {u"live"_s, u"Liv"_s, u"Live.app"_s}) {
        EXPECT_EQ(run(name), (ToolRun{1, {}, "No matching processes belonging to you were found\n"}));
    }
    EXPECT_EQ(run(u"nobody"_s, Actor::Root), (ToolRun{1, {}, "No matching processes were found\n"}));
    EXPECT_EQ(run(u"-q nobody"_s), (ToolRun{1, {}, {}}));
    EXPECT_EQ(pids(u"Live"_s), (Pids{401, 402}));
}

TEST_F(Killall, aUserReachesOnlyHisOwnProcesses) {
    EXPECT_EQ(run(u"coreaudiod"_s), (ToolRun{1, {}, "No matching processes belonging to you were found\n"}));
    EXPECT_EQ(pids(u"coreaudiod"_s), Pids{101});
    EXPECT_EQ(run(u"coreaudiod"_s, Actor::Root), (ToolRun{0, {}, {}}));
    EXPECT_EQ(run(u"Live"_s, Actor::Root), (ToolRun{0, {}, {}}));
    EXPECT_EQ(pids(u"Live"_s), Pids());
}

TEST_F(Killall, whatLaunchdKeepsAliveComesBackWithANewNumber) {
    EXPECT_EQ(run(u"Dock"_s), (ToolRun{0, {}, {}}));
    const Pids docks = pids(u"Dock"_s);
    ASSERT_EQ(docks.size(), 1U);
    EXPECT_GT(docks[0], 404);
    EXPECT_EQ(job("gui/501", "com.apple.Dock.agent")["pid"], docks[0]);
    EXPECT_EQ(job("gui/501", "com.apple.Dock.agent")["lastExitStatus"], -15);

    EXPECT_EQ(run(u"-KILL coreaudiod"_s, Actor::Root), (ToolRun{0, {}, {}}));
    EXPECT_EQ(job("system", "com.apple.audio.coreaudiod")["pid"], pids(u"coreaudiod"_s).at(0));
    EXPECT_EQ(job("system", "com.apple.audio.coreaudiod")["lastExitStatus"], -9);
}

TEST_F(Killall, theYoungestProcessGetsANewNumberToo) {
    ASSERT_EQ(run(u"Guarded"_s).status, 1);
    mac.mac.state().update("processes", [](Json& records) { records.erase(records.end() - 1); });
    mac.mac.state().update("processes", [](Json& records) { records = Json::array({records[2]}); });
    run(u"Dock"_s);
    EXPECT_EQ(pids(u"Dock"_s), Pids{401});
}

TEST_F(Killall, aJobThatIsNotKeptAliveStaysLoadedWithoutAProcess) {
    EXPECT_EQ(run(u"-9 Helper"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(pids(u"Helper"_s), Pids());
    EXPECT_EQ(job("gui/501", "com.x.helper")["pid"], nullptr);
    EXPECT_EQ(job("gui/501", "com.x.helper")["lastExitStatus"], -9);
}

TEST_F(Killall, aProcessWhoseJobIsNotLoadedStaysAway) {
    setState(mac, "launchd", Json::object());
    EXPECT_EQ(run(u"Dock"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(pids(u"Dock"_s), Pids());
}

TEST_F(Killall, aHangUpIsARequestToTheNameResolver) {
    EXPECT_EQ(run(u"-HUP mDNSResponder"_s, Actor::Root), (ToolRun{0, {}, {}}));
    EXPECT_EQ(pids(u"mDNSResponder"_s), Pids{100});
    EXPECT_EQ(run(u"-SIGHUP Live"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(pids(u"Live"_s), Pids());
}

TEST_F(Killall, severalNamesSucceedWhenOneMatches) {
    EXPECT_EQ(run(u"nobody Live"_s), (ToolRun{0, {}, {}}));
    EXPECT_EQ(pids(u"Live"_s), Pids());
}

TEST_F(Killall, showsWithoutSending) {
    EXPECT_EQ(run(u"-s Live"_s), (ToolRun{0, "kill -TERM 401\nkill -TERM 402\n", {}}));
    EXPECT_EQ(run(u"-sm ^Li"_s).output, "kill -TERM 401\nkill -TERM 402\n");
    EXPECT_EQ(pids(u"Live"_s).size(), 2U);
}

TEST_F(Killall, whatTheSystemDoesNotPermitIsWarnedOf) {
    EXPECT_EQ(run(u"Guarded"_s), (ToolRun{1, {}, "killall: warning: kill -term 404: Operation not permitted\n"}));
    EXPECT_EQ(pids(u"Guarded"_s), Pids{404});
}

TEST_F(Killall, aLineThatCannotBeReadEndsNothing) {
    const ToolRun unknown = run(u"-FOO Live"_s);
    EXPECT_EQ(unknown.status, 1);
    EXPECT_TRUE(unknown.error.startsWith("killall: unknown signal FOO; valid signals:\nhup int quit "));
    EXPECT_EQ(run(u"-99 Live"_s).status, 1);
    EXPECT_EQ(run(u"-u"_s), (ToolRun{70, {}, "killall: -u: not simulated\n"}));
    EXPECT_TRUE(runTool(mac, runKillall, {u"killall"_s}).error.startsWith("usage: killall "));
    EXPECT_EQ(pids(u"Live"_s).size(), 2U);
}

} // namespace macsim
