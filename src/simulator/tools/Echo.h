#pragma once

namespace macsim {

struct ToolContext;

/// echo [-n] [WORD…], as the file /bin/echo: no escapes but a final "\\c", which leaves out the line end as
/// -n does.
int runEcho(ToolContext& context);

} // namespace macsim
