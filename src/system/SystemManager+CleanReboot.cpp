#include "system/SystemManager.h"

#include "startup/background/BackgroundItems.h"
#include "startup/login/LoginItems.h"
#include "tweaks/TweakCommands.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<bool> SystemManager::applyCleanReboot(CleanReboot cleanReboot) {
    m_backgroundItems->planKept(cleanReboot.startup.value_or(StartupConfiguration()));
    co_await runTweakSteps(QList<TweakStep>(1, stopAppRestorationStep(mayChange())));
    bool succeeded = co_await m_loginItems->removeNonPermitted(cleanReboot);
    if (cleanReboot.startup && !cleanReboot.startup->disabledLaunchLabels().isEmpty()) {
        const QStringList labels = sortedTexts(cleanReboot.startup->disabledLaunchLabels());
        log(u"  [ACTION] Disabling %1 launch item(s) for clean reboot..."_s.arg(labels.size()));
        succeeded = co_await disableLaunchItems(labels, cleanReboot.excludedIds) && succeeded;
    }
    m_backgroundItems->planCleanReboot(cleanReboot);
    co_return co_await finishPlanOutsideBatch() && succeeded && !isQuitting();
}

} // namespace quorvane
