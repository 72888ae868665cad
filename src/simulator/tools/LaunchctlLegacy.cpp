#include "simulator/tools/LaunchctlLegacy.h"

#include "simulator/MacPaths.h"
#include "simulator/StartupServices.h"
#include "simulator/tools/LaunchctlArguments.h"
#include "simulator/tools/ToolOptions.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

/// The words of one subcommand's messages.
struct LegacyVerb {
    QString failure;        ///< "Load failed"
    QString recommendation; ///< the subcommand that messages recommend
};

LegacyVerb loadVerb() {
    return {u"Load failed"_s, u"bootstrap"_s};
}
LegacyVerb unloadVerb() {
    return {u"Unload failed"_s, u"bootout"_s};
}

LaunchdDomain domainOfCaller(const ToolContext& context) {
    return context.isRoot() ? LaunchdDomain{LaunchdDomain::Kind::System, 0}
                            : LaunchdDomain{LaunchdDomain::Kind::Gui, context.mac.machine().userId};
}

/// Root loads daemons and a user loads agents; the other kind is refused with a warning.
bool isOfTheOtherKind(const ToolContext& context, const QString& path) {
    return path.contains(context.isRoot() ? u"/LaunchAgents/"_s : u"/LaunchDaemons/"_s);
}

void warnOfTheOtherKind(ToolContext& context, const LegacyVerb& verb) {
    const bool isRoot = context.isRoot();
    context.complain(u"Warning: Expecting a "_s + (isRoot ? u"LaunchDaemons"_s : u"LaunchAgents"_s) +
                     u" path since the command was ran as "_s + (isRoot ? u"root"_s : u"user"_s) + u". Got "_s +
                     (isRoot ? u"LaunchAgents"_s : u"LaunchDaemons"_s) + u" instead.\n`launchctl "_s +
                     verb.recommendation + u"` is a recommended alternative.\n"_s);
}

void complain(ToolContext& context, const LegacyVerb& verb, LaunchdError error) {
    context.complain(verb.failure + u": "_s + QString::number(static_cast<int>(error)) + u": "_s +
                     launchdErrorText(error) + u'\n');
}

void complainOfFailure(ToolContext& context, const LegacyVerb& verb) {
    complain(context, verb, LaunchdError::InputOutput);
    context.complain(u"Try running `launchctl "_s + verb.recommendation + u"` as root for richer errors.\n"_s);
}

void complainOfProtection(ToolContext& context, const LegacyVerb& verb, const QString& path) {
    context.complain(path + u": "_s + launchdErrorText(LaunchdError::IntegrityProtected) + u'\n');
    complain(context, verb, LaunchdError::IntegrityProtected);
}

/// A kept override of one of Apple's jobs stands under the job's label. Loading for good clears it by the file's name, which is
/// another one at times.
bool clearsOverride(const LaunchdState& launchd, const LaunchPlist& plist) {
    const bool isKept = launchd.isProtectedPath(plist.path) && launchd.keepsAppleOverrides();
    return !isKept || lastPathComponent(plist.path) == plist.label + u".plist"_s;
}

/// Loads a job if nothing stands against it. The override is written even when the load then fails.
bool load(const ToolContext& context, const QString& path, bool enables) {
    const LaunchdState launchd(context.mac);
    const LaunchdDomain domain = domainOfCaller(context);
    const auto plist = readLaunchPlist(context.volume, path);
    if (!plist) {
        return false;
    }
    if (enables && clearsOverride(launchd, *plist)) {
        launchd.setDisabled(domain, plist->label, false);
    }
    const bool mayLoad =
        launchd.exists(domain) && !isOfTheOtherKind(context, path) && !isDisallowed(context.mac, *plist);
    return mayLoad && !launchd.isDisabled(domain, *plist) && launchd.load(domain, *plist);
}

bool unload(const ToolContext& context, const QString& path, bool disables) {
    const LaunchdState launchd(context.mac);
    const LaunchdDomain domain = domainOfCaller(context);
    const auto plist = readLaunchPlist(context.volume, path);
    if (!plist) {
        return false;
    }
    if (disables) {
        launchd.setDisabled(domain, plist->label, true);
    }
    return !isOfTheOtherKind(context, path) && launchd.unload(domain, plist->label);
}

void loadOne(ToolContext& context, const QString& typed, bool enables) {
    const QString path = context.absolutePath(typed);
    if (isOfTheOtherKind(context, path)) {
        warnOfTheOtherKind(context, loadVerb());
    }
    if (!load(context, path, enables)) {
        complainOfFailure(context, loadVerb());
    }
}

void unloadOne(ToolContext& context, const QString& typed, bool disables) {
    const QString path = context.absolutePath(typed);
    if (isOfTheOtherKind(context, path)) {
        warnOfTheOtherKind(context, unloadVerb());
    }
    const auto plist = readLaunchPlist(context.volume, path);
    const LaunchdState launchd(context.mac);
    if (plist && launchd.isProtectedPath(plist->path)) {
        if (disables && launchd.keepsAppleOverrides()) {
            launchd.setDisabled(domainOfCaller(context), plist->label, true);
        }
        complainOfProtection(context, unloadVerb(), path);
    } else if (!unload(context, path, disables)) {
        complainOfFailure(context, unloadVerb());
    }
}

std::optional<int> forEachPath(ToolContext& context, const QStringList& words,
                               void (*handle)(ToolContext&, const QString&, bool)) {
    const LegacyArguments arguments = parseLegacyArguments(words);
    if (!arguments.notSimulated.isEmpty()) {
        return notSimulated(context, arguments.notSimulated);
    }
    if (!arguments.isUsable) {
        return std::nullopt;
    }
    for (const QString& path : arguments.paths) {
        if (context.volume.isFolder(context.absolutePath(path))) {
            return notSimulated(context, u"a folder of property lists"_s);
        }
        handle(context, path, arguments.changesOverride);
    }
    return 0;
}

} // namespace

std::optional<int> loadLaunchdJobs(ToolContext& context, const QStringList& words) {
    return forEachPath(context, words, loadOne);
}

std::optional<int> unloadLaunchdJobs(ToolContext& context, const QStringList& words) {
    return forEachPath(context, words, unloadOne);
}

} // namespace macsim
