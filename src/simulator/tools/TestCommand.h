#pragma once

namespace macsim {

struct ToolContext;

/// test EXPRESSION and [ EXPRESSION ]: 0 true, 1 false, 2 for an expression that can't be read.
int runTestCommand(ToolContext& context);

} // namespace macsim
