#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

struct CommandResult;

// Scripts that tell other applications something run in the system's osascript. The system asks its user once whether the program
// may control the other application, and keeps a refusal until they change it in System Settings › Privacy & Security › Automation.

/// Why a script didn't come to its end, or what it says of itself in the place of what it was asked for.
struct ScriptFailure {
    int number = 0; ///< AppleScript's; 0 where none is told
    QString text;   ///< in the user's language, without number and place

    /// Errors errAEEventNotPermitted and errAETimeout. The latter is also that of a question that nobody answers.
    bool isNotPermitted() const { return number == -1743; }
    bool isNotAnswered() const { return number == -1712; }
    /// A further script would be held up in the same way, the latter for as long again.
    bool isOfPermission() const { return isNotPermitted() || isNotAnswered(); }

    bool operator==(const ScriptFailure&) const = default;
};

/// The command that runs a script.
QStringList osascriptCommand(const QString& script);

/// None where the tool succeeded, and where it said nothing at all of why it didn't.
std::optional<ScriptFailure> scriptFailure(const CommandResult& result);

/// True when the script wasn't let through to an application.
bool isAutomationRefused(const CommandResult& result);

} // namespace quorvane
