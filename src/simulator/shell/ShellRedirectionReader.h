#pragma once

#include "simulator/shell/ShellCursor.h"
#include "simulator/shell/ShellSyntax.h"

namespace macsim {

/// True where a redirection starts: "<", ">", or a descriptor's number right before one of them.
bool isAtShellRedirection(ShellCursor cursor);

/// Reads a redirection up to its file, which the caller reads: "2>", ">>", or the whole of "2>&1".
/// Throws ShellSyntaxError for the operators that this shell lacks.
ShellRedirection readShellRedirectionOperator(ShellCursor& cursor);

} // namespace macsim
