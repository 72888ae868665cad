#pragma once

#include "platform/SystemNotifications.h"
#include "simulator/Mac.h"

namespace quorvane {

/// The distributed notifications of a simulated Mac. They come from changes of what it keeps, whoever makes them, the program
/// itself included:
///
/// "com.apple.desktop"                        the state subject "displays": a picture was set, a display came or went
/// "AppleInterfaceThemeChangedNotification"   the user's preferences: the system is dark now, or light (SimulatedSystemLook)
///
/// Any other name is never heard.
class SimulatedNotifications final : public SystemNotifications {
public:
    explicit SimulatedNotifications(const macsim::Mac& mac)
        : m_mac(mac) {}

    std::unique_ptr<NotificationObservation> observe(const QString& name, std::function<void()> handler) override;

private:
    const macsim::Mac& m_mac;
};

} // namespace quorvane
