#include "system/SystemManager.h"

#include "core/AdminPrompts.h"
#include "core/Background.h"
#include "core/Quoting.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "startup/apply/StartupVerification.h"
#include "startup/background/BackgroundDisableTarget.h"
#include "startup/background/BackgroundItemPermission.h"
#include "startup/launchd/LaunchItemNames.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kBackgroundLoginItem = u"background login item"_s;
const QString kCloudSyncLaunchItem = u"cloud sync launch item"_s;

QString capitalizedWords(const QString& text) {
    QStringList words = text.split(u' ');
    for (QString& word : words) {
        word = word.left(1).toUpper() + word.mid(1);
    }
    return words.join(u' ');
}

QString nothingToDisableLine(const QString& kindWord) {
    const QString list = kindWord == kCloudSyncLaunchItem ? u"disabled"_s : u"permitted"_s;
    return u"  [APPLIED] %1s already match %2 list."_s.arg(capitalizedWords(kindWord), list);
}

QSet<QString> labelsOf(const QList<BackgroundTaskItem>& records) {
    QSet<QString> labels;
    for (const BackgroundTaskItem& record : records) {
        if (const std::optional<QString> label = backgroundItemLabel(record)) {
            labels.insert(*label);
        }
    }
    return labels;
}

QList<BackgroundTaskItem> recordsWithLabels(const std::optional<BackgroundTaskList>& list,
                                            const QSet<QString>& labels) {
    QList<BackgroundTaskItem> records;
    if (list) {
        for (const QString& label : sortedTexts(labels)) {
            records += list->itemsWithLabel(label);
        }
    }
    return records;
}

/// The records that bear one of the labels.
QList<BackgroundTaskItem> recordsAmong(const QList<BackgroundTaskItem>& records, const QSet<QString>& labels) {
    QList<BackgroundTaskItem> kept;
    for (const BackgroundTaskItem& record : records) {
        const std::optional<QString> label = backgroundItemLabel(record);
        if (label && labels.contains(*label)) {
            kept.append(record);
        }
    }
    return kept;
}

/// The labels of launch agents inside applications that no record stands for.
QSet<QString> bundledAgentLabels(const QList<BackgroundDisableTarget>& targets, const QSet<QString>& recordLabels) {
    QSet<QString> labels;
    for (const BackgroundDisableTarget& target : targets) {
        if (!target.item && !recordLabels.contains(target.label)) {
            labels.insert(target.label);
        }
    }
    return labels;
}

} // namespace

// ---- The ladder

QCoro::Task<bool> SystemManager::disableBackgroundItems(QList<BackgroundTaskItem> items, QString kindWord) {
    if (items.isEmpty()) {
        log(nothingToDisableLine(kindWord));
        co_return true;
    }
    log(u"  [ACTION] Disabling %1 %2(s)..."_s.arg(items.size()).arg(kindWord));
    co_await ensureBackgroundTaskItems(kSystemChangesPrompt, PrivilegedFetch::Allowed);
    co_return co_await climbLadder(items, labelsOf(items), kindWord);
}

QCoro::Task<bool> SystemManager::disableBackgroundLabels(QSet<QString> labels) {
    if (labels.isEmpty()) {
        log(nothingToDisableLine(kBackgroundLoginItem));
        co_return true;
    }
    log(u"  [ACTION] Disabling %1 %2(s)..."_s.arg(labels.size()).arg(kBackgroundLoginItem));
    co_await ensureBackgroundTaskItems(kSystemChangesPrompt, PrivilegedFetch::Allowed);
    co_return co_await climbLadder(recordsWithLabels(m_backgroundTaskItemsCache, labels), labels, kBackgroundLoginItem);
}

QCoro::Task<bool> SystemManager::disableCloudSyncBackgroundItems(CloudSyncServices services) {
    co_await ensureBackgroundTaskItems(kSystemChangesPrompt, PrivilegedFetch::Allowed);
    const QList<BackgroundTaskItem> records =
        m_backgroundTaskItemsCache ? m_backgroundTaskItemsCache->items() : QList<BackgroundTaskItem>();
    const QList<BackgroundTaskItem> helpers = co_await inBackground(activeRecordsOfServices, records, services);
    co_return co_await disableBackgroundItems(helpers, kCloudSyncLaunchItem);
}

