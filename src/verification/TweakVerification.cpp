#include "verification/TweakVerification.h"

#include "readings/SystemReadings.h"
#include "readings/ValueTests.h"
#include "tweaks/TweakPreferences.h"

#include <QCoroTask>

#include <algorithm>
#include <array>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// A switch reads as it was written by its meaning, a word by its letters in any case.
bool isApplied(const MacPreference& preference, const std::optional<QString>& value) {
    const QString applied = preference.applied.toString();
    if (isTruthy(applied)) {
        return isTruthy(value);
    }
    if (isFalsy(applied)) {
        return isFalsy(value);
    }
    return value && value->toLower() == applied.toLower();
}

/// A key that isn't set is as good as the value that the program writes to put a tweak back.
bool isRestored(const MacPreference& preference, const std::optional<QString>& value) {
    if (isFalsy(preference.applied.toString())) {
        return !value || isTruthy(value);
    }
    return isTruthy(preference.applied.toString()) ? isFalsy(value) : !isApplied(preference, value);
}

/// Of the three settings those that this Mac lists, of which there is at least one.
bool isKeptAwake(const PowerSettings& power) {
    const std::array listed{power.standby, power.disksleep, power.sleep};
    const auto isThere = [](const std::optional<QString>& value) { return value.has_value(); };
    return std::any_of(listed.begin(), listed.end(), isThere) &&
           std::all_of(listed.begin(), listed.end(),
                       [](const std::optional<QString>& value) { return !value || value == u"0"_s; });
}

const QString kFocusNote =
    u"Notifications: the setting is stored. Turn on a Focus as well: Quorvane can't do that for you."_s;

} // namespace

const TweakVerification::Row TweakVerification::kRows[] = {
    {u"App Nap", &PerformanceSettings::appNap, &TweakVerification::appNap},
    {u"Software Updates", &PerformanceSettings::updates, &TweakVerification::softwareUpdates},
    {u"Notifications", &PerformanceSettings::notifications, &TweakVerification::notifications},
    {u"Siri", &PerformanceSettings::siri, &TweakVerification::siri},
    {u"Crash Reporter", &PerformanceSettings::crashReporter, &TweakVerification::crashReporter},
    {u"UI Sounds", &PerformanceSettings::uiSounds, &TweakVerification::interfaceSounds},
    {u"AirDrop", &PerformanceSettings::airdrop, &TweakVerification::airDrop},
    {u"USB Power", &PerformanceSettings::usbPower, &TweakVerification::usbPower},
    {u"Motion Sensor", &PerformanceSettings::sms, &TweakVerification::motionSensor},
    {u"Spotlight", &PerformanceSettings::spotlight, &TweakVerification::spotlight},
    {u"Time Machine", &PerformanceSettings::timeMachine, &TweakVerification::timeMachine},
};

TweakVerification::TweakVerification(const SystemReadings& readings, PerformanceSettings settings,
                                     UnselectedTweaks unselected)
    : m_readings(readings)
    , m_settings(std::move(settings))
    , m_unselected(unselected) {}

QCoro::Task<ApplyVerificationResult> TweakVerification::run() {
    ApplyVerificationResult result;
    m_power = co_await m_readings.readPowerSettings();
    for (const Row& row : kRows) {
        const bool selected = m_settings.*row.setting;
        if (!selected && m_unselected == UnselectedTweaks::Ignored) {
            continue;
        }
        m_isAnswered = true;
        const Verdict found = co_await (this->*row.check)(selected);
        if (found.isLeftOut) {
            continue;
        }
        if (found.holds && m_isAnswered) {
            result.verified.append({row.name.toString(), found.verifiedDetail, found.isOnThisMac, found.note});
        } else {
            result.failed.append({row.name.toString(), found.failedDetail});
        }
    }
    result.lacksFullDiskAccess = m_lacksFullDiskAccess;
    co_return result;
}

TweakVerification::Verdict TweakVerification::verdict(bool holds, const QString& detail) {
    return {holds, detail, u"expected "_s + detail};
}

TweakVerification::Verdict TweakVerification::absent(const QString& detail) {
    return {true, detail, {}, {}, false};
}

QCoro::Task<std::optional<QString>> TweakVerification::valueOf(MacPreference preference) {
    const Reading<QString> reading = co_await m_readings.readPreference(preference);
    co_return needed(reading);
}

