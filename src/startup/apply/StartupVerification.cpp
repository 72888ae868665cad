#include "startup/apply/StartupVerification.h"

#include "core/Collation.h"
#include "core/Paths.h"
#include "startup/apply/StartupTargets.h"
#include "startup/background/BackgroundItemPermission.h"
#include "startup/background/BackgroundLoginItemChangePlan.h"
#include "startup/background/BackgroundState.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kLaunchdUnread = u"could not ask launchd"_s;
const QString kWaiting = u"will be switched off at the next apply"_s;

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
        for (const StartupItem& item : m_items) {
            if (isLoginItem(item) && !item.runsAtStartup && m_active.isRegisteredUnlisted(item.path)) {
                const QString check = u"Login item: "_s + item.name;
                m_result.verified.removeIf([&check](const auto& verified) { return verified.name == check; });
                m_result.failed.append(opensByItsRegistration(item.name));
            }
        }
    }

    void checkLaunchItems() {
        for (const QString& label : sortedTexts(m_targets.launchLabels)) {
            const Standing standing = m_active.ofFile(label);
            if (!standing.isLeftAlone) {
                add(standing.isActive == false, u"Launch item: "_s + label, u"inactive"_s,
                    failedDetail(standing, isWaiting(label), u"still active"_s));
            }
        }
    }

    void checkBackgroundItems() {
        const std::optional<BackgroundTaskList>& list = m_readings.backgroundItems;
        for (const QString& label : sortedTexts(m_targets.backgroundLabels)) {
            const Standing standing = m_active.ofLabel(label);
            if (standing.isLeftAlone) {
                continue;
            }
            const QList<BackgroundTaskItem> records = list ? list->itemsWithLabel(label) : QList<BackgroundTaskItem>();
            if (!standing.isActive && records.isEmpty() && !(list && !list->isEmpty())) {
                addUnknownBackgroundItem();
                continue;
            }
            const QString name = u"Background item: "_s + (records.isEmpty() ? label : records.first().name);
            add(standing.isActive == false, name, isInstalled(label) ? u"disabled at login"_s : u"not installed"_s,
                failedDetail(standing, isWaiting(label), u"still enabled at login"_s));
        }
    }

    bool isWaiting(const QString& identifier) const { return m_readings.memory.waitsFor(identifier); }

    QString failedDetail(const Standing& standing, bool isWaiting, const QString& stillOn) const {
        if (!standing.isActive) {
            return m_readings.launchd.isEveryFolderRead() ? kLaunchdUnread : u"could not read the launch folders"_s;
        }
        return isWaiting ? kWaiting : stillOn;
    }

    /// Nobody has seen the list yet: that is said once where it was to be read, and not at all where it wasn't.
    void addUnknownBackgroundItem() {
        if (m_readings.backgroundItems && !m_result.failed.contains(unavailableBackgroundItems())) {
            m_result.failed.append(unavailableBackgroundItems());
        }
    }

    bool isInstalled(const QString& label) const {
        const LaunchdOverrides& overrides = m_readings.launchd.overrides();
        return (m_readings.backgroundItems && m_readings.backgroundItems->contains(label)) ||
               !m_readings.launchd.labelled(label).isEmpty() || overrides.isDisabled({LaunchdDomain::User, label}) ||
               overrides.isDisabled({LaunchdDomain::System, label});
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
            QList<StartupItem> activeItems = items;
            activeItems.removeIf([this](const StartupItem& item) {
                return !m_active.isActive(item).value_or(false) && !opensByItsPath(item);
            });
            QList<BackgroundTaskItem> activeRecords = records;
            activeRecords.removeIf([this](const BackgroundTaskItem& record) { return !m_active.isActive(record); });
            const QString name = u"Cloud sync: "_s + displayName(service);
            const bool isInstalled = !items.isEmpty() || !records.isEmpty();
            const QString verifiedDetail = isInstalled ? u"disabled at login"_s : u"not installed"_s;
            if (activeItems.isEmpty() && activeRecords.isEmpty()) {
                addLoginCheck(true, name, verifiedDetail, {}); // among those that nobody may read could be one of it
            } else {
                const bool allWait = std::all_of(activeItems.begin(), activeItems.end(),
                                                 [this](const StartupItem& item) {
                                                     return isWaiting(item.launchIdentifier.value_or(QString()));
                                                 }) &&
                                     allRecordsWait(activeRecords);
                add(false, name, {}, allWait ? kWaiting : u"still active"_s);
            }
        }
    }

    void checkCloudHelpers() {
        if (!m_readings.backgroundItems) {
            return;
        }
        for (const CloudSyncService service : m_services) {
            QList<BackgroundTaskItem> records = recordsOf(service);
            records.removeIf([](const BackgroundTaskItem& record) { return !isLoginRecord(record); });
            QList<BackgroundTaskItem> active = records;
            active.removeIf([this](const BackgroundTaskItem& record) { return !m_active.isActive(record); });
            QStringList names;
            for (const BackgroundTaskItem& record : active) {
                names.append(record.name);
            }
            if (!records.isEmpty()) {
                add(active.isEmpty(), u"Cloud sync helper: "_s + displayName(service), u"background items disabled"_s,
                    (allRecordsWait(active) ? kWaiting + u": "_s : u"still enabled: "_s) + names.join(u", "_s));
            }
        }
    }

    bool allRecordsWait(const QList<BackgroundTaskItem>& records) const {
        return std::all_of(records.begin(), records.end(), [this](const BackgroundTaskItem& record) {
            return isWaiting(backgroundItemLabel(record).value_or(QString()));
        });
    }

    void checkNetwork() {
        if (m_readings.isNetworkOff) {
            add(*m_readings.isNetworkOff, u"Network"_s, u"all interfaces disabled"_s,
                u"expected all interfaces disabled"_s);
        }
    }

    void checkStartupApps() {
        for (const StartupLaunchItem& item : m_configuration.startupLaunchItems()) {
            if (m_active.isRegisteredUnlisted(item.path) && !isRecordedAsRegistered(item.path)) {
                continue; // by a list of an earlier time: nobody has looked since
            }
            addLoginCheck(m_active.opensAtLogin(item.path), u"Startup app: "_s + item.name,
                          m_active.isHidden(item.path) ? u"hidden at login"_s : u"configured"_s, u"not configured"_s);
        }
    }

    bool isRecordedAsRegistered(const QString& path) const {
        const QList<BackgroundTaskItem> records =
            m_readings.backgroundItems ? m_readings.backgroundItems->items() : QList<BackgroundTaskItem>();
        return std::any_of(records.begin(), records.end(), [&path](const BackgroundTaskItem& record) {
            return isRegisteredApplication(record) && comparablePath(*recordedPath(record)) == comparablePath(path);
        });
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
