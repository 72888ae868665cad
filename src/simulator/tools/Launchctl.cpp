#include "simulator/tools/Launchctl.h"

#include "simulator/SessionEnvironment.h"
#include "simulator/StartupServices.h"
#include "simulator/tools/LaunchctlArguments.h"
#include "simulator/tools/LaunchctlLegacy.h"
#include "simulator/tools/LaunchctlPrinting.h"
#include "simulator/tools/ToolOptions.h"

#include <QHash>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr int kMisuseStatus = 64;
constexpr int kSequoia = 15; // a disabled service is named as such from here on; which system began is not established

using Subcommand = std::optional<int> (*)(ToolContext& context, const QStringList& words);

bool mayChange(const ToolContext& context, const LaunchdDomain& domain) {
    return context.isRoot() ||
           (domain.kind != LaunchdDomain::Kind::System && domain.userId == context.mac.machine().userId);
}

int complain(ToolContext& context, const QString& failure, LaunchdError error) {
    context.complain(failure + u": "_s + QString::number(static_cast<int>(error)) + u": "_s + launchdErrorText(error) +
                     u'\n');
    return static_cast<int>(error);
}

/// What stands against changing a domain's jobs, whatever the job.
LaunchdError obstacle(const ToolContext& context, const LaunchdDomain& domain) {
    if (!LaunchdState(context.mac).exists(domain)) {
        return LaunchdError::UnsupportedDomain;
    }
    return mayChange(context, domain) ? LaunchdError::None : LaunchdError::NotPermitted;
}

LaunchdError bootOutLabel(const ToolContext& context, const LaunchdDomain& domain, const QString& label) {
    const LaunchdState launchd(context.mac);
    if (!launchd.job(domain, label)) {
        return LaunchdError::NoSuchProcess;
    }
    if (launchd.isProtectedLabel(domain, label)) {
        return LaunchdError::IntegrityProtected;
    }
    return launchd.unload(domain, label) ? LaunchdError::None : LaunchdError::NoSuchProcess;
}

/// A word that isn't a property list fails like one whose job isn't loaded, a label behind a blank among
/// them.
LaunchdError bootOutPath(const ToolContext& context, const LaunchdDomain& domain, const QString& path) {
    const auto plist = readLaunchPlist(context.volume, context.absolutePath(path));
    const LaunchdError error = plist ? bootOutLabel(context, domain, plist->label) : LaunchdError::NoSuchProcess;
    return error == LaunchdError::NoSuchProcess ? LaunchdError::InputOutput : error;
}

LaunchdError refusalOfDisabled(const ToolContext& context) {
    const int version = context.mac.machine().systemVersion.section(u'.', 0, 0).toInt();
    return version >= kSequoia ? LaunchdError::Disabled : LaunchdError::InputOutput;
}

LaunchdError bootstrapPath(const ToolContext& context, const LaunchdDomain& domain, const QString& path) {
    const LaunchdState launchd(context.mac);
    const auto plist = readLaunchPlist(context.volume, context.absolutePath(path));
    if (plist && launchd.isDisabled(domain, *plist)) {
        return refusalOfDisabled(context);
    }
    const bool mayLoad = plist && !isDisallowed(context.mac, *plist);
    return mayLoad && launchd.load(domain, *plist) ? LaunchdError::None : LaunchdError::InputOutput;
}

using PathAction = LaunchdError (*)(const ToolContext&, const LaunchdDomain&, const QString&);

/// Does all paths, and tells of the last failure.
int doPaths(ToolContext& context, const LaunchdDomain& domain, const QStringList& paths, PathAction action,
            const QString& failure) {
    LaunchdError result = obstacle(context, domain);
    if (result == LaunchdError::None) {
        for (const QString& path : paths) {
            const LaunchdError error = action(context, domain, path);
            result = error == LaunchdError::None ? result : error;
        }
    }
    return result == LaunchdError::None ? 0 : complain(context, failure, result);
}

std::optional<int> bootOut(ToolContext& context, const QStringList& words) {
    const QString failure = u"Boot-out failed"_s;
    const auto target = parseLaunchdTarget(words.value(0));
    if (!target) {
        return std::nullopt;
    }
    if (target->label.isEmpty()) {
        return words.size() < 2 ? notSimulated(context, u"the end of a whole domain"_s)
                                : doPaths(context, target->domain, words.mid(1), bootOutPath, failure);
    }
    LaunchdError error = obstacle(context, target->domain);
    if (error == LaunchdError::None) {
        error = bootOutLabel(context, target->domain, target->label);
    }
    return error == LaunchdError::None ? 0 : complain(context, failure, error);
}

std::optional<int> bootstrap(ToolContext& context, const QStringList& words) {
    const auto target = parseLaunchdTarget(words.value(0));
    if (!target || !target->label.isEmpty()) {
        return std::nullopt;
    }
    return words.size() < 2 ? notSimulated(context, u"the start of a whole domain"_s)
                            : doPaths(context, target->domain, words.mid(1), bootstrapPath, u"Bootstrap failed"_s);
}

