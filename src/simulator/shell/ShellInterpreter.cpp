#include "simulator/shell/ShellInterpreter.h"

#include "simulator/shell/ShellBuiltins.h"
#include "simulator/shell/ShellNesting.h"
#include "simulator/shell/ShellParser.h"
#include "simulator/shell/ShellRedirections.h"
#include "simulator/shell/ShellVocabulary.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Condition = ShellPipeline::Condition;

constexpr int kNotExecutable = 126;
constexpr int kNotFound = 127;

/// Runs something in which an exit ends no more than itself.
template <typename Run>
int statusOf(const Run& run) {
    try {
        return run();
    } catch (const ShellExit& exit) {
        return exit.status;
    }
}

/// Hands on what a command wrote. Its two streams are collected apart, so where both lead to one place the
/// error stands behind the output.
int deliver(ToolContext& context, const ShellStreams& streams, int status) {
    try {
        streams.outputs[1]->write(context.output);
    } catch (const FileError& error) {
        context.complain(u"sh: "_s + context.arguments[0] + u": write error: "_s + error.reason() + u'\n');
        status = 1;
    }
    try {
        streams.outputs[2]->write(context.error);
    } catch (const FileError&) {
        status = 1;
    }
    return status;
}

int complainOfLookUp(const CommandLookUp& command, const ToolContext& context, const ShellStreams& streams) {
    const QString& name = context.arguments[0];
    const bool isPath = name.contains(u'/');
    const bool isFolder =
        command.outcome == CommandLookUp::Outcome::NotExecutable && context.volume.isFolder(command.path);
    if (command.outcome == CommandLookUp::Outcome::Missing || (isFolder && !isPath)) {
        streams.complain(name + (isPath ? u": No such file or directory"_s : u": command not found"_s));
        return kNotFound;
    }
    streams.complain(name + (isFolder ? u": is a directory"_s : u": Permission denied"_s));
    return kNotExecutable;
}

} // namespace

ShellInterpreter::ShellInterpreter(const ToolContext& context)
    : m_context(context)
    , m_state(context.environment, context.workingFolder) {
    m_context.input.clear();
    m_context.output.clear();
    m_context.error.clear();
}

int ShellInterpreter::runList(const ShellList& list, const ShellStreams& streams) {
    const ShellNesting nesting;
    int status = 0;
    for (const ShellAndOr& item : list.items) {
        if (item.isInBackground) {
            runInBackground(item, streams);
            status = 0;
        } else {
            status = runAndOr(item, streams);
        }
        m_state.lastStatus = status;
    }
    return status;
}

int ShellInterpreter::runSubshell(const ShellList& list, const ShellStreams& streams) const {
    return statusOf([&] { return ShellInterpreter(*this).runList(list, streams); });
}

/// Nothing runs beside the shell here: a background command runs at once and to its end, apart from the
/// shell's state and without its input. Nobody waits for it, so its status is lost.
void ShellInterpreter::runInBackground(const ShellAndOr& item, const ShellStreams& streams) const {
    ShellStreams apart = streams;
    apart.input = std::make_shared<ShellInput>(QByteArray());
    statusOf([&] { return ShellInterpreter(*this).runAndOr(item, apart); });
}

int ShellInterpreter::runAndOr(const ShellAndOr& item, const ShellStreams& streams) {
    for (const ShellPipeline& pipeline : item.pipelines) {
        const Condition met = m_state.lastStatus == 0 ? Condition::AfterSuccess : Condition::AfterFailure;
        if (pipeline.condition == Condition::Always || pipeline.condition == met) {
            m_state.lastStatus = runPipeline(pipeline, streams);
        }
    }
    return m_state.lastStatus;
}

int ShellInterpreter::runPipeline(const ShellPipeline& pipeline, const ShellStreams& streams) {
    const int status = pipeline.commands.size() == 1 ? runCommand(pipeline.commands.front(), streams)
                                                     : runStages(pipeline.commands, streams);
    return pipeline.isNegated ? static_cast<int>(status == 0) : status;
}

/// Every stage is a subshell. They run one after the other, each on the whole output of the one before it.
int ShellInterpreter::runStages(const std::vector<ShellCommand>& commands, ShellStreams streams) const {
    const std::shared_ptr<ShellOutput> end = streams.outputs[1];
    int status = 0;
    for (const ShellCommand& command : commands) {
        QByteArray between;
        const bool isLast = &command == &commands.back();
        streams.outputs[1] = isLast ? end : std::make_shared<BufferOutput>(between);
        status = statusOf([&] { return ShellInterpreter(*this).runCommand(command, streams); });
        streams.input = std::make_shared<ShellInput>(between);
    }
    return status;
}

int ShellInterpreter::runCommand(const ShellCommand& command, const ShellStreams& streams) {
    m_substitutionStatus = 0;
    return command.kind == ShellCommand::Kind::Simple ? runSimple(command, streams) : runCompound(command, streams);
}

