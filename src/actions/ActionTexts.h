#pragma once

#include "actions/Review.h"
#include "core/ClosingAlert.h"
#include "matching/SystemConfigurationMatch.h"
#include "platform/AlertPresenter.h"
#include "snapshots/RestoreBaseline.h"
#include "snapshots/SnapshotCapture.h"

#include <QString>
#include <QStringList>

#include <optional>

// What actions ask, tell, and show in their reviews. The records of maintenance, network and backups bring their own
// sentences along.
namespace quorvane {

struct ActionOutcome;
struct ActiveConfiguration;
struct LastFlowStanding;
struct MaintenanceOutcome;
struct MaintenanceSelection;
struct NetworkOutcome;
struct ProfileImportResult;
struct StartupApplyResult;

// ---- Questions. Of those that destroy something the cancel button is on Return.

/// @param name  of the profile that is active
Alert snapshotQuestion(const QString& name);
/// None unless a saved profile is in force: its settings aren't the user's own.
std::optional<Alert> questionBeforeSnapshot(const ActiveConfiguration& active);
Alert reinstateQuestion(bool hasBaseline);
Alert defaultQuestion();
Alert undoQuestion(bool hasBaseline);
Alert deleteQuestion(const QString& profileName);
/// The same in the selector.
Alert deleteCurrentQuestion(const QString& profileName);
/// @param profileName  of the saved one
Alert overwriteQuestion(const QString& profileName);
/// @param fileName  without ".json"
Alert overwriteUnreadableQuestion(const QString& fileName);
/// Escape and Return keep running. @param busyMessage  what the program is busy with; may be empty
/// Before a picture that macOS animates is covered: it can't be put back.
Alert animatedPictureQuestion();
Alert quitQuestion(const QString& busyMessage);
/// Of a menu that knows no program yet.
Alert notReadyQuestion();
/// None when nothing would be deleted for good.
std::optional<Alert> purgeQuestion(const MaintenanceSelection& selection);
/// @param names  of the saved profiles that would change; @param title  of the backup
Alert restoreQuestion(const QStringList& names, const QString& title);

/// Before a change to a Mac whose settings couldn't be kept. @param problem  in words for people
Alert noWayBackQuestion(const QString& problem);

// ---- What is told at the end

ClosingAlert snapshotAlert(const SnapshotCapture& capture, MasterArchive archive);

// Those of the ways back go by the record's source: they speak of a snapshot or a baseline where the user's own values
// came back.

/// Of a way back that was carried out, and after which something isn't as it was.
/// @param missing  the names of that
ClosingAlert exceptionsAlert(const QStringList& missing);
/// Of "Undo Performance Tweaks".
ClosingAlert undoAlert(const RestoreOutcome& outcome);
enum class LoginItemsAre { Unchanged, Changed };
/// Of "Revert All".
ClosingAlert revertAllAlert(const RestoreOutcome& outcome, LoginItemsAre loginItems);
/// Of "Apply Default".
ClosingAlert defaultAlert(const RestoreOutcome& outcome);
/// Of "Restore Default" in the menu.
ClosingAlert menuDefaultAlert(const RestoreOutcome& outcome);
ClosingAlert reinstateAlert(const RestoreOutcome& outcome);

ClosingAlert systemMatchAlert(const std::optional<SystemConfigurationMatch>& match);
ClosingAlert restartAlert(const QString& profileName);
ClosingAlert startupAlert(const StartupApplyResult& result);
ClosingAlert notLoadedAlert(const QString& profileName);
/// Of the selector. @param hasBaseline  none where none was asked for
ClosingAlert savedAlert(const QString& profileName, std::optional<bool> hasBaseline);
/// Of the wizard.
ClosingAlert wizardSavedAlert(const QString& profileName);
/// Of the wizard, before the other one: a baseline was asked for.
ClosingAlert wizardBaselineAlert(const QString& profileName);
/// @param error  what went wrong
ClosingAlert notSavedAlert(const QString& error);
ClosingAlert deletedAlert(const QString& profileName, bool isGone);
ClosingAlert maintenanceAlert(const MaintenanceOutcome& outcome);
ClosingAlert networkAlert(const NetworkOutcome& outcome);
/// @param text  what went wrong
ClosingAlert errorAlert(const QString& text);
/// Names each setting that isn't any more as it was left.
ClosingAlert changesAlert(const LastFlowStanding& standing);
ClosingAlert aboutAlert();
ClosingAlert emptyLogAlert();
/// @param problem  why the log couldn't be saved; none when it was
ClosingAlert exportAlert(const std::optional<QString>& problem);
/// The same of a profile.
ClosingAlert profileExportAlert(const std::optional<QString>& problem);
/// @param name  as its file says
ClosingAlert profileImportedAlert(const QString& name, const QString& fileName, const ProfileImportResult& result);
ClosingAlert notImportedAlert(const QString& problem);
/// @param error  the system's words
ClosingAlert loginAlert(const QString& error);
ClosingAlert fullDiskAlert();

inline const QString kKeepingSettings = QStringLiteral("Saving your settings as they are…");

// ---- The offer of a master baseline

inline const QString kCapturingBaseline = QStringLiteral("Capturing your current system settings…");
inline const QString kBaselineNotSaved =
    QStringLiteral("The baseline could not be saved. Check the Logs tab for details.");

// ---- Reviews

/// Without its `prepare`. @param profileName  of a profile
Review reviewOf(ReviewSubject subject, const QString& profileName = {});
/// False where the preview shows nothing to do.
bool canApply(const ReviewPreview& preview);
ResultPanel resultPanel(ReviewSubject subject, const ActionOutcome& outcome);

} // namespace quorvane
