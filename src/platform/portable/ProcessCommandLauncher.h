#pragma once

#include "platform/CommandLauncher.h"

#include <QProcessEnvironment>

#include <unordered_set>

namespace quorvane {

/// Starts tools as child processes of this one.
class ProcessCommandLauncher final : public CommandLauncher {
public:
    /// @param environmentTool  the program that is started for every command: "/usr/bin/env"
    /// @param environment      the child's environment
    explicit ProcessCommandLauncher(QString environmentTool,
                                    const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment());
    ~ProcessCommandLauncher() override;

    QFuture<CommandOutcome> run(QStringList arguments, OutputCapture capture) override;
    void shutDown() override;
    bool isShutDown() const override { return m_isShutDown; }

private:
    class Child;
    void forget(Child* child);

    QString m_environmentTool;
    QProcessEnvironment m_environment;
    std::unordered_set<Child*> m_running; ///< each owns itself until it has ended
    bool m_isShutDown = false;
};

} // namespace quorvane
