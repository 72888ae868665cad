#include "core/Osascript.h"

#include "core/CommandResult.h"

#include <QRegularExpression>

namespace quorvane {

using namespace Qt::StringLiterals;

QStringList osascriptCommand(const QString& script) {
    return {u"/usr/bin/osascript"_s, u"-e"_s, script};
}

/// "{place}: execution error: {text} ({number})"; the text may have several lines, and a script may have printed others before.
std::optional<ScriptFailure> scriptFailure(const CommandResult& result) {
    const QString said = result.standardError.trimmed();
    if (result.status == 0 || said.isEmpty()) {
        return std::nullopt;
    }
    static const QRegularExpression numbered(u"^(?:.*\\b(?:execution|syntax|script) error: )?(.*) \\((-?\\d+)\\)$"_s,
                                             QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = numbered.match(said);
    return match.hasMatch() ? ScriptFailure{match.captured(2).toInt(), match.captured(1)} : ScriptFailure{0, said};
}

bool isAutomationRefused(const CommandResult& result) {
    const std::optional<ScriptFailure> failure = scriptFailure(result);
    return failure && failure->isNotPermitted();
}

} // namespace quorvane
