#include "system/SystemManager.h"

#include "core/OneLine.h"
#include "core/UserDefaultKeys.h"
#include "flows/FlowJournal.h"
#include "flows/FlowSteps.h"
#include "matching/SystemVerification.h"
#include "platform/UserDefaults.h"
#include "profiles/ApplyPreviews.h"
#include "profiles/UnifiedProfile.h"
#include "snapshots/FirstBaseline.h"
#include "snapshots/OwnSettings.h"
#include "startup/background/BackgroundItems.h"
#include "startup/login/LoginItems.h"
#include "tweaks/TweakCatalogue.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

bool changesBackgroundItems(const UnifiedProfile& profile) {
    return profile.settings.cleanReboot || !profile.startup.disabledBackgroundLabels().isEmpty() ||
           !profile.startup.disabledCloudSyncAtStartup.empty();
}

} // namespace

QCoro::Task<bool> SystemManager::applyProfile(UnifiedProfile profile) {
    m_lastApplyVerification.reset();
    const FlowRecording recording = recordProfile(profile);
    log(u"\n[PROFILE] Applying: "_s + profile.name);
    if (changesBackgroundItems(profile) || m_backgroundItems->isSomethingWaiting()) {
        deferBackgroundTaskFetchToAdminBatch();
    }
    beginAdminBatch();
    const bool tweaksSucceeded =
        co_await syncPerformanceTweaks(profile.settings, VerifyAfterSync::No, cleanRebootOf(profile));
    const bool startupSucceeded = co_await applyStartupConfiguration(profile.startup);
    m_journal->strike(kStartupStep);
    const bool batchSucceeded = co_await finishAdminBatch(u"Quorvane needs your administrator password to apply "_s +
                                                          nameOnOneLine(profile.name) + u'.');
    const bool succeeded = tweaksSucceeded && startupSucceeded && batchSucceeded;

    // Also after a failure: what ran as the user has changed the system all the same.
    m_loginItems->readAgain();
    const ApplyVerificationResult verification =
        co_await m_verification->profile(profile, batchSucceeded ? AfterOrder::Yes : AfterOrder::No);
    logVerificationResult(verification, u"Profile: "_s + profile.name);
    m_lastApplyVerification = verification;
    const PerformanceSettings inForce = batchSucceeded ? profile.settings : PerformanceSettings();
    co_await strikeRestoredTweaks(inForce);
    if (!batchSucceeded && profile.startup.disableNetworkAtStartup) {
        co_await settleSwitchedOff();
    }

    if (!succeeded || isQuitting()) {
        log(u"\n[PROFILE] "_s + profile.name + u" apply failed or was cancelled — check logs."_s);
        co_return false;
    }
    log(u"\n[PROFILE] "_s + profile.name +
        (verification.failed.isEmpty() ? u" applied and verified successfully."_s
                                       : u" applied with verification warnings — check logs."_s));
    noteLeft(verification);
    recordAppliedConfiguration(profile, verification);
    invalidateStartupCaches();
    co_return true;
}

QCoro::Task<ProfileApplyPreview> SystemManager::previewProfile(UnifiedProfile profile) {
    const std::optional<CleanReboot> cleanReboot =
        profile.settings.cleanReboot ? std::optional(cleanRebootOf(profile)) : std::nullopt;
    const StartupChangePreview startup = co_await previewStartupChanges(profile.startup, cleanReboot);
    // Those of today are captured before the first change.
    const bool hasOwnSettings =
        readOwnSettings(m_host).captured.has_value() || !hasOwnCapture(m_host.files, m_host.machine);
    ProfileApplyPreview preview{profile.name, selectedTweakTitles(profile.settings), startup, hasOwnSettings, {}};
    preview.standing = co_await readStandingForReview();
    co_return preview;
}

QCoro::Task<TweaksApplyPreview> SystemManager::previewTweaks(PerformanceSettings settings, CleanReboot cleanReboot) {
    TweaksApplyPreview preview{selectedTweakTitles(settings), {}, {}};
    if (settings.cleanReboot) {
        preview.startup = co_await previewCleanReboot(cleanReboot);
    }
    preview.standing = co_await readStandingForReview();
    co_return preview;
}

void SystemManager::recordAppliedConfiguration(const UnifiedProfile& profile,
                                               const ApplyVerificationResult& verification) {
    m_host.defaults.setString(kQuorvaneLastAppliedProfileName, profile.name);
    m_scan.match = SystemConfigurationMatch{profile.name, MatchedConfigurationKind::savedProfile, verification};
    m_scan.hasEnded = true;
    Q_EMIT systemMatchChanged();
    Q_EMIT appliedConfigurationRecorded(profile.name);
    postSystemMatch();
}

} // namespace quorvane
