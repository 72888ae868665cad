#pragma once

namespace macsim {

struct ToolContext;

/// rm [-f] [-r|-R] FILE…: never follows a link, goes on after a failure, status 1 when anything is left.
int runRm(ToolContext& context);

} // namespace macsim
