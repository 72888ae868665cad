#include "network/NetworkServices.h"

#include "core/Quoting.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString withoutOuterAsterisks(QString name) {
    while (name.startsWith(u'*')) {
        name.remove(0, 1);
    }
    while (name.endsWith(u'*')) {
        name.chop(1);
    }
    return name;
}

} // namespace

QStringList parsedNetworkServices(const QString& listing) {
    QStringList names;
    for (const QString& line : listing.split(u'\n')) {
        const QString name = withoutOuterAsterisks(line.trimmed());
        if (!name.isEmpty() && !name.contains(u"denotes"_s)) {
            names.append(name);
        }
    }
    return names;
}

QStringList networkServicesOn(const QString& listing) {
    QStringList names;
    for (const QString& line : listing.split(u'\n')) {
        const QString name = line.trimmed();
        if (parsedNetworkServices(line) == QStringList(name)) {
            names.append(name);
        }
    }
    return names;
}

QStringList servicesNotAsCaptured(const QMap<QString, bool>& captured, const QList<NetworkServiceState>& services) {
    QMap<QString, bool> missed = captured;
    for (const NetworkServiceState& service : services) {
        const auto wanted = captured.constFind(service.name);
        if (wanted != captured.constEnd() && service.isEnabled == *wanted) {
            missed.remove(service.name);
        }
    }
    return missed.keys();
}

QString networkServiceCommand(const QString& name, NetworkSwitch position) {
    return u"networksetup -setnetworkserviceenabled %1 %2"_s.arg(shellQuoted(name),
                                                                 position == NetworkSwitch::Off ? u"off"_s : u"on"_s);
}

} // namespace quorvane
