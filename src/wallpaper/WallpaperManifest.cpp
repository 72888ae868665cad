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
    appendOptionalMember(object, "shownAs", record.shownAs);
    appendOptionalMember(object, "screen", record.screen);
    appendOptionalMember(object, "mayBeReplaced", record.mayBeReplaced ? std::optional(true) : std::nullopt);
    return object;
}

ScreenWallpaperRecord decodedRecord(const Json& object) {
    ScreenWallpaperRecord record;
    record.screenIdentifier = requiredMember<QString>(object, "screenIdentifier");
    record.originalImagePath = requiredMember<QString>(object, "originalImagePath");
    record.originalDesktopURL = optionalMember<QString>(object, "originalDesktopURL");
    record.shownAs = optionalMember<QStringList>(object, "shownAs");
    record.screen = optionalMember<QString>(object, "screen");
    record.mayBeReplaced = optionalMember<bool>(object, "mayBeReplaced").value_or(false);
    return record;
}

template <typename Records>
auto* recordIn(Records& records, const QString& screenIdentifier) {
    const auto found = std::find_if(records.begin(), records.end(), [&screenIdentifier](const auto& each) {
        return each.screenIdentifier == screenIdentifier;
    });
    return found == records.end() ? nullptr : &*found;
}

} // namespace

const ScreenWallpaperRecord* WallpaperManifest::record(const QString& screenIdentifier) const {
    return recordIn(screens, screenIdentifier);
}

ScreenWallpaperRecord* WallpaperManifest::record(const QString& screenIdentifier) {
    return recordIn(screens, screenIdentifier);
}

void WallpaperManifest::put(const ScreenWallpaperRecord& newer) {
    if (ScreenWallpaperRecord* const older = record(newer.screenIdentifier)) {
        *older = newer;
    } else {
        screens.append(newer);
    }
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
