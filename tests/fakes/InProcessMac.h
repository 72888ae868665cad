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
    InProcessTools(const macsim::Mac& mac, const QString& faultsFile)
        : m_mac(mac)
        , m_faults(faultsFile.isEmpty() ? macsim::Faults() : macsim::Faults::fromFile(faultsFile)) {}

    macsim::ToolContext context(const QStringList& arguments) {
        const QString home = m_mac.homeFolder(macsim::Actor::User);
        macsim::ToolContext made{m_mac,        macsim::simulatorTools(),
                                 m_authorizer, m_mac.volume(macsim::Actor::User),
                                 arguments,    {},
                                 home,         {},
                                 {},           {}};
        made.environment = {{QStringLiteral("HOME"), home},
                            {QStringLiteral("PATH"), QStringLiteral("/usr/bin:/bin:/usr/sbin:/sbin")},
                            {QStringLiteral("TMPDIR"), m_mac.temporaryFolder()},
                            {QStringLiteral("USER"), m_mac.machine().userName}};
        made.faults = &m_faults;
        return made;
    }

private:
    /// Agrees to everything.
    class Consent final : public macsim::Authorizer {
    public:
        macsim::Authorization ask(const QString&) override { return macsim::Authorization::Allow; }
    };

    const macsim::Mac& m_mac;
    macsim::Faults m_faults;
    Consent m_authorizer;
};

class InProcessCommandLauncher final : public CommandLauncher {
public:
    explicit InProcessCommandLauncher(InProcessTools& tools)
        : m_tools(tools) {}

    QFuture<CommandOutcome> run(QStringList arguments, OutputCapture) override {
        arguments.prepend(QStringLiteral("/usr/bin/env"));
        macsim::ToolContext context = m_tools.context(arguments);
        CommandOutcome outcome;
        outcome.ending = CommandOutcome::Ending::Exited;
        try {
            outcome.code = macsim::runCommand(macsim::findCommand(arguments.first(), context), context);
        } catch (const std::exception& error) {
            ADD_FAILURE() << commandLine(arguments).toStdString() << ": " << error.what();
        }
        outcome.standardOutput = context.output;
        outcome.standardError = context.error;
        return QtFuture::makeReadyFuture(outcome);
    }
    void shutDown() override {}
    bool isShutDown() const override { return false; }

private:
    InProcessTools& m_tools;
};

class InProcessScriptEngine final : public ScriptEngine {
public:
    explicit InProcessScriptEngine(InProcessTools& tools)
        : m_tools(tools) {}

    QFuture<ScriptOutcome> run(QString source) override {
        macsim::ToolContext context = m_tools.context({QStringLiteral("scriptengine")});
        const auto result = macsim::runScriptOnMac(source, context);
        if (const auto* error = std::get_if<macsim::ScriptError>(&result)) {
            return QtFuture::makeReadyFuture(ScriptOutcome{std::nullopt, error->message});
        }
        return QtFuture::makeReadyFuture(ScriptOutcome{std::get<macsim::ScriptResult>(result).text, std::nullopt});
    }
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
                  const QString& faultsFile = {})
        : m_base(macFolder, m_authorization, {program, faultsFile, {}})
        , m_tools(m_base.mac(), faultsFile)
        , m_counter(faultsFile)
        , m_clock(clock) {}

    const macsim::Mac& mac() const { return m_base.mac(); }
    Host host() {
        const Host base = m_base.host();
        return {m_faultyCommands, m_faultyScripts,
                base.files,       base.defaults,
                base.machine,     base.propertyLists,
                base.bundles,     base.backgroundTaskPermissions,
                base.cloud,       m_clock != nullptr ? *m_clock : base.clock,
                base.keychain,    base.biometrics,
                base.displays,    base.notifications};
    }

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
