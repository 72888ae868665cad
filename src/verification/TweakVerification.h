#pragma once

#include "readings/PowerSettings.h"
#include "tweaks/PerformanceSettings.h"
#include "verification/ApplyVerificationResult.h"
#include "verification/UnselectedTweaks.h"

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
/// be read decides nothing by itself: each check says what a missing value means to it.
class TweakVerification {
public:
    TweakVerification(const SystemReadings& readings, PerformanceSettings settings, UnselectedTweaks unselected);

    QCoro::Task<ApplyVerificationResult> run();

private:
    struct Verdict {
        bool holds;
        QString detail;
    };
    struct Row {
        QStringView name;
        bool PerformanceSettings::*setting;
        QCoro::Task<Verdict> (TweakVerification::*check)(bool selected);
    };
    static const Row kRows[];

    static Verdict verdict(bool holds, const QString& verifiedDetail, const QString& failedDetail);
    /// Where the detail says what was expected.
    static Verdict verdict(bool holds, const QString& detail);

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

    const SystemReadings& m_readings;
    PerformanceSettings m_settings;
    UnselectedTweaks m_unselected;
    PowerSettings m_power;
};

} // namespace quorvane
