#include "startup/background/BackgroundItems.h"

#include "core/AdminBatch.h"
#include "core/AdminPrompts.h"
#include "core/Background.h"
#include "core/ExcludedNames.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "startup/background/BackgroundItemPermission.h"
#include "startup/background/BackgroundLabels.h"
#include "startup/items/StartupConfiguration.h"
#include "startup/launchd/LaunchItemNames.h"
#include "startup/launchd/Launchctl.h"
#include "verification/ApplyVerificationResult.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// As the log writes it in the middle of a line.
QString textOf(BackgroundItemKind kind) {
    return kind == BackgroundItemKind::CloudSyncLaunchItem ? u"cloud sync launch item"_s : u"background login item"_s;
}

QString nothingToDisableLine(BackgroundItemKind kind) {
    return kind == BackgroundItemKind::CloudSyncLaunchItem
               ? u"  [APPLIED] Cloud Sync Launch Items already match disabled list."_s
               : u"  [APPLIED] Background Login Items already match permitted list."_s;
}

} // namespace

BackgroundItems::BackgroundItems(FlowEnvironment& environment, AdminBatch& batch)
    : Flow(environment)
    , m_batch(batch)
    , m_serviceManagement(host().backgroundTaskPermissions, host().defaults, host().machine) {}

// ---- The ladder

QCoro::Task<bool> BackgroundItems::disable(QList<BackgroundTaskItem> items, BackgroundItemKind kind) {
    if (items.isEmpty()) {
        log(nothingToDisableLine(kind));
        co_return true;
    }
    log(u"  [ACTION] Disabling %1 %2(s)..."_s.arg(items.size()).arg(textOf(kind)));
    co_await ensure(kSystemChangesPrompt, PrivilegedFetch::Allowed);
    co_return co_await climbLadder(items, labelsOf(items), kind);
}

QCoro::Task<bool> BackgroundItems::disableLabels(QSet<QString> labels) {
    if (labels.isEmpty()) {
        log(nothingToDisableLine(BackgroundItemKind::LoginItem));
        co_return true;
    }
    log(u"  [ACTION] Disabling %1 %2(s)..."_s.arg(labels.size()).arg(textOf(BackgroundItemKind::LoginItem)));
    co_await ensure(kSystemChangesPrompt, PrivilegedFetch::Allowed);
    co_return co_await climbLadder(recordsWithLabels(m_list, labels), labels, BackgroundItemKind::LoginItem);
}

QCoro::Task<bool> BackgroundItems::disableServices(CloudSyncServices services) {
    co_await ensure(kSystemChangesPrompt, PrivilegedFetch::Allowed);
    const QList<BackgroundTaskItem> helpers = co_await inBackground(activeRecordsOfServices, records(), services);
    co_return co_await disable(helpers, BackgroundItemKind::CloudSyncLaunchItem);
}

/// The means from the strongest down: the system's own switch, launchd by
/// label, and the helper's files. A rung that fails doesn't stop the next.
QCoro::Task<bool> BackgroundItems::climbLadder(QList<BackgroundTaskItem> items, QSet<QString> labels,
                                               BackgroundItemKind kind) {
    labels = disableableLabels(labels, kind);
    const QList<BackgroundDisableTarget> targets = targetsOf(recordsAmong(items, labels), labels);
    disallowTargets(targets, UnavailableLine::EachTarget);
    const bool isInBatch = m_batch.isOpen();
    bool succeeded = true;
    for (const QString& label : sortedTexts(labels)) {
        if (isInBatch) {
            queueLabel(label);
            log(u"  [APPLIED] Queued disable for %1: %2"_s.arg(textOf(kind), label));
            continue;
        }
        const bool isDisabled = co_await disableLabel(label);
        log((isDisabled ? u"  [APPLIED] Disabled %1: %2"_s : u"  [ERROR] Failed to disable %1: %2"_s)
                .arg(textOf(kind), label));
        succeeded = succeeded && isDisabled;
    }
    const QuarantineRights rights = isInBatch ? QuarantineRights::Queued : QuarantineRights::Privileged;
    succeeded = co_await quarantine(targets, rights) && succeeded;
    co_await retryQuarantineOfActiveTargets(targets);
    co_return succeeded;
}

/// Leaves out what may not be switched off, each with a line in the log.
QSet<QString> BackgroundItems::disableableLabels(const QSet<QString>& labels, BackgroundItemKind kind) {
    QSet<QString> accepted;
    for (const QString& label : sortedTexts(labels)) {
        if (!isUsableLaunchdLabel(label)) {
            log(u"  [SKIPPED] Unusable background label: "_s + label);
        } else if (isReservedLabel(label)) {
            log(u"  [SKIPPED] Protected background item: "_s + label);
        } else if (isProtectedLabel(label)) {
            log(u"  [SKIPPED] Protected %1: %2"_s.arg(textOf(kind), label));
        } else {
            accepted.insert(label);
        }
    }
    return accepted;
}