/// The means from the strongest down: the system's own switch, launchd by label, and the helper's files. A rung that
/// fails doesn't stop the next.
QCoro::Task<bool> SystemManager::climbLadder(QList<BackgroundTaskItem> items, QSet<QString> labels, QString kindWord) {
    labels = disableableLabels(labels, kindWord);
    const QList<BackgroundDisableTarget> targets = disableTargets(recordsAmong(items, labels), labels);
    disallowTargets(targets, UnavailableLine::EachTarget);
    const bool isInBatch = m_adminBatchDepth >= 1;
    bool succeeded = true;
    for (const QString& label : sortedTexts(labels)) {
        if (isInBatch) {
            queueBackgroundLabel(label);
            log(u"  [APPLIED] Queued disable for %1: %2"_s.arg(kindWord, label));
            continue;
        }
        const bool isDisabled = co_await disableBackgroundLabel(label);
        log((isDisabled ? u"  [APPLIED] Disabled %1: %2"_s : u"  [ERROR] Failed to disable %1: %2"_s)
                .arg(kindWord, label));
        succeeded = succeeded && isDisabled;
    }
    const QuarantineRights rights = isInBatch ? QuarantineRights::Queued : QuarantineRights::Privileged;
    succeeded = co_await quarantineBundledResources(targets, rights) && succeeded;
    co_await retryQuarantineOfActiveTargets(targets);
    co_return succeeded;
}

/// Leaves out what may not be switched off, each with a line in the log.
QSet<QString> SystemManager::disableableLabels(const QSet<QString>& labels, const QString& kindWord) {
    QSet<QString> accepted;
    for (const QString& label : sortedTexts(labels)) {
        if (!isUsableLaunchdLabel(label)) {
            log(u"  [SKIPPED] Unusable background label: "_s + label);
        } else if (isProtectedBackgroundLabel(label)) {
            log(u"  [SKIPPED] Protected %1: %2"_s.arg(kindWord, label));
        } else {
            accepted.insert(label);
        }
    }
    return accepted;
}

/// By its own text, or by that of a record that bears it or of that record's application.
bool SystemManager::isProtectedBackgroundLabel(const QString& label) const {
    const QList<BackgroundTaskItem> records =
        m_backgroundTaskItemsCache ? m_backgroundTaskItemsCache->itemsWithLabel(label) : QList<BackgroundTaskItem>();
    return isExcludedName(label) ||
           std::any_of(records.begin(), records.end(), [this](const BackgroundTaskItem& record) {
               return m_backgroundTaskItemsCache->isProtected(record);
           });
}

QList<BackgroundDisableTarget> SystemManager::disableTargets(const QList<BackgroundTaskItem>& records,
                                                             const QSet<QString>& labels) const {
    return m_backgroundTaskItemsCache
               ? backgroundDisableTargets(records, labels, *m_backgroundTaskItemsCache, m_host.files)
               : QList<BackgroundDisableTarget>();
}

void SystemManager::disallowTargets(const QList<BackgroundDisableTarget>& targets, UnavailableLine unavailableLine) {
    QSet<QString> told;
    for (const BackgroundDisableTarget& target : targets) {
        if (told.contains(target.label) || isProtectedTarget(target)) {
            continue; // a further resource of the same item, or audio software
        }
        told.insert(target.label);
        switch (m_serviceManagement.disallowBackgroundItem(target.parentAppURL.toLocalFile(), target.label)) {
        case ServiceManagementBTM::Outcome::Succeeded:
            log(u"  [APPLIED] Disallowed BTM service: "_s + target.label);
            markBackgroundLabelDisabled(target.label);
            break;
        case ServiceManagementBTM::Outcome::Failed:
            log(u"  [WARNING] Could not disallow BTM service: "_s + target.label);
            break;
        case ServiceManagementBTM::Outcome::Unavailable:
            if (unavailableLine == UnavailableLine::Once) {
                log(u"  [INFO] ServiceManagement BTM APIs unavailable; using launchctl and quarantine fallback."_s);
                return;
            }
            log(u"  [INFO] BTM service API unavailable for %1; using launchctl/quarantine fallback."_s.arg(
                target.label));
        }
    }
}

QCoro::Task<bool> SystemManager::disableBackgroundLabel(QString label) {
    const QString target = u"gui/%1/"_s.arg(m_host.machine.userId()) + label;
    const QStringList bootout{u"/bin/launchctl"_s, u"bootout"_s, target};
    co_await runCommand(bootout, OutputCapture::Capture);
    const QStringList disable{u"/bin/launchctl"_s, u"disable"_s, target};
    const CommandResult result = co_await runCommand(disable, OutputCapture::Capture);
    const QString output = result.standardOutput + result.standardError;
    const bool isDisabled =
        result.status == 0 || output.contains(u"already disabled"_s) || output.contains(u"could not find"_s);
    if (isDisabled) {
        markBackgroundLabelDisabled(label);
    }
    co_return isDisabled;
}

// ---- Inside a batch

void SystemManager::queueBackgroundLabelCommands(const QString& label) {
    const QString domain = u"gui/%1"_s.arg(m_host.machine.userId());
    m_adminCommandBatch.append(u"/bin/launchctl bootout "_s + domain + u' ' + shellWord(label) +
                               u" 2>/dev/null || true"_s);
    m_adminCommandBatch.append(u"/bin/launchctl disable "_s + domain + u'/' + shellWord(label));
}

