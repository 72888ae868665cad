#include "simulator/applescript/AppleScript.h"

#include "simulator/applescript/Errors.h"
#include "simulator/applescript/Interpreter.h"
#include "simulator/applescript/StatementParser.h"

namespace macsim {

using namespace applescript;
using namespace Qt::StringLiterals;

QList<ScriptObject> ScriptApplication::objects(const QString& /*className*/) {
    return {};
}

std::optional<ScriptObject> ScriptApplication::objectAt(const QString& className, qsizetype position) {
    const QList<ScriptObject> all = objects(className);
    return position >= 0 && position < all.size() ? std::optional(all.at(position)) : std::nullopt;
}

ScriptObject ScriptApplication::asKept(const ScriptObject& object) {
    return object;
}

std::optional<Value> ScriptApplication::property(const ScriptObject& /*object*/, const QString& /*property*/) {
    return std::nullopt;
}

bool ScriptApplication::setProperty(const ScriptObject& /*object*/, const QString& /*property*/,
                                    const Value& /*value*/) {
    return false;
}

ScriptObject ScriptApplication::make(const QString& className, const Record& /*properties*/) {
    throw cannotMakeObject(*this, className);
}

bool ScriptApplication::remove(const ScriptObject& /*object*/) {
    return false;
}

Value ScriptApplication::ownProperty(const QString& property) {
    throw cannotGetFrom(*this, property + u" of "_s + sourceForm(Value(ObjectReference{this})));
}

std::optional<QList<ScriptObject>> ScriptApplication::itemsIn(const ScriptObject& /*container*/) {
    return std::nullopt;
}

bool ScriptApplication::perform(const QString& /*command*/, const ScriptObject* /*object*/) {
    return false;
}

std::variant<ScriptResult, ScriptError> runAppleScript(const QString& source, ScriptHost& host) {
    try {
        const Block script = parseScript(source, host);
        Environment environment{host};
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
