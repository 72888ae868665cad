#pragma once

namespace macsim {

struct ToolContext;

/// env [-i] [-u NAME] [NAME=VALUE…] [COMMAND [ARGUMENT…]]: 127 for a missing command, 126 for one that can't
/// be executed, else the status of the command.
int runEnv(ToolContext& context);

} // namespace macsim
