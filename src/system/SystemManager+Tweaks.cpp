#include "system/SystemManager.h"

#include "core/AdminBatch.h"
#include "core/AdminPrompts.h"
#include "flows/FlowJournal.h"
#include "flows/FlowSteps.h"
#include "matching/SystemVerification.h"
#include "snapshots/FocusMark.h"
#include "snapshots/RestoreCommands.h"
#include "snapshots/SyncPlan.h"
#include "startup/login/LoginItems.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<bool> SystemManager::applyPerformanceTweaks(PerformanceSettings settings, CleanReboot cleanReboot) {
    m_lastApplyVerification.reset();
    log(u"\nStarting Audio Performance optimizations..."_s);
    if (settings.cleanReboot) {
        deferBackgroundTaskFetchToAdminBatch();
    }
    const FlowRecording recording = recordTweaks(settings, cleanReboot);
    beginAdminBatch();
    const QList<TweakStep> steps = applySteps(settings, notificationCenterPreferences(), mayChange());
    if (selectedTweakCount(settings) > 0) {
        const CurrentSettings current = co_await lookAtTweaks();
        co_await beginRecord(steps, applySystemCommands(settings, mayChange()), current);
        noteChangedTweaks(settings, current);
    }
    if (marksFocus(steps)) {
        FocusMark focus(*this);
        co_await focus.record();
    }
    co_await runStepsOfNotificationCenter(steps);
    const QStringList systemCommands =
        co_await effectiveCommands(applySystemCommands(settings, mayChange()), BackupSwitch::OfProfile);
    if (!systemCommands.isEmpty()) {
        log(u"  [ACTION] Requesting Admin rights for system performance tweaks..."_s);
        co_await m_adminBatch->runTolerantly(systemCommands, kSystemChangesPrompt);
    }
    if (settings.cleanReboot) {
        co_await applyCleanReboot(cleanReboot);
    }
    if (!co_await finishAdminBatch(kSystemChangesPrompt)) {
        co_await strikeRestoredTweaks(PerformanceSettings()); // what a refused prompt has kept from being changed
        co_return false;
    }
    if (!systemCommands.isEmpty()) {
        log(u"  [APPLIED] Successfully apply all system-level performance tweaks."_s);
    }
    log(u"\nPerformance Tweaks Complete! (Restart your Mac for full effect.)"_s);
    const bool isVerified = co_await verifyTweaks(settings, UnselectedTweaks::Ignored, cleanReboot);
    noteLeft(*m_lastApplyVerification);
    co_return isVerified;
}

QCoro::Task<bool> SystemManager::syncPerformanceTweaks(PerformanceSettings settings, VerifyAfterSync verify,
                                                       CleanReboot cleanReboot) {
    m_lastApplyVerification.reset();
    log(u"\nSyncing performance tweaks to profile settings..."_s);
    const SyncPlan plan = co_await planSync(settings);
    co_await runStepsOfNotificationCenter(plan.steps); // that it stays off its row tells
    for (const QString& line : plan.systemLines) {
        log(line);
    }
    const QStringList systemCommands = co_await effectiveCommands(plan.systemCommands, BackupSwitch::OfProfile);
    if (!systemCommands.isEmpty()) {
        log(u"  [ACTION] Requesting Admin rights to sync system-level tweaks..."_s);
        const CommandResult result = co_await m_adminBatch->runTolerantly(systemCommands, kSystemChangesPrompt);
        if (result.status != 0) {
            log(u"  [ERROR] System tweak sync was cancelled or failed: "_s + result.standardError);
            co_await strikeRestoredTweaks(PerformanceSettings());
            co_return false;
        }
    }
    if (settings.cleanReboot) {
        co_await applyCleanReboot(cleanReboot); // its verification tells what it left behind
    } else {
        co_await runTweakSteps(QList<TweakStep>(1, plan.appRestoration));
    }
    log(u"\nPerformance Tweaks Synced! (Restart your Mac for full effect.)"_s);
    if (verify == VerifyAfterSync::No) {
        co_return !isQuitting();
    }
    const bool isVerified = co_await verifyTweaks(settings, UnselectedTweaks::ExpectedRestored, cleanReboot);
    co_await strikeRestoredTweaks(settings);
    co_return isVerified;
}

/// What it is about to change is written down.
QCoro::Task<SyncPlan> SystemManager::planSync(PerformanceSettings settings) {
    const OwnSettings own = readOwnSettings(m_host);
    const LookedAtVolumes volumes = settings.spotlight ? LookedAtVolumes::OfTheSystem : volumesFor(own.captured);
    const CurrentSettings current = co_await lookAtTweaks(volumes);
    const bool isOff = co_await isNotificationCenterOff();
    const SyncPlan plan = syncPlan(settings, own, current, notificationCenterPreferences(), isOff);
    co_await beginRecord(plan.steps + QList<TweakStep>(1, plan.appRestoration), plan.systemCommands, current);
    noteChangedTweaks(settings, current);
    co_return plan;
}

QCoro::Task<bool> SystemManager::undoPerformanceTweaks() {
    m_lastApplyVerification.reset();
    log(u"\nUndoing Audio Performance tweaks (no snapshot — using standard defaults)..."_s);
    const CurrentSettings current = co_await lookAtTweaks();
    const bool isNotificationCenterBack =
        co_await runStepsOfNotificationCenter(undoSteps(notificationCenterPreferences(), mayChange()));
    const QStringList systemCommands = co_await effectiveCommands(
        undoSystemCommands() + systemPreferenceCommandsBack(std::nullopt, current), BackupSwitch::OfWayBack);
    log(u"  [ACTION] Requesting Admin rights to restore system defaults..."_s);
    const CommandResult result = co_await m_adminBatch->runTolerantly(systemCommands, kSystemChangesPrompt);
    if (result.status != 0) {
        log(u"  [ERROR] Restoration was cancelled or failed: "_s + result.standardError);
        co_return false;
    }
    log(u"  [REVERTED] Successfully restored all system-level defaults."_s);
    log(u"\nUndo Complete! (Restart your Mac for full effect.)"_s);
    co_return isNotificationCenterBack && !isQuitting();
}

QCoro::Task<void> SystemManager::runTweakSteps(QList<TweakStep> steps) {
    for (const TweakStep& step : steps) {
        for (const QStringList& command : step.commands) {
            co_await runCommand(command, OutputCapture::Discard);
        }
        log(step.logLine);
        m_journal->strike(flowStep(step));
    }
}

QCoro::Task<bool> SystemManager::verifyTweaks(PerformanceSettings settings, UnselectedTweaks unselected,
                                              CleanReboot cleanReboot) {
    m_loginItems->readAgain();
    const ApplyVerificationResult result =
        co_await m_verification->tweaks(settings, unselected, cleanReboot, AfterOrder::Yes);
    logVerificationResult(result, u"Performance tweaks"_s);
    m_lastApplyVerification = result;
    co_return result.failed.isEmpty() && !isQuitting();
}

} // namespace quorvane
