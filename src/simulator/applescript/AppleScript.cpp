#include "simulator/applescript/AppleScript.h"

#include "simulator/applescript/Interpreter.h"
#include "simulator/applescript/StatementParser.h"

namespace macsim {

using namespace applescript;

std::variant<ScriptResult, ScriptError> runAppleScript(const QString& source, ScriptHost& host) {
    try {
        const Block script = parseScript(source);
        Environment environment{host, {}, {}, {}};
        Interpreter(environment).run(script);
        if (!environment.result) {
            return ScriptResult{};
        }
        return ScriptResult{true, readableForm(*environment.result), sourceForm(*environment.result)};
    } catch (const ScriptError& error) {
        return error;
    }
}

} // namespace macsim
