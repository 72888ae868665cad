#include "wallpaper/AnimatedPictures.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kProvider = u"Provider"_s;
const QString kImageProvider = u"com.apple.wallpaper.choice.image"_s;

const QString kSystemPictures = u"/System/Library/Desktop Pictures/"_s;

void collectProviders(const QVariant& value, QStringList& providers) {
    for (const QVariant& each : value.toList()) {
        collectProviders(each, providers);
    }
    const QVariantMap dictionary = value.toMap();
    for (auto entry = dictionary.cbegin(); entry != dictionary.cend(); ++entry) {
        if (entry.key() == kProvider) {
            providers.append(entry.value().toString());
        } else {
            collectProviders(entry.value(), providers);
        }
    }
}

/// Among the system's pictures those are chosen as pictures that lie there openly; the others stand for what is animated.
bool isStandIn(const QString& path) {
    const bool isHidden = path.contains(u"/."_s) || path.endsWith(u".madesktop"_s, Qt::CaseInsensitive);
    return path == kDefaultDesktopPicture || (path.startsWith(kSystemPictures) && isHidden);
}

} // namespace

QStringList wallpaperProviders(const QVariantMap& store) {
    QStringList providers;
    collectProviders(store, providers);
    return providers;
}

bool mayBeAnimated(const QString& path, const QStringList& providers) {
    const bool areAllImages = !providers.isEmpty() && providers.count(kImageProvider) == providers.size();
    return path.endsWith(u".mov"_s, Qt::CaseInsensitive) || (isStandIn(path) && !areAllImages);
}

} // namespace quorvane
