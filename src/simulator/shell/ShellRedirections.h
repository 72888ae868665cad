#pragma once

#include "simulator/Tool.h"
#include "simulator/shell/ShellStreams.h"
#include "simulator/shell/ShellSyntax.h"

namespace macsim {

/// Opens a redirection and puts it in its place among the streams.
/// @param context  whose volume is opened and whose working folder relative paths start from
/// @param path     the target as it was expanded; not looked at for a Duplicate
/// Throws FileError with the path as typed.
void redirect(ShellStreams& streams, const ShellRedirection& redirection, const QString& path,
              const ToolContext& context);

} // namespace macsim
