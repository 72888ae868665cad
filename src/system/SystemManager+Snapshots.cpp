#include "system/SystemManager.h"

#include "core/JsonErrors.h"
#include "core/NotificationCenter.h"
#include "network/NetworkServices.h"
#include "platform/Clock.h"
#include "platform/CloudDrive.h"
#include "platform/FileManager.h"
#include "readings/ReadingSession.h"
#include "readings/SystemReadings.h"
#include "snapshots/FirstBaseline.h"
#include "snapshots/HomeBaselines.h"
#include "snapshots/SnapshotCapture.h"
#include "snapshots/SnapshotManager.h"
#include "snapshots/SnapshotOfSettings.h"
#include "startup/login/LoginItems.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kQuitting = u"The program is quitting."_s;

QString couldNotRead(const QStringList& missing) {
    return u"Could not read "_s + missing.join(u", "_s) + u'.';
}

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

/// Without what an organization has set: a capture is of what the user has.
QCoro::Task<CurrentSettings> readUsersOwnPreferences(const SystemReadings& readings) {
    CurrentSettings current;
    for (const MacPreference& preference : kMacPreferences) {
        current.of(preference).reading = co_await readings.readPreference(preference);
    }
    co_return current;
}

void logMissing(const QStringList& missing, FlowEnvironment& environment) {
    if (!missing.isEmpty()) {
        environment.log(u"  [INFO] Not part of this snapshot, because it could not be read: "_s +
                        missing.join(u", "_s));
    }
}

/// What was captured last is what the ways back go by. The moments of both would say so, too, unless the clock was set back.
void endChoice(FlowEnvironment& environment) {
    try {
        ChosenBaselineFile(environment.host().files, environment.host().machine).remove();
    } catch (const FileError& error) {
        environment.log(u"  [ERROR] The restore baseline that was chosen before could not be removed: "_s +
                        error.message());
    }
}

/// Gives what went wrong; also where what was written doesn't read back.
std::optional<QString> saveFirst(const SystemSnapshot& snapshot, const Host& host) {
    FirstBaselines store(host.files, host.machine);
    try {
        store.keep(masterBaselineOf(snapshot, identityOf(host.machine), {}));
    } catch (const FileError& error) {
        return error.message();
    } catch (const EncodingError& error) {
        return error.message();
    }
    return store.own() ? std::nullopt : std::optional(u"What was written can’t be read."_s);
}

} // namespace

/// What a capture has read, and what it couldn't.
struct SystemManager::ReadSnapshot {
    SystemSnapshot snapshot;
    QStringList missing;            ///< as the log calls it
    QStringList unreadTweaks{};     ///< the names of those with a preference that wasn't answered
    QStringList knownByTextAlone{}; ///< the places of preferences whose type is lost
};

QCoro::Task<SnapshotCapture> SystemManager::captureSystemSnapshot(std::optional<QString> label, MasterArchive archive) {
    SnapshotCapture capture;
    log(u"\nCapturing system snapshot..."_s);
    const ReadSnapshot read = co_await readSystemSnapshot(label);
    std::optional<QString> error = refusalToSave(read);
    if (!error) {
        error = saveSnapshot(read.snapshot);
    }
    if (error) {
        log(u"  [ERROR] Failed to save snapshot: "_s + *error);
        co_return capture;
    }
    capture.isSaved = true;
    endChoice(*this);
    log(u"  [SNAPSHOT] Saved system baseline"_s + (label ? u" for \"%1\"."_s.arg(*label) : u"."_s));
    logMissing(read.missing, *this);
    if (!read.knownByTextAlone.isEmpty()) {
        log(u"  [INFO] Saved as text only, because the type could not be read: "_s +
            read.knownByTextAlone.join(u", "_s));
    }
    m_notifications.post(kQuorvaneRestoreBaselineSaved, label ? QVariantMap{{u"label"_s, *label}} : QVariantMap());
    if (archive == MasterArchive::Yes) {
        capture.isArchived = co_await archiveAsMaster(read);
    }
    co_return capture;
}

/// A capture that couldn't ask doesn't replace one that could; and a preference that nobody knows would be deleted by the
/// way back.
std::optional<QString> SystemManager::refusalToSave(const ReadSnapshot& read) const {
    if (isQuitting()) {
        return kQuitting; // the tools were ended: an empty snapshot would replace a good one
    }
    if (!read.missing.isEmpty() && (!read.unreadTweaks.isEmpty() || snapshotManager().hasSnapshotFile())) {
        return couldNotRead(read.missing);
    }
    return std::nullopt;
}

