#include "startup/background/BackgroundItems.h"

#include "core/AdminBatch.h"
#include "core/Background.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "platform/Host.h"
#include "startup/background/BackgroundLabels.h"
#include "startup/background/BackgroundState.h"
#include "startup/items/StartupConfiguration.h"
#include "startup/launchd/Launchd.h"
#include "startup/launchd/OverrideRecord.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <functional>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kManagedPreferences = u"/Library/Managed Preferences"_s; // where an organization's rules for a Mac lie

/// As they are written down. What its application has registered from its bundle runs on until the restart.
QList<ServiceGoing> going(const QList<PlannedService>& planned) {
    QList<ServiceGoing> services;
    for (const PlannedService& each : planned) {
        services.append(
            {each.service, each.name, each.path, each.service.domain == LaunchdDomain::User || !each.isBundled});
    }
    return services;
}

QList<LaunchdService> servicesOf(const QList<PlannedService>& planned) {
    QList<LaunchdService> services;
    std::transform(planned.begin(), planned.end(), std::back_inserter(services),
                   [](const PlannedService& each) { return each.service; });
    return services;
}

bool isBackgroundItem(const StartupItem& item) {
    return item.kind == StartupItemKind::backgroundLoginItem && item.launchIdentifier;
}

} // namespace

void BackgroundItems::defer() {
    m_fetchMode = BackgroundTaskItemsFetchMode::deferredToAdminBatch;
    m_needsPrivilegedFetch = false;
    m_plan = BackgroundLoginItemChangePlan();
}

void BackgroundItems::endDeferral() {
    m_plan.reset();
    m_fetchMode = BackgroundTaskItemsFetchMode::automatic;
    m_needsPrivilegedFetch = false;
    m_running.clear();
    m_held.clear();
    m_queued.clear();
    m_told.clear();
}

BackgroundLoginItemChangePlan& BackgroundItems::openPlan() {
    if (!m_plan) {
        defer();
    }
    return *m_plan;
}

void BackgroundItems::planLabels(const QSet<QString>& labels) {
    openPlan().disabledBackgroundLaunchLabels.unite(labels);
}

void BackgroundItems::planKept(const StartupConfiguration& startup) {
    m_running = startup.items;
    m_running.removeIf([](const StartupItem& item) { return !item.runsAtStartup; });
}

void BackgroundItems::planHeldDaemon(const LaunchPlist& daemon) {
    openPlan();
    m_held.append({daemon.service(), daemon.path(), daemon.fileName});
}

void BackgroundItems::planServices(const CloudSyncServices& services) {
    openPlan().cloudSyncServices.insert(services.begin(), services.end());
}

void BackgroundItems::planCleanReboot(const CleanReboot& cleanReboot) {
    BackgroundLoginItemChangePlan& plan = openPlan();
    plan.cleanRebootPermittedNames = allPermittedNames(cleanReboot);
    plan.cleanRebootStartup = cleanReboot.startup;
    if (cleanReboot.startup) {
        plan.disabledBackgroundLaunchLabels.unite(cleanReboot.startup->disabledBackgroundLabels());
    }
}

// ---- Before the line runs

QCoro::Task<BackgroundItems::Joined> BackgroundItems::joinBatch() {
    Joined joined;
    joined.hasWork = m_plan && (m_plan->hasWork() || !m_held.isEmpty() || isSomethingWaiting());
    if (!joined.hasWork) {
        co_return joined;
    }
    const LaunchdReadings launchd = co_await m_launchd.readings();
    const PlannedServices planned = co_await resolvePlan(launchd);
    QList<PlannedService> roots = planned.roots;
    const bool isNothingHeld = isNothingManaged();
    const bool isOneHeld =
        roots.removeIf([&](const PlannedService& each) { return !each.isCleared && !isNothingHeld; }) > 0;
    const bool isQueued = co_await queueForRoot(roots);
    joined.isPrepared = isQueued;
    if (isOneHeld || needsList(launchd) || !m_batch.open().isEmpty()) {
        joined.isPrepared = queueDump() && joined.isPrepared;
    }
    co_return joined;
}

