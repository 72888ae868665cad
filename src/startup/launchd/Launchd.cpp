#include "startup/launchd/Launchd.h"

#include "core/Background.h"
#include "core/JsonErrors.h"
#include "core/Quoting.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "startup/launchd/LaunchPlist.h"
#include "startup/launchd/Launchctl.h"
#include "startup/launchd/LaunchdReadings.h"
#include "startup/launchd/LoadedJobs.h"
#include "startup/launchd/OverrideRecord.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kFailedRecord = u"  [ERROR] Could not read or write the record of what is switched off: "_s;
const QString kUnreadableRecord = u"  [ERROR] The record of what is switched off is damaged: "_s;

constexpr int kNoSuchService = 113; // of `launchctl print`

/// A job that isn't loaded is no failure.
const QString kWhateverItSays = u" 2>/dev/null || true"_s;

std::optional<DisabledServices> disabledServices(const CommandResult& printed) {
    return printed.status == 0 ? DisabledServices::parse(printed.standardOutput) : std::nullopt;
}

/// Those of which launchd says that they aren't disabled: what it doesn't tell of isn't among them.
QList<LaunchdService> knownNotDisabled(QList<LaunchdService> services, const LaunchdOverrides& overrides) {
    services.removeIf([&overrides](const LaunchdService& service) {
        const OverrideState state = overrides.stateOf(service);
        return state == OverrideState::Disabled || state == OverrideState::Unknown;
    });
    return services;
}

/// Whatever runs as the user can write into the record, and root acts on it.
QList<LaunchdService> overridable(QList<LaunchdService> services) {
    services.removeIf([](const LaunchdService& service) { return !mayOverride(service.label); });
    return services;
}

QList<LaunchdService> servicesOf(const QList<RecordedOverride>& recorded) {
    QList<LaunchdService> services;
    std::transform(recorded.begin(), recorded.end(), std::back_inserter(services),
                   [](const RecordedOverride& each) { return each.service; });
    return services;
}

/// Empty where it can't be read: that is told when the way back is settled, or when something is to be added.
QList<RecordedOverride> readableRecord(const Host& host) {
    try {
        return OverrideRecord(host.files, host.machine).read();
    } catch (const FileError&) {
        return {};
    } catch (const DecodingError&) {
        return {};
    }
}

} // namespace

Launchd::Launchd(FlowEnvironment& environment)
    : Flow(environment) {}

Launchd::Launchd(FlowEnvironment& environment, const Launchd& same)
    : Flow(environment)
    , m_cache(same.m_cache) {}

// ---- Reading

QCoro::Task<LaunchdOverrides> Launchd::overrides() {
    if (m_cache->isCurrent) {
        co_return std::as_const(m_cache->overrides); // a lasting value that isn't const would be moved out
    }
    const quint64 age = m_cache->age;
    const CommandResult user = co_await printDisabled(domainTarget(LaunchdDomain::User));
    const CommandResult system = co_await printDisabled(domainTarget(LaunchdDomain::System));
    const LaunchdOverrides read{disabledServices(user), disabledServices(system)};
    if (age == m_cache->age) {
        settle(interrupted(), read);
    }
    if (user.isAnswered && system.isAnswered && age == m_cache->age) {
        m_cache->overrides = read;
        m_cache->isCurrent = true;
    }
    co_return read;
}

QCoro::Task<LaunchdReadings> Launchd::readings() {
    const LaunchdOverrides told = co_await overrides();
    const QList<LaunchFolderListing> listings =
        listedLaunchFolders(launchFolders(host().machine.homeFolder()), host().files);
    const QList<LaunchPlist> plists =
        co_await inBackground(readLaunchPlists, listings, std::cref(host().propertyLists));
    co_return LaunchdReadings(told, plists, listings);
}

QCoro::Task<CommandResult> Launchd::printDisabled(QString domain) {
    const QStringList print{kLaunchctlTool, u"print-disabled"_s, domain};
    co_return co_await runCommand(print, OutputCapture::Capture);
}

LaunchdOverrides Launchd::known() const {
    return m_cache->overrides;
}

void Launchd::drop() {
    ++m_cache->age;
    m_cache->isCurrent = false;
}

void Launchd::beginFlow() {
    drop();
    forgetJobs();
}

void Launchd::forgetJobs() {
    m_cache->isSessionListed = false;
    m_cache->daemons.clear();
}

QCoro::Task<std::optional<bool>> Launchd::isLoaded(LaunchdService service) {
    if (service.domain == LaunchdDomain::System) {
        if (!m_cache->daemons.contains(service.label)) {
            const QStringList print{kLaunchctlTool, u"print"_s, target(service)};
            const CommandResult printed = co_await runCommand(print, OutputCapture::Capture);
            const bool isTold = printed.isAnswered && (printed.status == 0 || printed.status == kNoSuchService);
            m_cache->daemons.insert(service.label, isTold ? std::optional(printed.status == 0) : std::nullopt);
        }
        co_return m_cache->daemons.value(service.label);
    }
    if (!m_cache->isSessionListed) {
        const QStringList list{kLaunchctlTool, u"list"_s};
        const CommandResult listed = co_await runCommand(list, OutputCapture::Capture);
        const bool isTold = listed.isAnswered && listed.status == 0;
        m_cache->sessionJobs = isTold ? parsedLoadedJobs(listed.standardOutput) : std::nullopt;
        m_cache->isSessionListed = true;
    }
    co_return m_cache->sessionJobs ? std::optional(m_cache->sessionJobs->contains(service.label)) : std::nullopt;
}

