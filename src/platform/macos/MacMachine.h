#pragma once

#include "platform/Machine.h"
#include "platform/portable/ProcessName.h"

#include <memory>

namespace quorvane {

/// This Mac and its user, as they are when this is made. Made on the main thread.
class MacMachine final : public Machine {
public:
    MacMachine();
    ~MacMachine() override;

    QString homeFolder() const override { return m_homeFolder; }
    QString applicationSupportFolder() const override { return m_applicationSupportFolder; }
    QString temporaryFolder() const override { return m_temporaryFolder; }
    QString computerName() const override { return m_computerName; }
    QString hardwareId() const override { return m_hardwareId; }
    quint32 userId() const override { return m_userId; }
    QString processName() const override { return ownProcessName(); }
    bool isRunning(const QString& processName) const override { return isProcessRunning(processName); }
    QString systemVersion() const override { return m_systemVersion; }
    QString dateAndTimeText(const QDateTime& moment) const override;

private:
    struct Formatter;

    QString m_homeFolder;
    QString m_applicationSupportFolder;
    QString m_temporaryFolder;
    QString m_computerName;
    QString m_hardwareId;
    quint32 m_userId;
    QString m_systemVersion;
    std::unique_ptr<Formatter> m_formatter;
};

} // namespace quorvane
