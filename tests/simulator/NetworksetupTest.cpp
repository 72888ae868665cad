#include "simulator/tools/Networksetup.h"

#include "ToolRun.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class Networksetup : public testing::Test {
protected:
    void SetUp() override {
        setState(mac, "networkServices",
                 Json::array({{{"name", "Wi-Fi"}, {"device", "en0"}, {"enabled", true}},
                              {{"name", "USB 10/100 LAN (Bühne)"},
                               {"device", "en7"},
                               {"hardwarePort", "USB 10/100 LAN"},
                               {"enabled", false}},
                              {{"name", "Mika’s iPhone"}, {"device", "en8"}}}));
    }
    ToolRun run(const QStringList& words, Actor actor = Actor::User) {
        return runTool(mac, runNetworksetup, QStringList{u"networksetup"_s} + words, actor);
    }
    ToolRun unrecognized(const QByteArray& name) {
        return {4, name + " is not a recognized network service.\n** Error: The parameters were not valid.\n", {}};
    }
    Json services() const { return mac.mac.state().read("networkServices"); }

    SimulatedMacFolder mac;
};

} // namespace

TEST_F(Networksetup, listsServicesWithAnAsteriskBeforeTheDisabled) {
    EXPECT_EQ(run({u"-listallnetworkservices"_s}),
              (ToolRun{0,
                       "An asterisk (*) denotes that a network service is disabled.\n"
                       "Wi-Fi\n*USB 10/100 LAN (Bühne)\nMika’s iPhone\n",
                       {}}));
}

TEST_F(Networksetup, theOrderCountsEnabledServicesOnly) {
    EXPECT_EQ(run({u"-listnetworkserviceorder"_s}),
              (ToolRun{0,
                       "An asterisk (*) denotes that a network service is disabled.\n"
                       "(1) Wi-Fi\n(Hardware Port: Wi-Fi, Device: en0)\n\n"
                       "(*) USB 10/100 LAN (Bühne)\n(Hardware Port: USB 10/100 LAN, Device: en7)\n\n"
                       "(2) Mika’s iPhone\n(Hardware Port: Mika’s iPhone, Device: en8)\n\n",
                       {}}));
}

TEST_F(Networksetup, tellsWhetherAServiceIsEnabled) {
    EXPECT_EQ(run({u"-getnetworkserviceenabled"_s, u"Wi-Fi"_s}), (ToolRun{0, "Enabled\n", {}}));
    EXPECT_EQ(run({u"-getnetworkserviceenabled"_s, u"USB 10/100 LAN (Bühne)"_s}), (ToolRun{0, "Disabled\n", {}}));
}

TEST_F(Networksetup, rootSwitchesAServiceSilently) {
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(run({u"-setnetworkserviceenabled"_s, u"Mika’s iPhone"_s, u"off"_s}, Actor::Root), kSilent);
        EXPECT_EQ(run({u"-getnetworkserviceenabled"_s, u"Mika’s iPhone"_s}).output, "Disabled\n");
    }
    EXPECT_TRUE(run({u"-listallnetworkservices"_s}).output.endsWith("\n*Mika’s iPhone\n"));
    EXPECT_EQ(run({u"-setnetworkserviceenabled"_s, u"Mika’s iPhone"_s, u"on"_s}, Actor::Root), kSilent);
    EXPECT_EQ(run({u"-getnetworkserviceenabled"_s, u"Mika’s iPhone"_s}).output, "Enabled\n");
    EXPECT_EQ(run({u"-getnetworkserviceenabled"_s, u"Wi-Fi"_s}).output, "Enabled\n");
}

TEST_F(Networksetup, aUserChangesNothing) {
    const Json before = services();
    const ToolRun refused{14, "** Error: Command requires admin privileges.\n", {}};
    EXPECT_EQ(run({u"-setnetworkserviceenabled"_s, u"Wi-Fi"_s, u"off"_s}), refused);
    EXPECT_EQ(run({u"-setdnsservers"_s, u"Wi-Fi"_s, u"Empty"_s}), refused);
    EXPECT_EQ(services(), before);
}

