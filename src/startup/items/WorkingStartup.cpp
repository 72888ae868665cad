#include "startup/items/WorkingStartup.h"

#include "core/Collation.h"

#include <QHash>

#include <algorithm>

namespace quorvane {

namespace {

bool isAddedApp(const StartupItem& item) {
    return item.kind == StartupItemKind::addedApp;
}

/// What was loaded and what was chosen, each item once, as it was decided last.
struct DecidedItems {
    QList<StartupItem> items;
    QStringList errors;
};

DecidedItems decidedItems(const QList<StartupItem>& loaded, const StartupChoices& choices) {
    DecidedItems decided;
    QSet<QString> seen;
    for (const StartupItem& item : loaded) {
        const QString id = comparableId(item);
        if (choices.removed.contains(id)) {
            continue;
        }
        if (seen.contains(id)) {
            decided.errors.append(duplicateIdError(item));
            continue;
        }
        seen.insert(id);
        StartupItem latest = item;
        if (const auto choice = choices.items.constFind(id); choice != choices.items.cend()) {
            latest.runsAtStartup = choice->runsAtStartup;
            latest.hidden = choice->hidden;
        }
        decided.items.append(latest);
    }
    for (auto choice = choices.items.cbegin(); choice != choices.items.cend(); ++choice) {
        if (!seen.contains(choice.key())) {
            decided.items.append(*choice);
        }
    }
    decided.errors.removeDuplicates();
    return decided;
}

/// Older profiles know login items by their names alone. Such a decision counts for the items of that name that were found,
/// or they would be kept, as new ones, from what switches them off.
void resolveNames(QList<StartupItem>& decided, const QList<StartupItem>& discovered) {
    QHash<QString, StartupItem> byName;
    QSet<QString> decidedIds;
    for (const StartupItem& item : decided) {
        decidedIds.insert(comparableId(item));
        if (isLoginItem(item) && knownPath(item).isEmpty()) {
            byName.insert(item.name, item);
        }
    }
    QSet<QString> resolved;
    for (const StartupItem& item : discovered) {
        const auto named = byName.constFind(item.name);
        if (!isLoginItem(item) || knownPath(item).isEmpty() || named == byName.cend()) {
            continue;
        }
        resolved.insert(comparableId(*named));
        if (!decidedIds.contains(comparableId(item))) {
            StartupItem decision = item;
            decision.runsAtStartup = named->runsAtStartup;
            decided.append(decision);
        }
    }
    decided.removeIf([&resolved](const StartupItem& item) { return resolved.contains(comparableId(item)); });
}

/// Takes out the login items of the applications that were added, whether these run or not: each is one row.
QList<StartupItem> takeLoginItemsOfAddedApps(QList<StartupItem>& items, const QSet<QString>& addedPaths) {
    const auto isCovered = [&addedPaths](const StartupItem& item) {
        return isLoginItem(item) && addedPaths.contains(knownPath(item));
    };
    QList<StartupItem> covered;
    std::copy_if(items.cbegin(), items.cend(), std::back_inserter(covered), isCovered);
    items.removeIf(isCovered);
    return covered;
}

/// An application that was added and switched off: what opens it, beside the program, goes off with it.
QList<StartupItem> switchedOffWith(const QList<StartupItem>& added, const QList<StartupItem>& covered) {
    QSet<QString> pathsOff;
    for (const StartupItem& item : added) {
        if (!item.runsAtStartup) {
            pathsOff.insert(knownPath(item));
        }
    }
    QList<StartupItem> off;
    QSet<QString> seen;
    for (StartupItem item : covered) {
        if (pathsOff.contains(knownPath(item)) && !seen.contains(comparableId(item))) {
            seen.insert(comparableId(item));
            item.runsAtStartup = false;
            off.append(item);
        }
    }
    return off;
}

QSet<QString> idsOf(const QList<StartupItem>& items) {
    QSet<QString> ids;
    ids.reserve(items.size());
    for (const StartupItem& item : items) {
        ids.insert(comparableId(item));
    }
    return ids;
}

/// Only a profile that has listed what runs at login tells what has come since.
bool tellsWhatIsNew(const QList<StartupItem>& loaded) {
    return std::any_of(loaded.cbegin(), loaded.cend(), [](const StartupItem& item) { return !isAddedApp(item); });
}

/// The rows of a configuration's items, and what is known of each.
class Rows {
public:
    explicit Rows(const StartupLayers& layers)
        : m_hasLooked(layers.discovered.has_value())
        , m_tellsWhatIsNew(m_hasLooked && tellsWhatIsNew(layers.loaded)) {}

    void setDecided(const QList<StartupItem>& decided) { m_decided = idsOf(decided); }
    /// Decided about, and not found.
    void setBeside(const QList<StartupItem>& beside) { m_beside = idsOf(beside); }
    void setWithoutRow(const QList<StartupItem>& items) { m_withoutRow = idsOf(items); }

