#include "startup/background/BackgroundItems.h"

#include "core/Background.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "startup/background/BackgroundItemPermission.h"
#include "startup/background/BackgroundState.h"
#include "startup/items/StartupConfiguration.h"
#include "startup/launchd/Launchd.h"
#include "verification/ApplyVerificationResult.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString namesOf(const QList<BackgroundTaskItem>& records) {
    QStringList names;
    for (const BackgroundTaskItem& record : records) {
        names.append(record.name);
    }
    names.removeDuplicates();
    return names.join(u", "_s);
}

/// What a clean reboot leaves of a list.
ApplyVerificationResult cleanRebootVerification(const BackgroundTaskList& list, const QSet<QString>& permittedNames,
                                                const std::optional<StartupConfiguration>& startup,
                                                const LaunchdReadings& launchd) {
    ApplyVerificationResult result;
    for (const BackgroundTaskItem& record : nonPermittedBackgroundItems(list.items(), permittedNames, startup)) {
        const std::optional<bool> on = isOn(record, launchd);
        if (on != false && !isLeftAlone(record, list, launchd)) {
            result.failed.append(
                {u"Background item: "_s + record.name, on ? u"still enabled at login"_s : u"could not ask launchd"_s});
        }
    }
    QList<BackgroundTaskItem> daemons = nonPermittedDaemons(list.items(), permittedNames, startup);
    daemons.removeIf([&launchd](const BackgroundTaskItem& record) { return isOn(record, launchd) == false; });
    if (result.failed.isEmpty()) {
        result.verified.append({u"Background login items"_s, u"only permitted items remain"_s});
    }
    if (!daemons.isEmpty()) {
        (result.failed.isEmpty() ? result.verified : result.failed).last().note =
            u"Daemons stay on: "_s + namesOf(daemons);
    }
    return result;
}

} // namespace

BackgroundItems::BackgroundItems(FlowEnvironment& environment, AdminBatch& batch, Launchd& launchd)
    : Flow(environment)
    , m_batch(batch)
    , m_launchd(launchd)
    , m_serviceManagement(host().backgroundTaskPermissions, host().defaults, host().machine) {}

/// What the system's own switch says of its success is believed by nobody.
void BackgroundItems::disallowTargets(const QList<BackgroundDisableTarget>& targets) {
    QSet<QString> asked;
    for (const BackgroundDisableTarget& target : targets) {
        if (asked.contains(target.label) || isProtectedTarget(target)) {
            continue; // a further resource of the same item, or audio software
        }
        asked.insert(target.label);
        if (m_serviceManagement.isAvailable() && !recordDisallowed(target)) {
            continue; // nobody could allow it again
        }
        switch (m_serviceManagement.disallowBackgroundItem(target.parentAppURL.toLocalFile(), target.label)) {
        case ServiceManagementBTM::Outcome::Succeeded:
            log(u"  [ACTION] Asked macOS to disallow: "_s + target.label);
            break;
        case ServiceManagementBTM::Outcome::Failed:
            log(u"  [WARNING] Could not disallow BTM service: "_s + target.label);
            forgetDisallowed(target);
            break;
        case ServiceManagementBTM::Outcome::Unavailable:
            tellOfEndInCall();
            log(u"  [INFO] ServiceManagement BTM APIs unavailable; using launchctl and quarantine fallback."_s);
            return;
        }
    }
}

/// Of what is allowed, as far as the list shows; what its user has switched off needs no record.
/// @return false, with a line in the log, when it can't be saved
bool BackgroundItems::recordDisallowed(const BackgroundDisableTarget& target) {
    const QSet<QString> tokens = target.item ? dispositionTokens(*target.item) : QSet<QString>();
    if (!tokens.contains(u"allowed"_s) || tokens.contains(u"disallowed"_s)) {
        return true;
    }
    const DisallowedItem item{target.parentAppURL.toLocalFile(), target.label};
    std::optional<BackgroundChanges> changes = changesToAddTo();
    if (!changes || changes->disallowed.contains(item)) {
        return changes.has_value();
    }
    changes->disallowed.append(item);
    return saveChanges(*changes);
}

void BackgroundItems::forgetDisallowed(const BackgroundDisableTarget& target) {
    BackgroundChanges changes = this->changes();
    if (changes.disallowed.removeOne(DisallowedItem{target.parentAppURL.toLocalFile(), target.label})) {
        saveChanges(changes);
    }
}

/// Once, however often it would have been called.
void BackgroundItems::tellOfEndInCall() {
    if (m_serviceManagement.hasEndedInCall() && !std::exchange(m_hasToldOfEndInCall, true)) {
        log(u"  [INFO] Quorvane once ended in a ServiceManagement BTM API; none is called again on macOS %1."_s.arg(
            host().machine.systemVersion()));
    }
}

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
    const LaunchdReadings launchd = co_await m_launchd.readings();
    co_return co_await inBackground(cleanRebootVerification, *m_list, permittedNames, startup, launchd);
}

} // namespace quorvane
