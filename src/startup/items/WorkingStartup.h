#pragma once

#include "startup/items/DiscoveredStartup.h"
#include "startup/items/StartupConfiguration.h"

#include <QMap>
#include <QSet>

#include <optional>

// The startup half of a profile that is edited lies in four layers: what was loaded, what the user has decided since, what was
// found on this Mac, and the rules that decide for items that nobody has decided about. Nothing of them is written over by
// another, so that a default stays a default, and what isn't there now isn't forgotten.
namespace quorvane {

/// What the user has decided since the profile was loaded. Identifiers are comparable.
struct StartupChoices {
    /// By identifier, as it was left: what counts are `runsAtStartup` and `hidden`, and all of it where neither the profile nor
    /// the Mac has it. Applications that were added are among them.
    QMap<QString, StartupItem> items;
    QSet<QString> removed;      ///< of the loaded items: they count as never loaded
    QSet<QString> offByService; ///< of `items`: off because a service went off, not by themselves

    bool operator==(const StartupChoices&) const = default;
};

/// What decides beside the items themselves.
struct StartupRules {
    bool cleanReboot = false;
    bool disableNetworkAtStartup = false;
    CloudSyncServices disabledCloudSyncAtStartup;

    bool operator==(const StartupRules&) const = default;
};

struct StartupLayers {
    QList<StartupItem> loaded;
    StartupChoices choices;
    std::optional<DiscoveredStartup> discovered; ///< none: nobody has looked yet
    StartupRules rules;

    bool operator==(const StartupLayers&) const = default;
};

/// A row of the editor.
struct StartupRow {
    qsizetype item = 0;   ///< its place in the configuration
    bool isAdded = false; ///< an application that was added, which can be removed and be hidden
    bool isNew = false;   ///< it has come since the loaded profile was saved, and nobody has touched it

    bool operator==(const StartupRow&) const = default;
};

/// What comes of the layers.
struct WorkingStartup {
    StartupConfiguration configuration; ///< what is saved and reviewed, sorted by name
    QList<StartupRow> shown;            ///< on this Mac, or added to it
    QList<StartupRow> absent;           ///< decided about earlier, and not found on this Mac now
    QStringList errors;                 ///< for the log; see StartupMerge::errors

    const StartupItem& itemOf(const StartupRow& row) const { return configuration.items.at(row.item); }

    bool operator==(const WorkingStartup&) const = default;
};

/// Any thread. Before anything was discovered, all that was loaded or chosen is shown.
WorkingStartup workingStartup(const StartupLayers& layers);

/// True for an item that a service keeps off for as long as this is off.
bool isHeldOff(const StartupItem& item, const CloudSyncServices& disabledServices);

/// Of which enabled services items are still off that went off with them.
CloudSyncServices servicesWithItemsLeftOff(const StartupChoices& choices, const CloudSyncServices& disabledServices);

} // namespace quorvane
