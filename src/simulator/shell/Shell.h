#pragma once

#include "simulator/Tool.h"

#include <QString>

namespace macsim {

// The shell of the simulated Mac: /bin/sh of macOS, which is bash 3.2 as a POSIX shell, without its
// programming language. Lists, pipes, subshells, redirections, expansions and patterns work; what isn't
// implemented is a syntax error. It never starts a program of the host: a command is one of the Mac's tools,
// and files are opened only through the Mac's volume.
//
// A syntax error anywhere keeps the whole text from running (a real shell would run the lines before it).

/// Runs a whole shell text in the context (its actor, environment, working folder, input); output and error
/// are appended to the context's streams, and what no command has read stays in its input. The text changes
/// neither the context's environment nor its working folder.
/// @return the last exit status; 2 after a syntax error, with "sh: -c: line N: syntax error: …" on the error
/// stream
int runShellLine(const QString& text, ToolContext& context);

} // namespace macsim