int ShellInterpreter::runCompound(const ShellCommand& command, const ShellStreams& streams) {
    const std::optional<ShellStreams> own = redirected(command, streams);
    if (!own) {
        return 1;
    }
    const bool isSubshell = command.kind == ShellCommand::Kind::Subshell;
    return isSubshell ? runSubshell(*command.body, *own) : runList(*command.body, *own);
}

/// Words first, then assignments, then redirections: the order in which their commands run and their errors
/// appear.
int ShellInterpreter::runSimple(const ShellCommand& command, const ShellStreams& streams) {
    const QStringList arguments = expansion(streams).fields(command.words);
    if (!arguments.isEmpty() && isUnsupportedShellBuiltin(arguments[0])) {
        throw ShellSyntaxError::notSupported(arguments[0], command.line);
    }
    if (!arguments.isEmpty() && !isSpecialShellBuiltin(arguments[0])) {
        return runNamed(command, arguments, streams);
    }
    for (const ShellAssignment& assignment : command.assignments) {
        m_state.assign(assignment.name, expansion(streams).text(assignment.value));
    }
    const std::optional<ShellStreams> own = redirected(command, streams);
    if (arguments.isEmpty()) {
        return own ? m_substitutionStatus : 1;
    }
    if (!own) {
        throw ShellExit{1};
    }
    ToolContext context = contextFor(arguments);
    return runBuiltin(context, command.line, *own);
}

/// Assignments before the command are exported, and gone after it.
int ShellInterpreter::runNamed(const ShellCommand& command, const QStringList& arguments, const ShellStreams& streams) {
    const QMap<QString, QString> before = m_state.environment();
    for (const ShellAssignment& assignment : command.assignments) {
        m_state.exportValue(assignment.name, expansion(streams).text(assignment.value));
    }
    int status = 1;
    if (const std::optional<ShellStreams> own = redirected(command, streams)) {
        ToolContext context = contextFor(arguments);
        status = findShellBuiltin(arguments[0]) ? runBuiltin(context, command.line, *own) : runTool(context, *own);
    }
    for (const ShellAssignment& assignment : command.assignments) {
        m_state.restoreExported(assignment.name, before);
    }
    return status;
}

int ShellInterpreter::runBuiltin(ToolContext& context, int line, const ShellStreams& streams) {
    ShellBuiltinCall call{context, m_state, line};
    const int status = findShellBuiltin(context.arguments[0])(call);
    const int delivered = deliver(context, streams, status);
    if (call.exits) {
        throw ShellExit{*call.exits};
    }
    return delivered;
}

int ShellInterpreter::runTool(ToolContext& context, const ShellStreams& streams) const {
    const CommandLookUp command = lookUp(context);
    if (command.outcome != CommandLookUp::Outcome::Found) {
        return complainOfLookUp(command, context, streams);
    }
    context.input = streams.input->take();
    const int status = macsim::runCommand(command, context);
    streams.input->putBack(context.input);
    return deliver(context, streams, status);
}

/// PATH counts for the shell even where it isn't exported.
CommandLookUp ShellInterpreter::lookUp(const ToolContext& context) const {
    ToolContext looking = context;
    if (const std::optional<QString> path = m_state.value(u"PATH"_s)) {
        looking.environment[u"PATH"_s] = *path;
    }
    try {
        return findCommand(context.arguments[0], looking);
    } catch (const FileError&) {
        return {};
    }
}

/// The streams of a command; nothing when one of its redirections failed, which has been said then.
std::optional<ShellStreams> ShellInterpreter::redirected(const ShellCommand& command, const ShellStreams& streams) {
    ShellStreams own = streams;
    const ToolContext context = contextFor({});
    for (const ShellRedirection& redirection : command.redirections) {
        const QString path = expansion(own).text(redirection.target);
        try {
            redirect(own, redirection, path, context);
        } catch (const FileError& error) {
            own.complain(error.path() + u": "_s + error.reason());
            return {};
        }
    }
    return own;
}

ShellExpansion ShellInterpreter::expansion(const ShellStreams& streams) {
    return {m_state, m_context, [this, &streams](const ShellList& commands) { return substitute(commands, streams); }};
}

QByteArray ShellInterpreter::substitute(const ShellList& commands, const ShellStreams& streams) {
    QByteArray output;
    ShellStreams captured = streams;
    captured.outputs[1] = std::make_shared<BufferOutput>(output);
    m_substitutionStatus = runSubshell(commands, captured);
    m_state.lastStatus = m_substitutionStatus;
    return output;
}

ToolContext ShellInterpreter::contextFor(const QStringList& arguments) const {
    ToolContext context = m_context;
    context.arguments = arguments;
    context.environment = m_state.environment();
    context.workingFolder = m_state.workingFolder();
    return context;
}

} // namespace macsim
