#include "system/SystemManager.h"

#include "core/AdminBatch.h"
#include "core/AdminPrompts.h"
#include "startup/login/LoginItems.h"
#include "tweaks/TweakCommands.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<bool> SystemManager::applyPerformanceTweaks(PerformanceSettings settings, CleanReboot cleanReboot) {
    m_lastApplyVerification.reset();
    log(u"\nStarting Audio Performance optimizations..."_s);
    if (settings.cleanReboot) {
        deferBackgroundTaskFetchToAdminBatch();
    }
    beginAdminBatch();
    co_await runTweakSteps(applySteps(settings, notificationCenterPreferences()));
    const QStringList systemCommands =
        co_await effectiveCommands(applySystemCommands(settings), BackupSwitch::OfProfile);
    if (!systemCommands.isEmpty()) {
        log(u"  [ACTION] Requesting Admin rights for system performance tweaks..."_s);
        co_await m_adminBatch->runTolerantly(systemCommands, kSystemChangesPrompt);
    }
    if (settings.cleanReboot) {
        co_await applyCleanReboot(cleanReboot);
    }
    if (!co_await finishAdminBatch(kSystemChangesPrompt)) {
        co_return false;
    }
    if (!systemCommands.isEmpty()) {
        log(u"  [APPLIED] Successfully apply all system-level performance tweaks."_s);
    }
    log(u"\nPerformance Tweaks Complete! (Restart your Mac for full effect.)"_s);
    co_return co_await verifyTweaks(settings, UnselectedTweaks::Ignored, cleanReboot);
}

QCoro::Task<bool> SystemManager::syncPerformanceTweaks(PerformanceSettings settings, VerifyAfterSync verify,
                                                       CleanReboot cleanReboot) {
    m_lastApplyVerification.reset();
    log(u"\nSyncing performance tweaks to profile settings..."_s);
    co_await runTweakSteps(syncSteps(settings, notificationCenterPreferences()));
    const QStringList systemCommands =
        co_await effectiveCommands(syncSystemCommands(settings), BackupSwitch::OfProfile);
    log(u"  [ACTION] Requesting Admin rights to sync system-level tweaks..."_s);
    const CommandResult result = co_await m_adminBatch->runTolerantly(systemCommands, kSystemChangesPrompt);
    if (result.status != 0) {
        log(u"  [ERROR] System tweak sync was cancelled or failed: "_s + result.standardError);
        co_return false;
    }
    if (settings.cleanReboot) {
        co_await applyCleanReboot(cleanReboot); // its verification tells what it left behind
    } else {
        co_await runTweakSteps(QList<TweakStep>(1, restoreAppRestorationStep()));
    }
    log(u"\nPerformance Tweaks Synced! (Restart your Mac for full effect.)"_s);
    if (verify == VerifyAfterSync::No) {
        co_return !isQuitting();
    }
    co_return co_await verifyTweaks(settings, UnselectedTweaks::ExpectedRestored, cleanReboot);
}

QCoro::Task<bool> SystemManager::undoPerformanceTweaks() {
    m_lastApplyVerification.reset();
    log(u"\nUndoing Audio Performance tweaks (no snapshot — using standard defaults)..."_s);
    co_await runTweakSteps(undoSteps(notificationCenterPreferences()));
    const QStringList systemCommands = co_await effectiveCommands(undoSystemCommands(), BackupSwitch::OfWayBack);
    log(u"  [ACTION] Requesting Admin rights to restore system defaults..."_s);
    const CommandResult result = co_await m_adminBatch->runTolerantly(systemCommands, kSystemChangesPrompt);
    if (result.status != 0) {
        log(u"  [ERROR] Restoration was cancelled or failed: "_s + result.standardError);
        co_return false;
    }
    log(u"  [REVERTED] Successfully restored all system-level defaults."_s);
    log(u"\nUndo Complete! (Restart your Mac for full effect.)"_s);
    co_return !isQuitting();
}

QCoro::Task<void> SystemManager::runTweakSteps(QList<TweakStep> steps) {
    for (const TweakStep& step : steps) {
        for (const QStringList& command : step.commands) {
            co_await runCommand(command, OutputCapture::Discard);
        }
        log(step.logLine);
    }
}

QCoro::Task<bool> SystemManager::verifyTweaks(PerformanceSettings settings, UnselectedTweaks unselected,
                                              CleanReboot cleanReboot) {
    m_loginItems->readAgain();
    const ApplyVerificationResult result = co_await verifyAppliedSettings(settings, unselected, cleanReboot);
    logVerificationResult(result, u"Performance tweaks"_s);
    m_lastApplyVerification = result;
    co_return result.failed.isEmpty() && !isQuitting();
}

} // namespace quorvane