TEST_F(Networksetup, onlyTheExactNameIsAService) {
    const Json before = services();
    for (const QString& name : {u"Ethernet"_s, u"*USB 10/100 LAN (Bühne)"_s, u"en0"_s, u"wi-fi"_s, u""_s}) {
        EXPECT_EQ(run({u"-getnetworkserviceenabled"_s, name}), unrecognized(name.toUtf8()));
        EXPECT_EQ(run({u"-getdnsservers"_s, name}), unrecognized(name.toUtf8()));
        EXPECT_EQ(run({u"-setnetworkserviceenabled"_s, name, u"off"_s}, Actor::Root), unrecognized(name.toUtf8()));
        EXPECT_EQ(run({u"-setdnsservers"_s, name, u"Empty"_s}, Actor::Root), unrecognized(name.toUtf8()));
    }
    EXPECT_EQ(services(), before);
}

TEST_F(Networksetup, dnsServersAreSetAndCleared) {
    const ToolRun none{0, "There aren't any DNS Servers set on Wi-Fi.\n", {}};
    EXPECT_EQ(run({u"-getdnsservers"_s, u"Wi-Fi"_s}), none);
    const Json before = services();
    EXPECT_EQ(run({u"-setdnsservers"_s, u"Wi-Fi"_s, u"9.9.9.9"_s, u"2620:fe::fe"_s}, Actor::Root), kSilent);
    EXPECT_EQ(run({u"-getdnsservers"_s, u"Wi-Fi"_s}), (ToolRun{0, "9.9.9.9\n2620:fe::fe\n", {}}));
    const ToolRun refused = run({u"-setdnsservers"_s, u"Wi-Fi"_s, u"1.1.1.1"_s, u"quad9"_s}, Actor::Root);
    EXPECT_EQ(refused.status, 4);
    EXPECT_EQ(run({u"-getdnsservers"_s, u"Wi-Fi"_s}).output, "9.9.9.9\n2620:fe::fe\n");
    EXPECT_EQ(run({u"-setdnsservers"_s, u"Wi-Fi"_s, u"Empty"_s}, Actor::Root), kSilent);
    EXPECT_EQ(run({u"-getdnsservers"_s, u"Wi-Fi"_s}), none);
    EXPECT_EQ(services(), before);
}

TEST_F(Networksetup, aLineWithTheWrongWordsIsRefused) {
    const ToolRun refused{4, "** Error: The parameters were not valid.\n", {}};
    for (const QStringList& words : {QStringList{u"-listallnetworkservices"_s, u"x"_s},
                                     {u"-getnetworkserviceenabled"_s},
                                     {u"-setnetworkserviceenabled"_s, u"Wi-Fi"_s},
                                     {u"-setnetworkserviceenabled"_s, u"Wi-Fi"_s, u"maybe"_s},
                                     {u"-setdnsservers"_s, u"Wi-Fi"_s}}) {
        EXPECT_EQ(run(words, Actor::Root), refused) << words.join(u' ').toStdString();
    }
}

TEST_F(Networksetup, whatIsNotSimulatedFailsLoudly) {
    for (const QStringList& words : {QStringList{}, {u"-setairportpower"_s, u"en0"_s, u"off"_s}, {u"Wi-Fi"_s}}) {
        EXPECT_EQ(run(words, Actor::Root).status, 70);
    }
}

TEST_F(Networksetup, aMacWithoutServicesListsNone) {
    setState(mac, "networkServices", Json());
    EXPECT_EQ(run({u"-listallnetworkservices"_s}).output,
              "An asterisk (*) denotes that a network service is disabled.\n");
    EXPECT_EQ(run({u"-setnetworkserviceenabled"_s, u"Wi-Fi"_s, u"off"_s}, Actor::Root), unrecognized("Wi-Fi"));
    EXPECT_TRUE(services().is_null());
}

} // namespace macsim