/// Silent, whether the label exists or not. For the system's own labels it may be without effect as well.
std::optional<int> setOverride(ToolContext& context, const QStringList& words, bool disabled) {
    const auto target = parseLaunchdTarget(words.value(0));
    if (!target || target->label.isEmpty()) {
        return std::nullopt;
    }
    if (!mayChange(context, target->domain)) {
        return complain(context, disabled ? u"Could not disable service"_s : u"Could not enable service"_s,
                        LaunchdError::NotPermitted);
    }
    const LaunchdState launchd(context.mac);
    if (launchd.keepsAppleOverrides() || !launchd.isProtectedLabel(target->domain, target->label)) {
        launchd.setDisabled(target->domain, target->label, disabled);
    }
    return 0;
}

std::optional<int> enable(ToolContext& context, const QStringList& words) {
    return setOverride(context, words, false);
}

std::optional<int> disable(ToolContext& context, const QStringList& words) {
    return setOverride(context, words, true);
}

/// Of root it would be every session's, which isn't simulated.
std::optional<int> setVariable(ToolContext& context, const QStringList& words) {
    if (words.size() != 2) {
        return std::nullopt;
    }
    if (context.isRoot()) {
        return notSimulated(context, u"the environment of all sessions"_s);
    }
    setSessionVariable(context.mac.state(), words[0], words[1]);
    return 0;
}

std::optional<int> unsetVariable(ToolContext& context, const QStringList& words) {
    if (words.size() != 1) {
        return std::nullopt;
    }
    if (context.isRoot()) {
        return notSimulated(context, u"the environment of all sessions"_s);
    }
    unsetSessionVariable(context.mac.state(), words[0]);
    return 0;
}

struct SubcommandRule {
    Subcommand run;
    QString usage;
    bool takesTarget;
};

const QHash<QString, SubcommandRule>& subcommands() {
    static const QHash<QString, SubcommandRule> kSubcommands{
        {u"bootstrap"_s, {bootstrap, u"<domain-target> [service-path, service-path2, ...]"_s, true}},
        {u"bootout"_s, {bootOut, u"<domain-target> [service-path1, service-path2, ...] | <service-target>"_s, true}},
        {u"enable"_s, {enable, u"<service-target>"_s, true}},
        {u"disable"_s, {disable, u"<service-target>"_s, true}},
        {u"print"_s, {printLaunchdTarget, u"<domain-target> | <service-target>"_s, true}},
        {u"print-disabled"_s, {printLaunchdOverrides, u"<domain-target>"_s, true}},
        {u"list"_s, {listLaunchdJobs, u"[service-name]"_s, false}},
        {u"load"_s, {loadLaunchdJobs, u"<service-path, service-path2, ...>"_s, false}},
        {u"unload"_s, {unloadLaunchdJobs, u"<service-path, service-path2, ...>"_s, false}},
        {u"setenv"_s, {setVariable, u"<key> <value>"_s, false}},
        {u"unsetenv"_s, {unsetVariable, u"<key>"_s, false}}};
    return kSubcommands;
}

bool isUnsimulatedSubcommand(const QString& name) {
    static const QStringList kNames{
        u"kickstart"_s,  u"kill"_s,     u"attach"_s,     u"debug"_s,          u"blame"_s,       u"print-cache"_s,
        u"plist"_s,      u"procinfo"_s, u"hostinfo"_s,   u"resolveport"_s,    u"limit"_s,       u"runstats"_s,
        u"examine"_s,    u"config"_s,   u"dumpstate"_s,  u"dumpjpcategory"_s, u"reboot"_s,      u"error"_s,
        u"submit"_s,     u"remove"_s,   u"start"_s,      u"stop"_s,           u"getenv"_s,      u"export"_s,
        u"bsexec"_s,     u"asuser"_s,   u"managerpid"_s, u"manageruid"_s,     u"managername"_s, u"variant"_s,
        u"version"_s,    u"help"_s,     u"bslist"_s,     u"bstree"_s,         u"uncache"_s,     u"umask"_s,
        u"dumplaunchd"_s};
    return kNames.contains(name);
}

int refuseWords(ToolContext& context, const QString& name, const SubcommandRule& rule, bool hasWords) {
    if (rule.takesTarget && hasWords) {
        context.complain(u"Unrecognized target specifier. <service-target> takes a form of "
                         u"<domain-target>/<service-id>.\nPlease refer to `man launchctl` for explanation of the "
                         u"<domain-target> specifiers.\n"_s);
    }
    context.complain(u"Usage: launchctl "_s + name + u' ' + rule.usage + u'\n');
    return kMisuseStatus;
}

} // namespace

int runLaunchctl(ToolContext& context) {
    const QString name = context.arguments.value(1);
    const QStringList words = context.arguments.mid(2);
    const auto rule = subcommands().constFind(name);
    if (rule != subcommands().constEnd()) {
        const std::optional<int> status = rule->run(context, words);
        return status ? *status : refuseWords(context, name, *rule, !words.isEmpty());
    }
    if (name.isEmpty() || isUnsimulatedSubcommand(name)) {
        return notSimulated(context, name.isEmpty() ? u"the list of subcommands"_s : name);
    }
    context.complain(u"Unrecognized subcommand: "_s + name +
                     u"\nUsage: launchctl <subcommand> ... | help [subcommand]\n"_s);
    return kMisuseStatus;
}

} // namespace macsim
