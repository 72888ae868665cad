#pragma once

namespace macsim {

struct ToolContext;

/// launchctl: bootstrap, bootout, enable, disable, print, print-disabled, list, load, unload, over the state
/// that LaunchdState.h describes; setenv and unsetenv, over that of SessionEnvironment.h. A user changes their own domains, root all of them; jobs of the sealed system
/// are kept from both while System Integrity Protection is on (subject "permissions").
int runLaunchctl(ToolContext& context);

} // namespace macsim