/// What the plan comes to now.
QCoro::Task<PlannedServices> BackgroundItems::resolvePlan(LaunchdReadings launchd) {
    const std::optional<BackgroundTaskList> list = isListRead() ? m_list : std::nullopt;
    BackgroundLoginItemChangePlan plan = *m_plan;
    for (const StartupItem& item : m_running) {
        plan.keptIdentifiers.insert(item.launchIdentifier.value_or(QString()));
    }
    const StartupMemory memory = memoryWithHeld();
    co_return co_await inBackground(plannedServices, plan, list, launchd, memory, std::cref(host().propertyLists));
}

/// What waits, without the launch items that the batch takes in another way.
StartupMemory BackgroundItems::memoryWithHeld() const {
    StartupMemory memory = this->memory();
    for (const WaitingService& held : m_held) {
        const bool isKnown =
            std::any_of(memory.waiting.begin(), memory.waiting.end(),
                        [&held](const WaitingService& waiting) { return waiting.service == held.service; });
        if (!isKnown) {
            memory.waiting.append(held);
        }
    }
    memory.waiting.removeIf(
        [this](const WaitingService& waiting) { return m_batch.open().moves(waiting.path, host().files); });
    return memory;
}

/// False where nobody has to give their password for it alone: it is known, or all that the plan names is off already.
bool BackgroundItems::needsList(const LaunchdReadings& launchd) const {
    const QSet<QString>& named = m_plan->disabledBackgroundLaunchLabels;
    const StartupMemory memory = this->memory();
    const bool isOneOn = std::any_of(named.begin(), named.end(), [&](const QString& label) {
        return labelStanding(label, std::nullopt, launchd, memory).isActive != false;
    });
    return !isListRead() && (m_plan->cleanRebootPermittedNames || !m_plan->cloudSyncServices.empty() || isOneOn);
}

/// Without the list nobody knows what an organization manages; where it manages nothing at all, that needs no list.
bool BackgroundItems::isNothingManaged() const {
    return namesIn(host().files, kManagedPreferences).isEmpty();
}

/// By which launchd may know what the profile wants to have on and is no plist in a launch folder.
QList<LaunchdService> BackgroundItems::servicesOfRunning(const LaunchdReadings& launchd) const {
    const StartupMemory memory = this->memory();
    QList<LaunchdService> services;
    for (const StartupItem& item : m_running) {
        BackgroundTaskItem saved;
        saved.url = item.path;
        const bool isPlist = launchd.isInLaunchFolder(recordedPath(saved).value_or(QString()));
        if (isBackgroundItem(item) && !isPlist) {
            services += memory.servicesOf(*item.launchIdentifier);
        }
    }
    return services;
}

QCoro::Task<LaunchItemGuards> BackgroundItems::launchItemGuards() {
    LaunchItemGuards guards;
    guards.areDaemonsHeld = !isListRead() && !isNothingManaged();
    const bool isSharing = std::any_of(m_running.begin(), m_running.end(), isBackgroundItem);
    if (!isListRead() && !isSharing) {
        co_return guards; // nobody has to ask launchd
    }
    const LaunchdReadings launchd = co_await m_launchd.readings();
    if (!isListRead()) {
        guards.staying = servicesOfRunning(launchd);
        co_return guards;
    }
    guards.protectedNames = protectedLaunchPlists(*m_list);
    for (const LaunchPlist& plist : launchd.plists()) {
        const QList<BackgroundTaskItem> records = m_list->itemsWithPlist(plist.fileName);
        if (m_list->isManagedPlist(plist.fileName) || m_list->isManagedLabel(plist.label)) {
            guards.managedNames.insert(plist.fileName, records.isEmpty() ? plist.fileName : records.first().name);
        }
        if (isOn(plist, m_list, launchd) == false) {
            guards.pathsSwitchedOff.insert(plist.path());
        }
    }
    for (const BackgroundTaskItem& record : m_list->items()) {
        const std::optional<LaunchdService> service = serviceOf(record, launchd);
        const bool isPlist = launchd.isInLaunchFolder(recordedPath(record).value_or(QString()));
        if (service && !isPlist && isLoginRecord(record) && isOn(record, launchd) != false) {
            guards.staying.append(*service);
        }
    }
    co_return guards;
}

