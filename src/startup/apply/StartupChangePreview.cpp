#include "startup/apply/StartupChangePreview.h"

#include "core/Collation.h"
#include "startup/apply/ActiveStartup.h"
#include "startup/apply/StartupDiscovery.h"
#include "startup/apply/StartupTargets.h"
#include "startup/background/BackgroundItemPermission.h"
#include "startup/background/BackgroundLoginItemChangePlan.h"
#include "startup/login/LoginItemRemoval.h"

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

bool keeps(const StartupConfiguration& configuration, const WaitingService& waiting) {
    return std::any_of(configuration.items.begin(), configuration.items.end(), [&waiting](const StartupItem& item) {
        return item.runsAtStartup && waiting.isKnownAs(item.launchIdentifier.value_or(QString()));
    });
}

/// What will be disabled, each item once.
class DisabledItems {
public:
    /// @param readings, targets  outlive this object
    DisabledItems(const StartupReadings& readings, const StartupTargetSets& targets)
        : m_readings(readings)
        , m_targets(targets)
        , m_active(readings, targets.loginItems) {}

    /// Adds it unless it is known to be off.
    void add(const StartupItem& item) {
        if (!m_seen.contains(comparableId(item)) && m_active.isActive(item).value_or(true)) {
            addActive(item);
        }
    }

    void addSwitchedOff(const StartupConfiguration& configuration) {
        for (const StartupItem& item : configuration.items) {
            if (!item.runsAtStartup) {
                add(item);
            }
        }
    }

    /// Of the items, and of the background records, that belong to one of the services.
    void addServices(const CloudSyncServices& services, const QList<StartupItem>& items) {
        for (const StartupItem& item : itemsMatchingCloudServices(items, services)) {
            if (isTakenByItsPath(item)) {
                addUnderItsName(item);
            } else if (item.kind != StartupItemKind::addedApp) { // what the user has added by hand stays
                add(item);
            }
        }
        if (m_readings.backgroundItems) {
            addRecords(activeRecordsOfServices(m_readings.backgroundItems->items(), services));
        }
    }

    /// What an earlier apply has left, and the configuration doesn't want to have on.
    void addWaiting(const StartupConfiguration& configuration) {
        for (const WaitingService& waiting : m_readings.memory.waiting) {
            if (!keeps(configuration, waiting)) {
                add(waitingStartupItem(waiting));
            }
        }
    }

    /// What nothing permits.
    void addNonPermitted(const CleanReboot& cleanReboot) {
        for (const LoginItem& item : dividedLoginItems(m_readings.loginItems.items, cleanReboot).going) {
            // One that the configuration switches off stands there already, maybe as an older profile knows it.
            if (!isExcludedAgent(item, cleanReboot.excludedIds) && !m_loginItems.takes(item)) {
                addActive(startupItemOf(item));
            }
        }
        if (m_readings.backgroundItems) {
            const QSet<QString> permitted = allPermittedNames(cleanReboot);
            const QList<BackgroundTaskItem>& records = m_readings.backgroundItems->items();
            addRecords(nonPermittedBackgroundItems(records, permitted, cleanReboot.startup));
            addApplications(nonPermittedApplications(records, permitted, cleanReboot.startup));
        }
    }

    QList<StartupItem> sorted() const {
        QList<StartupItem> items = m_items;
        sortLocalized(items, &StartupItem::name);
        return items;
    }

private:
    void addActive(const StartupItem& item) {
        m_seen.insert(comparableId(item));
        m_items.append(item);
        if (isLoginItem(item)) {
            m_loginItems.switchOff(item);
        }
    }

    /// A login item of a service goes by its path, too, whatever its name has become since the profile was saved.
    bool isTakenByItsPath(const StartupItem& item) const {
        return isLoginItem(item) && m_targets.loginPaths.contains(knownPath(item)) &&
               m_active.hasLoginPath(knownPath(item));
    }

    void addUnderItsName(StartupItem item) {
        item.name = m_active.nameOfLoginPath(knownPath(item));
        if (!m_seen.contains(comparableId(item))) {
            addActive(item);
        }
    }

    void addRecords(const QList<BackgroundTaskItem>& records) {
        for (const BackgroundTaskItem& record : records) {
            const std::optional<StartupItem> item = backgroundTaskStartupItem(record);
            if (item && !m_readings.backgroundItems->isProtected(record)) {
                add(*item);
            }
        }
    }

    void addApplications(const QList<BackgroundTaskItem>& records) {
        for (const BackgroundTaskItem& record : records) {
            for (const StartupItem& item : registeredStartupItems({recordedPath(record).value_or(QString())}, {})) {
                add(item);
            }
        }
    }

    const StartupReadings& m_readings;
    const StartupTargetSets& m_targets;
    ActiveStartup m_active;
    QList<StartupItem> m_items;
    QSet<QString> m_seen;
    LoginItemTargets m_loginItems; ///< those among them
};

