#include "profiles/ProfileJson.h"

#include "core/Json.h"
#include "startup/items/LegacyStartupFields.h"

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

struct LegacyList {
    const char* key;
    QStringList UnifiedProfile::*values;
};

constexpr LegacyList kLegacyLists[]{
    {"disabledLoginItems", &UnifiedProfile::legacyDisabledLoginItems},
    {"disabledLaunchItems", &UnifiedProfile::legacyDisabledLaunchItems},
    {"excludedBackgroundActivityItems", &UnifiedProfile::legacyExcludedBackgroundActivityItems},
    {"knownBackgroundActivityItemIds", &UnifiedProfile::legacyKnownBackgroundActivityItemIds},
    {"permittedStartupApps", &UnifiedProfile::legacyPermittedStartupApps},
};

StartupConfiguration migratedStartup(const UnifiedProfile& profile) {
    return StartupConfiguration::fromLegacyFields({
        .disabledLoginItems = profile.legacyDisabledLoginItems,
        .disabledLaunchItems = profile.legacyDisabledLaunchItems,
        .excludedBackgroundActivityItems = profile.legacyExcludedBackgroundActivityItems,
        .permittedStartupApps = profile.legacyPermittedStartupApps,
        .startupLaunchItems = profile.legacyStartupLaunchItems,
        .disableNetwork = profile.legacyDisableNetwork,
        .cleanReboot = profile.settings.cleanReboot,
    });
}

void appendLegacyMembers(Json& object, const UnifiedProfile& profile) {
    const StartupConfiguration& startup = profile.startup;
    const QStringList permitted =
        profile.settings.cleanReboot ? sortedTexts(startup.permittedLoginNames()) : QStringList();
    appendMember(object, "disabledLoginItems", encodeJson(sortedTexts(startup.disabledLoginNames())));
    appendMember(object, "disabledLaunchItems", encodeJson(sortedTexts(startup.disabledLaunchLabels())));
    appendMember(object, "excludedBackgroundActivityItems", Json::array());
    appendMember(object, "knownBackgroundActivityItemIds", Json::array());
    appendMember(object, "permittedStartupApps", encodeJson(permitted));
    appendMember(object, "startupLaunchItems", encodeJson(startup.startupLaunchItems()));
    appendMember(object, "disableNetwork", encodeJson(startup.disableNetworkAtStartup));
}

} // namespace

Json encodeJson(const UnifiedProfile& profile) {
    Json object = Json::object();
    appendMember(object, "id", encodeJson(profile.id));
    appendMember(object, "name", encodeJson(profile.name));
    appendMember(object, "dateCreated", encodeJson(profile.dateCreated));
    appendMember(object, "settings", encodeJson(profile.settings));
    appendMember(object, "startup", encodeJson(profile.startup));
    appendLegacyMembers(object, profile);
    return object;
}

void decodeJson(const Json& json, UnifiedProfile& profile) {
    profile.id = requiredMember<QUuid>(json, "id");
    profile.name = requiredMember<QString>(json, "name");
    profile.dateCreated = requiredMember<QDateTime>(json, "dateCreated");
    profile.settings = requiredMember<PerformanceSettings>(json, "settings");
    for (const LegacyList& list : kLegacyLists) {
        profile.*list.values = optionalMember<QStringList>(json, list.key).value_or(QStringList());
    }
    profile.legacyStartupLaunchItems =
        optionalMember<QList<StartupLaunchItem>>(json, "startupLaunchItems").value_or(QList<StartupLaunchItem>());
    profile.legacyDisableNetwork = optionalMember<bool>(json, "disableNetwork").value_or(false);

    auto startup = optionalMember<StartupConfiguration>(json, "startup");
    profile.startup = startup ? *std::move(startup) : migratedStartup(profile);
}

QByteArray encodeProfile(const UnifiedProfile& profile) {
    return jsonText(encodeJson(profile));
}

UnifiedProfile decodeProfile(const QByteArray& bytes) {
    return decodedValue<UnifiedProfile>(parseJson(bytes));
}

} // namespace quorvane
