#pragma once

#include "simulator/Tool.h"
#include "simulator/applescript/AppleScript.h"

#include <chrono>
#include <optional>

namespace macsim {

/// The Automation permission for one application, which the program has or lacks for the whole of a script.
class AutomationRight {
public:
    /// @param eventLimit  how long an event may take, as it is when one is sent
    AutomationRight(ToolContext& context, QString application, const std::chrono::seconds& eventLimit);

    /// For every event. The first one has the user asked where nothing is decided yet. Throws ScriptError -1743 for a refusal,
    /// and -1712 where nobody answers while the event may take; no time passes here.
    void require();

private:
    void ask();

    ToolContext& m_context;
    QString m_application;
    const std::chrono::seconds& m_eventLimit;
    std::optional<bool> m_isGranted; ///< none until it is decided
};

/// Has the user asked for an administrator's password. Throws ScriptError -60007 or -128 when it isn't given.
void requireAdministrator(ToolContext& context, const QString& prompt);

} // namespace macsim
