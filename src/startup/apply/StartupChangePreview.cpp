#include "startup/apply/StartupChangePreview.h"

#include "core/Collation.h"
#include "startup/apply/ActiveStartup.h"
#include "startup/apply/StartupTargets.h"

namespace quorvane {

namespace {

QList<StartupItem> itemsToDisable(const StartupConfiguration& configuration, const QList<StartupItem>& discovered,
                                  const ActiveStartup& active) {
    QList<StartupItem> candidates;
    for (const StartupItem& item : configuration.items) {
        if (!item.runsAtStartup) {
            candidates.append(item);
        }
    }
    // The same list that the apply goes by: nothing goes that the review hasn't shown.
    candidates +=
        itemsMatchingCloudServices(wideningItems(configuration, discovered), configuration.disabledCloudSyncAtStartup);

    QList<StartupItem> items;
    QSet<QString> seen;
    for (const StartupItem& item : candidates) {
        if (!seen.contains(item.id) && active.isActive(item).value_or(true)) {
            seen.insert(item.id);
            items.append(item);
        }
    }
    sortLocalized(items, &StartupItem::name);
    return items;
}

QList<StartupLaunchItem> itemsToAdd(const QList<StartupLaunchItem>& configured, const ActiveStartup& active) {
    QList<StartupLaunchItem> items;
    for (const StartupLaunchItem& item : configured) {
        if (!active.hasLoginPath(item.path)) {
            items.append(item);
        }
    }
    sortLocalized(items, &StartupLaunchItem::name);
    return items;
}

QList<StartupLaunchItem> itemsToRemove(const QList<StartupLaunchItem>& configured, QSet<QString> managedPaths,
                                       const ActiveStartup& active) {
    for (const StartupLaunchItem& item : configured) {
        managedPaths.remove(item.path);
    }
    QList<StartupLaunchItem> items;
    for (const QString& path : sortedTexts(managedPaths)) {
        if (active.hasLoginPath(path)) {
            items.append({active.nameOfLoginPath(path), path, false});
        }
    }
    sortLocalized(items, &StartupLaunchItem::name);
    return items;
}

} // namespace

StartupChangePreview startupChangePreview(const StartupConfiguration& configuration, const StartupReadings& readings) {
    const ActiveStartup active(readings);
    const QList<StartupLaunchItem> configured = configuration.startupLaunchItems();
    StartupChangePreview preview;
    preview.willDisable = itemsToDisable(configuration, readings.discovered, active);
    preview.willAdd = itemsToAdd(configured, active);
    preview.willRemove = itemsToRemove(configured, readings.managedPaths, active);
    preview.disableNetwork = configuration.disableNetworkAtStartup;
    preview.disabledCloudSync = {configuration.disabledCloudSyncAtStartup.begin(),
                                 configuration.disabledCloudSyncAtStartup.end()};
    sortLocalized(preview.disabledCloudSync, displayName);
    return preview;
}

} // namespace quorvane
