#include "system/SystemManager.h"

#include "core/AdminPrompts.h"
#include "core/Background.h"
#include "startup/background/BackgroundItemPermission.h"
#include "startup/login/LoginItemRemoval.h"
#include "tweaks/TweakCommands.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <iterator>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<bool> SystemManager::applyCleanReboot(CleanReboot cleanReboot) {
    co_await runTweakSteps(QList<TweakStep>(1, stopAppRestorationStep()));
    bool succeeded = co_await removeNonPermittedLoginItems(cleanReboot);
    if (cleanReboot.startup && !cleanReboot.startup->disabledLaunchLabels().isEmpty()) {
        const QStringList labels = sortedTexts(cleanReboot.startup->disabledLaunchLabels());
        log(u"  [ACTION] Disabling %1 launch item(s) for clean reboot..."_s.arg(labels.size()));
        succeeded = co_await disableLaunchItems(labels, cleanReboot.excludedIds) && succeeded;
    }
    if (m_backgroundTaskItemsFetchMode == BackgroundTaskItemsFetchMode::deferredToAdminBatch) {
        planCleanReboot(cleanReboot);
        co_return succeeded;
    }
    co_return co_await disableNonPermittedBackgroundItems(cleanReboot) && succeeded;
}

QCoro::Task<bool> SystemManager::removeNonPermittedLoginItems(CleanReboot cleanReboot) {
    const LoginItemList list = co_await loginItems();
    if (!list.wasRead) {
        co_await logMissingSystemEventsPermission();
        co_return false; // nobody knows what there is
    }
    const DividedLoginItems divided = dividedLoginItems(list.items, cleanReboot);
    if (divided.going.isEmpty()) {
        log(u"  [APPLIED] Login items already match permitted startup list."_s);
        co_return true;
    }
    log(u"  [ACTION] Removing %1 login item(s) not in permitted startup list..."_s.arg(divided.going.size()));
    const auto isExcluded = [&cleanReboot](const LoginItem& item) {
        return isExcludedAgent(item, cleanReboot.excludedIds);
    };
    QList<LoginItem> staying = divided.staying;
    std::copy_if(divided.going.begin(), divided.going.end(), std::back_inserter(staying), isExcluded);
    const LoginItemRemoval removal(staying);
    bool succeeded = true;
    for (const LoginItem& item : divided.going) {
        if (isExcluded(item)) {
            log(u"  [SKIPPED] Excluded App Background Activity login item: "_s + item.name);
            continue;
        }
        const bool isRemoved = co_await removeLoginItem(item, removal);
        log((isRemoved ? u"  [APPLIED] Removed login item: "_s : u"  [ERROR] Failed to remove login item: "_s) +
            item.name);
        succeeded = succeeded && isRemoved;
    }
    co_return succeeded;
}

void SystemManager::planCleanReboot(const CleanReboot& cleanReboot) {
    BackgroundLoginItemChangePlan& plan = *m_pendingBackgroundLoginItemChanges;
    plan.cleanRebootPermittedNames = allPermittedNames(cleanReboot);
    plan.cleanRebootStartup = cleanReboot.startup;
    if (cleanReboot.startup) {
        plan.disabledBackgroundLaunchLabels.unite(cleanReboot.startup->disabledBackgroundLabels());
    }
}

QCoro::Task<bool> SystemManager::disableNonPermittedBackgroundItems(CleanReboot cleanReboot) {
    co_await ensureBackgroundTaskItems(kSystemChangesPrompt, PrivilegedFetch::Allowed);
    const QList<BackgroundTaskItem> records =
        m_backgroundTaskItemsCache ? m_backgroundTaskItemsCache->items() : QList<BackgroundTaskItem>();
    const QList<BackgroundTaskItem> going = co_await inBackground(nonPermittedBackgroundItems, records,
                                                                  allPermittedNames(cleanReboot), cleanReboot.startup);
    bool succeeded = co_await disableBackgroundItems(going, u"background login item"_s);
    if (cleanReboot.startup) {
        succeeded = co_await disableBackgroundLabels(cleanReboot.startup->disabledBackgroundLabels()) && succeeded;
    }
    co_return succeeded;
}

} // namespace quorvane
