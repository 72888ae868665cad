#include "actions/ActionTexts.h"

#include "actions/ActionOutcome.h"
#include "actions/ActiveProfile.h"
#include "core/OneLine.h"
#include "maintenance/MaintenanceSelection.h"
#include "network/NetworkOperations.h"
#include "profiles/ProfileManager.h"
#include "startup/apply/StartupVerification.h"
#include "verification/LastFlowStanding.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kCancel = u"Cancel"_s;
const QString kCancelled = u"Cancelled"_s;
const QString kError = u"Error"_s;
const QString kProfileSaved = u"Profile Saved"_s;
const QString kSuccess = u"Success"_s;
const QString kRestart = u"\n\nPlease restart your Mac."_s;
const QString kRestartFully = u"\n\nPlease restart your Mac for changes to take full effect."_s;
const QString kNoBaseline = u"No restore baseline found — standard macOS defaults will be applied."_s;

/// A question whose first button does what it says, on Return.
Alert question(const QString& message, const QString& text, const QString& button,
               AlertStyle style = AlertStyle::Informational) {
    return {message, text, {button, kCancel}, 1, {}, style};
}

/// Likewise, but what the first button does can't be taken back.
Alert destructiveQuestion(const QString& message, const QString& text, const QString& button) {
    return {message, text, {button, kCancel}, 1, 0, AlertStyle::Warning};
}

AlertStyle styleOf(bool isWhole) {
    return isWhole ? AlertStyle::Informational : AlertStyle::Warning;
}

ClosingAlert warning(const QString& title, const QString& text) {
    return {title, text, AlertStyle::Warning};
}

bool hadBaseline(const RestoreOutcome& outcome) {
    return outcome.source != RestoreSource::StandardDefaults;
}

QString restoredDefaults(const RestoreOutcome& outcome) {
    return hadBaseline(outcome) ? u"Standard macOS settings restored from your saved restore baseline."_s
                                : u"Standard macOS settings restored."_s;
}

} // namespace

// ---- Questions

Alert snapshotQuestion(const QString& name) {
    return destructiveQuestion(u"Replace Restore Baseline?"_s,
                               u"“"_s + nameOnOneLine(name) +
                                   u"” is active. A snapshot taken now saves its settings, and Revert and Reinstate "
                                   "will return to them."_s,
                               u"Replace"_s);
}

std::optional<Alert> questionBeforeSnapshot(const ActiveConfiguration& active) {
    return isOfSavedProfile(active) ? std::optional(snapshotQuestion(active.name)) : std::nullopt;
}

Alert reinstateQuestion(bool hasBaseline) {
    const QString source = hasBaseline ? u"Your saved restore baseline will be used."_s : kNoBaseline;
    return destructiveQuestion(u"Reinstate System"_s,
                               u"This will restore system settings to before optimization.\n\n"_s + source +
                                   u"\n\nAre you sure you want to continue?"_s,
                               u"Reinstate"_s);
}

Alert defaultQuestion() {
    return question(u"Apply Default Profile?"_s,
                    u"This will restore standard macOS performance settings.\n\n"
                    "Your Mac will need to restart for all changes to take full effect."_s,
                    u"Apply"_s, AlertStyle::Warning);
}

Alert undoQuestion(bool hasBaseline) {
    return question(u"Undo Performance Tweaks?"_s,
                    hasBaseline ? u"Your saved settings will be restored."_s : kNoBaseline, u"Undo"_s);
}

Alert deleteQuestion(const QString& profileName) {
    return destructiveQuestion(u"Delete Profile?"_s,
                               u"“"_s + nameOnOneLine(profileName) +
                                   u"” will be removed from saved profiles and the menu bar. This cannot be undone."_s,
                               u"Delete"_s);
}

Alert deleteCurrentQuestion(const QString& profileName) {
    return destructiveQuestion(u"Delete Profile?"_s,
                               u"“"_s + nameOnOneLine(profileName) +
                                   u"” will be removed from saved profiles and the menu bar."_s,
                               u"Delete"_s);
}

Alert overwriteQuestion(const QString& profileName) {
    return destructiveQuestion(u"Overwrite Profile?"_s,
                               u"This will replace the existing profile \""_s + nameOnOneLine(profileName) +
                                   u"\" with your current settings."_s,
                               u"Overwrite"_s);
}

Alert overwriteUnreadableQuestion(const QString& fileName) {
    return destructiveQuestion(
        u"Overwrite Profile?"_s,
        u"This will replace the file \""_s + nameOnOneLine(fileName) + u"\", which can’t be read."_s, u"Overwrite"_s);
}

