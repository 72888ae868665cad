#pragma once

#include "core/Flow.h"
#include "readings/SystemReadings.h"
#include "snapshots/OwnSettings.h"
#include "startup/items/CleanReboot.h"
#include "startup/items/StartupConfiguration.h"
#include "tweaks/PerformanceSettings.h"
#include "verification/ApplyVerificationResult.h"
#include "verification/TweakVerification.h"
#include "verification/UnselectedTweaks.h"

namespace quorvane {

class BackgroundItems;
class Launchd;
class LoginItems;
class StartupItems;
struct StartupReadings;
struct UnifiedProfile;

/// Reads a configuration back from the live system, setting by setting. Changes nothing. Main thread.
class SystemVerification : private Flow {
public:
    /// What runs at login, from each of its sources.
    struct Startup {
        LoginItems& loginItems;
        StartupItems& items;
        Launchd& launchd;
        BackgroundItems& backgroundItems;
    };

    /// @param environment  the readings' own; the sources may have another one
    /// @param files        once for who compares many configurations with one moment of the Mac
    SystemVerification(FlowEnvironment& environment, const Startup& startup,
                       SystemReadings::Files files = SystemReadings::Files::Anew);

    const SystemReadings& readings() const { return m_readings; }

    /// @param after  whether it was applied right before
    QCoro::Task<ApplyVerificationResult> profile(UnifiedProfile profile, AfterOrder after);
    /// Each tweak, in a fixed order.
    /// @param cleanReboot  used when the settings select it
    QCoro::Task<ApplyVerificationResult> tweaks(PerformanceSettings settings, UnselectedTweaks unselected,
                                                CleanReboot cleanReboot, AfterOrder after);
    QCoro::Task<ApplyVerificationResult> startup(StartupConfiguration configuration);
    /// What a startup configuration is compared with.
    QCoro::Task<StartupReadings> startupReadings();
    /// Whether applications reopen after a restart.
    QCoro::Task<AppRestoration> readAppRestoration();
    /// The program has switched Notification Center off in launchd, and launchd still has it so.
    QCoro::Task<bool> isNotificationCenterOff();

private:
    QCoro::Task<ApplyVerificationResult> appRestorationLeftOn();
    QCoro::Task<ApplyVerificationResult> cleanReboot(CleanReboot cleanReboot);
    QCoro::Task<QList<ApplyVerificationResult::Item>> nonPermittedRegistrations(CleanReboot cleanReboot);

    OwnSettings ownSettings();

    SystemReadings m_readings;
    Startup m_startup;
    SystemReadings::Files m_files;
    std::optional<OwnSettings> m_own; ///< as the files have told, where they are read once
};

} // namespace quorvane
