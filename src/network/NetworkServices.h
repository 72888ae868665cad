#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// A network service and whether it is on; none where that can't be read.
struct NetworkServiceState {
    QString name;
    std::optional<bool> isEnabled;

    bool operator==(const NetworkServiceState&) const = default;
};

/// The names that `networksetup -listallnetworkservices` prints, disabled services included. Its first line, which
/// explains the asterisk before a disabled service, is no name.
QStringList parsedNetworkServices(const QString& listing);

/// Those of them that are on: no asterisk stands beside them.
QStringList networkServicesOn(const QString& listing);

/// The names of captured services that aren't as they were captured: off, on, unread or gone.
QStringList servicesNotAsCaptured(const QMap<QString, bool>& captured, const QList<NetworkServiceState>& services);

enum class NetworkSwitch { Off, On };
/// The shell line that switches a service.
QString networkServiceCommand(const QString& name, NetworkSwitch position);

} // namespace quorvane
