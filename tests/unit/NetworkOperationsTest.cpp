#include "network/NetworkOperations.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const NetworkOperations kFlush{true, false, false, false};
const NetworkOperations kReset{false, true, false, false};
const NetworkOperations kFlushAndReset{true, true, false, false};
const NetworkOperations kAll{true, true, true, true};

const QStringList kFlushCommands{u"dscacheutil -flushcache"_s, u"killall -HUP mDNSResponder"_s,
                                 u"rm -rf /var/db/dhcpclient/leases/*"_s};
const QStringList kServices{u"Wi-Fi"_s, u"Bob's iPhone"_s};
const QStringList kResetCommands = QStringList{u"networksetup -setdnsservers Wi-Fi Empty"_s,
                                               uR"(networksetup -setdnsservers 'Bob'\''s iPhone' Empty)"_s} +
                                   kFlushCommands;

} // namespace

TEST(NetworkOperations, aResetTakesTheFlushWithItOnce) {
    EXPECT_EQ(networkDiagnosticsCommands({}, {}), QStringList());
    EXPECT_EQ(networkDiagnosticsCommands(kFlush, {}), kFlushCommands);
    EXPECT_EQ(networkDiagnosticsCommands(kReset, kServices), kResetCommands);
    EXPECT_EQ(networkDiagnosticsCommands(kFlushAndReset, kServices), kResetCommands);
    EXPECT_EQ(networkDiagnosticsCommands(kReset, {}), kFlushCommands) << "no service has any";
    EXPECT_EQ(networkDiagnosticsCommands({false, false, true, true}, {}), QStringList()) << "these need the services";
}

TEST(NetworkOperations, aFlushAndAResetThatFailHaveOneMessage) {
    const QString diagnostics = u"Network flush or reset failed. Check logs."_s;
    EXPECT_EQ(networkFailureMessages({}), QStringList());
    EXPECT_EQ(networkFailureMessages(kFlush), QStringList(diagnostics));
    EXPECT_EQ(networkFailureMessages(kReset), QStringList(diagnostics));
    EXPECT_EQ(networkFailureMessages(kAll), QStringList({diagnostics, u"Failed to disable network. Check logs."_s,
                                                         u"Failed to enable network. Check logs."_s}));
}

TEST(NetworkOperations, eachThatRanHasItsMessageAndItsLines) {
    EXPECT_EQ(networkSuccessMessages({}), QStringList());
    EXPECT_EQ(networkSuccessLogLines({}), QStringList());
    EXPECT_EQ(networkSuccessMessages(kAll), QStringList({u"Network configuration has been reset to defaults."_s,
                                                         u"DNS and DHCP caches flushed successfully."_s,
                                                         u"All network connections have been disabled."_s,
                                                         u"All network connections have been re-enabled."_s}));
    EXPECT_EQ(networkSuccessLogLines(kAll), QStringList({u"  [APPLIED] Network configuration reset successfully."_s,
                                                         u"  [APPLIED] Successfully flushed DNS cache."_s,
                                                         u"  [APPLIED] Successfully cleared DHCP lease cache."_s,
                                                         u"  [APPLIED] All network connections disabled."_s,
                                                         u"  [APPLIED] All network connections enabled."_s}));
}

TEST(NetworkOperations, aResetThatLeftAServiceNamesItInsteadOfSucceeding) {
    EXPECT_EQ(networkSuccessMessages(kFlushAndReset, {u"Wi-Fi"_s, u"LAN"_s}),
              QStringList({u"Not reset: Wi-Fi, LAN."_s, u"DNS and DHCP caches flushed successfully."_s}));
    EXPECT_EQ(networkSuccessLogLines(kReset, {u"Wi-Fi"_s}), QStringList(u"  [ERROR] Not reset: Wi-Fi."_s));
}

TEST(NetworkOperations, onlyAFlushByItselfSpeaksOfReconnecting) {
    EXPECT_EQ(networkSuccessLogLines(kFlush).last(),
              u"\nNetwork Flush Complete! You may need to reconnect to Wi-Fi to acquire a new IP address."_s);
    EXPECT_EQ(networkSuccessLogLines(kFlushAndReset).last(), u"  [APPLIED] Successfully cleared DHCP lease cache."_s);
}

TEST(NetworkOperations, anOutcomeIsCompleteWhenNothingFailed) {
    const struct {
        NetworkOutcome outcome;
        QString title;
    } cases[] = {{{{}, true}, u"Success"_s},
                 {{{u"All network connections have been disabled."_s}, true}, u"Success"_s},
                 {{{}, false}, u"Partial Completion"_s},
                 {{{u"fine"_s, u"It FAILED."_s}, true}, u"Partial Completion"_s},
                 {{{u"An Error occurred."_s}, true}, u"Partial Completion"_s},
                 {{networkFailureMessages(kAll), false}, u"Partial Completion"_s}};
    for (const auto& [outcome, title] : cases) {
        SCOPED_TRACE(outcome.messages.join(u'|').toStdString());
        EXPECT_EQ(outcome.isComplete(), title == u"Success"_s);
        EXPECT_EQ(outcome.alertTitle(), title);
    }
}

TEST(NetworkOperations, theAlertHasAParagraphForEachMessage) {
    EXPECT_EQ((NetworkOutcome{{}, true}.alertText()), u"No network operations were performed."_s);
    EXPECT_EQ((NetworkOutcome{{u"One."_s}, true}.alertText()), u"One."_s);
    EXPECT_EQ((NetworkOutcome{{u"One."_s, u"Two."_s}, true}.alertText()), u"One.\n\nTwo."_s);
}

} // namespace quorvane
