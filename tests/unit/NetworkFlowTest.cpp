#include "fakes/StartupSystem.h"

#include "services/NetworkServices.h"

namespace quorvane {

namespace {

const QByteArray kListing = "An asterisk (*) denotes that a network service is disabled.\n"
                            "Wi-Fi\n*Thunderbolt Bridge\nBob's iPhone\n";

class NetworkFlow : public StartupSystem {
protected:
    bool disableAll() { return QCoro::waitFor(system.disableAllNetworkConnections()); }
    QStringList list() { return QCoro::waitFor(system.listNetworkServices()); }
    QList<NetworkServiceState> read() { return QCoro::waitFor(system.readNetworkServices()); }
    void answerState(const QString& name, const QByteArray& state) {
        commands.print(u"/usr/sbin/networksetup -getnetworkserviceenabled "_s + name, state);
    }

    const QString asked = u"\nDisabling all network connections...\n"
                          "$> networksetup -listallnetworkservices\n"
                          "  [ACTION] Found 3 services: Wi-Fi, Thunderbolt Bridge, Bob's iPhone\n"
                          "  [ACTION] Requesting Administrator privileges to disable interfaces...\n"_s;
    const QString offLine = u"networksetup -setnetworkserviceenabled 'Wi-Fi' off ; "
                            "networksetup -setnetworkserviceenabled 'Thunderbolt Bridge' off ; "
                            "networksetup -setnetworkserviceenabled 'Bob'\\''s iPhone' off"_s;
};

} // namespace

TEST_F(NetworkFlow, disabledServicesAreListedToo) {
    commands.print(u"networksetup -listallnetworkservices"_s, kListing);
    EXPECT_EQ(list(), QStringList({u"Wi-Fi"_s, u"Thunderbolt Bridge"_s, u"Bob's iPhone"_s}));
    EXPECT_EQ(takeTrace(), u"$> networksetup -listallnetworkservices\n"_s);
}

TEST_F(NetworkFlow, allServicesGoOffInOneLineUnderOnePrompt) {
    commands.print(u"networksetup -listallnetworkservices"_s, kListing);
    EXPECT_TRUE(disableAll());
    EXPECT_EQ(takeTrace(),
              asked + prompted(offLine, kSystemChanges) + u"  [APPLIED] All network connections disabled.\n"_s);
}

TEST_F(NetworkFlow, aRefusedPromptIsAFailure) {
    commands.print(u"networksetup -listallnetworkservices"_s, kListing);
    scripts.failNext(u"User canceled."_s);
    EXPECT_FALSE(disableAll());
    EXPECT_EQ(takeTrace(),
              asked + prompted(offLine, kSystemChanges) + u"  [ERROR] Failed to disable network: User canceled.\n"_s);
}

TEST_F(NetworkFlow, anOpenBatchTakesTheLineWithoutAPrompt) {
    commands.print(u"networksetup -listallnetworkservices"_s, kListing);
    system.beginAdminBatch();
    EXPECT_TRUE(disableAll());
    EXPECT_EQ(takeTrace(), asked + u"  [APPLIED] All network connections disabled.\n"_s);
    EXPECT_TRUE(QCoro::waitFor(system.finishAdminBatch(u"Please."_s)));
    EXPECT_EQ(takeTrace(), prompted(offLine, u"Please."_s));
}

TEST_F(NetworkFlow, withoutAServiceThereIsNothingToDisable) {
    EXPECT_FALSE(disableAll());
    EXPECT_EQ(takeTrace(), u"\nDisabling all network connections...\n"
                           "$> networksetup -listallnetworkservices\n"
                           "  [INFO] No network services found.\n"_s);
}

TEST_F(NetworkFlow, whatAFailedListingPrintsIsNoName) {
    CommandOutcome failed = ScriptedCommandLauncher::succeeded("** Error: Command requires admin privileges.\n");
    failed.code = 14;
    commands.answer(u"networksetup -listallnetworkservices"_s, failed);
    EXPECT_EQ(list(), QStringList());
}

TEST_F(NetworkFlow, eachServiceIsAskedForItsState) {
    commands.print(u"/usr/sbin/networksetup -listallnetworkservices"_s, kListing);
    answerState(u"Wi-Fi"_s, "Enabled\n");
    answerState(u"\"Thunderbolt Bridge\""_s, "Disabled\n");
    commands.fail(u"/usr/sbin/networksetup -getnetworkserviceenabled \"Bob'\\''s iPhone\""_s, 4);
    EXPECT_EQ(read(), QList<NetworkServiceState>(
                          {{u"Wi-Fi"_s, true}, {u"Thunderbolt Bridge"_s, false}, {u"Bob's iPhone"_s, std::nullopt}}));
    EXPECT_EQ(takeTrace(), u"$> /usr/sbin/networksetup -listallnetworkservices\n"
                           "$> /usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi\n"
                           "$> /usr/sbin/networksetup -getnetworkserviceenabled \"Thunderbolt Bridge\"\n"
                           "$> /usr/sbin/networksetup -getnetworkserviceenabled \"Bob'\\''s iPhone\"\n"_s);
}

TEST_F(NetworkFlow, aListingThatFailsIsFollowedByNoQuestion) {
    commands.fail(u"/usr/sbin/networksetup -listallnetworkservices"_s, 14);
    EXPECT_EQ(read(), QList<NetworkServiceState>());
    EXPECT_EQ(takeTrace(), u"$> /usr/sbin/networksetup -listallnetworkservices\n"_s);
}

} // namespace quorvane