/// False when nobody could switch it on again.
QCoro::Task<bool> BackgroundItems::queueForRoot(QList<PlannedService> services) {
    if (services.isEmpty()) {
        co_return true;
    }
    const bool isRecorded = co_await m_launchd.recordServices(going(services));
    if (!isRecorded) {
        co_return false;
    }
    for (const PlannedService& planned : services) {
        if (m_queued.contains(planned.service)) {
            continue;
        }
        m_queued.append(planned.service);
        for (const QString& command : m_launchd.rootsSwitchOffCommands(
                 planned.service, planned.isBundled ? Launchd::End::AtRestart : Launchd::End::Now)) {
            m_batch.open().queue(command);
        }
        log(u"  [ACTION] Queued disable for background login label: "_s + planned.service.label +
            (planned.isBundled ? u" (off after the restart)"_s : QString()));
    }
    co_return true;
}

// ---- When the line has run

QCoro::Task<void> BackgroundItems::followBatch(Joined joined, bool hasRun) {
    if (std::exchange(m_needsPrivilegedFetch, false)) {
        co_await loadPrivilegedDump();
    }
    if (hasRun || !joined.hasWork) {
        m_launchd.drop();
    }
    if (!joined.hasWork) {
        co_return;
    }
    const LaunchdReadings launchd = co_await m_launchd.readings();
    const PlannedServices planned = co_await resolvePlan(launchd);
    tellOnce(planned.lines);
    settleLeftovers(planned.records); // what is put back is a target again
    const QList<BackgroundDisableTarget> targets =
        isListRead() ? backgroundDisableTargets(planned.records, planned.labels, *m_list, host().files)
                     : QList<BackgroundDisableTarget>();
    disallowTargets(targets);
    const QList<LaunchdService> tried = co_await switchOff(planned.users);
    QList<PlannedService> tooLate = planned.roots;
    tooLate.removeIf([this](const PlannedService& each) { return m_queued.contains(each.service); });
    leaveForNextApply(tooLate);
    const LaunchdOverrides overrides = co_await m_launchd.overrides();
    settleWaiting(planned.settled, overrides);
    co_await settleHelpers(targets, tried, launchd.with(overrides));
}

/// As the user. Only launchd's own word tells what came of it.
/// @return those for which it was tried
QCoro::Task<QList<LaunchdService>> BackgroundItems::switchOff(QList<PlannedService> services) {
    if (!services.isEmpty()) {
        const bool isRecorded = co_await m_launchd.recordServices(going(services));
        if (!isRecorded) {
            services.clear();
        }
    }
    for (const PlannedService& planned : services) {
        co_await m_launchd.switchOff(planned.service.label);
    }
    const LaunchdOverrides overrides = co_await m_launchd.overrides();
    for (const PlannedService& planned : services) {
        if (!overrides.isDisabled(planned.service)) {
            log(u"  [ERROR] Failed to disable background login label: "_s + planned.service.label);
        } else if (planned.isGuess) {
            log(u"  [INFO] Disabled by its label alone, as no list of background items was read: "_s +
                planned.service.label);
        } else {
            log(u"  [APPLIED] Disabled background login label: "_s + planned.service.label);
        }
    }
    co_return servicesOf(services);
}

void BackgroundItems::tellOnce(const QStringList& lines) {
    for (const QString& line : lines) {
        if (!m_told.contains(line)) {
            m_told.insert(line);
            log(line);
        }
    }
}

void BackgroundItems::leaveForNextApply(const QList<PlannedService>& services) {
    StartupMemory memory = this->memory();
    for (const PlannedService& planned : services) {
        log(u"  [INFO] Will be switched off at the next apply: "_s + planned.name);
        memory.waiting.removeIf([&](const WaitingService& waiting) { return waiting.service == planned.service; });
        memory.waiting.append({planned.service, planned.path, planned.name, planned.knownAs, planned.isCleared});
    }
    remember(memory);
}

/// What launchd shows to be off waits no longer, nor does what stays.
void BackgroundItems::settleWaiting(const QList<LaunchdService>& settled, const LaunchdOverrides& overrides) {
    StartupMemory memory = this->memory();
    memory.waiting.removeIf([&](const WaitingService& waiting) {
        return settled.contains(waiting.service) || overrides.isDisabled(waiting.service);
    });
    remember(memory);
}

void BackgroundItems::setWaiting(const QList<WaitingService>& waiting) {
    StartupMemory memory = this->memory();
    memory.waiting = waiting;
    remember(memory);
}

} // namespace quorvane
