#pragma once

namespace macsim {

struct ToolContext;

/// ls [-1adl] [FILE…], one name per line. The volume keeps neither modes nor times: -l shows the usual modes,
/// the owner that the place has, and one fixed date.
int runLs(ToolContext& context);

} // namespace macsim
