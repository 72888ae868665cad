#pragma once

#include "flows/LastFlow.h"
#include "matching/SystemConfigurationMatch.h"
#include "matching/SystemVerification.h"
#include "readings/ReadingSession.h"
#include "startup/apply/StartupItems.h"
#include "startup/launchd/Launchd.h"
#include "startup/login/LoginItems.h"
#include "verification/LastFlowStanding.h"

#include <optional>

namespace quorvane {

/// The search for the configuration that this Mac is in. The Mac is read once, however many profiles there are. Main thread.
class SystemScan {
public:
    /// @param startup  what it finds of these is known there afterwards
    SystemScan(FlowEnvironment& environment, const SystemVerification::Startup& startup, Abandonment abandonment);

    /// The first profile that fits, else Default, else none. Ends with none at the first configuration of which something
    /// wasn't answered, and when it has been abandoned.
    QCoro::Task<std::optional<SystemConfigurationMatch>> search(QList<UnifiedProfile> profiles,
                                                                std::optional<QString> appliedName);
    /// Labels that the program had switched off and that are on again; sorted. Asks launchd where the search hasn't.
    QCoro::Task<QStringList> onAgain();
    /// How what a flow has left stands now; none where something wasn't answered.
    QCoro::Task<std::optional<LastFlowStanding>> standing(LastFlow last);
    /// What wasn't answered.
    const QStringList& missing() const { return m_session.missing(); }

private:
    QCoro::Task<ApplyVerificationResult> comparedWithBaseline(std::optional<RestoreBaseline> baseline);
    bool isUndecided() const;

    ReadingSession m_session;
    LoginItems m_loginItems;
    Launchd m_launchd;
    StartupItems m_startupItems;
    SystemVerification m_verification;
};

} // namespace quorvane
