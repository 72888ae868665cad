#include "system/SystemManager.h"

#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"
#include "profiles/UnifiedProfile.h"
#include "snapshots/RestoreBaseline.h"
#include "system/BusyBracket.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<RestoreOutcome> SystemManager::undoTweaks() {
    const BusyBracket busy(*this, u"Reverting performance tweaks…"_s);
    co_return co_await removeStartupAppsAndRevert();
}

QCoro::Task<RestoreOutcome> SystemManager::restoreDefault() {
    const BusyBracket busy(*this, u"Restoring default settings…"_s);
    const RestoreOutcome outcome = co_await removeStartupAppsAndRevert();
    if (outcome.succeeded) {
        m_host.defaults.setString(kQuorvaneLastAppliedProfileName, UnifiedProfile::defaultProfile().name);
    }
    co_return outcome;
}

QCoro::Task<RestoreOutcome> SystemManager::reinstateWholeSystem() {
    const BusyBracket busy(*this, u"Reinstating system…"_s);
    log(u"\n[REINSTATE] Restoring system..."_s);
    co_return co_await reinstateSystem();
}

/// An application that stays in the login items is in the log; the outcome is that of the settings.
QCoro::Task<RestoreOutcome> SystemManager::removeStartupAppsAndRevert() {
    m_lastApplyVerification.reset();
    const QSet<QString> paths = managedStartupAppPaths() + profileStartupAppPaths();
    co_await removeManagedStartupApps(paths);
    co_return co_await revertPerformanceTweaks();
}

} // namespace quorvane
