#pragma once

namespace macsim {

struct ToolContext;

/// touch [-c] FILE….
int runTouch(ToolContext& context);

} // namespace macsim
