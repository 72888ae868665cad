#include "fakes/StartupSystem.h"

#include "network/NetworkOperations.h"
#include "network/NetworkServices.h"

namespace quorvane {

namespace {

const QByteArray kListing = "An asterisk (*) denotes that a network service is disabled.\n"
                            "Wi-Fi\n*Thunderbolt Bridge\nBob's iPhone\n";

class NetworkFlow : public StartupSystem {
protected:
    bool disableAll() { return QCoro::waitFor(system.disableAllNetworkConnections()); }
    NetworkOutcome run(const NetworkOperations& operations) {
        return QCoro::waitFor(system.runNetworkOperations(operations));
    }
    static QString operated(const QString& line) {
        return u"  [ACTION] Requesting Administrator privileges for selected network operations...\n"_s +
               prompted(line, u"Quorvane needs your administrator password to run the selected network operations."_s);
    }
    QStringList list() { return QCoro::waitFor(system.listNetworkServices()); }
    QList<NetworkServiceState> read() { return QCoro::waitFor(system.readNetworkServices()); }
    void answerState(const QString& name, const QByteArray& state) {
        commands.print(u"/usr/sbin/networksetup -getnetworkserviceenabled "_s + name, state);
    }

    void setNameServers(const QString& quotedName, const QByteArray& printed) {
        commands.print(u"networksetup -getdnsservers "_s + quotedName, printed);
    }
    /// The second of three services is off and has no name server. Root's line empties all but those that refuse.
    void listNameServers(const QStringList& refusing = {}) {
        const QByteArray none = "There aren't any DNS Servers set on it.\n";
        commands.print(u"networksetup -listallnetworkservices"_s, kListing);
        setNameServers(u"Wi-Fi"_s, "9.9.9.9\n2620:fe::fe\n");
        setNameServers(u"\"Thunderbolt Bridge\""_s, none);
        setNameServers(u"\"Bob's iPhone\""_s, "192.0.2.1\n");
        scripts.carryOut = [=, this](const QString&) {
            for (const QString& name : {u"Wi-Fi"_s, u"\"Bob's iPhone\""_s}) {
                if (!refusing.contains(name)) {
                    setNameServers(name, none);
                }
            }
        };
    }

