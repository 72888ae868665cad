#include "verification/TweakVerification.h"

#include "verification/ValueTests.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

bool equals(const std::optional<QString>& value, const QString& lowerCased) {
    return value && value->toLower() == lowerCased;
}

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

TweakVerification::TweakVerification(SystemManager& system, PerformanceSettings settings,
                                     SystemManager::UnselectedTweaks unselected)
    : m_system(system)
    , m_settings(std::move(settings))
    , m_unselected(unselected) {}

QCoro::Task<ApplyVerificationResult> TweakVerification::run() {
    ApplyVerificationResult result;
    m_power = co_await m_system.readPowerSettings();
    for (const Row& row : kRows) {
        const bool selected = m_settings.*row.setting;
        if (!selected && m_unselected == SystemManager::UnselectedTweaks::Ignored) {
            continue;
        }
        const Verdict found = co_await (this->*row.check)(selected);
        (found.holds ? result.verified : result.failed).append({row.name.toString(), found.detail});
    }
    co_return result;
}

TweakVerification::Verdict TweakVerification::verdict(bool holds, const QString& verifiedDetail,
                                                      const QString& failedDetail) {
    return {holds, holds ? verifiedDetail : failedDetail};
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::appNap(bool selected) {
    const auto value = co_await m_system.readDefaultValue(u"NSGlobalDomain"_s, u"NSAppSleepDisabled"_s);
    co_return selected ? verdict(isTruthy(value), u"disabled"_s, u"expected disabled"_s)
                       : verdict(isFalsy(value), u"enabled"_s, u"expected enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::softwareUpdates(bool selected) {
    const auto download = co_await m_system.readDefaultValue(u"com.apple.SoftwareUpdate"_s, u"AutomaticDownload"_s);
    if (!selected) {
        co_return verdict(!download || isTruthy(download), u"enabled"_s, u"expected enabled"_s);
    }
    const auto check = co_await m_system.readDefaultValue(u"com.apple.SoftwareUpdate"_s, u"AutomaticCheckEnabled"_s);
    const auto store = co_await m_system.readDefaultValue(u"com.apple.commerce"_s, u"AutoUpdate"_s);
    co_return verdict(isFalsy(download) && isFalsy(check) && isFalsy(store), u"disabled"_s, u"expected disabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::notifications(bool selected) {
    const auto value = co_await m_system.readDefaultValue(m_system.notificationCenterPreferences(), u"doNotDisturb"_s,
                                                          SystemManager::PreferenceHost::Current);
    co_return selected ? verdict(isTruthy(value), u"suppressed"_s, u"expected suppressed"_s)
                       : verdict(isFalsy(value), u"enabled"_s, u"expected enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::siri(bool selected) {
    if (selected && equals(co_await m_system.readDefaultValue(u"com.apple.Siri"_s, u"Status"_s), u"disabled"_s)) {
        co_return verdict(true, u"disabled"_s, {});
    }
    const auto assistant = co_await m_system.readDefaultValue(u"com.apple.assistant.support"_s, u"Assistant Enabled"_s);
    co_return selected ? verdict(isFalsy(assistant), u"disabled"_s, u"expected disabled"_s)
                       : verdict(!assistant || isTruthy(assistant), u"enabled"_s, u"expected enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::crashReporter(bool selected) {
    const auto value = co_await m_system.readDefaultValue(u"com.apple.CrashReporter"_s, u"DialogType"_s);
    const bool isSilent = equals(value, u"none"_s);
    co_return selected ? verdict(isSilent, u"disabled"_s, u"expected disabled"_s)
                       : verdict(!isSilent, u"enabled"_s, u"expected enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::interfaceSounds(bool selected) {
    const auto value =
        co_await m_system.readDefaultValue(u"com.apple.systemsound"_s, u"com.apple.sound.uiaudio.enabled"_s);
    co_return selected ? verdict(isFalsy(value), u"muted"_s, u"expected muted"_s)
                       : verdict(!value || isTruthy(value), u"enabled"_s, u"expected enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::airDrop(bool selected) {
    const auto value = co_await m_system.readDefaultValue(u"com.apple.NetworkBrowser"_s, u"DisableAirDrop"_s);
    co_return selected ? verdict(isTruthy(value), u"disabled"_s, u"expected disabled"_s)
                       : verdict(isFalsy(value), u"enabled"_s, u"expected enabled"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::usbPower(bool selected) {
    const bool neverSleeps = m_power.standby == u"0"_s && m_power.disksleep == u"0"_s && m_power.sleep == u"0"_s;
    co_return selected ? verdict(neverSleeps, u"sleep disabled"_s, u"expected standby/disk/sleep at 0"_s)
                       : verdict(!neverSleeps, u"standard sleep"_s, u"expected standard sleep values"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::motionSensor(bool selected) {
    if (selected) {
        co_return verdict(m_power.sms == u"0"_s, u"disabled"_s, u"expected sms 0"_s);
    }
    co_return verdict(m_power.sms == u"1"_s, u"enabled"_s,
                      m_power.sms ? u"expected sms 1"_s : u"could not read pmset"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::spotlight(bool selected) {
    const std::optional<bool> indexes = co_await m_system.readSpotlightState();
    if (selected) {
        co_return verdict(indexes == false, u"indexing off"_s, u"expected indexing off"_s);
    }
    if (indexes == true) {
        co_return verdict(true, u"indexing on"_s, {});
    }
    const bool isKnown = (co_await m_system.readSpotlightState()).has_value();
    co_return verdict(false, {}, isKnown ? u"expected indexing on"_s : u"could not read status"_s);
}

QCoro::Task<TweakVerification::Verdict> TweakVerification::timeMachine(bool selected) {
    const std::optional<bool> isRunning = co_await m_system.readTimeMachineState();
    if (selected) {
        co_return verdict(isRunning == false, u"disabled"_s, u"expected disabled"_s);
    }
    if (isRunning == true) {
        co_return verdict(true, u"enabled"_s, {});
    }
    const bool isKnown = (co_await m_system.readTimeMachineState()).has_value();
    co_return verdict(false, {}, isKnown ? u"expected enabled"_s : u"could not read status"_s);
}

} // namespace quorvane
