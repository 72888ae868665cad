#include "startup/items/CleanReboot.h"

#include "core/Collation.h"
#include "core/Json.h"
#include "startup/items/LoginItemTargets.h"

namespace quorvane {

namespace {

QSet<QString> textsIn(const Json& object, const char* key) {
    const QList<QString> texts = requiredMember<QList<QString>>(object, key);
    return {texts.begin(), texts.end()};
}

} // namespace

Json encodeJson(const CleanReboot& cleanReboot) {
    Json object = Json::object();
    appendMember(object, "permittedNames", encodeJson(sortedTexts(cleanReboot.permittedNames)));
    appendOptionalMember(object, "startup", cleanReboot.startup);
    appendMember(object, "excludedIds", encodeJson(sortedTexts(cleanReboot.excludedIds)));
    return object;
}

void decodeJson(const Json& json, CleanReboot& cleanReboot) {
    cleanReboot.permittedNames = textsIn(json, "permittedNames");
    cleanReboot.startup = optionalMember<StartupConfiguration>(json, "startup");
    cleanReboot.excludedIds = textsIn(json, "excludedIds");
}

QSet<QString> allPermittedNames(const CleanReboot& cleanReboot) {
    QSet<QString> names = cleanReboot.permittedNames;
    const StartupConfiguration startup = cleanReboot.startup.value_or(StartupConfiguration());
    for (const StartupLaunchItem& application : startup.startupLaunchItems()) {
        names.insert(application.name);
    }
    return names;
}

DividedLoginItems dividedLoginItems(const QList<LoginItem>& items, const CleanReboot& cleanReboot) {
    const QSet<QString> names = allPermittedNames(cleanReboot);
    const LoginItemTargets targets = loginItemTargets(cleanReboot.startup.value_or(StartupConfiguration()), {});
    DividedLoginItems divided;
    for (const LoginItem& item : items) {
        const bool stays = isProtectedLoginItem(item) || names.contains(item.name) || targets.keeps(item);
        (stays ? divided.staying : divided.going).append(item);
    }
    sortLocalized(divided.going, &LoginItem::name);
    return divided;
}

} // namespace quorvane
