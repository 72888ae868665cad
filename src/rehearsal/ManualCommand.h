#pragma once

#include "rehearsal/Arguments.h"

namespace quorvane {

/// Prints what becomes of a Markdown file in the manual's converter. No Mac is needed for it; the path is the host's.
/// @return the exit status. Throws UnusableInput for a file that can't be read or isn't UTF-8.
int printManual(const Arguments& arguments);

} // namespace quorvane
