#include "system/SystemManager.h"

#include "core/UserDefaultKeys.h"
#include "flows/FlowJournal.h"
#include "flows/FlowSteps.h"
#include "platform/UserDefaults.h"
#include "profiles/UnifiedProfile.h"
#include "system/BusyBracket.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<RestoreOutcome> SystemManager::undoTweaks(std::optional<FoundBaseline> found) {
    const BusyBracket busy(*this, u"Reverting performance tweaks…"_s);
    co_return co_await removeStartupAppsAndRevert(RecordedFlow::Undo, std::move(found));
}

QCoro::Task<RestoreOutcome> SystemManager::restoreDefault(std::optional<FoundBaseline> found) {
    const BusyBracket busy(*this, u"Restoring default settings…"_s);
    const RestoreOutcome outcome = co_await removeStartupAppsAndRevert(RecordedFlow::Default, std::move(found));
    if (outcome.succeeded) {
        m_host.defaults.setString(kQuorvaneLastAppliedProfileName, UnifiedProfile::defaultProfile().name);
    }
    co_return outcome;
}

QCoro::Task<RestoreOutcome> SystemManager::reinstateWholeSystem(std::optional<FoundBaseline> found) {
    const BusyBracket busy(*this, u"Reinstating system…"_s);
    m_lastApplyVerification.reset();
    if (!found) {
        found = co_await findRestoreBaseline();
    }
    const FlowRecording recording = recordWayBack(RecordedFlow::Reinstate, *found);
    log(u"\n[REINSTATE] Restoring system..."_s);
    co_return co_await reinstateSystem(std::move(found));
}

/// What it goes by is known before anything goes. An application that stays in the login items is in the log; the outcome is
/// that of the settings.
QCoro::Task<RestoreOutcome> SystemManager::removeStartupAppsAndRevert(RecordedFlow flow,
                                                                      std::optional<FoundBaseline> found) {
    m_lastApplyVerification.reset();
    if (!found) {
        found = co_await findRestoreBaseline();
    }
    const FlowRecording recording = recordWayBack(flow, *found);
    const QSet<QString> paths = startupAppsThatGo(managedStartupAppPaths(), profileStartupAppPaths(), found->baseline);
    co_await removeManagedStartupApps(paths);
    m_journal->strike(kApplicationsStep);
    co_return co_await revertPerformanceTweaks(std::move(found));
}

} // namespace quorvane
