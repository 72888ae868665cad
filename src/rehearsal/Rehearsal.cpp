#include "rehearsal/Rehearsal.h"

#include "core/Json.h"
#include "maintenance/MaintenanceSelection.h"
#include "matching/SystemMatching.h"
#include "network/NetworkOperations.h"
#include "platform/Clock.h"
#include "platform/Displays.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "profiles/ProfileNames.h"
#include "rehearsal/ProfileFile.h"
#include "rehearsal/Report.h"
#include "snapshots/RestoreAlerts.h"
#include "startup/apply/StartupVerification.h"

#include <QCoroFuture>

#include <cstdio>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QList<BackupRow> backupRows(const QList<ProfileCloudBackupInfo>& backups, const Machine& machine) {
    QList<BackupRow> rows;
    for (const ProfileCloudBackupInfo& info : backups) {
        rows.append({info.id, info.title(machine), info.detail()});
    }
    return rows;
}

void complain(const QString& text) {
    std::fprintf(stderr, "%s\n", text.toUtf8().constData());
}

} // namespace

Rehearsal::Rehearsal(const QString& macFolder, macsim::Authorization authorization, const SimulatedHostOptions& options)
    : m_authorization(authorization)
    , m_host(macFolder, m_authorization, options)
    , m_system(m_host.host(), m_notifications)
    , m_overlay({m_host.host().files, m_host.host().machine, m_host.host().displays, m_host.host().defaults,
                 m_host.host().notifications})
    , m_profiles(m_host.host().files, profilesDirectory(m_host.host().machine))
    , m_cloudBackups(m_host.host().files, m_host.host().cloud, m_host.host().clock, m_host.host().machine) {
    connect(&m_system, &SystemManager::messageLogged, this, &Rehearsal::linePrinted);
    m_overlay.follow(m_system);
}

void Rehearsal::print(const QStringList& lines) {
    for (const QString& line : lines) {
        Q_EMIT linePrinted(line);
    }
}

QCoro::Task<RehearsalOutcome> Rehearsal::applyProfileFile(QString hostPath) {
    const UnifiedProfile given = profileFromFile(hostPath);
    if (isDefaultProfile(given)) {
        co_return co_await restoreDefault();
    }
    const std::optional<UnifiedProfile> stored = storedProfile(given, hostPath);
    if (!stored) {
        co_return RehearsalOutcome{};
    }
    RehearsalOutcome outcome;
    outcome.preview = co_await m_system.previewProfile(*stored);
    print(previewLines(*outcome.preview));
    m_system.beginBusy(u"Applying profile…"_s);
    outcome.succeeded = co_await m_system.applyProfile(*stored);
    m_system.endBusy();
    outcome.verification = m_system.lastApplyVerification();
    if (outcome.succeeded) {
        co_await m_overlay.updateForAppliedProfile(stored->name);
    }
    co_return outcome;
}

/// Saves the profile and reads it afresh, so that what is applied is what is stored.
std::optional<UnifiedProfile> Rehearsal::storedProfile(const UnifiedProfile& profile, const QString& hostPath) {
    try {
        m_profiles.saveProfile(profile);
    } catch (const ProfileStoreError& error) {
        throw UnusableInput(hostPath + u": "_s + error.message());
    } catch (const FileError& error) {
        complain(u"The profile could not be saved: "_s + error.message());
        return std::nullopt;
    }
    const QString name = sanitizedProfileName(profile.name);
    const std::optional<UnifiedProfile> stored = m_profiles.loadProfile(name);
    if (!stored) {
        complain(u"Could not load profile \"%1\"."_s.arg(name));
    }
    return stored;
}

