#pragma once

#include "platform/PropertyLists.h"

namespace quorvane {

/// Property lists as the system reads them, XML and binary. The old text form is none, though the system reads it: every text
/// with a "=" in it might be one.
class MacPropertyLists final : public PropertyLists {
public:
    std::optional<QVariantMap> dictionary(const QString& path) const override;
};

} // namespace quorvane
