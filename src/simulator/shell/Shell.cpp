#include "simulator/shell/Shell.h"

#include "simulator/shell/ShellInterpreter.h"
#include "simulator/shell/ShellNesting.h"
#include "simulator/shell/ShellParser.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr int kSyntaxError = 2;
constexpr int kCannotFork = 254;

ShellStreams streamsOf(ToolContext& context) {
    ShellStreams streams;
    streams.input = std::make_shared<ShellInput>(context.input);
    streams.outputs[1] = std::make_shared<BufferOutput>(context.output);
    streams.outputs[2] = std::make_shared<BufferOutput>(context.error);
    return streams;
}

int runText(const QString& text, ToolContext& context, const ShellStreams& streams) {
    try {
        return ShellInterpreter(context).runSubshell(parseShellText(text), streams);
    } catch (const ShellSyntaxError& error) {
        context.complain(u"sh: -c: line %1: syntax error: "_s.arg(error.line()) + error.message() + u'\n');
        return kSyntaxError;
    } catch (const ShellNestingError& error) {
        if (!ShellNesting::isOutermost()) {
            throw; // every shell of the chain ends, or each would go on to start the next chain
        }
        context.complain(u"sh: "_s + QString::fromLatin1(error.what()) + u'\n');
        return kCannotFork;
    }
}

} // namespace

int runShellLine(const QString& text, ToolContext& context) {
    const ShellStreams streams = streamsOf(context);
    const int status = runText(text, context, streams);
    context.input = streams.input->take();
    return status;
}

} // namespace macsim
