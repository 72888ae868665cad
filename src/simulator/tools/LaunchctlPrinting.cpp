#include "simulator/tools/LaunchctlPrinting.h"

#include "simulator/BackgroundTasks.h"
#include "simulator/Tool.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

// Overrides are words from here on (they were "true" for disabled before), and login items are listed behind them.
constexpr int kVentura = 13;
constexpr int kTahoe = 26; // a missing service is a bad request from here on

int majorVersion(const ToolContext& context) {
    return context.mac.machine().systemVersion.section(u'.', 0, 0).toInt();
}

QString overrideLine(const ToolContext& context, const QString& label, bool disabled) {
    const bool inWords = majorVersion(context) >= kVentura;
    const QString value = disabled ? (inWords ? u"disabled"_s : u"true"_s) : (inWords ? u"enabled"_s : u"false"_s);
    return u"\t\t\""_s + label + u"\" => "_s + value + u'\n';
}

QString overridesBlock(const ToolContext& context, const LaunchdDomain& domain) {
    QString lines = u"\tdisabled services = {\n"_s;
    const auto overrides = LaunchdState(context.mac).overrides(domain);
    for (const auto& [label, disabled] : overrides) {
        lines += overrideLine(context, label, disabled);
    }
    return lines + u"\t}\n"_s;
}

/// Which login item belongs to which application: no override, though "true" is what the older systems write for one.
/// The block stands for every domain; what its lines look like is not established.
QString associationsBlock(const ToolContext& context, const LaunchdDomain& domain) {
    QString lines = u"\tlogin item associations = {\n"_s;
    const std::vector<BackgroundTask> tasks = backgroundTasks(context.mac.state());
    for (const BackgroundTask& task : tasks) {
        const bool isListed = task.type == u"login item"_s && !task.parent.isEmpty() &&
                              domain.kind != LaunchdDomain::Kind::System && task.userId == domain.userId;
        if (isListed) {
            lines += u"\t\t\""_s + withoutTypeNumber(task.identifier) + u"\" => {\n\t\t\t\""_s +
                     withoutTypeNumber(task.parent) + u"\" => true\n\t\t}\n"_s;
        }
    }
    return lines + u"\t}\n"_s;
}

QString overridesAndAssociations(const ToolContext& context, const LaunchdDomain& domain) {
    const QString associations = majorVersion(context) >= kVentura ? associationsBlock(context, domain) : QString();
    return overridesBlock(context, domain) + associations;
}

int complainOfMissingService(ToolContext& context, const QString& label, const QString& domainWords) {
    if (majorVersion(context) >= kTahoe) {
        context.complain(u"Bad request.\n"_s);
    }
    context.complain(u"Could not find service \""_s + label + u"\" in domain for "_s + domainWords + u'\n');
    return static_cast<int>(LaunchdError::NoService);
}

QString exitCodeText(const LaunchdJob& job) {
    return job.lastExitStatus ? QString::number(*job.lastExitStatus) : u"(never exited)"_s;
}

QString programOf(const ToolContext& context, const LaunchdJob& job) {
    const auto plist = job.path.isEmpty() ? std::nullopt : readLaunchPlist(context.mac.volume(Actor::Root), job.path);
    return plist ? plist->program : QString();
}

void printService(ToolContext& context, const LaunchdDomain& domain, const LaunchdJob& job) {
    const QString program = programOf(context, job);
    const QString path = job.path.isEmpty() ? u"(submitted by launchd)"_s : job.path;
    const bool runs = job.pid > 0;
    context.print(domain.key() + u'/' + job.label + u" = {\n"_s);
    context.print(u"\tactive count = "_s + (runs ? u"1\n"_s : u"0\n"_s));
    context.print(u"\tpath = "_s + path + u'\n');
    context.print(u"\tstate = "_s + (runs ? u"running\n\n"_s : u"not running\n\n"_s));
    if (!program.isEmpty()) {
        context.print(u"\tprogram = "_s + program + u'\n');
    }
    context.print(u"\tdomain = "_s + domain.key() + u'\n');
    if (runs) {
        context.print(u"\tpid = "_s + QString::number(job.pid) + u'\n');
    }
    context.print(u"\tlast exit code = "_s + exitCodeText(job) + u"\n}\n"_s);
}

