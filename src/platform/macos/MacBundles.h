#pragma once

#include "platform/Bundles.h"

namespace quorvane {

/// Bundles as the system finds and reads them. What one says is read anew each time, so that an application that was updated
/// says what it is now.
class MacBundles final : public Bundles {
public:
    std::optional<QVariantMap> infoDictionary(const QString& bundlePath) const override;
    /// As Launch Services knows applications, but for those that countsAsInstalled refuses.
    std::optional<QVariantMap> infoDictionaryWithIdentifier(const QString& bundleIdentifier) const override;
};

} // namespace quorvane
