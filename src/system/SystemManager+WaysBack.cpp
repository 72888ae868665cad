#include "system/SystemManager.h"

#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"
#include "profiles/UnifiedProfile.h"
#include "system/BusyBracket.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<RestoreOutcome> SystemManager::undoTweaks(std::optional<FoundBaseline> found) {
    const BusyBracket busy(*this, u"Reverting performance tweaks…"_s);
    co_return co_await removeStartupAppsAndRevert(std::move(found));
}

QCoro::Task<RestoreOutcome> SystemManager::restoreDefault() {
    const BusyBracket busy(*this, u"Restoring default settings…"_s);
    const RestoreOutcome outcome = co_await removeStartupAppsAndRevert(std::nullopt);
    if (outcome.succeeded) {
        m_host.defaults.setString(kQuorvaneLastAppliedProfileName, UnifiedProfile::defaultProfile().name);
    }
    co_return outcome;
}

QCoro::Task<RestoreOutcome> SystemManager::reinstateWholeSystem(std::optional<FoundBaseline> found) {
    const BusyBracket busy(*this, u"Reinstating system…"_s);
    m_lastApplyVerification.reset();
    log(u"\n[REINSTATE] Restoring system..."_s);
    co_return co_await reinstateSystem(std::move(found));
}

/// What it goes by is known before anything goes. An application that stays in the login items is in the log; the outcome is
/// that of the settings.
QCoro::Task<RestoreOutcome> SystemManager::removeStartupAppsAndRevert(std::optional<FoundBaseline> found) {
    m_lastApplyVerification.reset();
    if (!found) {
        found = co_await findRestoreBaseline();
    }
    const QSet<QString> paths = startupAppsThatGo(managedStartupAppPaths(), profileStartupAppPaths(), found->baseline);
    co_await removeManagedStartupApps(paths);
    co_return co_await revertPerformanceTweaks(std::move(found));
}

} // namespace quorvane
