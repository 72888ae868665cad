#include "simulator/tools/Touch.h"

#include "simulator/tools/ToolOptions.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr OptionRules kTouchRules{u"A:acd:fhmr:t:", u"c",
                                  u"usage: touch [-A [-][[hh]mm]SS] [-achm] [-r file] [-t [[CC]YY]MMDDhhmm[.SS]]\n"
                                  u"       [-d YYYY-MM-DDThh:mm:SS[.frac][tz]] file ...\n"};

int touchOne(ToolContext& context, const QString& path) {
    try {
        context.volume.touch(context.absolutePath(path));
        return 0;
    } catch (const FileError& error) {
        context.complain(u"touch: "_s + path + u": "_s + error.reason() + u'\n');
        return 1;
    }
}

} // namespace

int runTouch(ToolContext& context) {
    const ToolOptions options = parseOptions(context.arguments, kTouchRules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, kTouchRules)) {
        return *refused;
    }
    if (options.operands.isEmpty()) {
        return refuseWithUsage(context, kTouchRules);
    }
    int status = 0;
    for (const QString& path : options.operands) {
        const bool creates = !options.has(u'c') || context.volume.exists(context.absolutePath(path));
        status |= creates ? touchOne(context, path) : 0;
    }
    return status;
}

} // namespace macsim
