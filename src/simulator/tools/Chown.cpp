#include "simulator/tools/Chown.h"

#include "simulator/tools/ToolOptions.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr OptionRules kChownRules{u"fhnvxRHLP", u"R",
                                  u"usage: chown [-fhnvx] [-R [-H | -L | -P]] owner[:group] file ...\n"
                                  u"       chown [-fhnvx] [-R [-H | -L | -P]] :group file ...\n",
                                  1};

std::optional<Actor> ownerNamed(const Machine& machine, const QString& name) {
    if (name == u"root"_s || name == u"0"_s) {
        return Actor::Root;
    }
    const bool isUser = name == machine.userName || name == QString::number(machine.userId);
    return isUser ? std::optional(Actor::User) : std::nullopt;
}

bool isGroup(const QString& name) {
    static const QStringList groups{u""_s, u"wheel"_s, u"0"_s, u"staff"_s, u"20"_s, u"admin"_s, u"80"_s};
    return groups.contains(name);
}

struct OwnerChange {
    ToolContext& context;
    Actor owner;
    int status = 0;

    void complain(const QString& path, const QString& reason) {
        context.complain(u"chown: "_s + path + u": "_s + reason + u'\n');
        status = 1;
    }
    void changeOne(const QString& path);
    void changeTree(const QString& path);
};

void OwnerChange::changeOne(const QString& path) {
    try {
        context.volume.setOwner(context.absolutePath(path), owner);
    } catch (const FileError& error) {
        complain(path, error.reason());
    }
}

/// A link that lies in a tree would change itself: a volume keeps no owner for it.
void OwnerChange::changeTree(const QString& path) {
    const Volume::Kind kind = context.volume.kind(context.absolutePath(path));
    if (kind == Volume::Kind::Link) {
        return;
    }
    changeOne(path);
    if (kind == Volume::Kind::Folder) {
        const QStringList names = context.volume.list(context.absolutePath(path));
        for (const QString& name : names) {
            changeTree(path + (path.endsWith(u'/') ? u""_s : u"/"_s) + name);
        }
    }
}

} // namespace

int runChown(ToolContext& context) {
    const ToolOptions options = parseOptions(context.arguments, kChownRules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, kChownRules)) {
        return *refused;
    }
    if (options.operands.size() < 2) {
        return refuseWithUsage(context, kChownRules);
    }
    const QString name = options.operands.first().section(u':', 0, 0);
    const QString group = options.operands.first().section(u':', 1);
    const std::optional<Actor> owner = ownerNamed(context.mac.machine(), name);
    if (name.isEmpty()) {
        return notSimulated(context, u"a group alone"_s);
    }
    if (!owner || !isGroup(group)) {
        context.complain(owner ? u"chown: "_s + group + u": illegal group name\n"_s
                               : u"chown: "_s + name + u": illegal user name\n"_s);
        return 1;
    }
    OwnerChange change{context, *owner};
    const QStringList paths = options.operands.mid(1);
    for (const QString& path : paths) {
        options.has(u'R') ? change.changeTree(path) : change.changeOne(path);
    }
    return change.status;
}

} // namespace macsim
