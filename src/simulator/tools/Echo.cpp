#include "simulator/tools/Echo.h"

#include "simulator/Tool.h"

namespace macsim {

using namespace Qt::StringLiterals;

int runEcho(ToolContext& context) {
    QStringList words = context.arguments.mid(1);
    bool endsLine = true;
    if (!words.isEmpty() && words.first() == u"-n"_s) {
        words.removeFirst();
        endsLine = false;
    }
    if (!words.isEmpty() && words.last().endsWith(u"\\c"_s)) {
        words.last().chop(2);
        endsLine = false;
    }
    context.print(words.join(u' ') + (endsLine ? u"\n"_s : u""_s));
    return 0;
}

} // namespace macsim