    const QString asked = u"\nDisabling all network connections...\n"
                          "$> networksetup -listallnetworkservices\n"
                          "  [ACTION] Found 3 services: Wi-Fi, Thunderbolt Bridge, Bob's iPhone\n"
                          "  [ACTION] Requesting Administrator privileges to disable interfaces...\n"_s;
    const QString offLine = u"networksetup -setnetworkserviceenabled 'Wi-Fi' off ; "
                            "networksetup -setnetworkserviceenabled 'Thunderbolt Bridge' off ; "
                            "networksetup -setnetworkserviceenabled 'Bob'\\''s iPhone' off"_s;
    const QString onLine = QString(offLine).replace(u" off"_s, u" on"_s);
    const QString flushLine = u"dscacheutil -flushcache ; killall -HUP mDNSResponder ; "
                              "rm -rf /var/db/dhcpclient/leases/*"_s;
    const QString resetLine = u"networksetup -setdnsservers Wi-Fi Empty ; "
                              "networksetup -setdnsservers 'Bob'\\''s iPhone' Empty ; "_s +
                              flushLine;
    const QString reset = u"  [APPLIED] Network configuration reset successfully.\n"_s;
    const QString serversRead = u"$> networksetup -listallnetworkservices\n"
                                "$> networksetup -getdnsservers Wi-Fi\n"
                                "  [INFO] Name servers of Wi-Fi were: 9.9.9.9, 2620:fe::fe\n"
                                "$> networksetup -getdnsservers \"Thunderbolt Bridge\"\n"
                                "$> networksetup -getdnsservers \"Bob's iPhone\"\n"
                                "  [INFO] Name servers of Bob's iPhone were: 192.0.2.1\n"_s;
    const QString serversReadAgain = u"$> networksetup -getdnsservers Wi-Fi\n"
                                     "$> networksetup -getdnsservers \"Bob's iPhone\"\n"_s;
    const QString flushed = u"  [APPLIED] Successfully flushed DNS cache.\n"
                            "  [APPLIED] Successfully cleared DHCP lease cache.\n"_s;
    const QString reconnect =
        u"\nNetwork Flush Complete! You may need to reconnect to Wi-Fi to acquire a new IP address.\n"_s;
    const QString listed = u"$> networksetup -listallnetworkservices\n"
                           "  [ACTION] Found 3 services: Wi-Fi, Thunderbolt Bridge, Bob's iPhone\n"_s;
    const QString noneListed = u"$> networksetup -listallnetworkservices\n"
                               "  [INFO] No network services found.\n"_s;
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
    EXPECT_EQ(takeTrace(), asked + prompted(offLine, kSystemChanges) +
                               u"  [ERROR] Failed to disable network: User canceled.\n"
                               "$> /usr/sbin/networksetup -listallnetworkservices\n"_s)
        << "what is still on isn't the program's to switch on";
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
    answerState(u"\"Bob's iPhone\""_s, "Disabled\n");
    EXPECT_EQ(read(), QList<NetworkServiceState>(
                          {{u"Wi-Fi"_s, true}, {u"Thunderbolt Bridge"_s, false}, {u"Bob's iPhone"_s, false}}));
    EXPECT_EQ(takeTrace(), u"$> /usr/sbin/networksetup -listallnetworkservices\n"
                           "$> /usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi\n"
                           "$> /usr/sbin/networksetup -getnetworkserviceenabled \"Thunderbolt Bridge\"\n"
                           "$> /usr/sbin/networksetup -getnetworkserviceenabled \"Bob's iPhone\"\n"_s);
}

TEST_F(NetworkFlow, aListingThatFailsIsFollowedByNoQuestion) {
    commands.fail(u"/usr/sbin/networksetup -listallnetworkservices"_s, 14);
    EXPECT_EQ(read(), QList<NetworkServiceState>());
    EXPECT_EQ(takeTrace(), u"$> /usr/sbin/networksetup -listallnetworkservices\n"_s);
}

// ---- The selected operations

TEST_F(NetworkFlow, withNothingSelectedNothingHappens) {
    const NetworkOutcome outcome = run({});
    EXPECT_EQ(outcome, (NetworkOutcome{{}, true}));
    EXPECT_EQ(outcome.alertTitle(), u"Success"_s);
    EXPECT_EQ(outcome.alertText(), u"No network operations were performed."_s);
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(NetworkFlow, aFlushTellsHowToGetANewAddress) {
    const NetworkOutcome outcome = run({true, false, false, false});
    EXPECT_EQ(outcome, (NetworkOutcome{{u"DNS and DHCP caches flushed successfully."_s}, true}));
    EXPECT_EQ(takeTrace(), u"\nStarting DNS & DHCP Cache Flush...\n"_s + operated(flushLine) + flushed + reconnect);
}

TEST_F(NetworkFlow, aResetEmptiesEveryServiceThatHasNameServersAndFlushes) {
    listNameServers();
    const NetworkOutcome outcome = run({false, true, false, false});
    EXPECT_EQ(outcome, (NetworkOutcome{{u"Network configuration has been reset to defaults."_s}, true}));
    EXPECT_EQ(takeTrace(), u"\nStarting network configuration reset...\n"_s + serversRead + operated(resetLine) +
                               serversReadAgain + reset);
}

TEST_F(NetworkFlow, aServiceThatRefusesIsNamed) {
    listNameServers({u"Wi-Fi"_s});
    const NetworkOutcome outcome = run({true, true, false, false});
    EXPECT_EQ(outcome,
              (NetworkOutcome{{u"Not reset: Wi-Fi."_s, u"DNS and DHCP caches flushed successfully."_s}, false}));
    EXPECT_EQ(outcome.alertTitle(), u"Partial Completion"_s);
    EXPECT_EQ(takeTrace(), u"\nStarting DNS & DHCP Cache Flush...\n"
                           "\nStarting network configuration reset...\n"_s +
                               serversRead + operated(resetLine) + serversReadAgain +
                               u"  [ERROR] Not reset: Wi-Fi.\n"_s + flushed);
}

TEST_F(NetworkFlow, whatCannotBeReadIsNotEmptied) {
    listNameServers();
    commands.fail(u"networksetup -getdnsservers Wi-Fi"_s, 4);
    setNameServers(u"\"Bob's iPhone\""_s, "** Error: Something else.\n");
    EXPECT_EQ(run({false, true, false, false}), (NetworkOutcome{{u"Not reset: Wi-Fi, Bob's iPhone."_s}, false}));
    EXPECT_EQ(takeTrace(), u"\nStarting network configuration reset...\n"
                           "$> networksetup -listallnetworkservices\n"
                           "$> networksetup -getdnsservers Wi-Fi\n"
                           "$> networksetup -getdnsservers \"Thunderbolt Bridge\"\n"
                           "$> networksetup -getdnsservers \"Bob's iPhone\"\n"_s +
                               operated(flushLine) + u"  [ERROR] Not reset: Wi-Fi, Bob's iPhone.\n"_s);
}

TEST_F(NetworkFlow, whatCannotBeReadAfterwardsCountsAsNotReset) {
    listNameServers();
    scripts.carryOut = [this](const QString&) { commands.fail(u"networksetup -getdnsservers Wi-Fi"_s, 4); };
    setNameServers(u"\"Bob's iPhone\""_s, "There aren't any DNS Servers set on Bob's iPhone.\n");
    EXPECT_EQ(run({false, true, false, false}), (NetworkOutcome{{u"Not reset: Wi-Fi."_s}, false}));
}

TEST_F(NetworkFlow, withoutAServiceTheResetFailsAlone) {
    const NetworkOutcome outcome = run({true, true, false, false});
    EXPECT_EQ(outcome, (NetworkOutcome{{u"Network flush or reset failed. Check logs."_s,
                                        u"DNS and DHCP caches flushed successfully."_s},
                                       true}));
    EXPECT_FALSE(outcome.isComplete());
    EXPECT_EQ(takeTrace(), u"\nStarting DNS & DHCP Cache Flush...\n"
                           "\nStarting network configuration reset...\n"_s +
                               noneListed + operated(flushLine) + flushed + reconnect);
    EXPECT_EQ(run({false, true, false, false}),
              (NetworkOutcome{{u"Network flush or reset failed. Check logs."_s}, true}));
    EXPECT_EQ(takeTrace(), u"\nStarting network configuration reset...\n"_s + noneListed) << "nobody is asked";
}

TEST_F(NetworkFlow, flushAndResetTogetherFlushOnce) {
    listNameServers();
    const NetworkOutcome outcome = run({true, true, false, false});
    EXPECT_EQ(outcome, (NetworkOutcome{{u"Network configuration has been reset to defaults."_s,
                                        u"DNS and DHCP caches flushed successfully."_s},
                                       true}));
    EXPECT_EQ(takeTrace(), u"\nStarting DNS & DHCP Cache Flush...\n"
                           "\nStarting network configuration reset...\n"_s +
                               serversRead + operated(resetLine) + serversReadAgain + reset + flushed);
}

TEST_F(NetworkFlow, offAndOnTogetherGoOffFirst) {
    commands.print(u"networksetup -listallnetworkservices"_s, kListing);
    const NetworkOutcome outcome = run({false, false, true, true});
    EXPECT_EQ(outcome, (NetworkOutcome{{u"All network connections have been disabled."_s,
                                        u"All network connections have been re-enabled."_s},
                                       true}));
    EXPECT_EQ(takeTrace(), u"\nDisabling all network connections...\n"_s + listed +
                               u"\nEnabling all network connections...\n"_s + listed +
                               operated(offLine + u" ; "_s + onLine) +
                               u"  [APPLIED] All network connections disabled.\n"
                               "  [APPLIED] All network connections enabled.\n"_s);
}

TEST_F(NetworkFlow, aDisabledServiceComesOnAgain) {
    commands.print(u"networksetup -listallnetworkservices"_s,
                   "An asterisk (*) denotes that a network service is disabled.\n*Wi-Fi\n");
    EXPECT_TRUE(run({false, false, false, true}).isComplete());
    EXPECT_EQ(takeTrace(), u"\nEnabling all network connections...\n"
                           "$> networksetup -listallnetworkservices\n"
                           "  [ACTION] Found 1 services: Wi-Fi\n"_s +
                               operated(u"networksetup -setnetworkserviceenabled 'Wi-Fi' on"_s) +
                               u"  [APPLIED] All network connections enabled.\n"_s);
}

TEST_F(NetworkFlow, aServiceNameStaysOneWordWhateverItHolds) {
    commands.print(u"networksetup -listallnetworkservices"_s, "'; touch x; '\na\"b\\c\n$(touch y)\n");
    run({false, false, true, false});
    EXPECT_EQ(takeTrace(), u"\nDisabling all network connections...\n"
                           "$> networksetup -listallnetworkservices\n"
                           "  [ACTION] Found 3 services: '; touch x; ', a\"b\\c, $(touch y)\n"_s +
                               operated(u"networksetup -setnetworkserviceenabled ''\\''; touch x; '\\''' off ; "
                                        "networksetup -setnetworkserviceenabled 'a\"b\\c' off ; "
                                        "networksetup -setnetworkserviceenabled '$(touch y)' off"_s) +
                               u"  [APPLIED] All network connections disabled.\n"_s);
}

TEST_F(NetworkFlow, disablingWithoutAServiceNeedsNoPromptAndIsNotComplete) {
    const NetworkOutcome outcome = run({false, false, true, false});
    EXPECT_EQ(outcome, (NetworkOutcome{{u"Failed to disable network. Check logs."_s}, true}));
    EXPECT_EQ(outcome.alertTitle(), u"Partial Completion"_s);
    EXPECT_EQ(takeTrace(), u"\nDisabling all network connections...\n"_s + noneListed);
}

TEST_F(NetworkFlow, withoutAServiceTheOtherOperationsRun) {
    const NetworkOutcome outcome = run({true, false, true, true});
    EXPECT_EQ(outcome,
              (NetworkOutcome{{u"Failed to disable network. Check logs."_s, u"Failed to enable network. Check logs."_s,
                               u"DNS and DHCP caches flushed successfully."_s},
                              true}));
    EXPECT_FALSE(outcome.isComplete());
    EXPECT_EQ(takeTrace(), u"\nStarting DNS & DHCP Cache Flush...\n"
                           "\nDisabling all network connections...\n"_s +
                               noneListed + u"\nEnabling all network connections...\n"_s + noneListed +
                               operated(flushLine) + flushed + reconnect);
}

TEST_F(NetworkFlow, aRefusedPromptFailsEveryOperation) {
    listNameServers();
    scripts.failNext(u"User canceled."_s);
    const NetworkOutcome outcome = run({true, true, true, true});
    EXPECT_EQ(outcome,
              (NetworkOutcome{{u"Network flush or reset failed. Check logs."_s,
                               u"Failed to disable network. Check logs."_s, u"Failed to enable network. Check logs."_s},
                              false}));
    EXPECT_EQ(outcome.alertTitle(), u"Partial Completion"_s);
    EXPECT_EQ(takeTrace(), u"\nStarting DNS & DHCP Cache Flush...\n"
                           "\nStarting network configuration reset...\n"_s +
                               serversRead + u"\nDisabling all network connections...\n"_s + listed +
                               u"\nEnabling all network connections...\n"_s + listed +
                               operated(resetLine + u" ; "_s + offLine + u" ; "_s + onLine) +
                               u"  [ERROR] Network operations were cancelled or failed: User canceled.\n"
                               "$> /usr/sbin/networksetup -listallnetworkservices\n"_s);
}

TEST_F(NetworkFlow, whatHadFailedBeforeTheRefusalIsReportedOnce) {
    scripts.failNext(u"User canceled."_s);
    EXPECT_EQ(run({true, false, true, false}), (NetworkOutcome{{u"Failed to disable network. Check logs."_s,
                                                                u"Network flush or reset failed. Check logs."_s},
                                                               false}));
    scripts.failNext(u"User canceled."_s);
    EXPECT_EQ(run({true, true, false, false}),
              (NetworkOutcome{{u"Network flush or reset failed. Check logs."_s}, false}));
    scripts.failNext(u"User canceled."_s);
    EXPECT_EQ(run({true, false, false, true}), (NetworkOutcome{{u"Failed to enable network. Check logs."_s,
                                                                u"Network flush or reset failed. Check logs."_s},
                                                               false}));
}

TEST_F(NetworkFlow, theProgramIsBusyWhileOperationsRun) {
    QStringList busy;
    QObject::connect(&system, &SystemManager::messageLogged,
                     [&](const QString&) { busy.append(system.busyMessage()); });
    EXPECT_TRUE(QCoro::waitFor(system.executeNetworkOperations({true, false, false, false})).isComplete());
    ASSERT_FALSE(busy.isEmpty());
    EXPECT_EQ(busy.count(u"Running network operations…"_s), busy.size());
    EXPECT_FALSE(system.isBusy());
}

} // namespace quorvane
