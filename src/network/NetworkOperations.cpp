#include "network/NetworkOperations.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

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

QStringList networkDiagnosticsCommands(const NetworkOperations& operations) {
    QStringList commands;
    if (operations.resetConfig) {
        commands << u"networksetup -setdnsservers Wi-Fi Empty"_s << u"networksetup -setdnsservers Ethernet Empty"_s;
    }
    if (operations.flushDNS || operations.resetConfig) {
        commands << u"dscacheutil -flushcache"_s << u"killall -HUP mDNSResponder"_s
                 << u"rm -rf /var/db/dhcpclient/leases/*"_s;
    }
    return commands;
}

QStringList networkFailureMessages(const NetworkOperations& operations) {
    QStringList messages;
    if (operations.flushDNS || operations.resetConfig) {
        messages.append(u"Network flush or reset failed. Check logs."_s);
    }
    if (operations.disableAll) {
        messages.append(u"Failed to disable network. Check logs."_s);
    }
    if (operations.enableAll) {
        messages.append(u"Failed to enable network. Check logs."_s);
    }
    return messages;
}

QStringList networkSuccessMessages(const NetworkOperations& operations) {
    QStringList messages;
    if (operations.resetConfig) {
        messages.append(u"Network configuration has been reset to defaults."_s);
    }
    if (operations.flushDNS) {
        messages.append(u"DNS and DHCP caches flushed successfully."_s);
    }
    if (operations.disableAll) {
        messages.append(u"All network connections have been disabled."_s);
    }
    if (operations.enableAll) {
        messages.append(u"All network connections have been re-enabled."_s);
    }
    return messages;
}

QStringList networkSuccessLogLines(const NetworkOperations& operations) {
    QStringList lines;
    if (operations.resetConfig) {
        lines.append(u"  [APPLIED] Network configuration reset successfully."_s);
    }
    if (operations.flushDNS) {
        lines.append(u"  [APPLIED] Successfully flushed DNS cache."_s);
        lines.append(u"  [APPLIED] Successfully cleared DHCP lease cache."_s);
    }
    if (operations.flushDNS && !operations.resetConfig) {
        lines.append(u"\nNetwork Flush Complete! You may need to reconnect to Wi-Fi to acquire a new IP address."_s);
    }
    if (operations.disableAll) {
        lines.append(u"  [APPLIED] All network connections disabled."_s);
    }
    if (operations.enableAll) {
        lines.append(u"  [APPLIED] All network connections enabled."_s);
    }
    return lines;
}

} // namespace quorvane
