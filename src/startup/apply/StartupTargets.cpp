#include "startup/apply/StartupTargets.h"

namespace quorvane {

namespace {

using Kind = StartupItemKind;

bool isLaunchItem(const StartupItem& item) {
    return item.kind == Kind::launchAgent || item.kind == Kind::launchDaemon || isLaunchItemId(item.id);
}

bool isLoginItem(const StartupItem& item) {
    return (item.kind == Kind::loginApp || item.kind == Kind::backgroundAgent) && !isLaunchItemId(item.id);
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
        } else if (isLoginItem(item)) {
            targets.loginNames.insert(item.name);
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
    if (isLoginItem(item)) {
        targets.loginNames.insert(item.name);
        if (!item.path.isEmpty()) {
            targets.loginPaths.insert(item.path);
        }
    }
}

} // namespace

QList<StartupItem> wideningItems(const StartupConfiguration& configuration, const QList<StartupItem>& discovered) {
    QList<StartupItem> items = configuration.items;
    QSet<QString> known;
    for (const StartupItem& item : configuration.items) {
        known.insert(item.id);
    }
    for (const StartupItem& item : discovered) {
        if (!known.contains(item.id)) {
            items.append(item);
        }
    }
    return items;
}

StartupTargetSets disabledTargetSets(const StartupConfiguration& configuration, const CloudSyncServices& services,
                                     const QList<StartupItem>& items) {
    StartupTargetSets targets = switchedOff(configuration);
    for (const StartupItem& item : items) {
        if (matchesAnyCloudService(item, services)) {
            addItemOfService(targets, item);
        }
    }
    return targets;
}

} // namespace quorvane
