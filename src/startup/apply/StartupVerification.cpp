#include "startup/apply/StartupVerification.h"

#include "core/Collation.h"
#include "startup/apply/StartupTargets.h"
#include "startup/background/BackgroundItemPermission.h"
#include "startup/background/BackgroundLoginItemChangePlan.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// The checks in their order, each adding its items to one result.
class StartupVerification {
public:
    StartupVerification(const StartupConfiguration& configuration, const StartupReadings& readings)
        : m_configuration(configuration)
        , m_readings(readings)
        , m_items(wideningItems(configuration, readings.discovered))
        , m_targets(disabledTargetSets(configuration, configuration.disabledCloudSyncAtStartup, m_items))
        , m_active(readings, m_targets.loginItems)
        , m_services(configuration.disabledCloudSyncAtStartup.begin(), configuration.disabledCloudSyncAtStartup.end()) {
        sortLocalized(m_services, displayName);
    }

    ApplyVerificationResult run() {
        checkLoginItems();
        checkLaunchItems();
        checkBackgroundItems();
        checkCloudServices();
        checkCloudHelpers();
        checkNetwork();
        checkStartupApps();
        checkRemovedApps();
        return m_result;
    }

private:
    void add(bool holds, const QString& name, const QString& verifiedDetail, const QString& failedDetail) {
        (holds ? m_result.verified : m_result.failed).append({name, holds ? verifiedDetail : failedDetail});
    }

    /// A list that nobody may read proves nothing.
    void addLoginCheck(bool holds, const QString& name, const QString& verifiedDetail, const QString& failedDetail) {
        const bool isKnown = m_active.areLoginItemsKnown();
        add(isKnown && holds, name, verifiedDetail, isKnown ? failedDetail : u"could not read login items"_s);
    }

    void checkLoginItems() {
        for (const QString& name : sortedTexts(m_targets.loginItems.names())) {
            addLoginCheck(!m_active.hasTarget(name), u"Login item: "_s + name, u"removed"_s, u"still active"_s);
        }
    }

    void checkLaunchItems() {
        for (const QString& label : sortedTexts(m_targets.launchLabels)) {
            add(!m_active.hasLaunchPlist(label), u"Launch item: "_s + label, u"inactive"_s, u"still active"_s);
        }
    }

    void checkBackgroundItems() {
        if (!m_readings.backgroundItems) {
            return;
        }
        if (m_readings.backgroundItems->isEmpty() && !m_targets.backgroundLabels.isEmpty()) {
            m_result.failed.append(unavailableBackgroundItems());
            return;
        }
        for (const QString& label : sortedTexts(m_targets.backgroundLabels)) {
            const QList<BackgroundTaskItem> records = m_readings.backgroundItems->itemsWithLabel(label);
            const QString name = u"Background item: "_s + (records.isEmpty() ? label : records.first().name);
            add(!m_readings.backgroundItems->isActive(label), name,
                records.isEmpty() ? u"not installed"_s : u"disabled at login"_s, u"still enabled at login"_s);
        }
    }

    /// Of the list as it is known; also records that no item stands for, as of applications.
    QList<BackgroundTaskItem> recordsOf(CloudSyncService service) const {
        QList<BackgroundTaskItem> records =
            m_readings.backgroundItems ? m_readings.backgroundItems->items() : QList<BackgroundTaskItem>();
        records.removeIf([service](const BackgroundTaskItem& record) { return !matchesCloudService(record, service); });
        return records;
    }

    /// Whatever the name of its login item has become; also what the user has added by hand, which stays.
    bool opensByItsPath(const StartupItem& item) const {
        const bool isAdded = item.kind == StartupItemKind::addedApp && item.runsAtStartup;
        return (isAdded || isLoginItem(item)) && m_active.hasLoginPath(knownPath(item));
    }

    void checkCloudServices() {
        for (const CloudSyncService service : m_services) {
            const QList<StartupItem> items = itemsMatchingCloudServices(m_items, {service});
            const QList<BackgroundTaskItem> records = recordsOf(service);
            const bool isOff = std::none_of(items.begin(), items.end(),
                                            [this](const StartupItem& item) {
                                                return m_active.isActive(item).value_or(false) || opensByItsPath(item);
                                            }) &&
                               std::none_of(records.begin(), records.end(), isActive);
            const QString name = u"Cloud sync: "_s + displayName(service);
            const bool isInstalled = !items.isEmpty() || !records.isEmpty();
            const QString verifiedDetail = isInstalled ? u"disabled at login"_s : u"not installed"_s;
            if (isOff) {
                addLoginCheck(true, name, verifiedDetail, {}); // among those that nobody may read could be one of it
            } else {
                add(false, name, {}, u"still active"_s);
            }
        }
    }

    void checkCloudHelpers() {
        if (!m_readings.backgroundItems) {
            return;
        }
        for (const CloudSyncService service : m_services) {
            QStringList active;
            bool hasHelpers = false;
            for (const BackgroundTaskItem& record : recordsOf(service)) {
                if (isLoginRecord(record)) {
                    hasHelpers = true;
                    if (isActive(record)) {
                        active.append(record.name);
                    }
                }
            }
            if (hasHelpers) {
                add(active.isEmpty(), u"Cloud sync helper: "_s + displayName(service), u"background items disabled"_s,
                    u"still enabled: "_s + active.join(u", "_s));
            }
        }
    }

    void checkNetwork() {
        if (m_readings.isNetworkOff) {
            add(*m_readings.isNetworkOff, u"Network"_s, u"all interfaces disabled"_s,
                u"expected all interfaces disabled"_s);
        }
    }

    void checkStartupApps() {
        for (const StartupLaunchItem& item : m_configuration.startupLaunchItems()) {
            addLoginCheck(m_active.hasLoginPath(item.path), u"Startup app: "_s + item.name,
                          m_active.isHidden(item.path) ? u"hidden at login"_s : u"configured"_s, u"not configured"_s);
        }
    }

    void checkRemovedApps() {
        for (const QString& path : sortedTexts(m_configuration.notOpenedOf(m_readings.managedPaths))) {
            addLoginCheck(!m_active.hasLoginItemOf(path), u"Startup app: "_s + m_active.nameOfLoginPath(path),
                          u"removed from login items"_s, u"still in login items"_s);
        }
    }

    const StartupConfiguration& m_configuration;
    const StartupReadings& m_readings;
    QList<StartupItem> m_items;
    StartupTargetSets m_targets;
    ActiveStartup m_active;
    QList<CloudSyncService> m_services; ///< by display name
    ApplyVerificationResult m_result;
};

} // namespace

ApplyVerificationResult startupVerification(const StartupConfiguration& configuration,
                                            const StartupReadings& readings) {
    return StartupVerification(configuration, readings).run();
}

} // namespace quorvane