void printDomain(ToolContext& context, const LaunchdDomain& domain) {
    context.print(domain.key() + u" = {\n\tservices = {\n"_s);
    const auto jobs = LaunchdState(context.mac).jobs(domain);
    for (const LaunchdJob& job : jobs) {
        context.print(u"\t\t"_s + QString::number(job.pid).rightJustified(8) + u"      - \t"_s + job.label + u'\n');
    }
    context.print(u"\t}\n\n"_s + overridesAndAssociations(context, domain) + u"}\n"_s);
}

/// The domain that the subcommands from before the targets mean: root's is the system, a user's their session.
LaunchdDomain callersDomain(const ToolContext& context) {
    return context.isRoot() ? LaunchdDomain{LaunchdDomain::Kind::System, 0}
                            : LaunchdDomain{LaunchdDomain::Kind::Gui, context.mac.machine().userId};
}

void listAll(ToolContext& context) {
    context.print(u"PID\tStatus\tLabel\n"_s);
    const auto jobs = LaunchdState(context.mac).jobs(callersDomain(context));
    for (const LaunchdJob& job : jobs) {
        const QString pid = job.pid > 0 ? QString::number(job.pid) : u"-"_s;
        context.print(pid + u'\t' + QString::number(job.lastExitStatus.value_or(0)) + u'\t' + job.label + u'\n');
    }
}

void listOne(ToolContext& context, const LaunchdJob& job) {
    const QString program = programOf(context, job);
    context.print(u"{\n\t\"Label\" = \""_s + job.label + u"\";\n"_s);
    context.print(u"\t\"LastExitStatus\" = "_s + QString::number(job.lastExitStatus.value_or(0)) + u";\n"_s);
    if (job.pid > 0) {
        context.print(u"\t\"PID\" = "_s + QString::number(job.pid) + u";\n"_s);
    }
    if (!program.isEmpty()) {
        context.print(u"\t\"Program\" = \""_s + program + u"\";\n"_s);
    }
    context.print(u"};\n"_s);
}

} // namespace

std::optional<int> printLaunchdTarget(ToolContext& context, const QStringList& words) {
    const auto target = parseLaunchdTarget(words.value(0));
    if (!target) {
        return std::nullopt;
    }
    const LaunchdState launchd(context.mac);
    if (!launchd.exists(target->domain)) {
        return complainOfMissingDomain(context, target->domain);
    }
    if (target->label.isEmpty()) {
        printDomain(context, target->domain);
        return 0;
    }
    const auto job = launchd.job(target->domain, target->label);
    if (!job) {
        return complainOfMissingService(context, target->label, target->domain.words());
    }
    printService(context, target->domain, *job);
    return 0;
}

std::optional<int> printLaunchdOverrides(ToolContext& context, const QStringList& words) {
    const auto target = parseLaunchdTarget(words.value(0));
    if (!target || !target->label.isEmpty()) {
        return std::nullopt;
    }
    if (!LaunchdState(context.mac).exists(target->domain)) {
        return complainOfMissingDomain(context, target->domain);
    }
    context.print(overridesAndAssociations(context, target->domain));
    return 0;
}

std::optional<int> listLaunchdJobs(ToolContext& context, const QStringList& words) {
    if (words.isEmpty()) {
        listAll(context);
        return 0;
    }
    const auto job = LaunchdState(context.mac).job(callersDomain(context), words.first());
    if (!job) {
        const QString domain = context.isRoot() ? u"system"_s : u"port"_s;
        return complainOfMissingService(context, words.first(), domain);
    }
    listOne(context, *job);
    return 0;
}

int complainOfMissingDomain(ToolContext& context, const LaunchdDomain& domain) {
    context.complain(u"Could not find domain for "_s + domain.words() + u'\n');
    return static_cast<int>(LaunchdError::NoDomain);
}

} // namespace macsim
