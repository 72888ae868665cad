#include "simulator/tools/Mkdir.h"

#include "simulator/tools/ToolOptions.h"

#include <cerrno>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr OptionRules kMkdirRules{u"m:pv", u"mp", u"usage: mkdir [-pv] [-m mode] directory_name ...\n"};

QString parentOf(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/', path.endsWith(u'/') ? -2 : -1);
    return slash < 0 ? u"."_s : slash == 0 ? u"/"_s : path.left(slash);
}

int complainAbout(ToolContext& context, const QString& path, const FileError& error) {
    context.complain(u"mkdir: "_s + path + u": "_s + error.reason() + u'\n');
    return 1;
}

/// A missing parent is named itself, every other failure by the folder that was to be made.
int createOne(ToolContext& context, const QString& path) {
    try {
        context.volume.createFolder(context.absolutePath(path));
        return 0;
    } catch (const FileError& error) {
        const bool parentFails = error.errorNumber() == ENOENT || error.errorNumber() == ENOTDIR;
        return complainAbout(context, parentFails && !path.isEmpty() ? parentOf(path) : path, error);
    }
}

/// Makes one level of a path, unless it is there.
void createLevel(ToolContext& context, const QString& path, bool isLast) {
    const QString absolute = context.absolutePath(path);
    if (context.volume.isFolder(absolute)) {
        return;
    }
    if (context.volume.exists(absolute)) {
        throw FileError(isLast ? EEXIST : ENOTDIR, absolute);
    }
    context.volume.createFolder(absolute);
}

int createWithParents(ToolContext& context, const QString& path) {
    for (qsizetype end = 0; end < path.size();) {
        const qsizetype slash = path.indexOf(u'/', end + 1);
        end = slash < 0 ? path.size() : slash;
        const QString level = path.left(end);
        try {
            createLevel(context, level, end >= path.size() - 1);
        } catch (const FileError& error) {
            return complainAbout(context, level, error);
        }
    }
    return 0;
}

} // namespace

int runMkdir(ToolContext& context) {
    const ToolOptions options = parseOptions(context.arguments, kMkdirRules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, kMkdirRules)) {
        return *refused;
    }
    if (options.operands.isEmpty()) {
        return refuseWithUsage(context, kMkdirRules);
    }
    int status = 0;
    for (const QString& path : options.operands) {
        const bool withParents = options.has(u'p') && !path.isEmpty();
        status |= withParents ? createWithParents(context, path) : createOne(context, path);
    }
    return status;
}

} // namespace macsim