// ---- Switching off

QCoro::Task<bool> Launchd::recordOverrides(const QList<LaunchdService>& services) {
    QList<RecordedOverride> overrides;
    for (const LaunchdService& service : services) {
        overrides.append({service, false});
    }
    return record(overrides);
}

QCoro::Task<bool> Launchd::recordServices(QList<ServiceGoing> services) {
    const LaunchdOverrides before = co_await overrides();
    const QList<LaunchdService> recorded = servicesOf(readableRecord(host()));
    QList<RecordedOverride> going;
    for (const ServiceGoing& each : services) {
        RecordedOverride entry{each.service, false, before.stateOf(each.service), {}, each.name, each.plist};
        if (each.isStopped && entry.before != OverrideState::Disabled && !recorded.contains(each.service)) {
            entry.wasLoaded = co_await isLoaded(each.service);
        }
        going.append(entry);
    }
    co_return co_await record(going);
}

QCoro::Task<bool> Launchd::record(QList<RecordedOverride> going) {
    if (going.isEmpty()) {
        co_return true;
    }
    const LaunchdOverrides before = co_await overrides();
    std::optional<QList<RecordedOverride>> recorded = recordToAddTo();
    if (!recorded) {
        co_return false;
    }
    const QList<LaunchdService> known = servicesOf(*recorded);
    QList<RecordedOverride> added;
    for (const RecordedOverride& each : going) {
        const bool isKnown = known.contains(each.service) || servicesOf(added).contains(each.service);
        if (!isKnown && !before.isDisabled(each.service)) {
            added.append(each);
        }
    }
    if (added.isEmpty()) {
        co_return true;
    }
    try {
        OverrideRecord(host().files, host().machine).write(*recorded + added);
    } catch (const FileError& error) {
        log(kFailedRecord + error.message());
        co_return false;
    }
    m_cache->unsettled += servicesOf(added);
    co_return true;
}

/// What stands in the record; none, with a line in the log, where a file stands in the way that mustn't be replaced. One that
/// is no record gets another name: whoever finds it can read it still.
std::optional<QList<RecordedOverride>> Launchd::recordToAddTo() {
    OverrideRecord record(host().files, host().machine);
    try {
        return record.read();
    } catch (const FileError& error) {
        log(kFailedRecord + error.message());
        return std::nullopt;
    } catch (const DecodingError& error) {
        log(kUnreadableRecord + error.message());
    }
    try {
        log(u"  [INFO] It is kept: "_s + record.putAside());
        return QList<RecordedOverride>();
    } catch (const FileError& error) {
        log(kFailedRecord + error.message());
        return std::nullopt;
    }
}

QCoro::Task<void> Launchd::settleRecorded() {
    forgetJobs();
    if (m_cache->unsettled.isEmpty()) {
        co_return;
    }
    const LaunchdOverrides now = co_await overrides();
    const QList<LaunchdService> unsettled = std::exchange(m_cache->unsettled, {});
    settle(unsettled, now);
}

QCoro::Task<void> Launchd::settleInterrupted() {
    const QList<LaunchdService> left = interrupted();
    if (!left.isEmpty()) {
        const LaunchdOverrides now = co_await overrides();
        settle(left, now);
    }
}

/// What was written down and neither confirmed nor struck out, and no batch of this run will settle.
QList<LaunchdService> Launchd::interrupted() const {
    QList<LaunchdService> left;
    for (const RecordedOverride& each : readableRecord(host())) {
        if (!each.isConfirmed && !m_cache->unsettled.contains(each.service)) {
            left.append(each.service);
        }
    }
    return left;
}

/// What launchd doesn't tell is left for the next time.
void Launchd::settle(const QList<LaunchdService>& services, const LaunchdOverrides& now) {
    if (services.isEmpty()) {
        return;
    }
    const QList<LaunchdService> inVain = knownNotDisabled(services, now);
    OverrideRecord record(host().files, host().machine);
    try {
        const QList<RecordedOverride> before = record.read();
        QList<RecordedOverride> left = before;
        left.removeIf([&inVain](const RecordedOverride& each) { return inVain.contains(each.service); });
        for (RecordedOverride& each : left) {
            each.isConfirmed = each.isConfirmed || (services.contains(each.service) && now.isDisabled(each.service));
        }
        if (left != before) {
            record.write(left);
        }
    } catch (const FileError& error) {
        log(kFailedRecord + error.message());
    } catch (const DecodingError& error) {
        log(kUnreadableRecord + error.message());
    }
}

