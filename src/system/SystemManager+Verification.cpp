#include "system/SystemManager.h"

#include "core/Background.h"
#include "matching/SystemVerification.h"
#include "profiles/UnifiedProfile.h"
#include "startup/apply/ActiveStartup.h"
#include "startup/background/BackgroundItems.h"
#include "startup/items/StartupChanges.h"
#include "startup/launchd/LaunchItems.h"
#include "startup/launchd/Launchd.h"
#include "startup/login/LoginItems.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString described(const ApplyVerificationResult::Item& item) {
    return item.detail ? item.name + u" — "_s + *item.detail : item.name;
}

} // namespace

QCoro::Task<ApplyVerificationResult> SystemManager::verifyProfile(UnifiedProfile profile) {
    return m_verification->profile(std::move(profile), AfterOrder::No);
}

QCoro::Task<ApplyVerificationResult> SystemManager::verifyAppliedSettings(PerformanceSettings settings,
                                                                          UnselectedTweaks unselected,
                                                                          CleanReboot cleanReboot) {
    return m_verification->tweaks(std::move(settings), unselected, std::move(cleanReboot), AfterOrder::No);
}

QCoro::Task<ApplyVerificationResult> SystemManager::verifyStartupConfiguration(StartupConfiguration configuration) {
    return m_verification->startup(std::move(configuration));
}

QCoro::Task<StartupChangePreview> SystemManager::previewStartupChanges(StartupConfiguration configuration,
                                                                       std::optional<CleanReboot> cleanReboot) {
    if (!cleanReboot && !hasStartupChanges(configuration) && managedStartupAppPaths().isEmpty() &&
        !m_backgroundItems->isSomethingWaiting()) {
        co_return StartupChangePreview(); // nobody has to wait for System Events
    }
    const StartupReadings readings = co_await readingsForReview();
    co_return co_await inBackground(startupChangePreview, configuration, cleanReboot, readings);
}

QCoro::Task<StartupChangePreview> SystemManager::previewCleanReboot(CleanReboot cleanReboot) {
    const StartupReadings readings = co_await readingsForReview();
    co_return co_await inBackground(cleanRebootPreview, cleanReboot, readings);
}

/// What was found before serves a review, but for what may be another now and is asked for quickly: launchd, and login items
/// that nobody might read.
QCoro::Task<StartupReadings> SystemManager::readingsForReview() {
    m_launchItems->launchd().drop();
    m_loginItems->dropUnread();
    const StartupReadings readings = co_await m_verification->startupReadings();
    m_loginItems->tellUnread(readings.loginItems);
    co_return readings;
}

void SystemManager::logNoteOf(const ApplyVerificationResult::Item& item) {
    if (!item.note.isEmpty()) {
        log(u"  [INFO] "_s + item.note);
    }
}

void SystemManager::logVerificationResult(const ApplyVerificationResult& result, const QString& section) {
    log(u"\n[VERIFY] "_s + section);
    for (const ApplyVerificationResult::Item& item : result.verified) {
        log(u"  [OK] "_s + described(item));
        logNoteOf(item);
    }
    for (const ApplyVerificationResult::Item& item : result.failed) {
        log(u"  [MISSING] "_s + described(item));
        logNoteOf(item);
    }
    if (result.lacksFullDiskAccess) {
        logUnreadableTimeMachine();
    }
    log(result.failed.isEmpty() ? u"  [VERIFY] All settings confirmed on system."_s
                                : u"  [VERIFY] %1 setting(s) could not be confirmed."_s.arg(result.failed.size()));
}

} // namespace quorvane
