#pragma once

#include "platform/SystemLook.h"
#include "simulator/Mac.h"

namespace quorvane {

/// The look of a simulated Mac's system, by the preferences in which macOS keeps it, whoever writes them:
///
///     NSGlobalDomain              "AppleInterfaceStyle"   "Dark"; anything else is light
///     com.apple.universalaccess   "reduceMotion", "increaseContrast"
class SimulatedSystemLook final : public SystemLook {
public:
    explicit SimulatedSystemLook(const macsim::Mac& mac)
        : m_mac(mac) {}

    ColorScheme scheme() const override;
    bool reducesMotion() const override;
    bool increasesContrast() const override;
    std::unique_ptr<NotificationObservation> observe(std::function<void()> handler) override;

private:
    bool isOn(const QString& accessibilityKey) const;

    const macsim::Mac& m_mac;
};

} // namespace quorvane
