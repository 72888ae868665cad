#include "simulator/tools/Cp.h"

#include "simulator/MacPaths.h"
#include "simulator/tools/FileOperands.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr OptionRules kCpRules{u"HLPRSXacfilnprsvx", u"p",
                               u"usage: cp [-R [-H | -L | -P]] [-fi | -n] [-aclpSsvXx] source_file target_file\n"
                               u"       cp [-R [-H | -L | -P]] [-fi | -n] [-aclpSsvXx] source_file ... "
                               u"target_directory\n"};

int complain(ToolContext& context, const QString& text) {
    context.complain(u"cp: "_s + text + u'\n');
    return 1;
}

/// Anybody but root keeps the copy, whoever owned the original.
void keepAttributes(const Volume& volume, const QString& from, const QString& to) {
    volume.setModificationTime(to, volume.modificationTime(from));
    if (volume.actor() == Actor::Root) {
        volume.setOwner(to, volume.owner(volume.canonicalPath(from)));
    }
}

/// A file at the target gets the bytes and stays what it was; links are followed on both sides.
int copyFile(ToolContext& context, const QString& source, const QString& target, bool keepsAttributes) {
    const Volume& volume = context.volume;
    const QString from = context.absolutePath(source);
    const QString to = context.absolutePath(target);
    if (volume.isFolder(from)) {
        return complain(context, source + u" is a directory (not copied)."_s);
    }
    QByteArray bytes;
    try {
        bytes = volume.read(from);
    } catch (const FileError& error) {
        return complain(context, source + u": "_s + error.reason());
    }
    try {
        if (volume.exists(to) && volume.canonicalPath(to) == volume.canonicalPath(from)) {
            return complain(context, target + u" and "_s + source + u" are identical (not copied)."_s);
        }
        volume.write(to, bytes);
        if (keepsAttributes) {
            keepAttributes(volume, from, to);
        }
        return 0;
    } catch (const FileError& error) {
        return complain(context, target + u": "_s + error.reason());
    }
}

int copyAll(ToolContext& context, const ToolOptions& options, const FileOperands& operands) {
    const auto& [sources, target, isIntoFolder] = operands;
    if (!isIntoFolder && target.endsWith(u'/')) {
        const bool exists = context.volume.exists(context.absolutePath(target));
        return complain(context,
                        exists ? target + u" is not a directory"_s : u"directory "_s + target + u" does not exist"_s);
    }
    int status = 0;
    for (const QString& source : sources) {
        const QString to = isIntoFolder ? placeInFolder(source, withoutFinalSlashes(target)) : target;
        status |= copyFile(context, source, to, options.has(u'p'));
    }
    return status;
}

} // namespace

int runCp(ToolContext& context) {
    return runOnFiles(context, kCpRules, copyAll);
}

} // namespace macsim
