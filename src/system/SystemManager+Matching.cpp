#include "system/SystemManager.h"

#include "core/NotificationCenter.h"
#include "core/UserDefaultKeys.h"
#include "matching/SystemMatching.h"
#include "platform/UserDefaults.h"
#include "profiles/UnifiedProfile.h"
#include "startup/login/LoginItems.h"

#include <QCoroTask>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<std::optional<SystemConfigurationMatch>>
SystemManager::scanCurrentSystem(QList<UnifiedProfile> profiles, std::optional<QString> appliedName) {
    setVerifyingSystem(true);
    log(u"\n[VERIFY] Scanning current system settings..."_s);
    const std::optional<QString> name = lastAppliedName(appliedName);
    const std::optional<SystemConfigurationMatch> match = co_await findSystemMatch(profiles, name);
    const auto applied = std::find_if(profiles.cbegin(), profiles.cend(),
                                      [&name](const UnifiedProfile& profile) { return profile.name == name; });
    if (!match && applied != profiles.cend()) {
        keepAppliedProfile(*applied);
        setVerifyingSystem(false);
        co_return std::as_const(m_scan.match);
    }
    m_scan.match = match;
    m_scan.hasEnded = true;
    Q_EMIT systemMatchChanged();
    logSystemMatch();
    postSystemMatch();
    setVerifyingSystem(false);
    co_return match;
}

/// What was applied last stays active although more of it is off than not: nothing else fits better.
void SystemManager::keepAppliedProfile(const UnifiedProfile& profile) {
    if (m_lastApplyVerification) {
        recordAppliedConfiguration(profile, *m_lastApplyVerification);
        return;
    }
    m_scan.match = SystemConfigurationMatch{profile.name, MatchedConfigurationKind::savedProfile, {}};
    m_scan.hasEnded = true;
    Q_EMIT systemMatchChanged();
}

QCoro::Task<std::optional<SystemConfigurationMatch>>
SystemManager::findSystemMatch(QList<UnifiedProfile> profiles, std::optional<QString> appliedName) {
    m_loginItems->drop(); // the question is what this Mac is like now
    const std::optional<QString> name = lastAppliedName(appliedName);
    const QList<UnifiedProfile> candidates = candidateOrder(profiles, name);
    for (const UnifiedProfile& profile : candidates) {
        const ApplyVerificationResult verification = co_await verifyProfile(profile);
        if (isMatch(verification, profile.name == name)) {
            co_return SystemConfigurationMatch{profile.name, MatchedConfigurationKind::savedProfile, verification};
        }
    }
    const ApplyVerificationResult inForce =
        co_await verifyAppliedSettings(PerformanceSettings::fullSelection(), UnselectedTweaks::Ignored);
    const Reading<bool> isRestorationOff = co_await isAppRestorationOff();
    const ApplyVerificationResult verification = defaultVerification(inForce, isRestorationOff.value == true);
    if (verification.failed.isEmpty()) {
        co_return SystemConfigurationMatch{UnifiedProfile::defaultProfile().name, MatchedConfigurationKind::builtinMode,
                                           verification};
    }
    co_return std::nullopt;
}

std::optional<QString> SystemManager::lastAppliedName(const std::optional<QString>& given) const {
    return given ? given : m_host.defaults.string(kQuorvaneLastAppliedProfileName);
}

void SystemManager::logSystemMatch() {
    if (!m_scan.match) {
        log(u"  [VERIFY] No saved profile fully matches the current system."_s);
        return;
    }
    logVerificationResult(m_scan.match->verification, u"System matches: "_s + m_scan.match->name);
    log(u"  [VERIFY] Active configuration: "_s + m_scan.match->name +
        (m_scan.match->kind == MatchedConfigurationKind::savedProfile ? u" (saved profile)"_s : u" (default)"_s));
}

void SystemManager::postSystemMatch() {
    QVariantMap userInfo{{u"matchKind"_s, QString()}};
    if (m_scan.match) {
        const bool isProfile = m_scan.match->kind == MatchedConfigurationKind::savedProfile;
        userInfo = {{u"matchName"_s, m_scan.match->name}, {u"matchKind"_s, isProfile ? u"profile"_s : u"mode"_s}};
    }
    m_notifications.post(kQuorvaneSystemVerified, userInfo);
}

void SystemManager::setVerifyingSystem(bool isVerifying) {
    if (isVerifying != m_scan.isUnderWay) {
        m_scan.isUnderWay = isVerifying;
        Q_EMIT isVerifyingSystemChanged(isVerifying);
    }
}

} // namespace quorvane
