#include "startup/launchd/KeptOff.h"

#include "core/Json.h"
#include "startup/items/StartupConfiguration.h"
#include "startup/launchd/OverrideRecord.h"

namespace quorvane {

namespace {

QSet<QString> namesIn(const Json& object, const char* key) {
    const QList<QString> names = requiredMember<QList<QString>>(object, key);
    return {names.begin(), names.end()};
}

} // namespace

Json encodeJson(const KeptOff& kept) {
    Json object = Json::object();
    appendMember(object, "overrides", encodeJson(kept.overrides));
    appendMember(object, "plists", encodeJson(sortedTexts(kept.plists)));
    appendMember(object, "helpers", encodeJson(sortedTexts(kept.helpers)));
    appendMember(object, "permissions", encodeJson(sortedTexts(kept.permissions)));
    appendMember(object, "services", encodeJson(sortedTexts(kept.services)));
    return object;
}

void decodeJson(const Json& json, KeptOff& kept) {
    kept.overrides = requiredMember<QList<LaunchdService>>(json, "overrides");
    kept.plists = namesIn(json, "plists");
    kept.helpers = namesIn(json, "helpers");
    kept.permissions = namesIn(json, "permissions");
    kept.services = namesIn(json, "services");
}

} // namespace quorvane
