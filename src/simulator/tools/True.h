#pragma once

namespace macsim {

struct ToolContext;

/// true: status 0, whatever its arguments.
int runTrue(ToolContext& context);

/// false: status 1, whatever its arguments.
int runFalse(ToolContext& context);

} // namespace macsim
