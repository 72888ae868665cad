#include "simulator/tools/Mv.h"

#include "simulator/tools/ToolOptions.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr OptionRules kMvRules{u"fhinv", u"fn",
                               u"usage: mv [-f | -i | -n] [-hv] source target\n"
                               u"       mv [-f | -i | -n] [-v] source ... directory\n"};

QString withoutFinalSlashes(QString path) {
    while (path.size() > 1 && path.endsWith(u'/')) {
        path.chop(1);
    }
    return path;
}

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

QString placeInFolder(const QString& source, const QString& folder) {
    const QString path = withoutFinalSlashes(source);
    return folder + (folder.endsWith(u'/') ? u""_s : u"/"_s) + path.mid(path.lastIndexOf(u'/') + 1);
}

/// True when the target is the source's own name in another case: then it is a new spelling and not a folder
/// to move into.
bool isRespelling(const ToolContext& context, const QString& source, const QString& target) {
    return source != target && source.compare(target, Qt::CaseInsensitive) == 0 &&
           !context.mac.machine().caseSensitiveVolume;
}

} // namespace

int runMv(ToolContext& context) {
    const ToolOptions options = parseOptions(context.arguments, kMvRules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, kMvRules)) {
        return *refused;
    }
    QStringList sources = options.operands;
    if (sources.size() < 2) {
        return refuseWithUsage(context, kMvRules);
    }
    const QString target = sources.takeLast();
    // The last of -f and -n counts.
    const bool keepExisting = !options.given.empty() && options.given.back().letter == u'n';
    const bool respells = sources.size() == 1 && isRespelling(context, sources.first(), target);
    if (respells || !context.volume.isFolder(context.absolutePath(target))) {
        return sources.size() > 1 ? refuseWithUsage(context, kMvRules)
                                  : moveOne(context, sources.first(), target, keepExisting && !respells);
    }
    int status = 0;
    for (const QString& source : sources) {
        status |= moveOne(context, source, placeInFolder(source, target), keepExisting);
    }
    return status;
}

} // namespace macsim
