#pragma once

#include "simulator/BackgroundTasks.h"
#include "simulator/Machine.h"

namespace macsim {

/// The oldest system that can dump its background tasks.
inline constexpr int kFirstDumpingSystem = 13;

/// Background tasks as `sfltool dumpbtm` prints them: a section for the machine, for root and for each user, and in it
/// the numbered records. The form is that of the machine's system version; the boundaries between the forms of 13, of
/// 14, of 15 to 25 and of 26 are what public dumps suggest. A record's URL is printed as it is kept, so whether it is
/// "file:///…", relative to the parent's bundle or a plain path is up to the record.
/// @param tasks  of types that backgroundTaskTypeBits knows
QString backgroundTaskDump(const std::vector<BackgroundTask>& tasks, const Machine& machine);

} // namespace macsim
