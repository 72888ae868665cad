#pragma once

namespace macsim {

struct ToolContext;

/// cp [-p] SOURCE TARGET, cp [-p] SOURCE… FOLDER: files only. Goes on after a failure.
int runCp(ToolContext& context);

} // namespace macsim
