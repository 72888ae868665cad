#pragma once

namespace macsim {

struct ToolContext;

/// networksetup: the list of services, whether one is enabled, and its DNS servers.
///
/// Subject "networkServices", in the order of the services:
///
///     [{"name": "Wi-Fi", "device": "en0", "enabled": true, "hardwarePort": "Wi-Fi", "dnsServers": ["9.9.9.9"]}]
///
/// "name" is required. The hardware port is called like the service unless told, a service is enabled unless told.
/// Changes are root's. On many Macs an administrator at the console may make them as well; the stricter kind of Mac is
/// the one on which a program shows that it asks for its rights.
int runNetworksetup(ToolContext& context);

} // namespace macsim
