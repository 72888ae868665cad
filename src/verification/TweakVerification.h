#pragma once

#include "readings/CurrentSettings.h"
#include "snapshots/OwnSettings.h"
#include "tweaks/PerformanceSettings.h"
#include "verification/ApplyVerificationResult.h"
#include "verification/UnselectedTweaks.h"

#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class Clock;
class SystemReadings;

/// Whether the check follows an order that was just given, to which macOS may need seconds.
enum class AfterOrder { No, Yes };

/// Reads the eleven tweaks back from the live system, one after the other in a fixed order.
///
/// A selected tweak must read as applied; an unselected one is skipped, or must read as the user had it. Where that isn't known it
/// must read as a fresh macOS has it, if the program has changed it; else it is the user's, and fails nothing. A value that
/// can't be read decides nothing by itself: each check says what a missing value means to it. But a tool that didn't answer
/// fails each row that needs its reading.
class TweakVerification {
public:
    struct Context {
        OwnSettings own;
        bool isNotificationCenterOff = false; ///< the program has switched it off in launchd, and it still is
        AfterOrder after = AfterOrder::No;
    };

    TweakVerification(const SystemReadings& readings, Clock& clock, PerformanceSettings settings,
                      UnselectedTweaks unselected, Context context);

    QCoro::Task<ApplyVerificationResult> run();

private:
    using Setting = bool PerformanceSettings::*;

    struct Verdict {
        bool holds;
        QString verifiedDetail;
        QString failedDetail;
        QString note{}; ///< where it holds
        bool isOnThisMac = true;
        bool isUsersOwn = false;
        bool isLeftOut = false; ///< neither holds nor fails
    };
    struct Check {
        Setting setting;
        QCoro::Task<Verdict> (TweakVerification::*run)(bool selected);
    };
    static const Check kChecks[];

    /// Where the detail says what was expected.
    static Verdict verdict(bool holds, const QString& detail);
    /// Of a setting that this Mac doesn't have.
    static Verdict absent(const QString& detail);
    /// Of a tweak that is left off.
    Verdict leftOff(Setting tweak, const TweakComparison& comparison, const Verdict& standard) const;
    bool isUsersToDecide(Setting tweak, const TweakComparison& comparison) const;
    Verdict chosen(Setting tweak, bool selected, const Verdict& applied, const Verdict& standard) const;

    /// What was read for the row at hand, which fails without an answer.
    template <typename T>
    const Reading<T>& needed(const Reading<T>& reading) {
        m_isAnswered = m_isAnswered && reading.isAnswered;
        return reading;
    }

    QCoro::Task<Verdict> preferences(Setting tweak, bool selected, QString applied, QString restored);
    QCoro::Task<void> readIndexing(bool selected);

    QCoro::Task<Verdict> appNap(bool selected);
    QCoro::Task<Verdict> softwareUpdates(bool selected);
    QCoro::Task<Verdict> notifications(bool selected);
    QCoro::Task<Verdict> siri(bool selected);
    QCoro::Task<Verdict> crashReporter(bool selected);
    QCoro::Task<Verdict> interfaceSounds(bool selected);
    QCoro::Task<Verdict> airDrop(bool selected);
    QCoro::Task<Verdict> usbPower(bool selected);
    QCoro::Task<Verdict> motionSensor(bool selected);
    QCoro::Task<Verdict> spotlight(bool selected);
    QCoro::Task<Verdict> timeMachine(bool selected);
    Verdict unreadableTimeMachine(bool selected);

    const SystemReadings& m_readings;
    Clock& m_clock;
    PerformanceSettings m_settings;
    UnselectedTweaks m_unselected;
    Context m_context;
    CurrentSettings m_current;
    bool m_isAnswered = true; ///< all that the row at hand needs
    bool m_lacksFullDiskAccess = false;
};

} // namespace quorvane
