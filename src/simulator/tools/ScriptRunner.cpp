#include "simulator/tools/ScriptRunner.h"

#include "simulator/shell/Shell.h"
#include "simulator/tools/Finder.h"
#include "simulator/tools/ScriptRights.h"
#include "simulator/tools/SystemEvents.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

bool isNamed(const ScriptApplication& application, const QString& name) {
    return application.name().compare(name, Qt::CaseInsensitive) == 0;
}

class MacScriptHost final : public ScriptHost {
public:
    explicit MacScriptHost(ToolContext& context)
        : m_context(context)
        , m_systemEvents(context, m_eventLimit)
        , m_finder(context, m_eventLimit) {}

    ShellScriptOutcome doShellScript(const ShellScriptRequest& request) override {
        ToolContext shell = m_context;
        shell.input.clear();
        shell.output.clear();
        shell.error.clear();
        if (request.withAdministratorPrivileges) {
            requireAdministrator(m_context, request.prompt.value_or(QString()));
            // HOME stays that of the user who was asked; `defaults` goes by the real user and writes root's.
            shell.volume = m_context.mac.volume(Actor::Root);
        }
        const int status = runShellLine(request.line, shell);
        return {status, shell.output, shell.error};
    }

    const ScriptDictionary* findDictionary(const QString& application) override {
        if (isNamed(m_systemEvents, application)) {
            return &SystemEvents::dictionary();
        }
        return isNamed(m_finder, application) ? &Finder::dictionary() : nullptr;
    }

    ScriptApplication* findApplication(const QString& name) override {
        ScriptApplication* const applications[] = {&m_systemEvents, &m_finder};
        for (ScriptApplication* application : applications) {
            if (isNamed(*application, name)) {
                return application;
            }
        }
        return nullptr;
    }

    void limitEvents(std::chrono::seconds limit) override { m_eventLimit = limit; }

private:
    ToolContext& m_context;
    std::chrono::seconds m_eventLimit = kEventLimit;
    SystemEvents m_systemEvents;
    Finder m_finder;
};

} // namespace

std::variant<ScriptResult, ScriptError> runScriptOnMac(const QString& source, ToolContext& context) {
    MacScriptHost host(context);
    return runAppleScript(source, host);
}

} // namespace macsim
