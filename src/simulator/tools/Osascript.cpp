#include "simulator/tools/Osascript.h"

#include "simulator/tools/ScriptRunner.h"

#include <optional>
#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

struct Invocation {
    QStringList lines;
    std::optional<QString> file;
    bool printsSourceForm = false;
};

/// None for a command line that isn't understood.
std::optional<Invocation> parsedInvocation(const QStringList& arguments) {
    Invocation invocation;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        const QString& argument = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (argument == u"-e"_s && hasValue) {
            invocation.lines.append(arguments[++i]);
        } else if (argument == u"-s"_s && hasValue && (arguments[i + 1] == u"s"_s || arguments[i + 1] == u"h"_s)) {
            invocation.printsSourceForm = arguments[++i] == u"s"_s;
        } else if ((argument == u"-"_s || !argument.startsWith(u'-')) && !hasValue && invocation.lines.isEmpty()) {
            invocation.file = argument;
        } else {
            return std::nullopt;
        }
    }
    if (invocation.lines.isEmpty() && !invocation.file) {
        invocation.file = u"-"_s;
    }
    return invocation;
}

QString sourceOf(const Invocation& invocation, ToolContext& context) {
    if (!invocation.file) {
        return invocation.lines.join(u'\n');
    }
    if (*invocation.file == u"-"_s) {
        return QString::fromUtf8(std::exchange(context.input, {}));
    }
    return QString::fromUtf8(context.volume.read(context.absolutePath(*invocation.file)));
}

QString described(const ScriptError& error, const Invocation& invocation) {
    const bool fromFile = invocation.file && *invocation.file != u"-"_s;
    return (fromFile ? *invocation.file + u": "_s : QString()) +
           u"%1:%2: %3 error: "_s.arg(error.start)
               .arg(error.end)
               .arg(error.isSyntaxError ? u"syntax"_s : u"execution"_s) +
           error.message + u" (%1)\n"_s.arg(error.number);
}

} // namespace

int runOsascript(ToolContext& context) {
    const std::optional<Invocation> invocation = parsedInvocation(context.arguments);
    if (!invocation) {
        context.complain(u"usage: osascript [-s flags] [-e statement | programfile]\n"_s);
        return 2;
    }
    const auto outcome = runScriptOnMac(sourceOf(*invocation, context), context);
    if (const auto* error = std::get_if<ScriptError>(&outcome)) {
        context.complain(described(*error, *invocation));
        return 1;
    }
    const auto& result = std::get<ScriptResult>(outcome);
    if (result.hasValue) {
        context.print((invocation->printsSourceForm ? result.sourceForm : result.text) + u'\n');
    }
    return 0;
}

} // namespace macsim