/// An empty list is one that couldn't be read: there is no Mac without a record.
bool areBackgroundItemsKnown(const StartupReadings& readings) {
    return readings.backgroundItems && !readings.backgroundItems->isEmpty();
}

bool isOnAgain(const StartupItem& item, const StartupReadings& readings) {
    const QString identifier = item.launchIdentifier.value_or(QString());
    const QList<LaunchPlist> plists = readings.launchd.named(identifier);
    return readings.onAgain.contains(identifier) ||
           std::any_of(plists.begin(), plists.end(),
                       [&readings](const LaunchPlist& plist) { return readings.onAgain.contains(plist.label); });
}

void markDisabledItems(StartupChangePreview& preview, const StartupReadings& readings) {
    const ActiveStartup active(readings, {});
    for (const StartupItem& item : std::as_const(preview.willDisable)) {
        if (isOnAgain(item, readings)) {
            preview.onAgain.insert(item.id);
        }
        if (isLoginItem(item) && active.isRegisteredUnlisted(item.path)) {
            preview.byHand.insert(item.id);
        }
    }
}

StartupTargetSets targetsOf(const StartupConfiguration& configuration, const QList<StartupItem>& items) {
    return disabledTargetSets(configuration, configuration.disabledCloudSyncAtStartup, items);
}

/// Of the items that a configuration switches off, a clean reboot takes the launch items and the background items itself.
bool isTakenByCleanReboot(const StartupItem& item) {
    return item.kind == StartupItemKind::launchAgent || item.kind == StartupItemKind::launchDaemon ||
           item.kind == StartupItemKind::backgroundLoginItem;
}

QList<StartupLaunchItem> itemsToAdd(const QList<StartupLaunchItem>& configured, const ActiveStartup& active) {
    QList<StartupLaunchItem> items;
    for (const StartupLaunchItem& item : configured) {
        if (!active.opensAtLogin(item.path)) {
            items.append(item);
        }
    }
    sortLocalized(items, &StartupLaunchItem::name);
    return items;
}

QList<StartupLaunchItem> itemsToRemove(const StartupConfiguration& configuration, const QSet<QString>& managedPaths,
                                       const ActiveStartup& active) {
    QList<StartupLaunchItem> items;
    for (const QString& path : sortedTexts(configuration.notOpenedOf(managedPaths))) {
        if (active.hasLoginItemOf(path)) {
            items.append({active.nameOfLoginPath(path), path, false});
        }
    }
    sortLocalized(items, &StartupLaunchItem::name);
    return items;
}

} // namespace

StartupChangePreview startupChangePreview(const StartupConfiguration& configuration,
                                          const std::optional<CleanReboot>& cleanReboot,
                                          const StartupReadings& readings) {
    const CloudSyncServices& services = configuration.disabledCloudSyncAtStartup;
    // The same list that the apply goes by: nothing goes that the review hasn't shown.
    const QList<StartupItem> items = wideningItems(configuration, readings.discovered);
    const StartupTargetSets targets = targetsOf(configuration, items);
    DisabledItems disabled(readings, targets);
    disabled.addSwitchedOff(configuration);
    disabled.addServices(services, items);
    disabled.addWaiting(configuration);
    StartupChangePreview preview;
    preview.unreadLoginItems = unreadReason(readings.loginItems);
    if (cleanReboot) {
        disabled.addNonPermitted(*cleanReboot);
        preview.willDisableUnknownBackgroundItems = !areBackgroundItemsKnown(readings);
    }
    preview.willDisable = disabled.sorted();
    markDisabledItems(preview, readings);
    const ActiveStartup active(readings, targets.loginItems);
    preview.willAdd = itemsToAdd(configuration.startupLaunchItems(), active);
    preview.willRemove = itemsToRemove(configuration, readings.managedPaths, active);
    preview.disableNetwork = configuration.disableNetworkAtStartup;
    preview.disabledCloudSync = {services.begin(), services.end()};
    sortLocalized(preview.disabledCloudSync, displayName);
    return preview;
}

StartupChangePreview cleanRebootPreview(const CleanReboot& cleanReboot, const StartupReadings& readings) {
    const StartupConfiguration startup = cleanReboot.startup.value_or(StartupConfiguration());
    const StartupTargetSets targets = targetsOf(startup, {});
    DisabledItems disabled(readings, targets);
    for (const StartupItem& item : startup.items) {
        if (!item.runsAtStartup && isTakenByCleanReboot(item)) {
            disabled.add(item);
        }
    }
    disabled.addNonPermitted(cleanReboot);
    disabled.addWaiting(startup);
    StartupChangePreview preview;
    preview.unreadLoginItems = unreadReason(readings.loginItems);
    preview.willDisable = disabled.sorted();
    markDisabledItems(preview, readings);
    preview.willDisableUnknownBackgroundItems = !areBackgroundItemsKnown(readings);
    return preview;
}

} // namespace quorvane
