#include "simulator/applescript/ShellCommand.h"

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

/// Beyond, /bin/sh can't be started: the line is an argument of it.
constexpr qsizetype kLongestLine = 262'000;

QString textOf(const QByteArray& bytes, LineEndings lineEndings) {
    QString text = QString::fromUtf8(bytes);
    if (lineEndings == LineEndings::Kept) {
        return text;
    }
    text.replace(u"\r\n"_s, u"\r"_s).replace(u'\n', u'\r');
    if (text.endsWith(u'\r')) {
        text.chop(1);
    }
    return text;
}

ScriptError failure(int status, const QString& message) {
    return {status, message.isEmpty() ? u"The command exited with a non-zero status."_s : message};
}

} // namespace

QString runShellScript(const ShellScriptRequest& request, LineEndings lineEndings, ScriptHost& host) {
    if (request.line.toUtf8().size() > kLongestLine) {
        throw failure(255, {});
    }
    const ShellScriptOutcome outcome = host.doShellScript(request);
    if (outcome.status == 0) {
        return textOf(outcome.output, lineEndings);
    }
    const QByteArray& message = outcome.errors.isEmpty() ? outcome.output : outcome.errors;
    throw failure(outcome.status, textOf(message, lineEndings));
}

} // namespace macsim::applescript
