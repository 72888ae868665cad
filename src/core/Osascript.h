#pragma once

#include <QStringList>

namespace quorvane {

struct CommandResult;

// Scripts that tell other applications something run in the system's osascript. The system asks its user once whether the program
// may control the other application, and keeps a refusal until they change it in System Settings › Privacy & Security › Automation.

/// The command that runs a script.
QStringList osascriptCommand(const QString& script);

/// True when the script wasn't let through to an application: error -1743, errAEEventNotPermitted. Its words are in the user's
/// language.
bool isAutomationRefused(const CommandResult& result);

} // namespace quorvane