/// False when the open batch switches the label off already.
bool SystemManager::queueBackgroundLabel(const QString& label) {
    if (m_queuedBackgroundLabels.contains(label)) {
        return false;
    }
    m_queuedBackgroundLabels.insert(label);
    queueBackgroundLabelCommands(label);
    const QStringList before =
        m_backgroundTaskItemsCache ? m_backgroundTaskItemsCache->dispositions(label) : QStringList();
    markBackgroundLabelDisabled(label);
    m_dispositionsBeforeBatch.insert(label, before);
    return true;
}

/// After a failed batch: what was marked as off is on, and must be found so by the verification and by the next apply.
void SystemManager::takeBackQueuedBackgroundLabels() {
    for (auto label = m_dispositionsBeforeBatch.cbegin();
         m_backgroundTaskItemsCache && label != m_dispositionsBeforeBatch.cend(); ++label) {
        m_backgroundTaskItemsCache->setDispositions(label.key(), label.value());
    }
}

// ---- The plan

void SystemManager::queueBackgroundLabels(const QSet<QString>& labels) {
    QSet<QString>& planned = m_pendingBackgroundLoginItemChanges->disabledBackgroundLaunchLabels;
    if (!m_backgroundTaskItemsCache) {
        planned.unite(labels);
        return;
    }
    const QSet<QString> accepted = disableableLabels(labels, kBackgroundLoginItem);
    planned.subtract(labels).unite(accepted); // what is refused was told of, and isn't again
    queuePlannedLabels(accepted, u"  [ACTION] Queued disable for background login label: "_s);
}

void SystemManager::queueCloudSyncServices(const CloudSyncServices& services) {
    m_pendingBackgroundLoginItemChanges->cloudSyncServices.insert(services.begin(), services.end());
}

void SystemManager::queuePlannedLabels(const QSet<QString>& labels, const QString& logLine) {
    for (const QString& label : sortedTexts(labels)) {
        if (queueBackgroundLabel(label)) {
            log(logLine + label);
        }
    }
}

QCoro::Task<bool> SystemManager::resolvePendingBackgroundPlan(PlanResolution resolution) {
    const BackgroundLoginItemChangePlan plan = *m_pendingBackgroundLoginItemChanges;
    if (m_backgroundTaskItemsCache->isEmpty()) {
        co_return true;
    }
    const QList<BackgroundTaskItem> planned = co_await inBackground(plannedRecords, plan, *m_backgroundTaskItemsCache);
    QSet<QString> labels =
        disableableLabels(labelsOf(planned) + plan.disabledBackgroundLaunchLabels, kBackgroundLoginItem);
    const QList<BackgroundDisableTarget> targets = disableTargets(recordsAmong(planned, labels), labels);
    disallowTargets(targets, UnavailableLine::Once);
    const QSet<QString> agents = bundledAgentLabels(targets, labelsOf(planned));
    labels -= agents;
    if (resolution == PlanResolution::BeforeFlush) {
        queuePlannedLabels(labels, u"  [ACTION] Queued disable for background login label: "_s);
        queuePlannedLabels(agents, u"  [ACTION] Queued disable for bundled launch agent: "_s);
        co_return co_await quarantineBundledResources(targets, QuarantineRights::Queued);
    }
    for (const QString& label : sortedTexts(labels) + sortedTexts(agents)) {
        const bool isDisabled = co_await disableBackgroundLabel(label);
        log((isDisabled ? u"  [APPLIED] Disabled background login label: "_s
                        : u"  [WARNING] Could not disable background login label: "_s) +
            label);
    }
    co_await quarantineBundledResources(targets, QuarantineRights::Privileged);
    co_await retryQuarantineOfActiveTargets(targets);
    co_return true;
}

// ---- Verification

QCoro::Task<ApplyVerificationResult>
SystemManager::verifyBackgroundLoginItems(QSet<QString> permittedNames, std::optional<StartupConfiguration> startup) {
    ApplyVerificationResult result;
    if (!m_backgroundTaskItemsCache) {
        co_return result;
    }
    if (m_backgroundTaskItemsCache->isEmpty()) {
        result.failed.append(unavailableBackgroundItems());
        co_return result;
    }
    const QList<BackgroundTaskItem> remaining = co_await inBackground(
        nonPermittedBackgroundItems, m_backgroundTaskItemsCache->items(), permittedNames, startup);
    for (const BackgroundTaskItem& record : remaining) {
        result.failed.append({u"Background item: "_s + record.name, u"still enabled at login"_s});
    }
    if (remaining.isEmpty()) {
        result.verified.append({u"Background login items"_s, u"only permitted items remain"_s});
    }
    co_return result;
}

} // namespace quorvane
