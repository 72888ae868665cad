#pragma once

namespace macsim {

struct ToolContext;

/// mv [-f|-n] SOURCE TARGET, mv [-f|-n] SOURCE… FOLDER.
int runMv(ToolContext& context);

} // namespace macsim
