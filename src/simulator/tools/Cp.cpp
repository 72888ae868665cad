#include "simulator/tools/Cp.h"

#include "simulator/tools/ToolOptions.h"

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

QString withoutFinalSlashes(QString path) {
    while (path.size() > 1 && path.endsWith(u'/')) {
        path.chop(1);
    }
    return path;
}

QString placeInFolder(const QString& source, const QString& folder) {
    const QString path = withoutFinalSlashes(source);
    return withoutFinalSlashes(folder) + (folder == u"/"_s ? u""_s : u"/"_s) + path.mid(path.lastIndexOf(u'/') + 1);
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

} // namespace

int runCp(ToolContext& context) {
    const ToolOptions options = parseOptions(context.arguments, kCpRules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, kCpRules)) {
        return *refused;
    }
    QStringList sources = options.operands;
    if (sources.size() < 2) {
        return refuseWithUsage(context, kCpRules);
    }
    const QString target = sources.takeLast();
    const QString place = context.absolutePath(target);
    const bool isIntoFolder = context.volume.isFolder(place);
    if (!isIntoFolder && sources.size() > 1) {
        return refuseWithUsage(context, kCpRules);
    }
    if (!isIntoFolder && target.endsWith(u'/')) {
        return complain(context, context.volume.exists(place) ? target + u" is not a directory"_s
                                                              : u"directory "_s + target + u" does not exist"_s);
    }
    int status = 0;
    for (const QString& source : sources) {
        const QString to = isIntoFolder ? placeInFolder(source, target) : target;
        status |= copyFile(context, source, to, options.has(u'p'));
    }
    return status;
}

} // namespace macsim
