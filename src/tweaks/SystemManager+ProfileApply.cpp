#include "core/SystemManager.h"

#include "core/NotificationCenter.h"
#include "core/UserDefaultKeys.h"
#include "platform/UserDefaults.h"
#include "profiles/UnifiedProfile.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<bool> SystemManager::applyProfile(UnifiedProfile profile) {
    log(u"\n[PROFILE] Applying: "_s + profile.name);
    beginAdminBatch();
    const bool tweaksSucceeded = co_await syncPerformanceTweaks(profile.settings, VerifyAfterSync::No);
    const bool startupSucceeded = co_await applyStartupConfiguration(profile.startup);
    const bool batchSucceeded =
        co_await finishAdminBatch(u"Quorvane needs your administrator password to apply "_s + profile.name + u'.');
    const bool succeeded = tweaksSucceeded && startupSucceeded && batchSucceeded;

    // Also after a failure: what ran as the user has changed the system all the same.
    const ApplyVerificationResult verification = co_await verifyProfile(profile);
    logVerificationResult(verification, u"Profile: "_s + profile.name);
    m_lastApplyVerification = verification;

    if (!succeeded) {
        log(u"\n[PROFILE] "_s + profile.name + u" apply failed or was cancelled — check logs."_s);
        co_return false;
    }
    log(u"\n[PROFILE] "_s + profile.name +
        (verification.failed.isEmpty() ? u" applied and verified successfully."_s
                                       : u" applied with verification warnings — check logs."_s));
    recordAppliedConfiguration(profile, verification);
    co_return true;
}

QCoro::Task<ApplyVerificationResult> SystemManager::verifyProfile(UnifiedProfile profile) {
    co_return co_await verifyAppliedSettings(profile.settings, UnselectedTweaks::ExpectedRestored);
}

void SystemManager::recordAppliedConfiguration(const UnifiedProfile& profile,
                                               const ApplyVerificationResult& verification) {
    m_host.defaults.setString(kQuorvaneLastAppliedProfileName, profile.name);
    m_systemMatch = SystemConfigurationMatch{profile.name, MatchedConfigurationKind::savedProfile, verification};
    m_hasVerifiedSystem = true;
    Q_EMIT systemMatchChanged();
    const QVariantMap userInfo{{u"matchName"_s, profile.name}, {u"matchKind"_s, u"profile"_s}};
    m_notifications.post(kQuorvaneSystemVerified, userInfo);
}

} // namespace quorvane
