#include "snapshots/SystemSnapshot.h"

#include "core/Json.h"

namespace quorvane {

namespace {

struct PowerField {
    const char* jsonKey;
    std::optional<QString> SystemSnapshot::*value;
};

constexpr std::array<PowerField, 4> kPowerFields{{{"pmsetStandby", &SystemSnapshot::pmsetStandby},
                                                  {"pmsetDisksleep", &SystemSnapshot::pmsetDisksleep},
                                                  {"pmsetSleep", &SystemSnapshot::pmsetSleep},
                                                  {"pmsetSms", &SystemSnapshot::pmsetSms}}};

struct SourceField {
    const char* jsonKey;
    std::optional<QString> PowerSettings::*value;
};

constexpr std::array<SourceField, 4> kSourceFields{{{"standby", &PowerSettings::standby},
                                                    {"disksleep", &PowerSettings::disksleep},
                                                    {"sleep", &PowerSettings::sleep},
                                                    {"sms", &PowerSettings::sms}}};

/// Stands beside a `timeMachineEnabled` that is false and tells that the user had switched the automatic backups off.
constexpr const char* kBackupsSwitchedOff = "timeMachineSwitchedOff";

} // namespace

const std::array<SnapshotPreference, kMacPreferences.size()>& snapshotPreferences() {
    using S = SystemSnapshot;
    static constexpr std::array<SnapshotPreference, kMacPreferences.size()> preferences{{
        {preference::kAppSleep, "appNapDisabled", &S::appNapDisabled},
        {preference::kLiveAppSleep, "abletonAppNapDisabled", &S::abletonAppNapDisabled},
        {preference::kUpdateDownload, "automaticDownload", &S::automaticDownload},
        {preference::kUpdateCheck, "automaticCheckEnabled", &S::automaticCheckEnabled},
        {preference::kStoreUpdate, "commerceAutoUpdate", &S::commerceAutoUpdate},
        {preference::kSystemUpdateDownload, "systemAutomaticDownload", nullptr, &S::systemAutomaticDownload},
        {preference::kSystemUpdateInstall, "systemAutomaticInstall", nullptr, &S::systemAutomaticInstall},
        {preference::kSystemStoreUpdate, "systemStoreAutoUpdate", nullptr, &S::systemStoreAutoUpdate},
        {preference::kDoNotDisturb, "doNotDisturb", &S::doNotDisturb},
        {preference::kSiriStatus, "siriStatus", &S::siriStatus},
        {preference::kAssistant, "assistantEnabled", &S::assistantEnabled},
        {preference::kCrashDialog, "crashReporterDialogType", &S::crashReporterDialogType},
        {preference::kSystemSounds, "uiSoundsEnabled", &S::uiSoundsEnabled},
        {preference::kInterfaceSounds, "interfaceSoundsEnabled", nullptr, &S::interfaceSoundsEnabled},
        {preference::kAirDrop, "disableAirDrop", &S::disableAirDrop},
        {preference::kLogoutState, "talLogoutSavesState", &S::talLogoutSavesState},
        {preference::kLoginRelaunch, "loginwindowLaunchesRelaunchApps", &S::loginwindowLaunchesRelaunchApps},
        {preference::kKeptWindows, "quitAlwaysKeepsWindows", &S::quitAlwaysKeepsWindows},
    }};
    static_assert(preferences.back().text != nullptr, "a preference that no snapshot keeps");
    return preferences;
}

std::optional<CapturedValue> SnapshotPreference::in(const SystemSnapshot& snapshot) const {
    return text ? CapturedValue{snapshot.*text} : snapshot.*captured;
}

std::optional<TypedValue> SnapshotPreference::typedIn(const SystemSnapshot& snapshot) const {
    const std::optional<CapturedValue> own = in(snapshot);
    if (!snapshot.typedPreferences || !own || !own->value) {
        return std::nullopt;
    }
    const auto typed = snapshot.typedPreferences->constFind(placeOf(*this));
    return typed == snapshot.typedPreferences->cend() ? std::nullopt : std::optional(*typed);
}

void SnapshotPreference::put(const std::optional<QString>& value, SystemSnapshot& snapshot) const {
    if (text) {
        snapshot.*text = value;
    } else {
        snapshot.*captured = CapturedValue{value};
    }
    if (snapshot.typedPreferences) {
        snapshot.typedPreferences->remove(placeOf(*this)); // of another value
    }
}

Json encodeJson(const CapturedValue& captured) {
    Json object = Json::object();
    appendOptionalMember(object, "value", captured.value);
    return object;
}

void decodeJson(const Json& json, CapturedValue& captured) {
    captured.value = optionalMember<QString>(json, "value");
}

Json encodeJson(const PowerSettings& settings) {
    Json object = Json::object();
    for (const SourceField& field : kSourceFields) {
        appendOptionalMember(object, field.jsonKey, settings.*field.value);
    }
    return object;
}

void decodeJson(const Json& json, PowerSettings& settings) {
    for (const SourceField& field : kSourceFields) {
        settings.*field.value = optionalMember<QString>(json, field.jsonKey);
    }
}

Json encodeJson(const LoginItemSnapshot& item) {
    Json object = Json::object();
    appendMember(object, "name", encodeJson(item.name));
    appendMember(object, "path", encodeJson(item.path));
    appendMember(object, "hidden", encodeJson(item.hidden));
    return object;
}

void decodeJson(const Json& json, LoginItemSnapshot& item) {
    item.name = requiredMember<QString>(json, "name");
    item.path = requiredMember<QString>(json, "path");
    item.hidden = requiredMember<bool>(json, "hidden");
}

Json encodeJson(const TypedValues& values) {
    Json object = Json::object();
    for (auto value = values.cbegin(); value != values.cend(); ++value) {
        appendMember(object, value.key().toStdString(), encodeJson(value->xml()));
    }
    return object;
}

void decodeJson(const Json& json, TypedValues& values) {
    const auto texts = decodedValue<QMap<QString, QString>>(json);
    values.clear();
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        if (const std::optional<TypedValue> value = TypedValue::ofXml(*text)) {
            values.insert(text.key(), *value);
        }
    }
}

