#include "wallpaper/WallpaperManifest.h"

#include "core/Json.h"

#include <algorithm>

namespace quorvane {

namespace {

Json encodeJson(const ScreenWallpaperRecord& record) {
    Json object = Json::object();
    appendMember(object, "screenIdentifier", quorvane::encodeJson(record.screenIdentifier));
    appendMember(object, "originalImagePath", quorvane::encodeJson(record.originalImagePath));
    appendOptionalMember(object, "originalDesktopURL", record.originalDesktopURL);
    return object;
}

ScreenWallpaperRecord decodedRecord(const Json& object) {
    ScreenWallpaperRecord record;
    record.screenIdentifier = requiredMember<QString>(object, "screenIdentifier");
    record.originalImagePath = requiredMember<QString>(object, "originalImagePath");
    record.originalDesktopURL = optionalMember<QString>(object, "originalDesktopURL");
    return record;
}

} // namespace

const ScreenWallpaperRecord* WallpaperManifest::record(const QString& screenIdentifier) const {
    const auto found =
        std::find_if(screens.cbegin(), screens.cend(), [&screenIdentifier](const ScreenWallpaperRecord& each) {
            return each.screenIdentifier == screenIdentifier;
        });
    return found == screens.cend() ? nullptr : &*found;
}

void WallpaperManifest::put(const ScreenWallpaperRecord& record) {
    remove(record.screenIdentifier);
    screens.append(record);
}

void WallpaperManifest::remove(const QString& screenIdentifier) {
    screens.removeIf(
        [&screenIdentifier](const ScreenWallpaperRecord& each) { return each.screenIdentifier == screenIdentifier; });
}

QByteArray encodeWallpaperManifest(const WallpaperManifest& manifest) {
    Json screens = Json::array();
    for (const ScreenWallpaperRecord& record : manifest.screens) {
        screens.push_back(encodeJson(record));
    }
    Json object = Json::object();
    appendMember(object, "screens", screens);
    return jsonText(object);
}

std::optional<WallpaperManifest> decodeWallpaperManifest(const QByteArray& bytes) {
    try {
        const Json object = parseJson(bytes);
        const Json* screens = findMember(object, "screens");
        if (screens == nullptr) {
            throw DecodingError(QStringLiteral("missing"), QStringLiteral("screens"));
        }
        requireArray(*screens);
        WallpaperManifest manifest;
        for (const Json& record : *screens) {
            manifest.screens.append(decodedRecord(record));
        }
        return manifest;
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

} // namespace quorvane
