#pragma once

#include "startup/items/LoginItem.h"
#include "startup/items/StartupConfiguration.h"

#include <optional>

namespace quorvane {

/// What "Start Clean on Reboot" leaves in place.
struct CleanReboot {
    QSet<QString> permittedNames;                ///< of login and background items
    std::optional<StartupConfiguration> startup; ///< the startup half that goes with it; its added apps stay too
    QSet<QString> excludedIds;                   ///< agents among the login items that stay, by id or name
};

Json encodeJson(const CleanReboot& cleanReboot);
/// Throws DecodingError.
void decodeJson(const Json& json, CleanReboot& cleanReboot);

/// The permitted names together with those of the applications that the configuration opens at login.
QSet<QString> allPermittedNames(const CleanReboot& cleanReboot);

/// The login items, divided by what a clean reboot leaves.
struct DividedLoginItems {
    QList<LoginItem> staying; ///< audio software, what is permitted by name, and what the configuration says runs
    QList<LoginItem> going;   ///< all others, sorted by name
};
DividedLoginItems dividedLoginItems(const QList<LoginItem>& items, const CleanReboot& cleanReboot);

} // namespace quorvane
