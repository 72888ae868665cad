#pragma once

#include "simulator/Tool.h"
#include "simulator/applescript/AppleScript.h"

#include <optional>

namespace macsim {

/// The error of an event that the user's privacy settings refuse.
ScriptError automationRefused(const QString& application);

/// The Automation permission for one application, which the program has or lacks for the whole of a script.
class AutomationRight {
public:
    AutomationRight(const Mac& mac, QString application);

    /// For every event. Throws ScriptError -1743.
    void require();

private:
    const Mac& m_mac;
    QString m_application;
    std::optional<bool> m_isGranted; ///< none until the first event
};

/// Has the user asked for an administrator's password. Throws ScriptError -60007 or -128 when it isn't given.
void requireAdministrator(ToolContext& context, const QString& prompt);

} // namespace macsim
