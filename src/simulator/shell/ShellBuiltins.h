#pragma once

#include "simulator/Tool.h"
#include "simulator/shell/ShellState.h"

#include <optional>

namespace macsim {

/// One run of a command inside the shell.
struct ShellBuiltinCall {
    ToolContext& context; ///< arguments, volume, working folder, and the streams it writes to
    ShellState& state;
    int line = 1;
    std::optional<int> exits = {}; ///< set when the shell ends with this status

    const QStringList& arguments() const { return context.arguments; }
    /// Writes "sh: line N: {command}: {message}" to the error stream. Bash 3.2, which a Mac's sh is, counts
    /// the lines of a text from 0 here.
    void complain(const QString& message);
};

using ShellBuiltin = int (*)(ShellBuiltinCall& call);

/// The command inside the shell that has a name; null for every other name.
ShellBuiltin findShellBuiltin(const QString& name);

/// ":", "exit" and "export": assignments before them stay, and a failing redirection of theirs ends the shell.
bool isSpecialShellBuiltin(const QString& name);

} // namespace macsim
