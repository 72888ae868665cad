#include "startup/apply/StartupTargets.h"

namespace quorvane {

namespace {

using Kind = StartupItemKind;

bool isLaunchItem(const StartupItem& item) {
    return item.kind == Kind::launchAgent || item.kind == Kind::launchDaemon || isLaunchItemId(item.id);
}

StartupTargetSets switchedOff(const StartupConfiguration& configuration) {
    StartupTargetSets targets;
    targets.backgroundLabels = configuration.disabledBackgroundLabels();
    for (const StartupItem& item : configuration.items) {
        if (item.runsAtStartup) {
            continue;
        }
        if (isLaunchItem(item)) {
            targets.launchLabels.insert(item.launchIdentifier.value_or(item.name));
        }
    }
    return targets;
}

void addItemOfService(StartupTargetSets& targets, const StartupItem& item) {
    if (item.kind == Kind::backgroundLoginItem && item.launchIdentifier) {
        targets.backgroundLabels.insert(*item.launchIdentifier);
    }
    if (isLaunchItem(item) && item.launchIdentifier) {
        targets.launchLabels.insert(*item.launchIdentifier);
    }
    const QString path = knownPath(item);
    if (isLoginItem(item) && !path.isEmpty() && !targets.loginItems.keepsPath(path)) {
        targets.loginPaths.insert(path);
    }
}

} // namespace

QList<StartupItem> wideningItems(const StartupConfiguration& configuration, const QList<StartupItem>& discovered) {
    QList<StartupItem> items = configuration.items;
    QSet<QString> known;
    for (const StartupItem& item : configuration.items) {
        known.insert(comparableId(item));
    }
    for (const StartupItem& item : discovered) {
        if (!known.contains(comparableId(item))) {
            items.append(item);
        }
    }
    return items;
}

StartupTargetSets disabledTargetSets(const StartupConfiguration& configuration, const CloudSyncServices& services,
                                     const QList<StartupItem>& items) {
    const QList<StartupItem> itemsOfServices = itemsMatchingCloudServices(items, services);
    StartupTargetSets targets = switchedOff(configuration);
    targets.loginItems = loginItemTargets(configuration, itemsOfServices);
    for (const StartupItem& item : itemsOfServices) {
        addItemOfService(targets, item);
    }
    return targets;
}

} // namespace quorvane
