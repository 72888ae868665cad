#pragma once

namespace macsim {

struct ToolContext;

/// mkdir [-p] [-m MODE] FOLDER…. The mode is accepted; the volume keeps none.
int runMkdir(ToolContext& context);

} // namespace macsim
