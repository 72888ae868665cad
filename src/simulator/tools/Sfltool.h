#pragma once

namespace macsim {

struct ToolContext;

/// sfltool dumpbtm, over the background tasks that BackgroundTasks.h describes. It is root's: there is no dialog here
/// that a user could answer, so they are refused as in a session without one. The journal tells that it was raised.
///
/// Subject "sfltool": {"hangs": true} makes it wait forever for a background task manager that doesn't answer.
int runSfltool(ToolContext& context);

} // namespace macsim
