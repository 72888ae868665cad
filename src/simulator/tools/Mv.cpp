#include "simulator/tools/Mv.h"

#include "simulator/tools/FileOperands.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr OptionRules kMvRules{u"fhinv", u"fn",
                               u"usage: mv [-f | -i | -n] [-hv] source target\n"
                               u"       mv [-f | -i | -n] [-v] source ... directory\n"};

int moveOne(ToolContext& context, const QString& from, const QString& to, bool keepExisting) {
    if (keepExisting && context.volume.exists(context.absolutePath(to))) {
        return 0;
    }
    try {
        context.volume.move(context.absolutePath(from), context.absolutePath(to));
        return 0;
    } catch (const FileError& error) {
        context.complain(u"mv: rename "_s + from + u" to "_s + to + u": "_s + error.reason() + u'\n');
        return 1;
    }
}

/// True when the target is the source's own name in another case: then it is a new spelling and not a folder
/// to move into.
bool isRespelling(const ToolContext& context, const QString& source, const QString& target) {
    return source != target && source.compare(target, Qt::CaseInsensitive) == 0 &&
           !context.mac.machine().caseSensitiveVolume;
}

int moveAll(ToolContext& context, const ToolOptions& options, const FileOperands& operands) {
    const auto& [sources, target, isIntoFolder] = operands;
    // The last of -f and -n counts.
    const bool keepExisting = !options.given.empty() && options.given.back().letter == u'n';
    const bool respells = sources.size() == 1 && isRespelling(context, sources.first(), target);
    if (respells || !isIntoFolder) {
        return moveOne(context, sources.first(), target, keepExisting && !respells);
    }
    int status = 0;
    for (const QString& source : sources) {
        status |= moveOne(context, source, placeInFolder(source, target), keepExisting);
    }
    return status;
}

} // namespace

int runMv(ToolContext& context) {
    return runOnFiles(context, kMvRules, moveAll);
}

} // namespace macsim
