#include "simulator/tools/Registry.h"

#include "ToolRun.h"
#include "simulator/Faults.h"
#include "simulator/ProcessTable.h"
#include "simulator/shell/Shell.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// Shell lines as programs run them with administrator rights, with every command of the Mac at hand.
class AdministratorLines : public testing::Test {
protected:
    AdministratorLines()
        : mac(simulatorTools()) {}

    ToolRun run(const QString& line, Actor actor = Actor::Root) {
        ToolContext context = mac.context({u"sh"_s}, actor);
        context.faults = &faults;
        const int status = runShellLine(line, context);
        return {status, context.output, context.error};
    }
    Volume disk(Actor actor) const { return mac.mac.volume(actor); }

    SimulatedMacFolder mac;
    Faults faults;
    const ToolRun silent{0, {}, {}};
};

} // namespace

TEST_F(AdministratorLines, aDumpThatRootWritesIsReadByTheUser) {
    setState(mac, "backgroundTasks",
             {{"records", Json::array({{{"uid", 501}, {"type", "app"}, {"identifier", "2.com.x"}}})}});
    const QString dump = mac.mac.temporaryFolder() + u"tasks of 'alex'.txt"_s;
    const QString line =
        u"/usr/bin/sfltool dumpbtm > '"_s + QString(dump).replace(u"'"_s, u"'\\''"_s) + u"' 2>/dev/null || true"_s;
    EXPECT_EQ(run(line), silent);
    EXPECT_TRUE(disk(Actor::User).read(dump).contains("           Identifier: 2.com.x\n"));
    disk(Actor::User).remove(dump);

    EXPECT_EQ(run(line, Actor::User), silent);
    EXPECT_EQ(disk(Actor::User).read(dump), "");

    faults = Faults(Json::array({{{"tool", "sfltool"}, {"status", 1}, {"output", "half a du"}}}));
    EXPECT_EQ(run(line), silent);
    EXPECT_EQ(disk(Actor::User).read(dump), "half a du");
}

TEST_F(AdministratorLines, aHelperIsMovedOutOfItsApplicationWhereThatIsAllowed) {
    setPermission(mac.mac, "appManagement", true);
    const QString helper = u"/Applications/Bob's.app/Contents/Library/LoginItems/My Helper.app"_s;
    putFile(mac, helper + u"/Contents/Info.plist"_s, "plist");
    putFile(mac, helper + u"/Contents/MacOS/Helper"_s, "program");
    const QString quoted = u"'/Applications/Bob'\\''s.app/Contents/Library/LoginItems/My Helper.app'"_s;
    EXPECT_EQ(run(u"mkdir -p '/Users/alex/.kept/x' && rm -rf '/Users/alex/.kept/x/My Helper.app' && /usr/bin/ditto "_s +
                  quoted + u" '/Users/alex/.kept/x/My Helper.app' && rm -rf "_s + quoted),
              silent);
    EXPECT_EQ(disk(Actor::Root).read(u"/Users/alex/.kept/x/My Helper.app/Contents/MacOS/Helper"_s), "program");
    EXPECT_FALSE(disk(Actor::Root).exists(helper));
    EXPECT_TRUE(disk(Actor::Root).exists(u"/Applications/Bob's.app/Contents/Library/LoginItems"_s));
}

TEST_F(AdministratorLines, aFreshMacRefusesAndTheCopyIsLeftBehind) {
    putFile(mac, u"/Applications/X.app/helper"_s, "program");
    const ToolRun refused =
        run(u"/usr/bin/ditto '/Applications/X.app/helper' '/Users/alex/h' && rm -rf '/Applications/X.app/helper'"_s);
    EXPECT_EQ(refused, (ToolRun{1, {}, "rm: /Applications/X.app/helper: Operation not permitted\n"}));
    EXPECT_TRUE(disk(Actor::Root).exists(u"/Applications/X.app/helper"_s));
    EXPECT_TRUE(disk(Actor::Root).exists(u"/Users/alex/h"_s));
}

TEST_F(AdministratorLines, aHelperThatCannotBeCopiedStays) {
    putFile(mac, u"/Applications/X.app/helper"_s, "program");
    faults = Faults(Json::array({{{"tool", "ditto"}, {"diskFull", true}}}));
    const ToolRun failed =
        run(u"/usr/bin/ditto '/Applications/X.app/helper' '/Users/alex/h' && rm -rf '/Applications/X.app/helper'"_s);
    EXPECT_EQ(failed, (ToolRun{1, {}, "ditto: /Users/alex/h: No space left on device\n"}));
    EXPECT_TRUE(disk(Actor::Root).exists(u"/Applications/X.app/helper"_s));
}

