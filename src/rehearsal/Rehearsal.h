#pragma once

#include "core/ClosingAlert.h"
#include "core/NotificationCenter.h"
#include "matching/SystemConfigurationMatch.h"
#include "platform/simulated/SimulatedHost.h"
#include "profiles/ApplyPreviews.h"
#include "profiles/ProfileCloudManager.h"
#include "profiles/ProfileManager.h"
#include "profiles/UnifiedProfile.h"
#include "rehearsal/Arguments.h"
#include "snapshots/RestoreBaseline.h"
#include "system/SystemManager.h"
#include "wallpaper/WallpaperProfileOverlay.h"

#include <QCoroTask>
#include <QObject>

#include <optional>

namespace quorvane {

/// What a display shows.
struct ShownPicture {
    QString display; ///< its localized name
    QString path;    ///< empty when the system doesn't say
};

/// A backup of profiles as a list shows it.
struct BackupRow {
    QString id; ///< by which it is restored
    QString title;
    QString detail;
};

/// What a command came to.
struct RehearsalOutcome {
    bool succeeded = false;
    std::optional<ApplyVerificationResult> verification; ///< where the command verifies
    std::optional<ProfileApplyPreview> preview;          ///< where the command shows one
    std::optional<QList<StartupItem>> startupItems;      ///< where the command looks for them
    std::optional<ClosingAlert> alert;                   ///< where the command ends with one
    std::optional<RestoreOutcome> restore;               ///< where the command is a way back
    std::optional<SystemConfigurationMatch> match;       ///< where the command scans and finds one
    std::optional<QList<ShownPicture>> displays;         ///< where the command changes what they show
    std::optional<QList<BackupRow>> backups;             ///< where the command lists them

    bool isDone() const { return succeeded && (!verification || verification->failed.isEmpty()); }
};

/// The program's flows on one simulated Mac, as the window would call them.
class Rehearsal : public QObject {
    Q_OBJECT

public:
    /// Throws std::exception when the folder holds no simulated Mac or an option's file can't be used.
    Rehearsal(const QString& macFolder, macsim::Authorization authorization, const SimulatedHostOptions& options);

    SystemManager& system() { return m_system; }

    /// Throws UnusableInput for a file that can't be applied; nothing is changed then.
    QCoro::Task<RehearsalOutcome> applyProfileFile(QString hostPath);
    QCoro::Task<RehearsalOutcome> previewProfileFile(QString hostPath);
    QCoro::Task<RehearsalOutcome> applyStartupOfFile(QString hostPath);
    QCoro::Task<RehearsalOutcome> applyTweaksOfFile(QString hostPath);
    QCoro::Task<RehearsalOutcome> verifyProfileFile(QString hostPath);
    /// Back to the settings that were saved, or to those of a fresh macOS. Only the restore decides whether it is done; the
    /// scan that follows tells in which configuration the Mac is then.
    QCoro::Task<RehearsalOutcome> restoreDefault();
    QCoro::Task<RehearsalOutcome> undoTweaks();
    QCoro::Task<RehearsalOutcome> reinstate();
    /// @param label  none when it is empty
    QCoro::Task<RehearsalOutcome> saveSnapshot(QString label, SystemManager::MasterArchive archive);
    /// Done when a configuration fits.
    QCoro::Task<RehearsalOutcome> scan();
    QCoro::Task<RehearsalOutcome> discover();
    QCoro::Task<RehearsalOutcome> maintain(MaintenanceSelection selection);
    QCoro::Task<RehearsalOutcome> operateNetwork(NetworkOperations operations);
    /// Shows a profile's name on the desktop pictures. Done when every display has it.
    QCoro::Task<RehearsalOutcome> showOverlay(QString name);
    QCoro::Task<RehearsalOutcome> removeOverlay();

    /// Ends when nothing runs on that a command has led to.
    QCoro::Task<void> finished();

    // Of profiles, in iCloud Drive; a failure is told by an alert.
    QCoro::Task<RehearsalOutcome> backUpProfiles();
    QCoro::Task<RehearsalOutcome> listBackups();
    /// @param id  as listBackups gives it
    QCoro::Task<RehearsalOutcome> restoreBackup(QString id);

    /// Ends whatever runs, so that the flow comes to its end.
    void quit() { m_host.shutDown(); }

Q_SIGNALS:
    /// A line for people, in the order in which things happen: the log, and what a review shows.
    void linePrinted(const QString& line);

private:
    void print(const QStringList& lines);
    void tell(RehearsalOutcome& outcome, const ClosingAlert& alert);
    void tellOfDisplays(RehearsalOutcome& outcome);
    void finishWayBack(RehearsalOutcome& outcome, const RestoreOutcome& restore, const ClosingAlert& alert);
    QCoro::Task<ProfileImportResult> restored(QString id);
    std::optional<UnifiedProfile> storedProfile(const UnifiedProfile& profile, const QString& hostPath);

    AuthorizationPolicy m_authorization;
    SimulatedHost m_host;
    NotificationCenter m_notifications;
    SystemManager m_system;
    WallpaperProfileOverlay m_overlay;
    ProfileManager m_profiles;
    ProfileCloudManager m_cloudBackups;
};

} // namespace quorvane
