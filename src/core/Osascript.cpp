#include "core/Osascript.h"

#include "core/CommandResult.h"

namespace quorvane {

using namespace Qt::StringLiterals;

QStringList osascriptCommand(const QString& script) {
    return {u"/usr/bin/osascript"_s, u"-e"_s, script};
}

bool isAutomationRefused(const CommandResult& result) {
    return result.status != 0 && result.standardError.trimmed().endsWith(u"(-1743)"_s);
}

} // namespace quorvane
