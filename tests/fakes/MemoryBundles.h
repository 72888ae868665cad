#pragma once

#include "platform/Bundles.h"
#include "platform/PropertyLists.h"

#include <QMap>
#include <QVariant>

namespace quorvane {

/// Property lists by their paths, apart from the files: a test puts both where it needs both.
class MemoryPropertyLists final : public PropertyLists {
public:
    std::optional<QVariantMap> dictionary(const QString& path) const override;

    QMap<QString, QVariantMap> lists;
};

/// Info dictionaries of bundles by their paths, and of installed applications by their identifiers.
class MemoryBundles final : public Bundles {
public:
    std::optional<QVariantMap> infoDictionary(const QString& bundlePath) const override;
    std::optional<QVariantMap> infoDictionaryWithIdentifier(const QString& bundleIdentifier) const override;

    QMap<QString, QVariantMap> byPath;
    QMap<QString, QVariantMap> byIdentifier;
};

} // namespace quorvane
