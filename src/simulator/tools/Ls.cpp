#include "simulator/tools/Ls.h"

#include "simulator/tools/ToolOptions.h"

#include <algorithm>
#include <utility>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr OptionRules kLsRules{u"%,1@ABCD:FGHILOPRSTUWXabcdefghiklmnopqrstuvwxy", u"1adl",
                               u"usage: ls [-@ABCFGHILOPRSTUWXabcdefghiklmnopqrstuvwxy1%,] [--color=when] "
                               u"[-D format] [file ...]\n",
                               1};
constexpr QStringView kDate = u"Jan  1  2024";
constexpr qint64 kBlockSize = 512;

struct Listing {
    ToolContext& context;
    bool all;
    bool longForm;
    int status = 0;

    void complain(const QString& path, const QString& reason) {
        context.complain(u"ls: "_s + path + u": "_s + reason + u'\n');
        status = 1;
    }
    QString line(const QString& shown, const QString& path) const;
    void printFolder(const QString& path);
};

QString modes(Volume::Kind kind) {
    switch (kind) {
    case Volume::Kind::Folder:
        return u"drwxr-xr-x"_s;
    case Volume::Kind::Link:
        return u"lrwxr-xr-x"_s;
    case Volume::Kind::Tool:
        return u"-rwxr-xr-x"_s;
    default:
        return u"-rw-r--r--"_s;
    }
}

QString ownerAndGroup(const ToolContext& context, const QString& path) {
    const QString home = context.mac.homeFolder(Actor::User);
    const bool isInHome = path == home || path.startsWith(home + u'/');
    const QString owner = context.volume.owner(path) == Actor::User ? context.mac.machine().userName : u"root"_s;
    return owner + (isInHome ? u"  staff"_s : u"  wheel"_s);
}

qint64 sizeOf(const ToolContext& context, const QString& path, Volume::Kind kind) {
    switch (kind) {
    case Volume::Kind::File:
        return context.volume.size(path);
    case Volume::Kind::Link:
        return context.volume.linkTarget(path).toUtf8().size();
    default:
        return 64; // an empty folder, and near enough for the others
    }
}

QString Listing::line(const QString& shown, const QString& path) const {
    if (!longForm) {
        return shown + u'\n';
    }
    const Volume::Kind kind = context.volume.kind(path);
    const QString target = kind == Volume::Kind::Link ? u" -> "_s + context.volume.linkTarget(path) : QString();
    return modes(kind) + u"  1 "_s + ownerAndGroup(context, path) + u"  "_s +
           QString::number(sizeOf(context, path, kind)).rightJustified(8) + u' ' + kDate.toString() + u' ' + shown +
           target + u'\n';
}

void Listing::printFolder(const QString& path) {
    const QString absolute = context.absolutePath(path);
    QStringList names = context.volume.list(absolute);
    if (all) {
        names = QStringList{u"."_s, u".."_s} + names;
    } else {
        names.erase(
            std::remove_if(names.begin(), names.end(), [](const QString& name) { return name.startsWith(u'.'); }),
            names.end());
    }
    QString lines;
    qint64 blocks = 0;
    for (const QString& name : std::as_const(names)) {
        const QString entry = absolute + u'/' + name;
        lines += line(name, entry);
        blocks += longForm && context.volume.kind(entry) == Volume::Kind::File
                      ? (context.volume.size(entry) + kBlockSize - 1) / kBlockSize
                      : 0;
    }
    context.print(longForm ? u"total "_s + QString::number(blocks) + u'\n' + lines : lines);
}

/// Splits the operands as ls does: what is missing is told of first, then come the files, then the folders.
struct Operands {
    QStringList files;
    QStringList folders;
};

/// A link that is named is followed, except with -l.
Operands sortOperands(Listing& listing, QStringList paths, bool foldersAsFiles) {
    Operands sorted;
    paths.sort();
    for (const QString& path : std::as_const(paths)) {
        const QString absolute = listing.context.absolutePath(path);
        const Volume::Kind kind = listing.context.volume.kind(absolute);
        const bool isLinkItself = kind == Volume::Kind::Link && listing.longForm && !path.endsWith(u'/');
        if (path.isEmpty() || kind == Volume::Kind::Missing) {
            listing.complain(path, u"No such file or directory"_s);
        } else if (!foldersAsFiles && !isLinkItself && listing.context.volume.isFolder(absolute)) {
            sorted.folders.append(path);
        } else {
            sorted.files.append(path);
        }
    }
    return sorted;
}

void printFolders(Listing& listing, const Operands& operands, bool withHeadings) {
    bool first = operands.files.isEmpty();
    for (const QString& path : operands.folders) {
        if (withHeadings) {
            listing.context.print((first ? u""_s : u"\n"_s) + path + u":\n"_s);
        }
        first = false;
        try {
            listing.printFolder(path);
        } catch (const FileError& error) {
            listing.complain(path, error.reason());
        }
    }
}

} // namespace

int runLs(ToolContext& context) {
    const ToolOptions options = parseOptions(context.arguments, kLsRules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, kLsRules)) {
        return *refused;
    }
    Listing listing{context, options.has(u'a'), options.has(u'l')};
    const QStringList paths = options.operands.isEmpty() ? QStringList{u"."_s} : options.operands;
    const Operands operands = sortOperands(listing, paths, options.has(u'd'));
    for (const QString& path : operands.files) {
        context.print(listing.line(path, context.absolutePath(path)));
    }
    printFolders(listing, operands, paths.size() > 1);
    return listing.status;
}

} // namespace macsim
