#pragma once

#include <QStringList>

#include <optional>

namespace macsim {

struct ToolContext;

/// "load" and "unload", the subcommands from before the targets. Their failures are texts on the error stream
/// with exit status 0. They act in the system as root and in the user's session otherwise.
/// @param words  what stands behind the subcommand
/// @return the exit status; none for words that can't be read
std::optional<int> loadLaunchdJobs(ToolContext& context, const QStringList& words);
std::optional<int> unloadLaunchdJobs(ToolContext& context, const QStringList& words);

} // namespace macsim