QCoro::Task<void> Launchd::switchOff(QString label) {
    const QString service = target({LaunchdDomain::User, label});
    const QStringList disable{kLaunchctlTool, u"disable"_s, service};
    co_await runCommand(disable, OutputCapture::Discard);
    const QStringList bootout{kLaunchctlTool, u"bootout"_s, service};
    co_await runCommand(bootout, OutputCapture::Discard);
    drop();
}

QString Launchd::domainTarget(LaunchdDomain domain) const {
    return domain == LaunchdDomain::User ? u"gui/%1"_s.arg(host().machine.userId()) : u"system"_s;
}

QString Launchd::target(const LaunchdService& service) const {
    return domainTarget(service.domain) + u'/' + service.label;
}

QString Launchd::shellTarget(const LaunchdService& service) const {
    return domainTarget(service.domain) + u'/' + shellWord(service.label);
}

QStringList Launchd::rootsSwitchOffCommands(const LaunchdService& service, End end) const {
    const QString disable = kLaunchctlTool + u" disable "_s + shellTarget(service);
    if (end == End::AtRestart) {
        return {disable};
    }
    const QString bootout = kLaunchctlTool + u" bootout "_s + shellTarget(service) + kWhateverItSays;
    return service.domain == LaunchdDomain::System ? QStringList{bootout, disable} : QStringList{disable, bootout};
}

QCoro::Task<void> Launchd::stopAgent(QString plist) {
    const QStringList bootout{kLaunchctlTool, u"bootout"_s, domainTarget(LaunchdDomain::User), plist};
    co_await runCommand(bootout, OutputCapture::Discard);
}

QString Launchd::rootsStopCommand(LaunchdDomain domain, const QString& plist) const {
    return kLaunchctlTool + u" bootout "_s + domainTarget(domain) + u' ' + shellQuoted(plist) + kWhateverItSays;
}

// ---- The way back

QList<LaunchdService> Launchd::recordedOverrides() const {
    return overridable(servicesOf(readableRecord(host())));
}

bool Launchd::hasRecorded(const LaunchdService& service) const {
    return servicesOf(readableRecord(host())).contains(service);
}

QCoro::Task<bool> Launchd::isStillDisabled(LaunchdService service) {
    drop();
    const LaunchdOverrides now = co_await overrides();
    const QList<LaunchdService> lifted = knownNotDisabled(QList<LaunchdService>(1, service), now);
    if (!lifted.isEmpty() && hasRecorded(service)) {
        try {
            OverrideRecord(host().files, host().machine).strike(lifted);
        } catch (const FileError& error) {
            log(kFailedRecord + error.message());
        } catch (const DecodingError& error) {
            log(kUnreadableRecord + error.message());
        }
    }
    co_return now.isDisabled(service);
}

QList<RecordedOverride> Launchd::liftableOverrides(const KeptOff& kept) const {
    QList<RecordedOverride> liftable = readableRecord(host());
    liftable.removeIf([&kept](const RecordedOverride& each) {
        return !mayOverride(each.service.label) || !each.isLiftable() || kept.overrides.contains(each.service);
    });
    return liftable;
}

QCoro::Task<void> Launchd::liftUsersOverrides(KeptOff kept) {
    const QList<RecordedOverride> liftable = liftableOverrides(kept);
    for (const RecordedOverride& each : liftable) {
        if (each.service.domain == LaunchdDomain::User) {
            const QStringList enable{kLaunchctlTool, u"enable"_s, target(each.service)};
            co_await runCommand(enable, OutputCapture::Discard);
        }
    }
    drop();
}

QStringList Launchd::rootsLiftCommands(const KeptOff& kept) const {
    QStringList commands;
    for (const RecordedOverride& each : liftableOverrides(kept)) {
        if (each.service.domain == LaunchdDomain::System) {
            commands.append(kLaunchctlTool + u" enable "_s + shellTarget(each.service));
        }
    }
    return commands;
}

QCoro::Task<void> Launchd::settleLifted(KeptOff kept) {
    OverrideRecord record(host().files, host().machine);
    try {
        QList<LaunchdService> recorded = overridable(servicesOf(record.read()));
        recorded.removeIf([&kept](const LaunchdService& each) { return kept.overrides.contains(each); });
        if (recorded.isEmpty()) {
            co_return;
        }
        drop();
        const LaunchdOverrides now = co_await overrides();
        const QList<LaunchdService> lifted = knownNotDisabled(recorded, now);
        record.strike(lifted);
        logLifted(recorded, lifted);
    } catch (const FileError& error) {
        log(kFailedRecord + error.message());
    } catch (const DecodingError& error) {
        log(kUnreadableRecord + error.message());
    }
}

void Launchd::logLifted(const QList<LaunchdService>& recorded, const QList<LaunchdService>& lifted) {
    if (!lifted.isEmpty()) {
        log(u"  [RESTORED] %1 background item(s) allowed to start again."_s.arg(lifted.size()));
    }
    for (const LaunchdService& service : recorded) {
        if (!lifted.contains(service)) {
            log(u"  [INFO] Not restored: "_s + service.label);
        }
    }
}

} // namespace quorvane
