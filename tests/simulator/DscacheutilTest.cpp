#include "simulator/tools/Dscacheutil.h"

#include "ToolRun.h"

namespace macsim {

using namespace Qt::StringLiterals;

TEST(Dscacheutil, flushingTheCacheIsSilentForAnyone) {
    SimulatedMacFolder mac;
    for (const Actor actor : {Actor::User, Actor::Root}) {
        EXPECT_EQ(runTool(mac, runDscacheutil, {u"dscacheutil"_s, u"-flushcache"_s}, actor), (ToolRun{0, {}, {}}));
    }
}

TEST(Dscacheutil, whatIsNotSimulatedFailsLoudly) {
    SimulatedMacFolder mac;
    for (const QStringList& words :
         {QStringList{}, {u"-q"_s, u"user"_s}, {u"flushcache"_s}, {u"-flushcache"_s, u"-statistics"_s}}) {
        EXPECT_EQ(runTool(mac, runDscacheutil, QStringList{u"dscacheutil"_s} + words).status, 70);
    }
}

} // namespace macsim
