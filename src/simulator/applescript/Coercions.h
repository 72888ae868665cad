#pragma once

#include "simulator/applescript/SyntaxTree.h"
#include "simulator/applescript/Value.h"

#include <optional>

namespace macsim::applescript {

/// A number on its way through arithmetic. An integer has no fraction, and may be beyond AppleScript's
/// integers.
struct Number {
    double value = 0;
    bool isInteger = false;
};

/// What a reference to an item refers to; any other value is itself.
const Value& contentsOf(const Value& value);

/// Nothing where the value has no text: a record, an application.
std::optional<QString> textOf(const Value& value);
std::optional<Number> numberOf(const Value& value);
std::optional<bool> booleanOf(const Value& value);
/// Every value is a list: of itself, or of its values where it is a record.
List listOf(const Value& value);

/// These throw ScriptError -1700 where the value can't be coerced.
QString toText(const Value& value);
Number toNumber(const Value& value);
int toInteger(const Value& value);
bool toBoolean(const Value& value);
Value coerced(const Value& value, TypeName type);

/// The integer or real that a number is in a script. Throws ScriptError -2702 when it is infinite.
Value valueOf(Number number);

} // namespace macsim::applescript
