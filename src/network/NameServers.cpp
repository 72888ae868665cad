#include "network/NameServers.h"

#include "core/Quoting.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// An address of either kind, as far as its characters tell: "9.9.9.9", "2620:fe::fe", "fe80::1%en0".
bool looksLikeAddress(const QString& line) {
    const QString number = line.section(u'%', 0, 0);
    return (number.contains(u'.') || number.contains(u':')) && !line.contains(u' ') &&
           std::all_of(number.begin(), number.end(), [](QChar c) {
               return c == u'.' || c == u':' || (c >= u'0' && c <= u'9') ||
                      (c.toLower() >= u'a' && c.toLower() <= u'f');
           });
}

} // namespace

std::optional<QStringList> parsedNameServers(const QString& printed) {
    QStringList servers;
    const QStringList lines = printed.split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        if (line.startsWith(u"There aren't any DNS Servers set on "_s)) {
            return QStringList();
        }
        if (!looksLikeAddress(line.trimmed())) {
            return std::nullopt;
        }
        servers.append(line.trimmed());
    }
    return servers;
}

QString nameServersEmptiedCommand(const QString& service) {
    return u"networksetup -setdnsservers %1 Empty"_s.arg(shellWord(service));
}

QString nameServersLogLine(const ServiceNameServers& service) {
    return u"  [INFO] Name servers of %1 were: %2"_s.arg(service.name,
                                                         service.servers.value_or(QStringList()).join(u", "_s));
}

QString notResetText(const QStringList& names) {
    return u"Not reset: %1."_s.arg(names.join(u", "_s));
}

} // namespace quorvane
