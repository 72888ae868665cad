#include "simulator/tools/ScriptRunner.h"

#include "simulator/Authorizer.h"
#include "simulator/Journal.h"
#include "simulator/shell/Shell.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr int kUserCanceled = -128;
constexpr int kWrongPassword = -60007;

class ScriptableApplication final : public ScriptApplication {
public:
    explicit ScriptableApplication(QString name)
        : m_name(std::move(name)) {}
    QString name() const override { return m_name; }

private:
    QString m_name;
};

class MacScriptHost final : public ScriptHost {
public:
    explicit MacScriptHost(ToolContext& context)
        : m_context(context) {}

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

    ScriptApplication* findApplication(const QString& name) override {
        for (ScriptableApplication* application : {&m_systemEvents, &m_finder}) {
            if (application->name().compare(name, Qt::CaseInsensitive) == 0) {
                return application;
            }
        }
        return nullptr;
    }

private:
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
    ScriptableApplication m_systemEvents{u"System Events"_s};
    ScriptableApplication m_finder{u"Finder"_s};
};

} // namespace

std::variant<ScriptResult, ScriptError> runScriptOnMac(const QString& source, ToolContext& context) {
    MacScriptHost host(context);
    return runAppleScript(source, host);
}

} // namespace macsim
