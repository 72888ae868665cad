#pragma once

#include "platform/BackgroundTaskPermissions.h"
#include "simulator/Mac.h"

namespace quorvane {

/// The background task manager's entry points on a simulated Mac. Which ones its library has is said in the state
/// subject "backgroundTasks", beside the records; without the key there is none:
///
///     {"entryPoints": ["SMLoginItemSetUserAllowed_4BTM", "SMLaunchdPlistSetUserAllowed_4BTM"], "records": […]}
///
/// Each sets "allowed" in the records with the label (the bundle identifier; or the identifier, which may have the number
/// of its kind in front: "4.com.splice.helper") whose parent is a record of the application. It takes no other item.
class SimulatedBackgroundTaskPermissions final : public BackgroundTaskPermissions {
public:
    explicit SimulatedBackgroundTaskPermissions(const macsim::Mac& mac)
        : m_mac(mac) {}

    bool openLibrary(const QString& path) override;
    SetUserAllowed entryPoint(const QString& symbol) override;

private:
    const macsim::Mac& m_mac;
    bool m_isOpen = false;
};

} // namespace quorvane
