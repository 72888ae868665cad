#include "simulator/applescript/Errors.h"

#include "simulator/applescript/Token.h"
#include "simulator/applescript/Value.h"

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

ScriptError from(const ScriptApplication& application, ScriptError error) {
    error.message.prepend(application.name() + u" got an error: "_s);
    return error;
}

} // namespace

ScriptError syntaxError(const QString& message, Range range) {
    return {-2741, message, range.start, range.end, true};
}

ScriptError cannotMake(const Value& value, const QString& typeName) {
    return {-1700, u"Can’t make "_s + sourceForm(value) + u" into type "_s + typeName + u'.'};
}

ScriptError cannotGet(const QString& specifier) {
    return {-1728, u"Can’t get "_s + specifier + u'.'};
}

ScriptError undefinedVariable(const QString& name) {
    return {-2753, u"The variable "_s + name + u" is not defined."_s};
}

ScriptError dividedByZero(const QString& dividend) {
    return {-2701, u"Can’t divide "_s + dividend + u" by zero."_s};
}

ScriptError numberTooLarge() {
    return {-2702, u"The result of a numeric operation was too large."_s};
}

ScriptError stackOverflow() {
    return {-2706, u"Stack overflow."_s};
}

ScriptError privilegeViolation() {
    return {-10004, u"A privilege violation occurred."_s};
}

ScriptError numberedError(int number) {
    switch (number) {
    case -128:
        return {number, u"User canceled."_s};
    case kUnnumberedError:
        return {number, u"An error has occurred."_s};
    default:
        return {number, u"An error of type %1 has occurred."_s.arg(number)};
    }
}

ScriptError cannotGetFrom(const ScriptApplication& application, const QString& specifier) {
    return from(application, cannotGet(specifier));
}

ScriptError invalidIndex(const ScriptApplication& application, const QString& specifier) {
    return from(application, {-1719, u"Can’t get "_s + specifier + u". Invalid index."_s});
}

ScriptError cannotSet(const ScriptApplication& application, const QString& specifier, const Value& value) {
    return from(application, {-10006, u"Can’t set "_s + specifier + u" to "_s + sourceForm(value) + u'.'});
}

ScriptError notUnderstood(const ScriptApplication& application, const QString& specifier, const QString& command) {
    return from(application, {-1708, specifier + u" doesn’t understand the “"_s + command + u"” message."_s});
}

ScriptError cannotMakeObject(const ScriptApplication& application, const QString& className) {
    return from(application, {-2710, u"Can’t make class "_s + className + u'.'});
}

} // namespace macsim::applescript