QCoro::Task<RehearsalOutcome> Rehearsal::previewProfileFile(QString hostPath) {
    const UnifiedProfile profile = profileFromFile(hostPath);
    RehearsalOutcome outcome;
    outcome.preview = co_await m_system.previewProfile(profile);
    outcome.succeeded = true;
    print(previewLines(*outcome.preview));
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::applyStartupOfFile(QString hostPath) {
    const UnifiedProfile profile = profileFromFile(hostPath);
    RehearsalOutcome outcome;
    m_system.beginBusy(u"Applying startup changes…"_s);
    const StartupApplyResult result = co_await m_system.applyStartupChanges(profile.startup);
    m_system.endBusy();
    outcome.succeeded = result.applySucceeded;
    outcome.verification = result.verification;
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::discover() {
    RehearsalOutcome outcome;
    outcome.startupItems = co_await m_system.discoverStartupItems(SystemManager::StartupRefresh::UseCache);
    outcome.succeeded = true;
    print(startupItemLines(*outcome.startupItems));
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::applyTweaksOfFile(QString hostPath) {
    const UnifiedProfile profile = profileFromFile(hostPath);
    RehearsalOutcome outcome;
    m_system.beginBusy(u"Applying performance tweaks…"_s);
    outcome.succeeded = co_await m_system.applyPerformanceTweaks(profile.settings, cleanRebootOf(profile));
    m_system.endBusy();
    outcome.verification = m_system.lastApplyVerification();
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::verifyProfileFile(QString hostPath) {
    const UnifiedProfile profile = profileFromFile(hostPath);
    RehearsalOutcome outcome;
    outcome.verification = co_await m_system.verifyProfile(profile);
    outcome.succeeded = true;
    m_system.logVerificationResult(*outcome.verification, u"Profile: "_s + profile.name);
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::restoreDefault() {
    RehearsalOutcome outcome;
    const RestoreOutcome restore = co_await m_system.restoreDefault();
    if (restore.succeeded) {
        co_await m_overlay.refreshForProfile(UnifiedProfile::defaultProfile().name);
    }
    finishWayBack(outcome, restore, defaultAlert(restore));
    outcome.match = co_await m_system.scanCurrentSystem(m_profiles.listProfiles());
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::undoTweaks() {
    RehearsalOutcome outcome;
    const RestoreOutcome restore = co_await m_system.undoTweaks();
    finishWayBack(outcome, restore, undoAlert(restore));
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::reinstate() {
    RehearsalOutcome outcome;
    const RestoreOutcome restore = co_await m_system.reinstateWholeSystem();
    finishWayBack(outcome, restore, reinstateAlert(restore));
    co_return outcome;
}

void Rehearsal::finishWayBack(RehearsalOutcome& outcome, const RestoreOutcome& restore, const ClosingAlert& alert) {
    outcome.succeeded = restore.succeeded;
    outcome.restore = restore;
    tell(outcome, alert);
}

QCoro::Task<RehearsalOutcome> Rehearsal::saveSnapshot(QString label, SystemManager::MasterArchive archive) {
    RehearsalOutcome outcome;
    m_system.beginBusy(u"Saving system snapshot…"_s);
    const std::optional<QString> given = label.isEmpty() ? std::nullopt : std::optional(label);
    outcome.succeeded = co_await m_system.captureSystemSnapshot(given, archive);
    m_system.endBusy();
    tell(outcome, snapshotAlert(outcome.succeeded));
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::scan() {
    RehearsalOutcome outcome;
    m_system.beginBusy(u"Verifying system settings…"_s);
    outcome.match = co_await m_system.scanCurrentSystem(m_profiles.listProfiles());
    m_system.endBusy();
    outcome.succeeded = outcome.match.has_value();
    tell(outcome, systemMatchAlert(outcome.match));
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::maintain(MaintenanceSelection selection) {
    const MaintenanceOutcome result = co_await m_system.runMaintenance(selection);
    RehearsalOutcome outcome;
    outcome.succeeded = result.succeeded;
    tell(outcome, {result.alertTitle(), result.alertText()});
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::operateNetwork(NetworkOperations operations) {
    const NetworkOutcome result = co_await m_system.executeNetworkOperations(operations);
    RehearsalOutcome outcome;
    outcome.succeeded = result.isComplete();
    tell(outcome, {result.alertTitle(), result.alertText()});
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::showOverlay(QString name) {
    co_await m_overlay.setOverlayEnabled(true, name);
    RehearsalOutcome outcome;
    outcome.succeeded = m_overlay.isOverlayInPlace();
    tellOfDisplays(outcome);
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::removeOverlay() {
    co_await m_overlay.setOverlayEnabled(false, {});
    RehearsalOutcome outcome;
    outcome.succeeded = true;
    tellOfDisplays(outcome);
    co_return outcome;
}

void Rehearsal::tellOfDisplays(RehearsalOutcome& outcome) {
    const Displays& displays = m_host.host().displays;
    outcome.displays.emplace();
    for (const Display& display : displays.screens()) {
        outcome.displays->append({display.localizedName, displays.desktopPicture(display).value_or(QString())});
    }
    print(displayLines(*outcome.displays));
}

/// Signals that are queued lead to work of their own.
QCoro::Task<void> Rehearsal::finished() {
    co_await m_host.host().clock.sleepFor(std::chrono::milliseconds(0));
    co_await m_overlay.finished();
}

QCoro::Task<RehearsalOutcome> Rehearsal::backUpProfiles() {
    RehearsalOutcome outcome;
    m_system.beginBusy(u"Syncing profiles with iCloud…"_s);
    try {
        const ProfileCloudBackup backup = co_await m_cloudBackups.backupAllProfiles(m_profiles);
        outcome.succeeded = true;
        tell(outcome, backupCompleteAlert(backup));
    } catch (const ProfileCloudError& error) {
        tell(outcome, {u"Error"_s, error.message()});
    }
    m_system.endBusy();
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::listBackups() {
    RehearsalOutcome outcome;
    m_system.beginBusy(u"Syncing profiles with iCloud…"_s);
    try {
        co_await m_cloudBackups.refreshBackups();
        outcome.succeeded = true;
        outcome.backups = backupRows(m_cloudBackups.backups(), m_host.host().machine);
        print(backupLines(*outcome.backups));
    } catch (const ProfileCloudError& error) {
        tell(outcome, {u"Error"_s, error.message()});
    }
    m_system.endBusy();
    co_return outcome;
}

QCoro::Task<RehearsalOutcome> Rehearsal::restoreBackup(QString id) {
    RehearsalOutcome outcome;
    m_system.beginBusy(u"Restoring profiles from iCloud…"_s);
    try {
        const ProfileImportResult result = co_await restored(id);
        outcome.succeeded = true;
        tell(outcome, profilesRestoredAlert(result));
    } catch (const ProfileCloudError& error) {
        tell(outcome, {u"Error"_s, error.message()});
    }
    m_system.endBusy();
    co_return outcome;
}

/// Throws ProfileCloudError.
QCoro::Task<ProfileImportResult> Rehearsal::restored(QString id) {
    co_await m_cloudBackups.refreshBackups();
    const QList<ProfileCloudBackupInfo> backups = m_cloudBackups.backups();
    for (const ProfileCloudBackupInfo& info : backups) {
        if (info.id == id) {
            co_return co_await m_cloudBackups.restore(info, m_profiles);
        }
    }
    const bool isAvailable = m_cloudBackups.isICloudAvailable();
    throw ProfileCloudError(isAvailable ? ProfileCloudError::Code::backupNotFound
                                        : ProfileCloudError::Code::iCloudUnavailable);
}

void Rehearsal::tell(RehearsalOutcome& outcome, const ClosingAlert& alert) {
    outcome.alert = alert;
    print(alertLines(alert));
}

} // namespace quorvane
