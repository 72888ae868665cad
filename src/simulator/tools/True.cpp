#include "simulator/tools/True.h"

#include "simulator/Tool.h"

namespace macsim {

int runTrue(ToolContext&) {
    return 0;
}

int runFalse(ToolContext&) {
    return 1;
}

} // namespace macsim
