#pragma once

#include "profiles/ProfileManager.h"

#include <QString>

#include <optional>

// What the performance page says. Texts are plain, and names stand in them on one line.
namespace quorvane {

class Machine;
struct ActiveConfiguration;
struct SavedSnapshot;

/// A row: its symbol, and its title over its description.
struct RowText {
    QString title;
    QString subtitle;
    QString symbol; ///< of the system's symbol font

    bool operator==(const RowText&) const = default;
};

// ---- System Status

inline const QString kSystemStatusTitle = QStringLiteral("System Status");

struct StatusRow {
    enum class Tone { Verified, Warning, Unknown };

    QString text;
    QString detail; ///< what to do, or what was found; may be empty
    QString symbol;
    Tone tone = Tone::Unknown;

    bool operator==(const StatusRow&) const = default;
};

/// @param isVerifying  a scan is under way
StatusRow statusRow(const ActiveConfiguration& active, bool isVerifying);

/// What stands beneath the status, with what can be done about it.
struct StatusNote {
    QString text;
    QString button;

    bool operator==(const StatusNote&) const = default;
};
/// What has changed since the last apply or way back; none where nothing has.
std::optional<StatusNote> changesNote(const ActiveConfiguration& active);
/// Of a profile that has been in force for more than a day: somebody may have forgotten it.
std::optional<StatusNote> inForceNote(const ActiveConfiguration& active, const Machine& machine, const QDateTime& now);

RowText verifySystemRow();
/// None without a snapshot.
std::optional<RowText> snapshotRow(const std::optional<SavedSnapshot>& snapshot, const Machine& machine);
RowText createSnapshotRow();
RowText reinstateRow();
QString systemStatusFooter(bool hasSnapshot);

// ---- Create Custom Profile

RowText heroRow();
inline const QString kHeroHint = QStringLiteral("Opens the profile wizard");

// ---- Saved Profiles

inline const QString kSavedProfilesTitle = QStringLiteral("Saved Profiles");
inline const QString kSavedProfilesHeader =
    QStringLiteral("Create and apply custom profiles that combine system tweaks with startup optimization.");
inline const QString kNoSavedProfiles = QStringLiteral("No saved profiles yet");
inline const QString kNoSavedProfilesHint = QStringLiteral("Use Create Custom Profile above to build your first one.");
inline const QString kNoSavedProfilesSymbol = QStringLiteral("slider.horizontal.3");
inline const QString kDeleteProfile = QStringLiteral("Delete profile");
inline const QString kEditRow = QStringLiteral("Edit profile");

/// A profile to pick.
struct ProfileRow {
    RowText text;
    QString help;
    QString mark;           ///< beside the title; may be empty
    bool isInForce = false; ///< the row is green

    bool operator==(const ProfileRow&) const = default;
};

ProfileRow profileRow(const UnifiedProfile& profile, const ActiveConfiguration& active);
/// The last one, which always stands there.
ProfileRow defaultRow(const ActiveConfiguration& active);
/// @param name  of the file, without ".json"
RowText unreadableRow(const QString& name);
QString savedProfilesFooter(const QList<UnifiedProfile>& profiles, const ActiveConfiguration& active);

// ---- Manual Configuration

inline const QString kManualConfigurationTitle = QStringLiteral("Manual Configuration");
inline const QString kManualConfigurationHeader =
    QStringLiteral("Adjust individual settings outside the profile wizard.");

RowText systemTweaksRow();
RowText startupOptimizationRow();

// ---- The pages behind a row

inline const QString kRevertAll = QStringLiteral("Revert All");
inline const QString kExecuteTweaks = QStringLiteral("Execute Tweaks");
inline const QString kSelectIcon = QStringLiteral("Select Icon");
inline const QString kSearchIcons = QStringLiteral("Search icons...");
inline const QString kSearchIconLabel = QStringLiteral("Search icon");

} // namespace quorvane
