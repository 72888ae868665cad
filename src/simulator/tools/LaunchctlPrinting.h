#pragma once

#include "simulator/tools/LaunchctlArguments.h"

#include <QStringList>

namespace macsim {

struct ToolContext;

/// The subcommands of launchctl that only look: "print", "print-disabled", "list". Anyone may read every domain.
/// @param words  what stands behind the subcommand
/// @return the exit status; none for words that can't be read
std::optional<int> printLaunchdTarget(ToolContext& context, const QStringList& words);
std::optional<int> printLaunchdOverrides(ToolContext& context, const QStringList& words);
std::optional<int> listLaunchdJobs(ToolContext& context, const QStringList& words);

/// Tells that a domain isn't there; the exit status goes with it.
int complainOfMissingDomain(ToolContext& context, const LaunchdDomain& domain);

} // namespace macsim
