#include "network/NetworkOperations.h"

#include "network/NameServers.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

struct Choice {
    bool isChosen;
    QString text;
};

QStringList chosen(std::initializer_list<Choice> choices) {
    QStringList texts;
    for (const Choice& choice : choices) {
        if (choice.isChosen) {
            texts.append(choice.text);
        }
    }
    return texts;
}

} // namespace

bool NetworkOutcome::isComplete() const {
    return success && std::none_of(messages.begin(), messages.end(), [](const QString& message) {
               return message.contains(u"failed"_s, Qt::CaseInsensitive) ||
                      message.contains(u"error"_s, Qt::CaseInsensitive);
           });
}

QString NetworkOutcome::alertTitle() const {
    return isComplete() ? u"Success"_s : u"Partial Completion"_s;
}

QString NetworkOutcome::alertText() const {
    return messages.isEmpty() ? u"No network operations were performed."_s : messages.join(u"\n\n"_s);
}

QStringList networkDiagnosticsCommands(const NetworkOperations& operations, const QStringList& services) {
    QStringList commands;
    if (operations.resetConfig) {
        std::transform(services.begin(), services.end(), std::back_inserter(commands), nameServersEmptiedCommand);
    }
    const bool flushes = operations.flushDNS || operations.resetConfig;
    return commands + chosen({{flushes, u"dscacheutil -flushcache"_s},
                              {flushes, u"killall -HUP mDNSResponder"_s},
                              {flushes, u"rm -rf /var/db/dhcpclient/leases/*"_s}});
}

QStringList networkFailureMessages(const NetworkOperations& operations) {
    return chosen({{operations.flushDNS || operations.resetConfig, u"Network flush or reset failed. Check logs."_s},
                   {operations.disableAll, u"Failed to disable network. Check logs."_s},
                   {operations.enableAll, u"Failed to enable network. Check logs."_s}});
}

QStringList networkSuccessMessages(const NetworkOperations& operations, const QStringList& notReset) {
    const bool isReset = operations.resetConfig && notReset.isEmpty();
    return chosen({{!notReset.isEmpty(), notResetText(notReset)},
                   {isReset, u"Network configuration has been reset to defaults."_s},
                   {operations.flushDNS, u"DNS and DHCP caches flushed successfully."_s},
                   {operations.disableAll, u"All network connections have been disabled."_s},
                   {operations.enableAll, u"All network connections have been re-enabled."_s}});
}

QStringList networkSuccessLogLines(const NetworkOperations& operations, const QStringList& notReset) {
    const bool isReset = operations.resetConfig && notReset.isEmpty();
    return chosen({{!notReset.isEmpty(), u"  [ERROR] "_s + notResetText(notReset)},
                   {isReset, u"  [APPLIED] Network configuration reset successfully."_s},
                   {operations.flushDNS, u"  [APPLIED] Successfully flushed DNS cache."_s},
                   {operations.flushDNS, u"  [APPLIED] Successfully cleared DHCP lease cache."_s},
                   {operations.flushDNS && !operations.resetConfig,
                    u"\nNetwork Flush Complete! You may need to reconnect to Wi-Fi to acquire a new IP address."_s},
                   {operations.disableAll, u"  [APPLIED] All network connections disabled."_s},
                   {operations.enableAll, u"  [APPLIED] All network connections enabled."_s}});
}

} // namespace quorvane