Json encodeJson(const SystemSnapshot& snapshot) {
    Json object = Json::object();
    appendMember(object, "id", encodeJson(snapshot.id));
    appendMember(object, "dateCreated", encodeJson(snapshot.dateCreated));
    appendOptionalMember(object, "label", snapshot.label);
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        if (preference.text) {
            appendOptionalMember(object, preference.jsonKey, snapshot.*preference.text);
        } else {
            appendOptionalMember(object, preference.jsonKey, snapshot.*preference.captured);
        }
    }
    appendOptionalMember(object, "typedPreferences", snapshot.typedPreferences);
    for (const PowerField& field : kPowerFields) {
        appendOptionalMember(object, field.jsonKey, snapshot.*field.value);
    }
    appendOptionalMember(object, "powerBySource", snapshot.powerBySource);
    appendOptionalMember(object, "timeMachineEnabled", snapshot.timeMachineEnabled);
    if (snapshot.timeMachineEnabled == false) {
        appendMember(object, kBackupsSwitchedOff, encodeJson(true));
    }
    appendOptionalMember(object, "spotlightIndexingEnabled", snapshot.spotlightIndexingEnabled);
    appendOptionalMember(object, "spotlightByVolume", snapshot.spotlightByVolume);
    appendOptionalMember(object, "networkServicesEnabled", snapshot.networkServicesEnabled);
    appendOptionalMember(object, "loginItems", snapshot.loginItems);
    return object;
}

void decodeJson(const Json& json, SystemSnapshot& snapshot) {
    snapshot.id = requiredMember<QUuid>(json, "id");
    snapshot.dateCreated = requiredMember<QDateTime>(json, "dateCreated");
    snapshot.label = optionalMember<QString>(json, "label");
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        if (preference.text) {
            snapshot.*preference.text = optionalMember<QString>(json, preference.jsonKey);
        } else {
            snapshot.*preference.captured = optionalMember<CapturedValue>(json, preference.jsonKey);
        }
    }
    snapshot.typedPreferences = optionalMember<TypedValues>(json, "typedPreferences");
    for (const PowerField& field : kPowerFields) {
        snapshot.*field.value = optionalMember<QString>(json, field.jsonKey);
    }
    snapshot.powerBySource = optionalMember<QMap<QString, PowerSettings>>(json, "powerBySource");
    snapshot.timeMachineEnabled = optionalMember<bool>(json, "timeMachineEnabled");
    if (snapshot.timeMachineEnabled == false && optionalMember<bool>(json, kBackupsSwitchedOff) != true) {
        snapshot.timeMachineEnabled.reset(); // no backup was running, which tells nothing of the switch
    }
    snapshot.spotlightIndexingEnabled = optionalMember<bool>(json, "spotlightIndexingEnabled");
    snapshot.spotlightByVolume = optionalMember<QMap<QString, QString>>(json, "spotlightByVolume");
    snapshot.networkServicesEnabled = optionalMember<QMap<QString, bool>>(json, "networkServicesEnabled");
    snapshot.loginItems = optionalMember<QList<LoginItemSnapshot>>(json, "loginItems");
}

} // namespace quorvane
