#pragma once

#include "fakes/CommandLine.h"
#include "platform/CommandLauncher.h"
#include "platform/ScriptEngine.h"
#include "platform/simulated/FaultyCommands.h"
#include "platform/simulated/SimulatedHost.h"
#include "simulator/Faults.h"
#include "simulator/applescript/AppleScript.h"
#include "simulator/tools/Registry.h"
#include "simulator/tools/ScriptRunner.h"

#include <gtest/gtest.h>

#include <exception>
#include <variant>

namespace quorvane {

/// Runs a simulated Mac's tools as functions of this process, for a test that runs thousands of them.
class InProcessTools {
public:
    /// @param faultsFile  what goes wrong with them; none when it is empty
    InProcessTools(const macsim::Mac& mac, const QString& faultsFile);

    macsim::ToolContext context(const QStringList& arguments);
    /// What whoever wants an administrator is answered from now on. To begin with it is allowed.
    void setAuthorization(macsim::Authorization answer) { m_authorizer.answer = answer; }

private:
    /// Gives everybody the same answer.
    class Policy final : public macsim::Authorizer {
    public:
        macsim::Authorization ask(const QString&) override { return answer; }
        macsim::Authorization answer = macsim::Authorization::Allow;
    };

    const macsim::Mac& m_mac;
    macsim::Faults m_faults;
    Policy m_authorizer;
};

class InProcessCommandLauncher final : public CommandLauncher {
public:
    explicit InProcessCommandLauncher(InProcessTools& tools)
        : m_tools(tools) {}

    QFuture<CommandOutcome> run(QStringList arguments, OutputCapture) override;
    void shutDown() override {}
    bool isShutDown() const override { return false; }

private:
    InProcessTools& m_tools;
};

class InProcessScriptEngine final : public ScriptEngine {
public:
    explicit InProcessScriptEngine(InProcessTools& tools)
        : m_tools(tools) {}

    QFuture<ScriptOutcome> run(QString source) override;
    void shutDown() override {}

private:
    InProcessTools& m_tools;
};

/// The ports of a simulated Mac whose tools run in this process.
class InProcessHost {
public:
    /// @param clock       instead of the computer's
    /// @param faultsFile  what goes wrong on purpose, as of SimulatedHostOptions
    InProcessHost(const QString& macFolder, const QString& program, Clock* clock = nullptr,
                  const QString& faultsFile = {});
    ~InProcessHost();

    const macsim::Mac& mac() const { return m_base.mac(); }
    Host host();
    /// What every later prompt is answered with.
    void setAuthorization(macsim::Authorization answer) { m_tools.setAuthorization(answer); }

private:
    AuthorizationPolicy m_authorization{macsim::Authorization::Allow};
    SimulatedHost m_base;
    InProcessTools m_tools;
    InProcessCommandLauncher m_commands{m_tools};
    InProcessScriptEngine m_scripts{m_tools};
    CommandCounter m_counter;
    FaultyCommandLauncher m_faultyCommands{m_commands, m_counter};
    FaultyScriptEngine m_faultyScripts{m_scripts, m_counter};
    Clock* m_clock;
};

} // namespace quorvane
