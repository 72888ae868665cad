#pragma once

#include "fakes/InProcessMac.h"
#include "fakes/SteppedClock.h"
#include "fakes/WindowOnMac.h"

#include <deque>

namespace quorvane {

/// Runs commands at once, or when the test lets them go.
class HeldCommandLauncher final : public CommandLauncher {
public:
    explicit HeldCommandLauncher(CommandLauncher& commands)
        : m_commands(commands) {}

    QFuture<CommandOutcome> run(QStringList arguments, OutputCapture capture) override;
    void shutDown() override;
    bool isShutDown() const override { return m_isShutDown; }

    /// From now on commands wait. @param tool  only those of that tool; empty for all
    void hold(const QString& tool = {}) {
        m_isHolding = true;
        m_heldTool = tool;
    }
    /// Those that wait run, and all later ones do at once.
    void release();
    /// Those that wait.
    QStringList heldLines() const;
    /// From now on each throws this, which no launcher does.
    void breakWith(const QString& text) { m_breakage = text; }

private:
    struct Held {
        QStringList arguments;
        OutputCapture capture;
        QPromise<CommandOutcome> promise;
    };

    CommandLauncher& m_commands;
    std::deque<Held> m_held;
    QString m_breakage;
    bool m_isHolding = false;
    QString m_heldTool;
    bool m_isShutDown = false;
};

/// Asks for the administrator by the Mac's dialogs before it runs a script that wants one, whose tools know the answer then.
class AskingScriptEngine final : public ScriptEngine {
public:
    AskingScriptEngine(InProcessTools& tools, AuthorizationPrompt& prompt)
        : m_tools(tools)
        , m_prompt(prompt) {}

    QFuture<ScriptOutcome> run(QString source) override;
    void shutDown() override {}

private:
    void runWhenTheDialogIsGone(const QString& source, const std::shared_ptr<QPromise<ScriptOutcome>>& promise);

    InProcessTools& m_tools;
    AuthorizationPrompt& m_prompt;
    InProcessScriptEngine m_scripts{m_tools};
    SystemClock m_turns;
    QObject m_context;
};

/// The program with its window on a simulated Mac whose tools run in this process, and whose time stands still: for tests that
/// want a moment to last.
class QuickWindowOnMac : public WindowOnMac {
public:
    ~QuickWindowOnMac() override;

protected:
    using WindowOnMac::WindowOnMac;

    Host ports() override;
    void shutDownPorts() override;

    /// Lets time pass until something is so.
    template <typename Condition>
    void letTimePassUntil(Condition condition) {
        processEventsUntil([this, &condition] {
            clock.advance(std::chrono::milliseconds(50));
            QCoreApplication::processEvents();
            return condition();
        });
    }
    /// The event loop comes round, and whatever waited for no time has gone on.
    static void letEventsPass();

    SteppedClock clock;

    /// The commands of the program that has been launched.
    HeldCommandLauncher& commands() { return m_tools->launcher; }

private:
    struct Tools {
        Tools(const macsim::Mac& mac, const QString& faultsFile, AuthorizationPrompt& prompt)
            : inProcess(mac, faultsFile)
            , scripts(inProcess, prompt) {}
        InProcessTools inProcess;
        InProcessCommandLauncher atOnce{inProcess};
        HeldCommandLauncher launcher{atOnce};
        AskingScriptEngine scripts;
    };
    std::unique_ptr<Tools> m_tools;
};

} // namespace quorvane
