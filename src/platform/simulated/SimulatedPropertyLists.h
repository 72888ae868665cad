#pragma once

#include "platform/PropertyLists.h"
#include "simulator/Mac.h"

namespace quorvane {

/// The property lists on a simulated Mac's disk, as its user may read them. A file of more than 64 MiB counts as
/// unreadable: no launch plist and no Info dictionary comes near, and its parts would need many times that.
class SimulatedPropertyLists final : public PropertyLists {
public:
    explicit SimulatedPropertyLists(const macsim::Mac& mac)
        : m_mac(mac) {}

    std::optional<QVariantMap> dictionary(const QString& path) const override;

private:
    const macsim::Mac& m_mac;
};

} // namespace quorvane