    void addTo(WorkingStartup& working) const {
        QSet<QString> withoutRow = m_withoutRow;
        withoutRow.reserve(working.configuration.items.size() + withoutRow.size());
        for (qsizetype place = 0; place < working.configuration.items.size(); ++place) {
            const StartupItem& item = working.configuration.items.at(place);
            const QString id = comparableId(item);
            if (withoutRow.contains(id)) {
                continue;
            }
            withoutRow.insert(id); // of several with one identifier the first counts
            const bool isPresent = !m_hasLooked || isAddedApp(item) || !m_beside.contains(id);
            const bool isNew = m_tellsWhatIsNew && !m_decided.contains(id);
            (isPresent ? working.shown : working.absent).append({place, isAddedApp(item), isNew});
        }
    }

private:
    bool m_hasLooked;
    bool m_tellsWhatIsNew;
    QSet<QString> m_decided;
    QSet<QString> m_beside;
    QSet<QString> m_withoutRow;
};

QSet<QString> addedPaths(const QList<StartupItem>& added) {
    QSet<QString> paths;
    for (const StartupItem& item : added) {
        paths.insert(knownPath(item));
    }
    paths.remove(QString()); // no path is nobody's
    return paths;
}

/// The items that aren't among the others.
QList<StartupItem> itemsBeside(const QList<StartupItem>& items, const QList<StartupItem>& others) {
    QSet<QString> ids = idsOf(items);
    for (const StartupItem& item : others) {
        ids.remove(comparableId(item));
    }
    QList<StartupItem> beside = items;
    beside.removeIf([&ids](const StartupItem& item) { return !ids.contains(comparableId(item)); });
    return beside;
}

/// Nobody has looked or decided yet.
WorkingStartup asLoaded(const StartupLayers& layers) {
    WorkingStartup working;
    working.configuration = {layers.loaded, layers.rules.disableNetworkAtStartup,
                             layers.rules.disabledCloudSyncAtStartup};
    Rows(layers).addTo(working);
    return working;
}

} // namespace

WorkingStartup workingStartup(const StartupLayers& layers) {
    if (!layers.discovered && layers.choices == StartupChoices()) {
        return asLoaded(layers);
    }
    DecidedItems decided = decidedItems(layers.loaded, layers.choices);
    QList<StartupItem> found = layers.discovered ? layers.discovered->items : QList<StartupItem>();
    resolveNames(decided.items, found);
    QList<StartupItem> added;
    std::copy_if(decided.items.cbegin(), decided.items.cend(), std::back_inserter(added), isAddedApp);
    applyDisabledCloudSync(added, layers.rules.disabledCloudSyncAtStartup);
    const QSet<QString> paths = addedPaths(added);
    Rows rows(layers);
    rows.setDecided(decided.items);
    const QList<StartupItem> covered =
        takeLoginItemsOfAddedApps(found, paths) + takeLoginItemsOfAddedApps(decided.items, paths);
    const QList<StartupItem> offWithAdded = switchedOffWith(added, covered);
    rows.setWithoutRow(offWithAdded);

    const StartupConfiguration toMerge{decided.items, layers.rules.disableNetworkAtStartup,
                                       layers.rules.disabledCloudSyncAtStartup};
    const StartupMerge merge = toMerge.mergedWithDiscovered(found, layers.rules.cleanReboot);
    WorkingStartup working{merge.configuration, {}, {}, decided.errors};
    QList<StartupItem>& items = working.configuration.items;
    const QList<StartupItem> beside = itemsBeside(decided.items, items) + offWithAdded;
    rows.setBeside(beside);
    if (!beside.isEmpty()) {
        items += beside;
        sortLocalized(items, &StartupItem::name);
    }
    applyDisabledCloudSync(items, layers.rules.disabledCloudSyncAtStartup);
    rows.addTo(working);
    return working;
}

bool isHeldOff(const StartupItem& item, const CloudSyncServices& disabledServices) {
    return !item.isProtected && matchesAnyCloudService(item, disabledServices);
}

CloudSyncServices servicesWithItemsLeftOff(const StartupChoices& choices, const CloudSyncServices& disabledServices) {
    CloudSyncServices services;
    for (const CloudSyncService service : allCloudSyncServices()) {
        const auto isLeftOff = [&choices, service](const QString& id) {
            return matchesAnyCloudService(choices.items.value(id), {service});
        };
        if (disabledServices.count(service) == 0 &&
            std::any_of(choices.offByService.cbegin(), choices.offByService.cend(), isLeftOff)) {
            services.insert(service);
        }
    }
    return services;
}

} // namespace quorvane
