#include "system/SystemManager.h"

#include "core/NotificationCenter.h"
#include "core/UserDefaultKeys.h"
#include "flows/LastFlow.h"
#include "matching/SystemScan.h"
#include "platform/UserDefaults.h"
#include "profiles/UnifiedProfile.h"
#include "startup/launchd/LaunchItems.h"

#include <QCoroTask>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<std::optional<SystemConfigurationMatch>>
SystemManager::scanCurrentSystem(QList<UnifiedProfile> profiles, std::optional<QString> appliedName,
                                 Abandonment abandonment) {
    if (abandonment.isAbandoned()) {
        co_return std::nullopt;
    }
    countScan(+1);
    log(u"\n[VERIFY] Scanning current system settings..."_s);
    const std::optional<QString> name = lastAppliedName(appliedName);
    SystemScan scan(*this, {*m_loginItems, *m_startupItems, m_launchItems->launchd(), *m_backgroundItems}, abandonment);
    const std::optional<SystemConfigurationMatch> match = co_await scan.search(profiles, name);
    const QStringList missing = scan.missing();
    const QStringList onAgain = co_await scan.onAgain();
    const std::optional<LastFlowStanding> standing = co_await readStanding(scan);
    if (abandonment.isAbandoned() || (isQuitting() && missing.isEmpty())) {
        countScan(-1);
        co_return std::nullopt;
    }
    for (const QString& label : onAgain) {
        log(u"  [INFO] On again since it was switched off: "_s + label);
    }
    if (missing.isEmpty()) {
        m_scan.standing = standing;
        logStanding();
    }
    const auto applied = std::find_if(profiles.cbegin(), profiles.cend(),
                                      [&name](const UnifiedProfile& profile) { return profile.name == name; });
    if (!missing.isEmpty()) {
        log(u"  [VERIFY] Nothing can be said of this system, because these readings are missing: "_s +
            missing.join(u", "_s));
        keepMatch(m_scan.match);
    } else if (!match && applied != profiles.cend()) {
        // What was applied last stays active although more of it is off than not: nothing else fits better.
        m_scan.hasEnded = true;
        keepMatch(SystemConfigurationMatch{applied->name, MatchedConfigurationKind::savedProfile, {}});
    } else {
        m_scan.match = match;
        m_scan.hasEnded = true;
        Q_EMIT systemMatchChanged();
        logSystemMatch();
        postSystemMatch();
    }
    countScan(-1);
    co_return std::as_const(m_scan.match);
}

QCoro::Task<std::optional<LastFlowStanding>> SystemManager::readStanding(SystemScan& scan) {
    const std::optional<LastFlow> last = LastFlowFile(m_host.files, m_host.machine).load();
    if (!last) {
        co_return std::nullopt;
    }
    co_return co_await scan.standing(*last);
}

QCoro::Task<std::optional<LastFlowStanding>> SystemManager::readStandingForReview() {
    SystemScan scan(*this, {*m_loginItems, *m_startupItems, m_launchItems->launchd(), *m_backgroundItems}, {});
    co_return co_await readStanding(scan);
}

void SystemManager::logStanding() {
    if (!m_scan.standing || m_scan.standing->changed.isEmpty()) {
        return;
    }
    log(u"  [INFO] "_s + changesTitle(*m_scan.standing));
    for (const QString& line : changeLines(*m_scan.standing)) {
        log(u"  [INFO] "_s + line);
    }
}

/// Nobody has found it now, so nothing of it is verified, and it isn't applied anew.
void SystemManager::keepMatch(std::optional<SystemConfigurationMatch> match) {
    if (match) {
        match->verification = {};
        match->isKept = true;
    }
    m_scan.match = std::move(match);
    Q_EMIT systemMatchChanged();
}

void SystemManager::forgetVerification(const QString& profile, const QString& now) {
    std::optional<SystemConfigurationMatch> match = m_scan.match;
    if (match && match->kind == MatchedConfigurationKind::savedProfile && match->name == profile) {
        match->name = now;
        keepMatch(std::move(match));
    }
}

QCoro::Task<std::optional<SystemConfigurationMatch>>
SystemManager::findSystemMatch(QList<UnifiedProfile> profiles, std::optional<QString> appliedName) {
    SystemScan scan(*this, {*m_loginItems, *m_startupItems, m_launchItems->launchd(), *m_backgroundItems}, {});
    co_return co_await scan.search(profiles, lastAppliedName(appliedName));
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

void SystemManager::countScan(int change) {
    const bool wasVerifying = isVerifyingSystem();
    m_scan.underWay += change;
    if (isVerifyingSystem() != wasVerifying) {
        Q_EMIT isVerifyingSystemChanged(isVerifyingSystem());
    }
}

} // namespace quorvane
