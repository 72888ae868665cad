#pragma once

#include "matching/SystemConfigurationMatch.h"
#include "readings/Abandonment.h"

#include <QObject>

#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class SavedProfiles;
class SystemManager;
class Tasks;
class Turnstile;

/// The scans over the saved profiles. One that is asked for while something runs or is open follows once that is over; of
/// several there is one; and one that an action overtakes is given up and repeated, because it may have read the Mac as it
/// was before. Main thread.
class SystemScans : public QObject {
    Q_OBJECT

public:
    SystemScans(SystemManager& system, SavedProfiles& profiles, Turnstile& turnstile, Tasks& tasks,
                QObject* parent = nullptr);

    /// Has a scan follow that nobody waits for.
    void request();
    /// A scan was requested, and every one that was has ended.
    bool isUpToDate() const { return m_wasRequested && !m_isRequested && !m_isUnderWay; }
    /// Scans now.
    QCoro::Task<std::optional<SystemConfigurationMatch>> scanned();

Q_SIGNALS:
    /// It is up to date.
    void ended();

private:
    void beginWhereIdle();
    QCoro::Task<void> carryOut();
    QCoro::Task<std::optional<SystemConfigurationMatch>> scan(Abandonment abandonment);

    SystemManager& m_system;
    SavedProfiles& m_profiles;
    Turnstile& m_turnstile;
    Tasks& m_tasks;
    bool m_wasRequested = false;
    bool m_isRequested = false; ///< and hasn't begun
    bool m_isUnderWay = false;
    Abandonment m_abandonment; ///< of the scan that nobody waits for
};

} // namespace quorvane
