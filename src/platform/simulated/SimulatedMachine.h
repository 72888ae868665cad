#pragma once

#include "platform/Machine.h"
#include "simulator/Mac.h"

namespace quorvane {

/// The machine of a simulated Mac and its one user.
class SimulatedMachine final : public Machine {
public:
    explicit SimulatedMachine(const macsim::Mac& mac)
        : m_mac(mac) {}

    QString homeFolder() const override { return m_mac.homeFolder(macsim::Actor::User); }
    QString applicationSupportFolder() const override {
        return homeFolder() + QStringLiteral("/Library/Application Support");
    }
    QString temporaryFolder() const override { return m_mac.temporaryFolder().chopped(1); }
    QString computerName() const override { return m_mac.machine().computerName; }
    quint32 userId() const override { return static_cast<quint32>(m_mac.machine().userId); }

private:
    const macsim::Mac& m_mac;
};

} // namespace quorvane
