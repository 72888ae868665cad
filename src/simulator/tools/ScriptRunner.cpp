#include "simulator/tools/ScriptRunner.h"

#include "simulator/Authorizer.h"
#include "simulator/Journal.h"
#include "simulator/Permissions.h"
#include "simulator/shell/Shell.h"
#include "simulator/tools/SystemEvents.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr int kUserCanceled = -128;
constexpr int kWrongPassword = -60007;

/// It has no objects here, and their words don't compile.
class Finder final : public ScriptApplication {
public:
    QString name() const override { return u"Finder"_s; }
};

bool isNamed(const ScriptApplication& application, const QString& name) {
    return application.name().compare(name, Qt::CaseInsensitive) == 0;
}

class MacScriptHost final : public ScriptHost {
public:
    explicit MacScriptHost(ToolContext& context)
        : m_context(context)
        , m_systemEvents(context.mac) {}

    ShellScriptOutcome doShellScript(const ShellScriptRequest& request) override {
        ToolContext shell = m_context;
        shell.input.clear();
        shell.output.clear();
        shell.error.clear();
        if (request.withAdministratorPrivileges) {
            authorize(request.prompt.value_or(QString()));
            // HOME stays that of the user who was asked; `defaults` goes by the real user and writes root's.
            shell.volume = m_context.mac.volume(Actor::Root);
        }
        const int status = runShellLine(request.line, shell);
        return {status, shell.output, shell.error};
    }

    const ScriptDictionary* findDictionary(const QString& application) override {
        return isNamed(m_systemEvents, application) ? &SystemEvents::dictionary() : nullptr;
    }

    ScriptApplication* findApplication(const QString& name) override {
        ScriptApplication* const applications[] = {&m_systemEvents, &m_finder};
        for (ScriptApplication* application : applications) {
            if (isNamed(*application, name)) {
                requireTellable(application->name());
                return application;
            }
        }
        return nullptr;
    }

private:
    void requireTellable(const QString& application) const {
        const StateStore& state = m_context.mac.state();
        if (tellNeedsAutomation(state) && !mayAutomate(state, application)) {
            throw automationRefused(application);
        }
    }

    void authorize(const QString& prompt) {
        const Authorization answer = m_context.authorizer.ask(prompt);
        if (m_context.journal) {
            m_context.journal->recordAuthorization(prompt, answer);
        }
        switch (answer) {
        case Authorization::Allow:
            return;
        case Authorization::Deny:
            throw ScriptError{kWrongPassword, u"The administrator user name or password was incorrect."_s};
        case Authorization::Cancel:
            throw ScriptError{kUserCanceled, u"User canceled."_s};
        }
    }

    ToolContext& m_context;
    SystemEvents m_systemEvents;
    Finder m_finder;
};

} // namespace

std::variant<ScriptResult, ScriptError> runScriptOnMac(const QString& source, ToolContext& context) {
    MacScriptHost host(context);
    return runAppleScript(source, host);
}

} // namespace macsim
