#pragma once

namespace macsim {

struct ToolContext;

/// killall [-SIGNAL] [-s] [-q] [-m] NAME… over the process table (ProcessTable.h). A user reaches their own
/// processes, root all. A job that launchd keeps alive runs again at once under a new number.
int runKillall(ToolContext& context);

} // namespace macsim
