#include "tweaks/PerformanceSettings.h"

#include "core/Json.h"
#include "tweaks/TweakCatalogue.h"

#include <algorithm>
#include <array>

namespace quorvane {

namespace {

using Settings = PerformanceSettings;

constexpr std::array kFields{
    TweakField{"appNap", &Settings::appNap, true},
    TweakField{"spotlight", &Settings::spotlight, true},
    TweakField{"usbPower", &Settings::usbPower, true},
    TweakField{"timeMachine", &Settings::timeMachine, true},
    TweakField{"updates", &Settings::updates, true},
    TweakField{"uiSounds", &Settings::uiSounds, true},
    TweakField{"notifications", &Settings::notifications, true},
    TweakField{"airdrop", &Settings::airdrop, true},
    TweakField{"siri", &Settings::siri, true},
    TweakField{"sms", &Settings::sms, true},
    TweakField{"crashReporter", &Settings::crashReporter, true},
    TweakField{"cleanReboot", &Settings::cleanReboot, false},
};

constexpr const char* kCustomIconsKey = "customIcons";

PerformanceSettings makeFullSelection() {
    PerformanceSettings settings;
    for (const TweakField& field : kFields) {
        settings.*field.isSelected = true;
    }
    settings.cleanReboot = false;
    return settings;
}

} // namespace

const PerformanceSettings& PerformanceSettings::fullSelection() {
    static const PerformanceSettings settings = makeFullSelection();
    return settings;
}

std::span<const TweakField> tweakFields() {
    return kFields;
}

QStringList selectedTweakTitles(const PerformanceSettings& settings) {
    QStringList titles;
    for (const Tweak& tweak : tweakCatalogue()) {
        if (settings.*tweak.isSelected) {
            titles.append(tweak.title);
        }
    }
    return titles;
}

int selectedTweakCount(const PerformanceSettings& settings) {
    return static_cast<int>(std::count_if(kFields.begin(), kFields.end(),
                                          [&settings](const TweakField& field) { return settings.*field.isSelected; }));
}

Json encodeJson(const PerformanceSettings& settings) {
    Json object = Json::object();
    for (const TweakField& field : kFields) {
        appendMember(object, field.key, encodeJson(settings.*field.isSelected));
    }
    appendMember(object, kCustomIconsKey, encodeJson(settings.customIcons));
    return object;
}

void decodeJson(const Json& json, PerformanceSettings& settings) {
    for (const TweakField& field : kFields) {
        settings.*field.isSelected = field.isRequired ? requiredMember<bool>(json, field.key)
                                                      : optionalMember<bool>(json, field.key).value_or(false);
    }
    settings.customIcons = requiredMember<QMap<QString, QString>>(json, kCustomIconsKey);
}

} // namespace quorvane