Alert animatedPictureQuestion() {
    return question(u"Show the Label?"_s, u"macOS’s animated desktop picture will come back as a still picture."_s,
                    u"Show Label"_s);
}

std::optional<Alert> purgeQuestion(const MaintenanceSelection& selection) {
    QStringList places;
    if (selection.cleanTrash) {
        places.append(u"the Trash"_s);
    }
    if (selection.purgeDownloads) {
        places.append(u"the Downloads folder"_s);
    }
    if (places.isEmpty()) {
        return std::nullopt;
    }
    return destructiveQuestion(
        u"Delete Permanently?"_s,
        u"Everything in "_s + places.join(u" and "_s) + u" will be deleted. This cannot be undone."_s, u"Delete"_s);
}

Alert restoreQuestion(const QStringList& names, const QString& title) {
    QStringList plain;
    for (const QString& name : names) {
        plain.append(nameOnOneLine(name));
    }
    return destructiveQuestion(u"Replace Saved Profiles?"_s,
                               plain.join(u", "_s) + u" will be replaced by their versions from "_s +
                                   nameOnOneLine(title) + u'.',
                               u"Replace"_s);
}

Alert noWayBackQuestion(const QString& problem) {
    return destructiveQuestion(
        u"Apply Without a Way Back?"_s,
        u"Your settings as they are now could not be saved, so Quorvane could not bring them back "
        "later.\n\n"_s +
            onOneLine(problem),
        u"Apply"_s);
}

Alert quitQuestion(const QString& busyMessage) {
    const QString underWay = busyMessage.isEmpty() ? QString() : busyMessage + u"\n\n"_s;
    return {u"Quit Quorvane?"_s,
            underWay + u"What is done stays done; the rest is left out, and nothing is verified."_s,
            {u"Keep Running"_s, u"Quit"_s},
            0,
            1,
            AlertStyle::Warning};
}

Alert notReadyQuestion() {
    return question(u"Quorvane Not Ready"_s, u"Open the Quorvane window first, then try again from the menu bar."_s,
                    u"Open Quorvane"_s);
}

// ---- What is told at the end

ClosingAlert snapshotAlert(const SnapshotCapture& capture, MasterArchive archive) {
    if (!capture.isSaved) {
        return warning(u"Snapshot Failed"_s, u"Could not save the restore baseline. Check the Logs tab for details."_s);
    }
    if (!isComplete(capture, archive)) {
        return warning(
            u"Baseline Not Archived"_s,
            u"Your current system setup has been saved, but not as a master baseline. Check the Logs tab for details."_s);
    }
    return {u"Snapshot Saved"_s, u"Your current system setup has been saved as the restore baseline."_s};
}

ClosingAlert exceptionsAlert(const QStringList& missing) {
    return warning(u"Restored, With Exceptions"_s,
                   u"%1 setting(s) could not be restored:\n%2"_s.arg(missing.size()).arg(missing.join(u'\n')));
}

ClosingAlert undoAlert(const RestoreOutcome& outcome) {
    if (!outcome.missing.isEmpty()) {
        return exceptionsAlert(outcome.missing);
    }
    if (!outcome.succeeded) {
        return warning(kCancelled, u"System-level defaults were not restored. Check the Logs tab for details."_s);
    }
    const QString restored = hadBaseline(outcome) ? u"Performance tweaks restored from your saved snapshot."_s
                                                  : u"Standard operation restored."_s;
    return {kSuccess, restored + kRestart};
}

ClosingAlert revertAllAlert(const RestoreOutcome& outcome, LoginItemsAre loginItems) {
    if (!outcome.missing.isEmpty()) {
        return exceptionsAlert(outcome.missing);
    }
    if (!outcome.succeeded) {
        return warning(kCancelled, u"System-level defaults were not restored."_s);
    }
    if (!hadBaseline(outcome)) {
        return {kSuccess, u"Standard operation restored."_s + kRestart};
    }
    const QString unchanged =
        loginItems == LoginItemsAre::Unchanged
            ? u"\n\nLogin items, network, and launch agents are unchanged. Use Reinstate for a full restore."_s
            : QString();
    return {kSuccess, u"Performance tweaks restored from your saved restore baseline."_s + unchanged + kRestart};
}

ClosingAlert defaultAlert(const RestoreOutcome& outcome) {
    if (!outcome.missing.isEmpty()) {
        return exceptionsAlert(outcome.missing);
    }
    if (!outcome.succeeded) {
        return warning(kCancelled, u"Default settings were not restored. Check the Logs tab for details."_s);
    }
    return {u"Default Applied"_s, restoredDefaults(outcome) + kRestart};
}