TEST_F(AdministratorLines, networkToolsAreFoundAlongThePath) {
    setState(mac, "networkServices",
             Json::array({{{"name", "Bob's iPhone"}, {"device", "en8"}, {"enabled", true}},
                          {{"name", "Wi-Fi"}, {"device", "en0"}, {"dnsServers", {"9.9.9.9"}}}}));
    setState(mac, "processes", Json::array({{{"pid", 188}, {"name", "mDNSResponder"}, {"uid", 0}}}));
    EXPECT_EQ(run(u"networksetup -setnetworkserviceenabled 'Bob'\\''s iPhone' off ; "
                  u"networksetup -setdnsservers Wi-Fi Empty ; dscacheutil -flushcache ; "
                  u"killall -HUP mDNSResponder ; rm -rf /var/db/dhcpclient/leases/*"_s),
              silent);
    EXPECT_EQ(run(u"networksetup -listallnetworkservices"_s, Actor::User).output,
              "An asterisk (*) denotes that a network service is disabled.\n*Bob's iPhone\nWi-Fi\n");
    EXPECT_EQ(run(u"networksetup -getdnsservers Wi-Fi"_s, Actor::User).output,
              "There aren't any DNS Servers set on Wi-Fi.\n");
    EXPECT_EQ(ProcessTable(mac.mac.state()).list().at(0).pid, 188);
    EXPECT_EQ(run(u"killall -HUP mDNSResponder"_s, Actor::User),
              (ToolRun{1, {}, "No matching processes belonging to you were found\n"}));
}

TEST_F(AdministratorLines, aLabelBehindABlankIsToleratedAndTheJobRunsOn) {
    setState(mac, "launchd", {{"jobs", {{"gui/501", {{"com.x.agent", {{"path", "/gone.plist"}, {"pid", 300}}}}}}}});
    setState(mac, "processes", Json::array({{{"pid", 300}, {"name", "x"}, {"uid", 501}, {"label", "com.x.agent"}}}));
    EXPECT_EQ(run(u"/bin/launchctl bootout gui/501 com.x.agent 2>/dev/null || true ; "
                  u"/bin/launchctl disable gui/501/com.x.agent"_s),
              silent);
    EXPECT_EQ(ProcessTable(mac.mac.state()).list().size(), 1U);
    EXPECT_EQ(mac.mac.state().read("launchd")["disabled"]["user/501"], (Json{{"com.x.agent", true}}));
}

// ---- A daemon that comes back from a copy, where nothing has taken its place

namespace {

const QString kPlace = u"/Library/LaunchDaemons/x.plist"_s;
const QString kCopy = u"/Library/Application Support/Kept/x.plist"_s;
const QString kStart = u"launchctl enable 'system/com.x' ; launchctl enable 'gui/501/com.x' ; "
                       "launchctl bootstrap system '/Library/LaunchDaemons/x.plist' ; "_s;
const QString kBringBack =
    u"( ([ -e '/Library/LaunchDaemons/x.plist' ] || [ -L '/Library/LaunchDaemons/x.plist' ]) && ("_s + kStart +
    u"mv '/Library/Application Support/Kept/x.plist' '/Library/Application Support/Kept/x.plist.replaced' ; true) || "
    "(cp -p '/Library/Application Support/Kept/x.plist' '/Library/Application Support/Kept/x.plist.new' && "
    "mv '/Library/Application Support/Kept/x.plist.new' '/Library/LaunchDaemons/x.plist' && ("_s +
    kStart + u"rm -f '/Library/Application Support/Kept/x.plist'))) 2>/dev/null || true"_s;
const QByteArray kPlist = R"(<plist version="1.0"><dict><key>Label</key><string>com.x</string></dict></plist>)";

} // namespace

TEST_F(AdministratorLines, aDaemonComesBackEnabledAndLoaded) {
    setState(mac, "launchd", {{"disabled", {{"system", {{"com.x", true}}}, {"user/501", {{"com.x", true}}}}}});
    putFile(mac, kCopy, kPlist);
    EXPECT_EQ(run(kBringBack), silent);
    EXPECT_EQ(disk(Actor::Root).read(kPlace), kPlist);
    EXPECT_EQ(disk(Actor::Root).owner(kPlace), Actor::Root);
    EXPECT_EQ(disk(Actor::Root).list(u"/Library/Application Support/Kept"_s), QStringList());
    const Json launchd = mac.mac.state().read("launchd");
    EXPECT_EQ(launchd["disabled"], (Json{{"system", {{"com.x", false}}}, {"user/501", {{"com.x", false}}}}));
    EXPECT_TRUE(launchd["jobs"]["system"].contains("com.x"));
    EXPECT_EQ(run(kBringBack), silent) << "a second time there is no copy, and nothing to complain of";
}

TEST_F(AdministratorLines, whatTakesThePlaceOfADaemonStays) {
    putFile(mac, kCopy, kPlist);
    disk(Actor::Root).createLink(kPlace, u"/nowhere"_s);
    EXPECT_EQ(run(kBringBack), silent);
    EXPECT_EQ(disk(Actor::Root).kind(kPlace), Volume::Kind::Link);
    EXPECT_EQ(disk(Actor::Root).list(u"/Library/Application Support/Kept"_s), QStringList(u"x.plist.replaced"_s));
}

TEST_F(AdministratorLines, aDaemonWhoseCopyCannotBeMadeTwiceStaysInItsKeeping) {
    putFile(mac, kCopy, kPlist);
    faults = Faults(Json::array({{{"tool", "cp"}, {"diskFull", true}}}));
    EXPECT_EQ(run(kBringBack), silent);
    EXPECT_FALSE(disk(Actor::Root).exists(kPlace));
    EXPECT_EQ(disk(Actor::Root).read(kCopy), kPlist);
}

} // namespace macsim
