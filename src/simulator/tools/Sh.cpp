#include "simulator/tools/Sh.h"

#include "simulator/shell/Shell.h"

namespace macsim {

using namespace Qt::StringLiterals;

int runSh(ToolContext& context) {
    if (context.arguments.size() != 3 || context.arguments[1] != u"-c"_s) {
        context.complain(u"sh: only `sh -c LINE` is available\n"_s);
        return 2;
    }
    return runShellLine(context.arguments[2], context);
}

} // namespace macsim