ClosingAlert menuDefaultAlert(const RestoreOutcome& outcome) {
    if (!outcome.missing.isEmpty()) {
        return exceptionsAlert(outcome.missing);
    }
    if (!outcome.succeeded) {
        return warning(u"Restore Cancelled"_s, u"System defaults were not restored. Check the Logs tab for details."_s);
    }
    return {u"Defaults Restored"_s, restoredDefaults(outcome) + kRestartFully};
}

ClosingAlert reinstateAlert(const RestoreOutcome& outcome) {
    if (!outcome.missing.isEmpty()) {
        return exceptionsAlert(outcome.missing);
    }
    if (!outcome.succeeded) {
        return warning(kCancelled, u"System restoration was cancelled or failed."_s);
    }
    const QString restored = hadBaseline(outcome) ? u"System restored from your saved restore baseline."_s
                                                  : u"System has been restored to standard defaults."_s;
    return {kSuccess, restored + kRestartFully};
}

ClosingAlert systemMatchAlert(const std::optional<SystemConfigurationMatch>& match) {
    if (!match || match->isKept) {
        return {u"No Match Found"_s,
                u"No saved profile fully matches your current system settings.\n\nCheck the Logs tab for details."_s};
    }
    const QString configuration = match->kind == MatchedConfigurationKind::savedProfile
                                      ? u"saved profile \"%1\""_s.arg(nameOnOneLine(match->name))
                                      : match->name;
    return {u"System Verified"_s,
            u"Current system matches %1.\n\n%2"_s.arg(configuration, summary(match->verification))};
}

ClosingAlert restartAlert(const QString& profileName) {
    return {u"Restart Required"_s, u'"' + nameOnOneLine(profileName) +
                                       u"\" has been applied.\n\n"
                                       "Please reboot your Mac for all settings to take full effect."_s};
}

ClosingAlert startupAlert(const StartupApplyResult& result) {
    const bool isWhole = result.applySucceeded && result.verification.failed.isEmpty();
    return {isWhole ? u"Startup Verified"_s : u"Startup Partially Applied"_s, summary(result.verification) + kRestart,
            styleOf(isWhole)};
}

ClosingAlert notLoadedAlert(const QString& profileName) {
    return errorAlert(u"Could not load profile \""_s + nameOnOneLine(profileName) + u"\"."_s);
}

ClosingAlert savedAlert(const QString& profileName, std::optional<bool> hasBaseline) {
    const QString saved = u"Profile \""_s + nameOnOneLine(profileName) + u"\" saved"_s;
    if (!hasBaseline) {
        return {kSuccess, saved + u'.'};
    }
    return *hasBaseline
               ? ClosingAlert{kSuccess, saved + u" with restore baseline."_s}
               : warning(kSuccess, saved + u", but the restore baseline could not be saved. Check the Logs tab."_s);
}

ClosingAlert wizardSavedAlert(const QString& profileName) {
    return {kProfileSaved,
            u'"' + nameOnOneLine(profileName) + u"\" is now available from the menu bar and profile dropdown."_s};
}

ClosingAlert wizardBaselineAlert(const QString& profileName) {
    return warning(kProfileSaved,
                   u'"' + nameOnOneLine(profileName) +
                       u"\" was saved, but the restore baseline could not be saved. Check the Logs tab."_s);
}

ClosingAlert notSavedAlert(const QString& error) {
    return errorAlert(u"Could not save profile: "_s + error);
}

ClosingAlert deletedAlert(const QString& profileName, bool isGone) {
    if (!isGone) {
        return errorAlert(u"Could not delete profile \""_s + nameOnOneLine(profileName) + u"\"."_s);
    }
    return {u"Profile Deleted"_s, u"“"_s + nameOnOneLine(profileName) + u"” has been removed."_s};
}

ClosingAlert maintenanceAlert(const MaintenanceOutcome& outcome) {
    return {outcome.alertTitle(), outcome.alertText(), outcome.succeeded ? AlertStyle::Success : AlertStyle::Warning};
}

ClosingAlert networkAlert(const NetworkOutcome& outcome) {
    return {outcome.alertTitle(), outcome.alertText(), styleOf(outcome.isComplete())};
}

ClosingAlert errorAlert(const QString& text) {
    return warning(kError, text);
}

ClosingAlert changesAlert(const LastFlowStanding& standing) {
    constexpr qsizetype kMostLines = 20; // an alert is no list to scroll in: the log has them all
    QStringList lines = changeLines(standing);
    if (lines.size() > kMostLines) {
        const qsizetype more = lines.size() - kMostLines;
        lines = lines.first(kMostLines);
        lines.append(u"and %1 more, which the Logs tab names."_s.arg(more));
    }
    return {changesTitle(standing), lines.join(u'\n'), AlertStyle::Warning};
}

