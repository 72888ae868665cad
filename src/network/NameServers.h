#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// A network service and the name servers that are set on it; none where that can't be read.
struct ServiceNameServers {
    QString name;
    std::optional<QStringList> servers;

    bool hasServers() const { return servers && !servers->isEmpty(); }
    bool operator==(const ServiceNameServers&) const = default;
};

/// The name servers that `networksetup -getdnsservers` prints: those that somebody has set; what the network brings isn't among
/// them. Empty where none are set; none where something else is printed.
std::optional<QStringList> parsedNameServers(const QString& printed);

/// The shell line that leaves a service without name servers of its own.
QString nameServersEmptiedCommand(const QString& service);

/// The log line of a service that has some. It keeps what the reset takes away: nothing else does.
QString nameServersLogLine(const ServiceNameServers& service);

/// What is said of the services whose name servers weren't read, or stayed.
QString notResetText(const QStringList& names);

} // namespace quorvane
