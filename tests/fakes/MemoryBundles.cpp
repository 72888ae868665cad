#include "fakes/MemoryBundles.h"

namespace quorvane {

std::optional<QVariantMap> MemoryPropertyLists::dictionary(const QString& path) const {
    return lists.contains(path) ? std::optional(lists.value(path)) : std::nullopt;
}

std::optional<QVariantMap> MemoryBundles::infoDictionary(const QString& bundlePath) const {
    return byPath.contains(bundlePath) ? std::optional(byPath.value(bundlePath)) : std::nullopt;
}

std::optional<QVariantMap> MemoryBundles::infoDictionaryWithIdentifier(const QString& bundleIdentifier) const {
    return byIdentifier.contains(bundleIdentifier) ? std::optional(byIdentifier.value(bundleIdentifier)) : std::nullopt;
}

} // namespace quorvane
