#include "simulator/tools/ScriptRights.h"

#include "simulator/Authorizer.h"
#include "simulator/Journal.h"
#include "simulator/Permissions.h"

#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr int kNotAuthorized = -1743;
constexpr int kTimedOut = -1712;
constexpr int kUserCanceled = -128;
constexpr int kWrongPassword = -60007;

} // namespace

AutomationRight::AutomationRight(ToolContext& context, QString application, const std::chrono::seconds& eventLimit)
    : m_context(context)
    , m_application(std::move(application))
    , m_eventLimit(eventLimit) {}

void AutomationRight::require() {
    if (!m_isGranted) {
        m_isGranted = automationDecision(m_context.mac.state(), m_application);
    }
    if (!m_isGranted) {
        ask();
    }
    if (!*m_isGranted) {
        throw ScriptError{kNotAuthorized, u"Not authorized to send Apple events to "_s + m_application + u'.'};
    }
}

void AutomationRight::ask() {
    const AutomationAnswer answer = askForAutomation(m_context.mac.state(), m_application);
    if (m_context.journal) {
        m_context.journal->recordAutomation(m_application, answer, m_eventLimit);
    }
    if (answer == AutomationAnswer::Unanswered) {
        throw ScriptError{kTimedOut, m_application + u" got an error: AppleEvent timed out."_s};
    }
    m_isGranted = answer == AutomationAnswer::Allow;
}

void requireAdministrator(ToolContext& context, const QString& prompt) {
    const Authorization answer = context.authorizer.ask(prompt);
    if (context.journal) {
        context.journal->recordAuthorization(prompt, answer);
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

} // namespace macsim
