#include "system/SystemManager.h"

#include "core/JsonErrors.h"
#include "core/NotificationCenter.h"
#include "network/NetworkServices.h"
#include "platform/Clock.h"
#include "platform/CloudDrive.h"
#include "platform/FileManager.h"
#include "readings/PowerSettings.h"
#include "snapshots/SnapshotManager.h"
#include "startup/login/LoginItems.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QList<LoginItemSnapshot> capturedLoginItems(const QList<LoginItem>& items) {
    QList<LoginItemSnapshot> captured;
    for (const LoginItem& item : items) {
        captured.append({item.name, item.path, item.hidden});
    }
    return captured;
}

/// A service whose state can't be read is left out, so that a restore leaves it alone.
std::optional<QMap<QString, bool>> capturedServices(const QList<NetworkServiceState>& services) {
    QMap<QString, bool> captured;
    for (const NetworkServiceState& service : services) {
        if (service.isEnabled) {
            captured.insert(service.name, *service.isEnabled);
        }
    }
    return captured.isEmpty() ? std::nullopt : std::optional(captured);
}

} // namespace

QCoro::Task<bool> SystemManager::captureSystemSnapshot(std::optional<QString> label, MasterArchive archive) {
    log(u"\nCapturing system snapshot..."_s);
    const SystemSnapshot snapshot = co_await readSystemSnapshot(label);
    if (const std::optional<QString> error = saveSnapshot(snapshot)) {
        log(u"  [ERROR] Failed to save snapshot: "_s + *error);
        co_return false;
    }
    log(u"  [SNAPSHOT] Saved system baseline"_s + (label ? u" for \"%1\"."_s.arg(*label) : u"."_s));
    m_notifications.post(kQuorvaneRestoreBaselineSaved, label ? QVariantMap{{u"label"_s, *label}} : QVariantMap());
    if (archive == MasterArchive::Yes) {
        co_await archiveAsMaster(snapshot);
    }
    co_return true;
}

/// Gives what went wrong.
std::optional<QString> SystemManager::saveSnapshot(const SystemSnapshot& snapshot) {
    if (m_host.commands.isShutDown()) {
        return u"The program is quitting."_s; // the tools were ended: an empty snapshot would replace a good one
    }
    try {
        snapshotManager().save(snapshot);
    } catch (const FileError& error) {
        return error.message();
    } catch (const EncodingError& error) {
        return error.message();
    }
    return std::nullopt;
}

/// Reads the live system, in a fixed order.
QCoro::Task<SystemSnapshot> SystemManager::readSystemSnapshot(std::optional<QString> label) {
    SystemSnapshot snapshot;
    snapshot.label = label;
    m_loginItems->drop();
    const QList<LoginItem> items = co_await rawLoginItems();
    snapshot.loginItems = capturedLoginItems(items);
    snapshot.networkServicesEnabled = capturedServices(co_await readNetworkServices());
    const Reading<PowerSettings> powerReading = co_await readPowerSettings();
    const PowerSettings power = powerReading.value.value_or(PowerSettings());
    snapshot.pmsetStandby = power.standby;
    snapshot.pmsetDisksleep = power.disksleep;
    snapshot.pmsetSleep = power.sleep;
    snapshot.pmsetSms = power.sms;
    snapshot.id = QUuid::createUuid();
    snapshot.dateCreated = m_host.clock.now();
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        const Reading<QString> reading = co_await m_readings.readPreference(preference);
        snapshot.*preference.value = reading.value;
    }
    snapshot.timeMachineEnabled = (co_await readTimeMachineState()).value;
    snapshot.spotlightIndexingEnabled = (co_await readSpotlightState()).value;
    co_return snapshot;
}

/// A failure leaves the snapshot as good as it is.
QCoro::Task<void> SystemManager::archiveAsMaster(SystemSnapshot snapshot) {
    try {
        const QString name = co_await m_masterBaselines.archiveMasterBaseline(snapshot, snapshot.label);
        const QString place = m_host.cloud.hasAccount() ? u"iCloud and ~/.quorvane"_s : u"~/.quorvane"_s;
        log(u"  [MASTER] Archived protected baseline as %1 (%2)."_s.arg(name, place));
    } catch (const MasterSystemBaselineError& error) {
        log(u"  [WARNING] Could not archive master baseline: "_s + error.message());
    }
}

SnapshotManager SystemManager::snapshotManager() const {
    return SnapshotManager(m_host.files, m_host.machine);
}

} // namespace quorvane
