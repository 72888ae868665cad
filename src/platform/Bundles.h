#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

namespace quorvane {

/// What bundles say of themselves in their Info dictionary. Any thread.
class Bundles {
public:
    Bundles() = default;
    Bundles(const Bundles&) = delete;
    Bundles& operator=(const Bundles&) = delete;
    virtual ~Bundles() = default;

    /// Empty for a bundle without an Info dictionary; none when there is no folder at the path.
    virtual std::optional<QVariantMap> infoDictionary(const QString& bundlePath) const = 0;
    /// Of an installed application; none when there is none with this identifier.
    virtual std::optional<QVariantMap> infoDictionaryWithIdentifier(const QString& bundleIdentifier) const = 0;
};

} // namespace quorvane
