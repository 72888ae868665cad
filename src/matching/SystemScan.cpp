#include "matching/SystemScan.h"

#include "core/Turns.h"
#include "matching/SystemMatching.h"
#include "platform/Host.h"
#include "readings/SystemReadings.h"
#include "snapshots/RestoreComparison.h"
#include "startup/launchd/LaunchdReadings.h"
#include "verification/ComparedSettings.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

SystemScan::SystemScan(FlowEnvironment& environment, const SystemVerification::Startup& startup,
                       Abandonment abandonment)
    : m_session(environment, std::move(abandonment))
    , m_loginItems(m_session, startup.loginItems)
    , m_launchd(m_session, startup.launchd)
    , m_startupItems(m_session, m_loginItems, m_launchd, startup.items)
    , m_verification(m_session, {m_loginItems, m_startupItems, m_launchd, startup.backgroundItems},
                     SystemReadings::Files::Once) {}

QCoro::Task<std::optional<SystemConfigurationMatch>> SystemScan::search(QList<UnifiedProfile> profiles,
                                                                        std::optional<QString> appliedName) {
    m_loginItems.drop(); // the question is what this Mac is like now
    m_launchd.drop();
    Turn turn(m_session.host().clock);
    const QList<UnifiedProfile> candidates = candidateOrder(profiles, appliedName);
    for (const UnifiedProfile& profile : candidates) {
        const ApplyVerificationResult verification = co_await m_verification.profile(profile, AfterOrder::No);
        if (isUndecided()) {
            co_return std::nullopt;
        }
        if (isMatch(verification, profile.name == appliedName)) {
            co_return SystemConfigurationMatch{profile.name, MatchedConfigurationKind::savedProfile, verification};
        }
        if (turn.isOver()) {
            co_await turn
                .next(); // what was read serves the others, so that nothing else would let the event loop come round
        }
    }
    const ApplyVerificationResult inForce = co_await m_verification.tweaks(
        PerformanceSettings::fullSelection(), UnselectedTweaks::Ignored, {}, AfterOrder::No);
    const AppRestoration restoration = co_await m_verification.readAppRestoration();
    const bool isSwitchedOff = restoration.isOff && restoration.wasOff != true && !restoration.isManaged;
    ApplyVerificationResult verification = defaultVerification(inForce, isSwitchedOff);
    if (inForce.lacksFullDiskAccess && m_verification.readings().hasSwitchedBackupsOff()) {
        verification.failed.append({u"Time Machine"_s, u"could not read status"_s});
    }
    if (isUndecided() || !verification.failed.isEmpty()) {
        co_return std::nullopt;
    }
    co_return SystemConfigurationMatch{UnifiedProfile::defaultProfile().name, MatchedConfigurationKind::builtinMode,
                                       verification};
}

QCoro::Task<QStringList> SystemScan::onAgain() {
    if (m_launchd.recordedOverrides().isEmpty()) {
        co_return QStringList();
    }
    const LaunchdOverrides now = co_await m_launchd.overrides(); // settles what a killed run has left in the record
    co_return sortedTexts(labelsOnAgain(m_launchd.recordedOverrides(), now));
}

QCoro::Task<std::optional<LastFlowStanding>> SystemScan::standing(LastFlow last) {
    ApplyVerificationResult now;
    switch (last.flow) {
    case RecordedFlow::Profile:
        now = co_await m_verification.profile(last.profile, AfterOrder::No);
        break;
    case RecordedFlow::Tweaks: {
        const CleanReboot cleanReboot = last.cleanReboot.value_or(CleanReboot());
        now = co_await m_verification.tweaks(last.profile.settings, UnselectedTweaks::Ignored, cleanReboot,
                                             AfterOrder::No);
        break;
    }
    case RecordedFlow::Startup:
        now = co_await m_verification.startup(last.profile.startup);
        break;
    case RecordedFlow::Undo:
    case RecordedFlow::Default:
    case RecordedFlow::Reinstate:
        now = co_await comparedWithBaseline(last.baseline);
        break;
    }
    co_return isUndecided() ? std::nullopt : std::optional(standingOf(last, now));
}

/// By what values mean: their types are read where a way back ends.
QCoro::Task<ApplyVerificationResult> SystemScan::comparedWithBaseline(std::optional<RestoreBaseline> baseline) {
    const bool isByVolume = baseline && baseline->snapshot.spotlightByVolume;
    const CurrentSettings current = co_await m_verification.readings().readCurrentSettings(
        isByVolume ? SystemReadings::Volumes::All : SystemReadings::Volumes::OfTheSystem);
    if (baseline) {
        co_return asVerification(comparedWith(baseline->snapshot, current, {}, std::nullopt, std::nullopt));
    }
    co_return asVerification(comparedWithStandard(current));
}

bool SystemScan::isUndecided() const {
    return m_session.isAbandoned() || !m_session.missing().isEmpty();
}

} // namespace quorvane
