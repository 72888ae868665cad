#include "simulator/ProcessTable.h"

#include "ToolRun.h"

namespace macsim {

using namespace Qt::StringLiterals;

TEST(ProcessTable, numbersWhatItStartsUpwards) {
    SimulatedMacFolder mac;
    const ProcessTable table(mac.mac.state());
    Process process;
    process.name = u"Dock"_s;
    process.userId = 501;
    const int first = table.start(process);
    const int second = table.start(process);
    EXPECT_EQ(second, first + 1);
    EXPECT_EQ(table.list().size(), 2U);
    EXPECT_EQ(table.find(second)->name, u"Dock"_s);
    table.remove(first);
    EXPECT_FALSE(table.find(first));
    EXPECT_EQ(table.list().size(), 1U);
}

TEST(ProcessTable, keepsAllThatIsKnownOfAProcess) {
    SimulatedMacFolder mac;
    const Json records = Json::array({{{"pid", 412},
                                       {"name", "Dock"},
                                       {"path", "/System/Dock"},
                                       {"uid", 501},
                                       {"label", "com.apple.Dock.agent"},
                                       {"keepAlive", true},
                                       {"protected", true}}});
    setState(mac, "processes", records);
    const ProcessTable table(mac.mac.state());
    const Process dock = table.list().at(0);
    table.remove(412);
    EXPECT_EQ(table.start(dock), 300);
    Json expected = records;
    expected[0]["pid"] = 300;
    EXPECT_EQ(mac.mac.state().read("processes"), expected);
}

TEST(ProcessTable, replacesAProcessUnderANewNumber) {
    SimulatedMacFolder mac;
    setState(mac, "processes", Json::array({{{"pid", 412}, {"name", "Dock"}, {"uid", 501}}}));
    const ProcessTable table(mac.mac.state());
    EXPECT_EQ(table.replace(412), 413);
    EXPECT_EQ(table.list().size(), 1U);
    EXPECT_EQ(table.list().at(0).name, u"Dock"_s);
    EXPECT_EQ(table.replace(412), 0);
}

} // namespace macsim
