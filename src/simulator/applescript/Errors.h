#pragma once

#include "simulator/applescript/AppleScript.h"

namespace macsim::applescript {

class Value;
struct Range;

/// The errors of the language itself, in Apple's words. Those of a running script know their place only once
/// the evaluator has put it in.

ScriptError syntaxError(const QString& message, Range range);
ScriptError cannotMake(const Value& value, const QString& typeName);
/// @param specifier  what was asked for, as the script would write it: `item 5 of {1, 2}`
ScriptError cannotGet(const QString& specifier);
ScriptError undefinedVariable(const QString& name);
ScriptError dividedByZero(const QString& dividend);
ScriptError numberTooLarge();
ScriptError stackOverflow();
ScriptError privilegeViolation();
/// The error that a script raises with a number and no text of its own.
ScriptError numberedError(int number);

/// The errors that come from an application say which one: `System Events got an error: Can’t get login item "X".`
ScriptError cannotGetFrom(const ScriptApplication& application, const QString& specifier);
ScriptError invalidIndex(const ScriptApplication& application, const QString& specifier);
ScriptError cannotSet(const ScriptApplication& application, const QString& specifier, const Value& value);
ScriptError notUnderstood(const ScriptApplication& application, const QString& specifier, const QString& command);
ScriptError cannotMakeObject(const ScriptApplication& application, const QString& className);

/// The number of `error "text"`, where the script gives none.
constexpr int kUnnumberedError = -2700;

} // namespace macsim::applescript
