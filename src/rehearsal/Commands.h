#pragma once

#include "rehearsal/Arguments.h"
#include "rehearsal/Rehearsal.h"

#include <QStringView>

#include <span>
#include <variant>

namespace quorvane {

/// One command of the rehearsal.
struct RehearsalCommand {
    /// Runs on a simulated Mac.
    using Flow = QCoro::Task<RehearsalOutcome> (Rehearsal::*)(Arguments);
    /// Needs no program on it. @return the exit status
    using Tool = int (*)(const Arguments& arguments);

    QStringView name;
    QStringView operands; ///< as the help shows them, with the command's own options
    qsizetype fewestOperands = 0;
    qsizetype mostOperands = 0;
    std::variant<Flow, Tool> run;
    QStringView help;
};

/// In the order of the help.
std::span<const RehearsalCommand> rehearsalCommands();

/// Throws UnusableInput.
const RehearsalCommand& commandNamed(const QString& name);

/// What the program prints when it is asked for help.
QString usageText();

} // namespace quorvane