ClosingAlert aboutAlert() {
    return {u"Quorvane"_s, u"Beta Release 1.0"_s};
}

ClosingAlert emptyLogAlert() {
    return {u"Empty Log"_s, u"The log is empty."_s};
}

ClosingAlert exportAlert(const std::optional<QString>& problem) {
    return problem ? warning(u"Export Error"_s, u"Failed to save log: "_s + *problem)
                   : ClosingAlert{u"Export Successful"_s, u"Log successfully exported."_s};
}

ClosingAlert profileExportAlert(const std::optional<QString>& problem) {
    return problem ? warning(u"Export Error"_s, u"Failed to save profile: "_s + onOneLine(*problem))
                   : ClosingAlert{u"Export Successful"_s, u"Profile successfully exported."_s};
}

ClosingAlert profileImportedAlert(const QString& name, const QString& fileName, const ProfileImportResult& result) {
    const QString quoted = u"“"_s + nameOnOneLine(name) + u"”"_s;
    QString text = quoted + u" is now available from the menu bar and profile dropdown."_s;
    if (!result.renamed.isEmpty()) {
        text = quoted + u" was imported under another name, since it is taken: "_s + onOneLine(result.renamed.first());
    } else if (result.updated > 0) {
        text = quoted + u" was replaced by its version from "_s + nameOnOneLine(fileName) + u'.';
    }
    return {u"Profile Imported"_s, text};
}

ClosingAlert notImportedAlert(const QString& problem) {
    return warning(u"Import Error"_s, u"Could not import the profile: "_s + onOneLine(problem));
}

ClosingAlert loginAlert(const QString& error) {
    return warning(u"Login Item"_s, u"Could not update login item settings: "_s + onOneLine(error));
}

ClosingAlert fullDiskAlert() {
    return {u"Full Disk Access Required"_s, u"To allow Quorvane to optimize Time Machine and Spotlight:\n\n"
                                            "1. Click the '+' button in System Settings.\n"
                                            "2. Add 'Quorvane' from your Applications folder.\n"
                                            "3. Ensure the toggle is switched ON."_s};
}

// ---- Reviews

Review reviewOf(ReviewSubject subject, const QString& profileName) {
    switch (subject) {
    case ReviewSubject::Profile:
        return {subject,
                u"Review Profile: "_s + nameOnOneLine(profileName),
                u"Review system tweaks and startup changes before applying this profile. Your Mac will need to restart "
                "afterward."_s,
                u"Apply Profile"_s,
                u"This profile has no settings to apply."_s,
                u"Applying profile…"_s,
                {}};
    case ReviewSubject::Tweaks:
        return {subject,
                u"Review Performance Tweaks"_s,
                u"Review which performance tweaks will be applied to this Mac."_s,
                u"Apply Changes"_s,
                u"No performance tweaks are selected."_s,
                u"Applying performance tweaks…"_s,
                {}};
    case ReviewSubject::Startup:
        break;
    }
    return {subject,
            u"Review Startup Changes"_s,
            u"Review what will change on this Mac before you restart."_s,
            u"Apply Changes"_s,
            u"No startup changes are selected."_s,
            u"Applying startup changes…"_s,
            {}};
}

namespace {

/// Audio software isn't switched off, whatever the configuration says.
StartupChangePreview withoutWhatStays(StartupChangePreview preview) {
    preview.willDisable.removeIf([](const StartupItem& item) { return item.isProtected; });
    return preview;
}

} // namespace

bool canApply(const ReviewPreview& preview) {
    if (const auto* const tweaks = std::get_if<TweaksApplyPreview>(&preview)) {
        return !tweaks->enabledTweaks.isEmpty();
    }
    const auto* const startup = std::get_if<StartupChangePreview>(&preview);
    return startup == nullptr || withoutWhatStays(*startup) != StartupChangePreview{};
}

ResultPanel resultPanel(ReviewSubject subject, const ActionOutcome& outcome) {
    const ApplyVerificationResult verification = outcome.verification.value_or(ApplyVerificationResult{});
    if (!outcome.succeeded || !verification.failed.isEmpty()) {
        return {u"Some changes could not be verified"_s, u"exclamationmark.triangle.fill"_s,
                u"Check the Logs tab for details. Grant Automation permission for System Events if login item changes "
                "failed."_s,
                verification};
    }
    const QString what = subject == ReviewSubject::Tweaks ? u"tweaks"_s : u"all changes"_s;
    return {u"All changes verified"_s, u"checkmark.seal.fill"_s,
            u"Restart your Mac for "_s + what + u" to take full effect."_s, verification};
}

} // namespace quorvane
