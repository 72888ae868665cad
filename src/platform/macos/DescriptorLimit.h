#pragma once

namespace quorvane {

/// Lets this process have so many open files at once, or as many as the system allows it; never fewer than it may have now.
/// False when the system refuses.
bool raiseDescriptorLimit(unsigned wanted);

} // namespace quorvane