/// Gives what went wrong.
std::optional<QString> SystemManager::saveSnapshot(const SystemSnapshot& snapshot) {
    try {
        snapshotManager().save(snapshot);
    } catch (const FileError& error) {
        return error.message();
    } catch (const EncodingError& error) {
        return error.message();
    }
    return std::nullopt;
}

QCoro::Task<std::optional<QString>> SystemManager::keepSettingsBeforeFirstChange() {
    if (hasOwnCapture(m_host.files, m_host.machine)) {
        co_return std::nullopt;
    }
    const EarlierChanges earlier = readEarlierChanges(m_host);
    const QString label = earlier.isAny ? kFirstSeen : kBeforeQuorvane;
    const ReadSnapshot read = co_await readSystemSnapshot(label);
    const QString failure = u"  [ERROR] Failed to save your settings before the first change: "_s;
    if (!read.unreadTweaks.isEmpty() && !isQuitting()) {
        log(failure + couldNotRead(read.missing));
        co_return couldNotRead(read.unreadTweaks);
    }
    const std::optional<QString> error =
        isQuitting() ? kQuitting : saveFirst(withoutChanges(read.snapshot, earlier), m_host);
    if (error) {
        log(failure + *error);
        co_return error;
    }
    log(earlier.isAny ? u"  [SNAPSHOT] Saved your settings as Quorvane first saw them."_s
                      : u"  [SNAPSHOT] Saved your settings as they were before Quorvane."_s);
    logMissing(read.missing, *this);
    m_notifications.post(kQuorvaneRestoreBaselineSaved, {{u"label"_s, label}});
    co_return std::nullopt;
}

/// Reads the live system, in a fixed order. What only tells the types comes last: a snapshot without them is one all the same.
QCoro::Task<SystemManager::ReadSnapshot> SystemManager::readSystemSnapshot(std::optional<QString> label) {
    ReadSnapshot read;
    ReadingSession session(*this);
    const SystemReadings readings(session);
    m_loginItems->drop();
    LoginItems loginItems(session, *m_loginItems);
    const LoginItemList list = co_await loginItems.current();
    const auto services = capturedServices(co_await readings.readNetworkServices());
    const auto power = co_await readings.readPowerSources();
    const QDateTime now = m_host.clock.now();
    CurrentSettings current = co_await readUsersOwnPreferences(readings);
    current.power = power;
    current.timeMachine = co_await readings.readTimeMachineState();
    if (current.timeMachine.value == TimeMachineState::NotPermitted) {
        logUnreadableTimeMachine();
    }
    current.indexing = co_await readings.readIndexingOfAll();
    if (!isQuitting()) {
        loginItems.tellUnread(list);
    }
    read.missing = session.missing();
    if (!list.tellsAll() && !read.missing.contains(kLoginItemsReading)) {
        read.missing.prepend(kLoginItemsReading);
    }
    read.unreadTweaks = tweaksNotAnswered(current);
    const TypedReadings typed = co_await readings.readTypedValues(preferencesThatAreSet(current));
    for (const MacPreference& preference : preferencesKnownByTextAlone(current, typed)) {
        read.knownByTextAlone.append(placeOf(preference));
    }
    SystemSnapshot& snapshot = read.snapshot;
    snapshot = snapshotOf(current, typed);
    snapshot.id = QUuid::createUuid();
    snapshot.dateCreated = now;
    snapshot.label = label;
    snapshot.networkServicesEnabled = services;
    if (list.tellsAll()) {
        snapshot.loginItems = capturedLoginItems(list.items);
    }
    co_return read;
}

/// A failure leaves the snapshot as good as it is. One that isn't whole is none to keep for good: the newest archive goes
/// before all older ones.
QCoro::Task<bool> SystemManager::archiveAsMaster(ReadSnapshot read) {
    const QString failure = u"  [ERROR] Could not archive master baseline: "_s;
    if (!read.missing.isEmpty()) {
        log(failure + couldNotRead(read.missing));
        co_return false;
    }
    try {
        const SystemSnapshot& snapshot = read.snapshot;
        const QString name = co_await m_masterBaselines.archiveMasterBaseline(snapshot, snapshot.label);
        const QString place = m_host.cloud.hasAccount() ? u"iCloud and ~/.quorvane"_s : u"~/.quorvane"_s;
        log(u"  [MASTER] Archived protected baseline as %1 (%2)."_s.arg(name, place));
    } catch (const MasterSystemBaselineError& error) {
        log(failure + error.message());
        co_return false;
    }
    co_return true;
}

SnapshotManager SystemManager::snapshotManager() const {
    return SnapshotManager(m_host.files, m_host.machine);
}

} // namespace quorvane
