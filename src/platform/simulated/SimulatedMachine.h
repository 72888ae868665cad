#pragma once

#include "platform/Machine.h"
#include "platform/portable/ProcessName.h"
#include "simulator/Mac.h"

#include <QLocale>

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
    QString hardwareId() const override { return m_mac.machine().hardwareUuid; }
    QString systemVersion() const override { return m_mac.machine().systemVersion; }
    quint32 userId() const override { return static_cast<quint32>(m_mac.machine().userId); }
    /// The host's: the program itself is none of the Mac's processes.
    QString processName() const override { return ownProcessName(); }
    bool isRunning(const QString& processName) const override { return isProcessRunning(processName); }
    /// As a Mac whose language is English.
    QString dateAndTimeText(const QDateTime& moment) const override {
        return QLocale::c().toString(moment.toLocalTime(), QStringLiteral("MMM d, yyyy 'at' h:mm AP"));
    }

private:
    const macsim::Mac& m_mac;
};

} // namespace quorvane
