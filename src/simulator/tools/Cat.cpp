#include "simulator/tools/Cat.h"

#include "simulator/tools/ToolOptions.h"

#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr OptionRules kCatRules{u"belnstuv", u"u", u"usage: cat [-belnstuv] [file ...]\n", 1};

int printFile(ToolContext& context, const QString& path) {
    if (path == u"-"_s) {
        context.output += std::exchange(context.input, {});
        return 0;
    }
    try {
        context.output += context.volume.read(context.absolutePath(path));
        return 0;
    } catch (const FileError& error) {
        context.complain(u"cat: "_s + path + u": "_s + error.reason() + u'\n');
        return 1;
    }
}

} // namespace

int runCat(ToolContext& context) {
    const ToolOptions options = parseOptions(context.arguments, kCatRules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, kCatRules)) {
        return *refused;
    }
    const QStringList paths = options.operands.isEmpty() ? QStringList{u"-"_s} : options.operands;
    int status = 0;
    for (const QString& path : paths) {
        status |= printFile(context, path);
    }
    return status;
}

} // namespace macsim