/// By its own text, or by that of a record that bears it or of that record's
/// application.
bool BackgroundItems::isProtectedLabel(const QString& label) const {
    const QList<BackgroundTaskItem> records = m_list ? m_list->itemsWithLabel(label) : QList<BackgroundTaskItem>();
    return isExcludedName(label) ||
           std::any_of(records.begin(), records.end(),
                       [this](const BackgroundTaskItem& record) { return m_list->isProtected(record); });
}

QList<BackgroundDisableTarget> BackgroundItems::targetsOf(const QList<BackgroundTaskItem>& records,
                                                          const QSet<QString>& labels) {
    settleLeftovers(records); // what is put back is a target again
    return m_list ? backgroundDisableTargets(records, labels, *m_list, host().files) : QList<BackgroundDisableTarget>();
}

void BackgroundItems::disallowTargets(const QList<BackgroundDisableTarget>& targets, UnavailableLine unavailableLine) {
    QSet<QString> told;
    for (const BackgroundDisableTarget& target : targets) {
        if (told.contains(target.label) || isProtectedTarget(target)) {
            continue; // a further resource of the same item, or audio software
        }
        told.insert(target.label);
        switch (m_serviceManagement.disallowBackgroundItem(target.parentAppURL.toLocalFile(), target.label)) {
        case ServiceManagementBTM::Outcome::Succeeded:
            log(u"  [APPLIED] Disallowed BTM service: "_s + target.label);
            markDisabled(target.label);
            break;
        case ServiceManagementBTM::Outcome::Failed:
            log(u"  [WARNING] Could not disallow BTM service: "_s + target.label);
            break;
        case ServiceManagementBTM::Outcome::Unavailable:
            tellOfEndInCall();
            if (unavailableLine == UnavailableLine::Once) {
                log(u"  [INFO] ServiceManagement BTM APIs unavailable; using launchctl and quarantine fallback."_s);
                return;
            }
            log(u"  [INFO] BTM service API unavailable for %1; using launchctl/quarantine fallback."_s.arg(
                target.label));
        }
    }
}

/// Once, however often it would have been called.
void BackgroundItems::tellOfEndInCall() {
    if (m_serviceManagement.hasEndedInCall() && !std::exchange(m_hasToldOfEndInCall, true)) {
        log(u"  [INFO] Quorvane once ended in a ServiceManagement BTM API; none is called again on macOS %1."_s.arg(
            host().machine.systemVersion()));
    }
}

QCoro::Task<bool> BackgroundItems::disableLabel(QString label) {
    const QString target = u"gui/%1/"_s.arg(host().machine.userId()) + label;
    const QStringList bootout{kLaunchctlTool, u"bootout"_s, target};
    co_await runCommand(bootout, OutputCapture::Capture);
    const QStringList disable{kLaunchctlTool, u"disable"_s, target};
    const CommandResult result = co_await runCommand(disable, OutputCapture::Capture);
    const QString output = result.standardOutput + result.standardError;
    const bool isOverridden =
        result.status == 0 || output.contains(u"already disabled"_s) || output.contains(u"could not find"_s);
    if (isOverridden) {
        m_switchedOff.insert(label);
        markOverridden(label);
    }
    co_return isOverridden && !leavesADaemon(label);
}

QCoro::Task<bool> BackgroundItems::disableNonPermitted(CleanReboot cleanReboot) {
    co_await ensure(kSystemChangesPrompt, PrivilegedFetch::Allowed);
    const QList<BackgroundTaskItem> going = co_await inBackground(nonPermittedBackgroundItems, records(),
                                                                  allPermittedNames(cleanReboot), cleanReboot.startup);
    bool succeeded = co_await disable(going, BackgroundItemKind::LoginItem);
    if (cleanReboot.startup) {
        succeeded = co_await disableLabels(cleanReboot.startup->disabledBackgroundLabels()) && succeeded;
    }
    co_return succeeded;
}

// ---- Verification

QCoro::Task<ApplyVerificationResult> BackgroundItems::verify(QSet<QString> permittedNames,
                                                             std::optional<StartupConfiguration> startup) {
    ApplyVerificationResult result;
    if (!m_list) {
        co_return result;
    }
    if (m_list->isEmpty()) {
        result.failed.append(unavailableBackgroundItems());
        co_return result;
    }
    const QList<BackgroundTaskItem> remaining =
        co_await inBackground(nonPermittedBackgroundItems, m_list->items(), permittedNames, startup);
    for (const BackgroundTaskItem& record : remaining) {
        result.failed.append({u"Background item: "_s + record.name, u"still enabled at login"_s});
    }
    if (remaining.isEmpty()) {
        result.verified.append({u"Background login items"_s, u"only permitted items remain"_s});
    }
    co_return result;
}

} // namespace quorvane