/// What `pmset` has failed to tell is as good as not there.
PowerSettings TweakVerification::power() {
    return needed(m_power).value_or(PowerSettings());
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::onePreference(MacPreference preference, bool selected,
                                                                         QString applied, QString restored) {
    const auto value = co_await valueOf(preference);
    co_return selected ? verdict(isApplied(preference, value), applied)
                       : verdict(isRestored(preference, value), restored);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::appNap(bool selected) {
    return onePreference(preference::kAppSleep, selected, u"disabled"_s, u"enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::softwareUpdates(bool selected) {
    using namespace preference;
    const auto download = co_await valueOf(kUpdateDownload);
    if (!selected) {
        co_return verdict(isRestored(kUpdateDownload, download), u"enabled"_s);
    }
    const auto check = co_await valueOf(kUpdateCheck);
    const auto store = co_await valueOf(kStoreUpdate);
    co_return verdict(isApplied(kUpdateDownload, download) && isApplied(kUpdateCheck, check) &&
                          isApplied(kStoreUpdate, store),
                      u"disabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::notifications(bool selected) {
    Verdict found = co_await onePreference(preference::kDoNotDisturb, selected, u"suppressed"_s, u"enabled"_s);
    if (selected) {
        found.note = kFocusNote;
    }
    co_return found;
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::siri(bool selected) {
    using namespace preference;
    if (selected && isApplied(kSiriStatus, co_await valueOf(kSiriStatus))) {
        co_return verdict(true, u"disabled"_s);
    }
    co_return co_await onePreference(kAssistant, selected, u"disabled"_s, u"enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::crashReporter(bool selected) {
    return onePreference(preference::kCrashDialog, selected, u"disabled"_s, u"enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::interfaceSounds(bool selected) {
    return onePreference(preference::kInterfaceSounds, selected, u"muted"_s, u"enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::airDrop(bool selected) {
    return onePreference(preference::kAirDrop, selected, u"disabled"_s, u"enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::usbPower(bool selected) {
    const bool neverSleeps = isKeptAwake(power());
    co_return selected ? Verdict{neverSleeps, u"sleep disabled"_s, u"expected standby/disk/sleep at 0"_s}
                       : Verdict{!neverSleeps, u"standard sleep"_s, u"expected standard sleep values"_s};
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::motionSensor(bool selected) {
    const PowerSettings found = power();
    if (m_power.value && !found.sms) {
        co_return absent(u"not present on this Mac"_s);
    }
    if (selected) {
        co_return Verdict{found.sms == u"0"_s, u"disabled"_s, u"expected sms 0"_s};
    }
    co_return Verdict{found.sms == u"1"_s, u"enabled"_s, found.sms ? u"expected sms 1"_s : u"could not read pmset"_s};
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::spotlight(bool selected) {
    const std::optional<bool> indexes = needed(co_await m_readings.readSpotlightState());
    if (selected) {
        co_return verdict(indexes == false, u"indexing off"_s);
    }
    if (indexes == true) {
        co_return Verdict{true, u"indexing on"_s, u"could not read status"_s};
    }
    const bool isKnown = (co_await m_readings.readSpotlightState()).value.has_value();
    co_return Verdict{false, {}, isKnown ? u"expected indexing on"_s : u"could not read status"_s};
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::timeMachine(bool selected) {
    const std::optional<TimeMachineState> state = needed(co_await m_readings.readTimeMachineState());
    if (state == TimeMachineState::NotSetUp) {
        co_return absent(u"not set up on this Mac"_s);
    }
    if (state == TimeMachineState::NotPermitted) {
        co_return unreadableTimeMachine(selected);
    }
    if (!selected) {
        co_return Verdict{state == TimeMachineState::On, u"enabled"_s,
                          state ? u"expected enabled"_s : u"could not read status"_s};
    }
    Verdict found = verdict(state == TimeMachineState::Off, u"disabled"_s);
    if (found.holds && co_await m_readings.readIsBackupRunning()) {
        found.note = u"A backup is running and will finish first."_s;
    }
    co_return found;
}

/// Backups that nobody chose to switch off are as the user has them, unless this program had switched them off.
TweakVerification::Verdict TweakVerification::unreadableTimeMachine(bool selected) {
    m_lacksFullDiskAccess = true;
    Verdict found{false, {}, u"could not read status"_s};
    found.isLeftOut = !selected && !m_readings.hasSwitchedBackupsOff();
    return found;
}

} // namespace quorvane
