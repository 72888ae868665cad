#pragma once

namespace macsim {

struct ToolContext;

/// chown [-R] OWNER[:GROUP] PATH…: the owner is root, the user, or one of their numbers. A group has to be one that every
/// Mac has and changes nothing, as a file keeps none here. Only root gives anything away.
int runChown(ToolContext& context);

} // namespace macsim
