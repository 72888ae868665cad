// Maintenance and network operations as a person starts them from a terminal.

#include "fakes/RehearsalProgram.h"

namespace quorvane {

namespace {

class RehearsalServices : public RehearsalTest {
protected:
    Ending cancelled(const QStringList& arguments) {
        return rehearse(arguments + QStringList{u"--authorize"_s, u"cancel"_s});
    }
    void asRoot(const QString& line) { EXPECT_EQ(rehearse({u"shell"_s, u"--root"_s, line}).status, 0); }
    static macsim::Json alertIn(const Ending& run) {
        return macsim::Json::parse(run.output.cbegin(), run.output.cend()).at("alert");
    }
    QByteArray services() { return shell(u"networksetup -listallnetworkservices"_s); }
};

const QByteArray kListingHead = "An asterisk (*) denotes that a network service is disabled.\n";

} // namespace

// ---- Maintenance

TEST_F(RehearsalServices, maintenanceClearsWhatItsOptionsName) {
    asRoot(u"mkdir -p /Library/Caches/Ableton /Library/Caches/com.maker.app"_s);
    shell(u"mkdir -p ~/Library/Caches/Google/x ~/Library/Caches/Serato; touch ~/Downloads/set.zip"_s);
    const Ending caches = rehearse({u"maintenance"_s, u"--caches"_s});
    EXPECT_EQ(caches.status, 0);
    EXPECT_EQ(caches.error, QByteArray());
    EXPECT_EQ(caches.output, "Starting cache cleanup...\n"
                             "Scanning User Caches in /Users/alex/Library/Caches...\n"
                             "Scanning System Caches in /Library/Caches...\n"
                             "Skipping /System/Library/Caches (does not exist).\n"
                             "Requesting Administrator privileges to clear system caches...\n"
                             "  [APPLIED] Successfully cleared unprotected items in system caches.\n"
                             "\nCleanup Complete!\n"
                             "\nSuccess\n"
                             "  System caches cleared.\n");
    EXPECT_EQ(shell(u"ls /Library/Caches ~/Library/Caches ~/Downloads"_s), "/Library/Caches:\nAbleton\n\n"
                                                                           "/Users/alex/Downloads:\nset.zip\n\n"
                                                                           "/Users/alex/Library/Caches:\nSerato\n");
    const Ending downloads = rehearse({u"maintenance"_s, u"--downloads"_s});
    EXPECT_EQ(downloads.status, 0);
    EXPECT_EQ(shell(u"ls ~/Downloads"_s), "");
}

TEST_F(RehearsalServices, maintenanceWithACancelledPromptEndsWithStatusOne) {
    asRoot(u"mkdir -p /Library/Caches/com.maker.app"_s);
    shell(u"touch ~/Downloads/set.zip"_s);
    const Ending run = cancelled({u"maintenance"_s, u"--downloads"_s, u"--caches"_s, u"--json"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(alertIn(run),
              (macsim::Json{{"title", "Completed with Issues"},
                            {"text", "System cache cleanup failed or was cancelled.\n\nDownloads folder purged."}}));
    EXPECT_EQ(shell(u"ls /Library/Caches ~/Downloads"_s),
              "/Library/Caches:\ncom.maker.app\n\n/Users/alex/Downloads:\n");
}

TEST_F(RehearsalServices, maintenanceThatLeftSomethingEndsWithStatusOne) {
    shell(u"mkdir -p ~/.Trash; touch ~/.Trash/old.wav ~/Downloads/set.zip"_s);
    const QString faults = file(u"faults.json"_s, R"([{"tool": "osascript", "arguments": "Finder", "status": 1,
        "error": "13:71: execution error: Finder got an error: AppleEvent handler failed. (-10000)\n"}])");
    const Ending run = rehearse({u"--faults"_s, faults, u"maintenance"_s, u"--trash"_s, u"--downloads"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.output.endsWith("\nCompleted with Issues\n"
                                    "  The Trash wasn’t emptied: Finder got an error: AppleEvent handler failed.\n"
                                    "  Downloads folder purged.\n"))
        << run.output.toStdString();
    EXPECT_EQ(shell(u"ls ~/.Trash"_s), "old.wav\n");
}

TEST_F(RehearsalServices, maintenanceOfNothingDoesNothing) {
    const macsim::MacPicture before(macFolder());
    const Ending run = rehearse({u"maintenance"_s});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "\nCleanup Complete!\n\nSuccess\n");
    EXPECT_EQ(macsim::MacPicture(macFolder()).changesSince(before), QString());
}

// ---- Network

TEST_F(RehearsalServices, theNetworkGoesOffAndOnAgain) {
    const QByteArray before = services();
    const Ending off = rehearse({u"network"_s, u"--disable"_s});
    EXPECT_EQ(off.status, 0);
    EXPECT_TRUE(off.output.endsWith("\nSuccess\n  All network connections have been disabled.\n"))
        << off.output.toStdString();
    const QByteArray names = QByteArray(before).remove(0, kListingHead.size()).replace("*", "").trimmed();
    EXPECT_EQ(services(), kListingHead + '*' + QByteArray(names).replace("\n", "\n*") + '\n');
    const Ending on = rehearse({u"network"_s, u"--enable"_s});
    EXPECT_EQ(on.status, 0);
    EXPECT_EQ(services(), kListingHead + names + '\n');
}

TEST_F(RehearsalServices, aResetLeavesNoNameServerAndAFlushNoLease) {
    const QByteArray names = QByteArray(services()).remove(0, kListingHead.size()).replace("*", "").trimmed();
    ASSERT_GT(names.split('\n').size(), 1);
    for (const QByteArray& name : names.split('\n')) {
        asRoot(u"networksetup -setdnsservers '%1' 192.0.2.1"_s.arg(QString::fromUtf8(name)));
    }
    asRoot(u"mkdir -p /var/db/dhcpclient/leases; "
           "touch /var/db/dhcpclient/leases/en0"_s);
    const Ending run = rehearse({u"--json"_s, u"network"_s, u"--reset"_s, u"--flush"_s});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(alertIn(run), (macsim::Json{{"title", "Success"},
                                          {"text", "Network configuration has been reset to defaults.\n\n"
                                                   "DNS and DHCP caches flushed successfully."}}));
    for (const QByteArray& name : names.split('\n')) {
        EXPECT_EQ(shell(u"networksetup -getdnsservers '%1'"_s.arg(QString::fromUtf8(name))),
                  "There aren't any DNS Servers set on " + name + ".\n");
    }
    EXPECT_EQ(shell(u"ls /var/db/dhcpclient/leases"_s), "");
}

TEST_F(RehearsalServices, aServiceThatKeepsItsNameServersIsNamedAndNotDone) {
    asRoot(u"networksetup -setdnsservers Wi-Fi 192.0.2.1 2620:fe::fe"_s);
    const QString faults =
        file(u"faults.json"_s, R"([{"tool": "networksetup", "arguments": "-setdnsservers", "status": 14}])");
    const Ending run = rehearse({u"--faults"_s, faults, u"network"_s, u"--reset"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.output.contains("\n  [INFO] Name servers of Wi-Fi were: 192.0.2.1, 2620:fe::fe\n"));
    EXPECT_TRUE(run.output.endsWith("  [ERROR] Not reset: Wi-Fi.\n\nPartial Completion\n  Not reset: Wi-Fi.\n"))
        << run.output.toStdString();
}

TEST_F(RehearsalServices, aCancelledPromptLeavesTheNetworkAsItWas) {
    ASSERT_EQ(rehearse({u"snapshot"_s}).status, 0);
    const macsim::MacPicture before(macFolder());
    const Ending run = cancelled({u"network"_s, u"--disable"_s, u"--flush"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.output.endsWith("  [ERROR] Network operations were cancelled or failed: User canceled.\n"
                                    "\nPartial Completion\n"
                                    "  Network flush or reset failed. Check logs.\n"
                                    "  Failed to disable network. Check logs.\n"))
        << run.output.toStdString();
    EXPECT_EQ(macsim::MacPicture(macFolder()).changesSince(before), u"+ /Users/alex/.quorvane: folder\n"_s)
        << "no note of a service that went off";
}

TEST_F(RehearsalServices, anOperationWithoutServicesIsNotDone) {
    const QString faults = file(u"faults.json"_s, R"([{"tool": "networksetup", "arguments": "-list", "status": 1}])");
    const Ending run = rehearse({u"--faults"_s, faults, u"network"_s, u"--disable"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, "  [SNAPSHOT] Saved your settings as they were before Quorvane.\n"
                          "\nDisabling all network connections...\n"
                          "  [INFO] No network services found.\n"
                          "\nPartial Completion\n"
                          "  Failed to disable network. Check logs.\n");
}

TEST_F(RehearsalServices, withoutAnOptionNoOperationIsPerformed) {
    const Ending run = rehearse({u"network"_s});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "\nSuccess\n  No network operations were performed.\n");
}

// ---- Refusals

TEST_F(RehearsalServices, anOptionOfAnotherCommandIsRefused) {
    const struct {
        QStringList arguments;
        QByteArray line;
    } cases[] = {{{u"maintenance"_s, u"--flush"_s}, "unknown option: --flush"},
                 {{u"network"_s, u"--caches"_s}, "unknown option: --caches"},
                 {{u"--caches"_s, u"maintenance"_s}, "unknown option: --caches"},
                 {{u"default"_s, u"--root"_s}, "unknown option: --root"},
                 {{u"maintenance"_s, u"caches"_s}, "maintenance: superfluous argument: caches"}};
    for (const auto& [arguments, line] : cases) {
        expectRefused(arguments, "quorvane-rehearsal: " + line + "\n");
    }
}

} // namespace quorvane
