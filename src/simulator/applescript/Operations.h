#pragma once

#include "simulator/applescript/Operators.h"
#include "simulator/applescript/Value.h"

namespace macsim::applescript {

/// The value of an operator between two values; `and` and `or` are the evaluator's, which may skip their
/// right side. Throws ScriptError: -1700, -2701 (division by zero), -2702.
Value operate(Operator operation, Value left, const Value& right);

Value negated(const Value& value);

} // namespace macsim::applescript
