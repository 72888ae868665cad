#include "system/SystemManager.h"

#include "startup/background/BackgroundItems.h"
#include "startup/login/LoginItems.h"
#include "tweaks/TweakCommands.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<bool> SystemManager::applyCleanReboot(CleanReboot cleanReboot) {
    co_await runTweakSteps(QList<TweakStep>(1, stopAppRestorationStep()));
    bool succeeded = co_await m_loginItems->removeNonPermitted(cleanReboot);
    if (cleanReboot.startup && !cleanReboot.startup->disabledLaunchLabels().isEmpty()) {
        const QStringList labels = sortedTexts(cleanReboot.startup->disabledLaunchLabels());
        log(u"  [ACTION] Disabling %1 launch item(s) for clean reboot..."_s.arg(labels.size()));
        succeeded = co_await disableLaunchItems(labels, cleanReboot.excludedIds) && succeeded;
    }
    if (m_backgroundItems->isDeferred()) {
        m_backgroundItems->planCleanReboot(cleanReboot);
        co_return succeeded && !isQuitting();
    }
    co_return co_await m_backgroundItems->disableNonPermitted(cleanReboot) && succeeded && !isQuitting();
}

} // namespace quorvane
