#pragma once

namespace quorvane {

/// True for an open file whose content iCloud alone has: reading it would keep the thread in the kernel until the network has
/// brought it (Apple TN3150). Never elsewhere than on a Mac.
bool isDataless(int descriptor);

} // namespace quorvane
