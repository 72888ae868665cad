#pragma once

#include <QString>
#include <QStringList>

// What selector, save sheet and wizard say.
namespace quorvane {

struct PerformanceSettings;
struct UnifiedProfile;

// ---- The selector

inline const QString kNoProfilesInMenu = QStringLiteral("No saved profiles");
inline const QString kApplyDefaultToSystem = QStringLiteral("Apply Default to System");
inline const QString kNoneClear = QStringLiteral("None (Clear)");
inline const QString kEditCurrent = QStringLiteral("Edit Current");
inline const QString kDeleteSavedProfile = QStringLiteral("Delete Profile");
inline const QString kEdited = QStringLiteral("Edited");
inline const QString kExportProfile = QStringLiteral("Export Profile…");
inline const QString kImportProfile = QStringLiteral("Import Profile…");

// ---- The save sheet

inline const QString kSaveProfile = QStringLiteral("Save Profile");
inline const QString kSave = QStringLiteral("Save");
inline const QString kUpdateProfile = QStringLiteral("Update");
inline const QString kProfileName = QStringLiteral("Profile name");
inline const QString kIncludeInProfile = QStringLiteral("Include in profile:");
inline const QString kSystemTweaks = QStringLiteral("System Tweaks");
inline const QString kStartupOptimization = QStringLiteral("Startup Optimization");
inline const QString kSaveBaseline = QStringLiteral("Save master restore baseline from current setup");
inline const QString kSaveBaselineNote =
    QStringLiteral("Creates a new protected baseline in iCloud (or ~/.quorvane) for Revert and Reinstate");
inline const QString kSavingProfile = QStringLiteral("Saving profile…");

QString tweaksSelectedText(const PerformanceSettings& settings);
/// Under the field of the name: what it means to call a profile so; mostly empty.
QString profileNameNote(const QString& name);

// ---- The wizard

inline const QString kCreateProfile = QStringLiteral("Create Profile");
inline const QString kEditProfile = QStringLiteral("Edit Profile");
inline const QString kContinue = QStringLiteral("Continue");
inline const QString kConfigureTweaks = QStringLiteral("Configure System Tweaks");
inline const QString kConfigureTweaksText =
    QStringLiteral("Select the macOS optimizations to include in this profile.");
inline const QString kNameYourProfile = QStringLiteral("Name Your Profile");
inline const QString kNameYourProfileText =
    QStringLiteral("This profile will be saved and available from the menu bar dropdown.");
inline const QString kProfileSummary = QStringLiteral("Profile Summary");
inline const QString kWizardBaselineNote =
    QStringLiteral("Captures your macOS settings now as a new protected baseline in iCloud (or ~/.quorvane)");
inline const QString kApplyAfterSaving = QStringLiteral("Apply profile after saving");
inline const QString kApplyAfterSavingNote = QStringLiteral("Immediately run tweaks and startup optimization");

inline const QString kCleanReboot = QStringLiteral("Clean Reboot");
inline const QString kOn = QStringLiteral("On");

/// "2 of 3"
QString stepCountText(int step, int count);
/// "3 selected"
QString tweaksSummary(const PerformanceSettings& settings);
/// Under the field of the name while a profile is edited: what becomes of its old name; empty where it stays.
QString renameNote(const QString& oldName, const QString& newName);

} // namespace quorvane
