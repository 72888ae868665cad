#include "simulator/tools/Rm.h"

#include "simulator/MacPaths.h"
#include "simulator/tools/ToolOptions.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr OptionRules kRmRules{u"dfiIPRrvWx", u"fRr",
                               u"usage: rm [-f | -i] [-dIPRrvWx] file ...\n"
                               u"       unlink [--] file\n"};

struct Removal {
    ToolContext& context;
    bool force;
    bool recursive;
    int status = 0;

    void complain(const QString& text) {
        context.complain(u"rm: "_s + text + u'\n');
        status = 1;
    }
    void removeOne(const QString& path);
    void removeTree(const QString& path);
    void removeContents(const QString& path);
};

void Removal::removeOne(const QString& path) {
    try {
        context.volume.remove(context.absolutePath(path));
    } catch (const FileError& error) {
        complain(path + u": "_s + error.reason());
    }
}

void Removal::removeContents(const QString& path) {
    try {
        const QStringList names = context.volume.list(context.absolutePath(path));
        for (const QString& name : names) {
            removeTree(path + u'/' + name);
        }
    } catch (const FileError& error) {
        complain(path + u": "_s + error.reason());
    }
}

/// A link is removed itself: kind() doesn't follow it, so what it leads to is never entered.
void Removal::removeTree(const QString& path) {
    if (context.volume.kind(context.absolutePath(path)) == Volume::Kind::Folder) {
        removeContents(path);
    }
    removeOne(path);
}

void removeOperand(Removal& removal, const QString& operand) {
    const QString path = withoutFinalSlashes(operand);
    const QString lastName = lastPathComponent(path);
    const Volume::Kind kind = removal.context.volume.kind(removal.context.absolutePath(path));
    if (path == u"/"_s) {
        removal.complain(u"\"/\" may not be removed"_s);
    } else if (lastName == u"."_s || lastName == u".."_s) {
        removal.complain(u"\".\" and \"..\" may not be removed"_s);
    } else if (path.isEmpty() || kind == Volume::Kind::Missing) {
        if (!removal.force) {
            removal.complain(operand + u": No such file or directory"_s);
        }
    } else if (kind == Volume::Kind::Link && path != operand) {
        removal.complain(operand + u": Not a directory"_s);
    } else if (kind == Volume::Kind::Folder && !removal.recursive) {
        removal.complain(operand + u": is a directory"_s);
    } else {
        removal.removeTree(path);
    }
}

} // namespace

int runRm(ToolContext& context) {
    const ToolOptions options = parseOptions(context.arguments, kRmRules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, kRmRules)) {
        return *refused;
    }
    Removal removal{context, options.has(u'f'), options.has(u'r') || options.has(u'R')};
    if (options.operands.isEmpty() && !removal.force) {
        return refuseWithUsage(context, kRmRules);
    }
    for (const QString& operand : options.operands) {
        removeOperand(removal, operand);
    }
    return removal.status;
}

} // namespace macsim
