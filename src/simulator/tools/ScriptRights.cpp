#include "simulator/tools/ScriptRights.h"

#include "simulator/Authorizer.h"
#include "simulator/Journal.h"
#include "simulator/Permissions.h"

#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr int kNotAuthorized = -1743;
constexpr int kUserCanceled = -128;
constexpr int kWrongPassword = -60007;

} // namespace

ScriptError automationRefused(const QString& application) {
    return {kNotAuthorized, u"Not authorized to send Apple events to "_s + application + u'.'};
}

AutomationRight::AutomationRight(const Mac& mac, QString application)
    : m_mac(mac)
    , m_application(std::move(application)) {}

void AutomationRight::require() {
    if (!m_isGranted) {
        m_isGranted = mayAutomate(m_mac.state(), m_application);
    }
    if (!*m_isGranted) {
        throw automationRefused(m_application);
    }
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
