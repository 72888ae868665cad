#pragma once

#include "readings/PowerSettings.h"
#include "readings/Reading.h"
#include "tweaks/PerformanceSettings.h"
#include "verification/ApplyVerificationResult.h"
#include "verification/UnselectedTweaks.h"

#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class SystemReadings;
struct MacPreference;

/// Reads the eleven tweaks back from the live system, one after the other in a fixed order.
///
/// A selected tweak must read as applied; an unselected one is skipped, or must read as restored. A value that can't
/// be read decides nothing by itself: each check says what a missing value means to it. But a tool that didn't answer
/// fails each row that needs its reading.
class TweakVerification {
public:
    TweakVerification(const SystemReadings& readings, PerformanceSettings settings, UnselectedTweaks unselected);

    QCoro::Task<ApplyVerificationResult> run();

private:
    struct Verdict {
        bool holds;
        QString verifiedDetail;
        QString failedDetail;
        QString note{}; ///< where it holds
        bool isOnThisMac = true;
        bool isLeftOut = false; ///< neither holds nor fails
    };
    struct Row {
        QStringView name;
        bool PerformanceSettings::*setting;
        QCoro::Task<Verdict> (TweakVerification::*check)(bool selected);
    };
    static const Row kRows[];

    /// Where the detail says what was expected.
    static Verdict verdict(bool holds, const QString& detail);
    /// Of a setting that this Mac doesn't have.
    static Verdict absent(const QString& detail);

    /// What was read for the row at hand, which fails without an answer.
    template <typename T>
    std::optional<T> needed(const Reading<T>& reading) {
        m_isAnswered = m_isAnswered && reading.isAnswered;
        return reading.value;
    }
    QCoro::Task<std::optional<QString>> valueOf(MacPreference preference);
    PowerSettings power();

    QCoro::Task<Verdict> onePreference(MacPreference preference, bool selected, QString applied, QString restored);

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
    PerformanceSettings m_settings;
    UnselectedTweaks m_unselected;
    Reading<PowerSettings> m_power;
    bool m_isAnswered = true; ///< all that the row at hand needs
    bool m_lacksFullDiskAccess = false;
};

} // namespace quorvane
