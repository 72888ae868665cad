#pragma once

#include "simulator/Tool.h"
#include "simulator/shell/ShellExpansion.h"
#include "simulator/shell/ShellState.h"
#include "simulator/shell/ShellStreams.h"
#include "simulator/shell/ShellSyntax.h"

#include <optional>

namespace macsim {

/// Ends the shell, or the subshell in which it is thrown.
struct ShellExit {
    int status = 0;
};

/// Executes a syntax tree. A copy is a subshell: it starts with all that the shell has and gives nothing
/// back.
class ShellInterpreter {
public:
    /// @param context  the run of the shell; what the commands get is copied from it
    explicit ShellInterpreter(const ToolContext& context);

    /// Runs the commands and gives the last status. ShellExit and ShellSyntaxError (an unsupported command
    /// whose name appeared by expansion) may leave it.
    int runList(const ShellList& list, const ShellStreams& streams);
    /// The same in a subshell: what the commands set and where they go ends with it.
    int runSubshell(const ShellList& list, const ShellStreams& streams) const;

private:
    int runAndOr(const ShellAndOr& item, const ShellStreams& streams);
    void runInBackground(const ShellAndOr& item, const ShellStreams& streams) const;
    int runPipeline(const ShellPipeline& pipeline, const ShellStreams& streams);
    int runStages(const std::vector<ShellCommand>& commands, ShellStreams streams) const;
    int runCommand(const ShellCommand& command, const ShellStreams& streams);
    int runCompound(const ShellCommand& command, const ShellStreams& streams);
    int runSimple(const ShellCommand& command, const ShellStreams& streams);
    int runNamed(const ShellCommand& command, const QStringList& arguments, const ShellStreams& streams);
    int runBuiltin(ToolContext& context, int line, const ShellStreams& streams);
    int runTool(ToolContext& context, const ShellStreams& streams) const;

    std::optional<ShellStreams> redirected(const ShellCommand& command, const ShellStreams& streams);
    CommandLookUp lookUp(const ToolContext& context) const;
    ShellExpansion expansion(const ShellStreams& streams);
    QByteArray substitute(const ShellList& commands, const ShellStreams& streams);
    ToolContext contextFor(const QStringList& arguments) const;

    ToolContext m_context; ///< a model for those of the commands; its streams are empty
    ShellState m_state;
    int m_substitutionStatus = 0; ///< of the last $( ) in the command at hand
};

} // namespace macsim
