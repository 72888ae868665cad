#include "simulator/tools/Perl.h"

#include "ToolRun.h"
#include "simulator/Faults.h"
#include "simulator/shell/Shell.h"
#include "simulator/tools/Registry.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

const QString kTimed = u"/usr/bin/perl -e 'alarm shift; exec @ARGV' 30 "_s;

/// Commands that have a time limit, in the lines of a shell.
class Perl : public testing::Test {
protected:
    Perl()
        : mac(simulatorTools()) {}

    ToolRun run(const QString& line) {
        ToolContext context = mac.context({u"sh"_s}, Actor::Root);
        context.faults = &faults;
        const int status = runShellLine(line, context);
        return {status, context.output, context.error};
    }

    SimulatedMacFolder mac;
    Faults faults;
};

} // namespace

TEST_F(Perl, runsACommandThatEndsInTime) {
    EXPECT_EQ(run(kTimed + u"/bin/echo 'a b' c"_s), (ToolRun{0, "a b c\n", {}}));
    EXPECT_EQ(run(kTimed + u"/usr/bin/false"_s), (ToolRun{1, {}, {}}));
    faults = Faults(Json::array({{{"tool", "echo"}, {"delayMilliseconds", 1}}}));
    EXPECT_EQ(run(kTimed + u"/bin/echo late"_s), (ToolRun{0, "late\n", {}}));
}

TEST_F(Perl, endsACommandThatHangsByTheSignalOfTheAlarm) {
    const ToolRun ended{142, {}, {}};
    setState(mac, "sfltool", {{"hangs", true}});
    EXPECT_EQ(run(kTimed + u"/usr/bin/sfltool dumpbtm"_s), ended);
    setState(mac, "sfltool", {{"hangs", false}});
    EXPECT_EQ(run(kTimed + u"/usr/bin/sfltool dumpbtm"_s).status, 0);
    faults = Faults(Json::array({{{"tool", "sfltool"}, {"hang", true}}}));
    EXPECT_EQ(run(kTimed + u"/usr/bin/sfltool dumpbtm"_s), ended);
    faults = Faults(Json::array({{{"tool", "sfltool"}, {"delayMilliseconds", 30'000}}}));
    EXPECT_EQ(run(kTimed + u"/usr/bin/sfltool dumpbtm"_s), ended);
}

TEST_F(Perl, aMarkBehindADumpTellsThatItIsWhole) {
    const QString dump = mac.mac.temporaryFolder() + u"tasks.txt"_s;
    const QString line = u"( "_s + kTimed + u"/usr/bin/sfltool dumpbtm && echo '-- whole --' ) > '"_s + dump +
                         u"' 2>/dev/null || true"_s;
    const auto content = [&] { return mac.mac.volume(Actor::User).read(dump); };
    EXPECT_EQ(run(line), kSilent);
    EXPECT_TRUE(content().startsWith("========================\n Records for UID -2 : "));
    EXPECT_TRUE(content().endsWith("\n-- whole --\n"));

    setState(mac, "sfltool", {{"hangs", true}});
    EXPECT_EQ(run(line), kSilent);
    EXPECT_EQ(content(), "");

    faults = Faults(Json::array({{{"tool", "sfltool"}, {"status", 1}, {"output", "half a du"}}}));
    EXPECT_EQ(run(line), kSilent);
    EXPECT_EQ(content(), "half a du");
}

TEST_F(Perl, aCommandThatIsNotThereIsPassedOver) {
    EXPECT_EQ(run(kTimed + u"/usr/bin/missing word"_s), kSilent);
}

TEST_F(Perl, everyOtherScriptFailsLoudly) {
    for (const QString& line :
         {u"perl"_s, u"perl -v"_s, u"perl -e 'print 1'"_s, u"perl -e 'alarm shift; exec @ARGV'"_s,
          u"perl -e 'alarm shift; exec @ARGV' 30"_s, u"perl -e 'alarm shift; exec @ARGV' 0 true"_s,
          u"perl -e 'alarm shift; exec @ARGV' soon true"_s, u"perl -w -e 'alarm shift; exec @ARGV' 30 true"_s}) {
        EXPECT_EQ(run(line).status, 70) << line.toStdString();
    }
}

} // namespace macsim
