#pragma once

#include "simulator/Tool.h"
#include "simulator/shell/ShellState.h"
#include "simulator/shell/ShellSyntax.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace macsim {

/// Makes of words what a command gets: values in place of names, output in place of commands, fields where an
/// unquoted value has blanks, and paths in place of patterns.
class ShellExpansion {
public:
    /// Runs the commands of a substitution and gives their output.
    using Substitute = std::function<QByteArray(const ShellList& commands)>;

    /// All of it must outlive the expansion.
    /// @param context  the run of the shell: whose Mac and volume it is
    ShellExpansion(const ShellState& state, const ToolContext& context, Substitute substitute)
        : m_state(state)
        , m_context(context)
        , m_substitute(std::move(substitute)) {}

    QStringList fields(const std::vector<ShellWord>& words) const;
    /// A word where the shell neither splits nor matches: a variable's value, a redirection's file.
    QString text(const ShellWord& word) const;

private:
    QString value(const ShellWordPart& part) const;
    QString variable(const QString& name) const;
    QString substitution(const ShellList& commands) const;
    QString home(const QString& user) const;

    const ShellState& m_state;
    const ToolContext& m_context;
    Substitute m_substitute;
};

} // namespace macsim
