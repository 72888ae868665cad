#pragma once

namespace macsim {

struct ToolContext;

/// open [-g] [-j] [-a APPLICATION | -b IDENTIFIER] [FILE | URL]…: an application that is found runs in the
/// process table from then on, once; files and addresses are only looked at. Silent in success.
int runOpen(ToolContext& context);

} // namespace macsim
