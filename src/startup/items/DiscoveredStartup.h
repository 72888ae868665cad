#pragma once

#include "startup/items/StartupItem.h"

#include <QList>

namespace quorvane {

enum class LoginItemsSource {
    Read,
    Refused,    ///< System Events may not be asked, or gave an error
    Unanswered, ///< it said nothing
};
enum class BackgroundItemsSource {
    Read,
    NotYetRead, ///< the background task list needs an administrator's password, which nobody has given so far
};

/// What runs at login on this Mac, as far as its sources could be read: what isn't listed of one that wasn't read may be there
/// all the same.
struct DiscoveredStartup {
    QList<StartupItem> items; ///< each `id` once, sorted by name
    LoginItemsSource loginItems = LoginItemsSource::Read;
    BackgroundItemsSource backgroundItems = BackgroundItemsSource::Read;

    bool operator==(const DiscoveredStartup&) const = default;
};

} // namespace quorvane
