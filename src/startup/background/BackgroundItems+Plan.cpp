#include "startup/background/BackgroundItems.h"

#include "core/AdminBatch.h"
#include "core/Background.h"
#include "core/Quoting.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "startup/background/BackgroundLabels.h"
#include "startup/items/StartupConfiguration.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

void BackgroundItems::defer() {
    m_fetchMode = BackgroundTaskItemsFetchMode::deferredToAdminBatch;
    m_needsPrivilegedFetch = false;
    m_plan = BackgroundLoginItemChangePlan();
}

void BackgroundItems::endDeferral() {
    m_plan.reset();
    m_fetchMode = BackgroundTaskItemsFetchMode::automatic;
    m_needsPrivilegedFetch = false;
    m_queuedHelpers.clear();
}

QCoro::Task<BackgroundItems::Joined> BackgroundItems::joinBatch() {
    Joined joined;
    if (!m_plan || !m_plan->hasWork()) {
        co_return joined;
    }
    const bool isKnown = isListRead();
    if (isKnown) {
        joined = co_await resolvePlan(PlanResolution::BeforeFlush, joined);
    }
    if (!isKnown || !m_batch.open().isEmpty()) {
        joined.isWaiting = queueDump(isKnown ? PlaceInLine::First : PlaceInLine::Last);
        joined.isPrepared = joined.isPrepared && joined.isWaiting;
    }
    co_return joined;
}

QCoro::Task<void> BackgroundItems::followBatch(Joined joined) {
    m_switchedOff.unite(m_batch.open().labels());
    if (std::exchange(m_needsPrivilegedFetch, false)) {
        co_await loadPrivilegedDump();
    }
    co_await followQueuedQuarantine();
    if (joined.isWaiting) {
        co_await resolvePlan(PlanResolution::AfterFlush, joined);
    }
}

void BackgroundItems::takeBackQueuedLabels() {
    const QHash<QString, QStringList>& dispositions = m_batch.open().dispositionsBefore();
    for (auto label = dispositions.cbegin(); m_list && label != dispositions.cend(); ++label) {
        m_list->setDispositions(label.key(), label.value());
    }
}

bool BackgroundItems::queueLabel(const QString& label) {
    if (m_batch.open().switchesOff(label)) {
        return false;
    }
    const QStringList dispositions = m_list ? m_list->dispositions(label) : QStringList();
    markOverridden(label);
    const QString domain = u"gui/%1"_s.arg(host().machine.userId());
    const QString bootout = u"/bin/launchctl bootout "_s + domain + u' ' + shellWord(label) + u" 2>/dev/null || true"_s;
    m_batch.open().queueLabel(label, {bootout, u"/bin/launchctl disable "_s + domain + u'/' + shellWord(label)},
                              dispositions);
    return true;
}

void BackgroundItems::planLabels(const QSet<QString>& labels) {
    QSet<QString>& planned = m_plan->disabledBackgroundLaunchLabels;
    if (!isListRead()) {
        planned.unite(labels);
        return;
    }
    const QSet<QString> accepted = disableableLabels(labels, BackgroundItemKind::LoginItem);
    planned.subtract(labels).unite(accepted); // what is refused was told of, and isn't again
    queuePlannedLabels(accepted, u"  [ACTION] Queued disable for background login label: "_s);
}

void BackgroundItems::planServices(const CloudSyncServices& services) {
    m_plan->cloudSyncServices.insert(services.begin(), services.end());
}

void BackgroundItems::queuePlannedLabels(const QSet<QString>& labels, const QString& logLine) {
    for (const QString& label : sortedTexts(labels)) {
        if (queueLabel(label)) {
            log(logLine + label);
        }
    }
}

QCoro::Task<BackgroundItems::Joined> BackgroundItems::resolvePlan(PlanResolution resolution, Joined joined) {
    const BackgroundLoginItemChangePlan plan = *m_plan;
    if (!isListRead()) {
        co_return joined;
    }
    const QList<BackgroundTaskItem> planned = co_await inBackground(plannedRecords, plan, *m_list);
    const QSet<QString> wanted = labelsOf(planned) + plan.disabledBackgroundLaunchLabels - joined.resolvedLabels;
    joined.resolvedLabels += wanted;
    QSet<QString> labels = disableableLabels(wanted, BackgroundItemKind::LoginItem);
    const QList<BackgroundDisableTarget> targets = targetsOf(recordsAmong(planned, labels), labels);
    disallowTargets(targets, UnavailableLine::Once);
    const QSet<QString> agents = bundledAgentLabels(targets, labelsOf(planned));
    labels -= agents;
    if (resolution == PlanResolution::BeforeFlush) {
        queuePlannedLabels(labels, u"  [ACTION] Queued disable for background login label: "_s);
        queuePlannedLabels(agents, u"  [ACTION] Queued disable for bundled launch agent: "_s);
        joined.isPrepared = co_await quarantine(targets, QuarantineRights::Queued) && joined.isPrepared;
        co_return joined;
    }
    for (const QString& label : sortedTexts(labels) + sortedTexts(agents)) {
        const bool isDisabled = co_await disableLabel(label);
        log((isDisabled ? u"  [APPLIED] Disabled background login label: "_s
                        : u"  [WARNING] Could not disable background login label: "_s) +
            label);
    }
    co_await quarantine(targets, QuarantineRights::Privileged);
    co_await retryQuarantineOfActiveTargets(targets);
    co_return joined;
}

void BackgroundItems::planCleanReboot(const CleanReboot& cleanReboot) {
    BackgroundLoginItemChangePlan& plan = *m_plan;
    plan.cleanRebootPermittedNames = allPermittedNames(cleanReboot);
    plan.cleanRebootStartup = cleanReboot.startup;
    if (cleanReboot.startup) {
        plan.disabledBackgroundLaunchLabels.unite(cleanReboot.startup->disabledBackgroundLabels());
    }
}

} // namespace quorvane
