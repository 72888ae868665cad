#pragma once

#include "core/NotificationCenter.h"
#include "core/SystemManager.h"
#include "platform/simulated/SimulatedHost.h"
#include "profiles/ProfileManager.h"
#include "profiles/UnifiedProfile.h"
#include "rehearsal/Arguments.h"

#include <QCoroTask>
#include <QObject>

#include <optional>

namespace quorvane {

/// What a command came to.
struct RehearsalOutcome {
    bool succeeded = false;
    std::optional<ApplyVerificationResult> verification; ///< where the command verifies

    bool isDone() const { return succeeded && (!verification || verification->failed.isEmpty()); }
};

/// The program's flows on one simulated Mac, as the window would call them.
class Rehearsal : public QObject {
    Q_OBJECT

public:
    /// Throws std::exception when the folder holds no simulated Mac or an option's file can't be used.
    Rehearsal(const QString& macFolder, macsim::Authorization authorization, const SimulatedHostOptions& options);

    SystemManager& system() { return m_system; }

    /// Throws UnusableInput for a file that can't be applied; nothing is changed then.
    QCoro::Task<RehearsalOutcome> applyProfileFile(QString hostPath);
    QCoro::Task<RehearsalOutcome> applyTweaksOfFile(QString hostPath);
    QCoro::Task<RehearsalOutcome> verifyProfileFile(QString hostPath);
    QCoro::Task<RehearsalOutcome> restoreDefault();

    /// Ends whatever runs, so that the flow comes to its end.
    void quit() { m_host.shutDown(); }

private:
    std::optional<UnifiedProfile> storedProfile(const UnifiedProfile& profile, const QString& hostPath);

    AuthorizationPolicy m_authorization;
    SimulatedHost m_host;
    NotificationCenter m_notifications;
    SystemManager m_system;
    ProfileManager m_profiles;
};

} // namespace quorvane
