#include "simulator/tools/Dscacheutil.h"

#include "simulator/tools/ToolOptions.h"

namespace macsim {

using namespace Qt::StringLiterals;

int runDscacheutil(ToolContext& context) {
    const QStringList words = context.arguments.mid(1);
    if (words == QStringList{u"-flushcache"_s}) {
        return 0;
    }
    return notSimulated(context, words.isEmpty() ? u"the list of options"_s : words.join(u' '));
}

} // namespace macsim
