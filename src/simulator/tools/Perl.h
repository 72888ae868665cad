#pragma once

namespace macsim {

struct ToolContext;

/// perl -e 'alarm shift; exec @ARGV' SECONDS COMMAND [ARGUMENT…]: the command, which a signal ends when the time is
/// over. The base system has no other tool for that. Every other script is not simulated.
///
/// A command that would run longer ends at once, without output and with a shell's status for the signal; one that
/// isn't there is passed over without a word and with status 0, as `exec` does it.
int runPerl(ToolContext& context);

} // namespace macsim
