#include "simulator/tools/Ditto.h"

#include "simulator/MacPaths.h"
#include "simulator/tools/FileOperands.h"

#include <cerrno>
#include <vector>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// Everything in a folder by its path relative to it, folders before what they hold. Taken before anything is copied, so
/// that a target inside the source comes to an end.
QStringList contentsOf(const Volume& volume, const QString& folder) {
    QStringList found;
    std::vector<QString> waiting{QString()};
    while (!waiting.empty()) {
        const QString relative = waiting.back();
        waiting.pop_back();
        const QStringList names = volume.list(relative.isEmpty() ? folder : pathInFolder(folder, relative));
        for (const QString& name : names) {
            const QString path = relative.isEmpty() ? name : pathInFolder(relative, name);
            found.append(path);
            if (volume.kind(pathInFolder(folder, path)) == Volume::Kind::Folder) {
                waiting.push_back(path);
            }
        }
    }
    return found;
}

/// Root's copy belongs to the owner of the original, anybody else's to who makes it.
void keepOwner(const Volume& volume, const QString& from, const QString& to) {
    if (volume.actor() == Actor::Root) {
        volume.setOwner(to, volume.owner(from));
    }
}

/// A file replaces what stands at its place and doesn't write through a link there.
void copyFile(const Volume& volume, const QString& from, const QString& to) {
    const QByteArray bytes = volume.read(from);
    if (volume.kind(to) == Volume::Kind::Link) {
        volume.remove(to);
    }
    volume.write(to, bytes);
    keepOwner(volume, from, to);
}

void copyLink(const Volume& volume, const QString& from, const QString& to) {
    const QString target = volume.linkTarget(from);
    if (volume.kind(to) != Volume::Kind::Missing) {
        volume.remove(to);
    }
    volume.createLink(to, target);
}

void copyEntry(const Volume& volume, const QString& from, const QString& to) {
    switch (volume.kind(from)) {
    case Volume::Kind::Folder:
        volume.createFolders(to);
        keepOwner(volume, from, to);
        break;
    case Volume::Kind::Link:
        copyLink(volume, from, to);
        break;
    case Volume::Kind::File:
    case Volume::Kind::Tool:
    case Volume::Kind::Missing:
        copyFile(volume, from, to);
        break;
    }
}

int complain(ToolContext& context, const QString& path, const FileError& error) {
    context.complain(u"ditto: "_s + path + u": "_s + error.reason() + u'\n');
    return 1;
}

/// What can't be copied is told of, and the rest is copied nevertheless; whether a Mac goes on as well is not
/// established.
int mergeFolder(ToolContext& context, const QString& from, const QString& to) {
    int status = 0;
    const QStringList contents = contentsOf(context.volume, from);
    context.volume.createFolders(to);
    keepOwner(context.volume, from, to);
    for (const QString& path : contents) {
        try {
            copyEntry(context.volume, pathInFolder(from, path), pathInFolder(to, path));
        } catch (const FileError& error) {
            status = complain(context, pathInFolder(to, path), error);
        }
    }
    return status;
}

int copyInto(ToolContext& context, const QString& from, const QString& to) {
    const bool intoFolder = context.volume.isFolder(to);
    const QString target = intoFolder ? placeInFolder(from, to) : to;
    context.volume.createFolders(parentFolder(target));
    copyFile(context.volume, from, target);
    return 0;
}

int copy(ToolContext& context, const QString& source, const QString& target) {
    const QString from = context.absolutePath(source);
    if (!context.volume.exists(from)) {
        context.complain(u"ditto: can't get real path for source '"_s + source + u"'\n"_s);
        return 1;
    }
    const QString to = context.absolutePath(target);
    try {
        const QString real = context.volume.canonicalPath(from);
        return context.volume.isFolder(real) ? mergeFolder(context, real, to) : copyInto(context, real, to);
    } catch (const FileError& error) {
        return complain(context, error.path(), error);
    }
}

} // namespace

int runDitto(ToolContext& context) {
    const QStringList words = context.arguments.mid(1);
    for (const QString& word : words) {
        if (word.startsWith(u'-')) {
            return notSimulated(context, word);
        }
    }
    if (words.size() > 2) {
        return notSimulated(context, u"several sources"_s);
    }
    if (words.size() < 2) {
        context.complain(u"Usage: ditto [ <options> ] src [ ... src ] dst\n"_s);
        return 1;
    }
    return copy(context, words[0], words[1]);
}

} // namespace macsim
