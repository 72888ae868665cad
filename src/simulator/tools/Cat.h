#pragma once

namespace macsim {

struct ToolContext;

/// cat [FILE…]; "-" and no operand are the standard input.
int runCat(ToolContext& context);

} // namespace macsim
