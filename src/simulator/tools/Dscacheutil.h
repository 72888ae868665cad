#pragma once

namespace macsim {

struct ToolContext;

/// dscacheutil -flushcache: silent, for anyone. What it flushes is not to be seen on this Mac.
int runDscacheutil(ToolContext& context);

} // namespace macsim
