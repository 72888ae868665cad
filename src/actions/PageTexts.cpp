#include "actions/PageTexts.h"

#include "actions/ActiveProfile.h"
#include "actions/SnapshotStatus.h"
#include "core/OneLine.h"
#include "platform/Machine.h"

#include <algorithm>
#include <chrono>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Tone = StatusRow::Tone;

const QString kSeal = u"checkmark.seal.fill"_s;
const QString kTriangle = u"exclamationmark.triangle.fill"_s;
const QString kStandardOperation = u"Standard macOS operation"_s;
constexpr std::chrono::seconds kDay = std::chrono::hours(24);
const QString kUnverified = u" (unverified)"_s;

StatusRow unverifiedRow(const ActiveConfiguration& active) {
    if (active.lastApplied.name.isEmpty()) {
        return {u"Run Verify Current System Settings to scan macOS"_s, {}, kTriangle, Tone::Unknown};
    }
    return {u"Last applied: "_s + nameOnOneLine(active.lastApplied.name) +
                u" — run Verify to confirm current system state"_s,
            {},
            kTriangle,
            Tone::Unknown};
}

StatusRow keptRow(const ActiveConfiguration& active) {
    const QString text = active.isSavedProfile ? u"Profile: "_s + nameOnOneLine(active.name) : kStandardOperation;
    return {text + kUnverified, u"Run Verify to confirm current system state"_s, kTriangle, Tone::Warning};
}

StatusRow verifiedRow(const ActiveConfiguration& active, const ApplyVerificationResult& verification) {
    const bool isWhole = verification.failed.isEmpty();
    StatusRow row{{}, {}, isWhole ? kSeal : kTriangle, isWhole ? Tone::Verified : Tone::Warning};
    if (active.isSavedProfile) {
        row.text = u"Profile: "_s + nameOnOneLine(active.name);
        row.detail = summary(verification);
    } else {
        row.text = kStandardOperation + u" — "_s + summary(verification);
    }
    return row;
}

StatusRow rowAtRest(const ActiveConfiguration& active) {
    if (!active.wasVerified) {
        return unverifiedRow(active);
    }
    if (active.isKept) {
        return keptRow(active);
    }
    if (active.verification) {
        return verifiedRow(active, *active.verification);
    }
    return {u"No matching profile"_s, u"Check the Logs tab for details."_s, kTriangle, Tone::Warning};
}

QString contentOf(const UnifiedProfile& profile) {
    QStringList parts = profile.startup.summaryLines();
    if (const int tweaks = selectedTweakCount(profile.settings); tweaks > 0) {
        parts.prepend(u"%1 performance tweak(s)"_s.arg(tweaks));
    }
    return parts.isEmpty() ? u"Empty profile"_s : parts.join(u", "_s);
}

QString lastAppliedMark(bool wasLastApplied) {
    return wasLastApplied ? u"Last applied"_s : QString();
}

QString helpOf(bool isInForce, const QString& otherwise) {
    return isInForce ? u"This profile matches current system settings"_s : otherwise;
}

} // namespace

// ---- System Status

StatusRow statusRow(const ActiveConfiguration& active, bool isVerifying) {
    StatusRow row = rowAtRest(active);
    if (isVerifying) {
        row.detail = u"Verifying system settings…"_s;
    }
    return row;
}

std::optional<StatusNote> changesNote(const ActiveConfiguration& active) {
    if (!active.standing || active.standing->changed.isEmpty()) {
        return std::nullopt;
    }
    return StatusNote{changesTitle(*active.standing), u"Show"_s};
}

std::optional<StatusNote> inForceNote(const ActiveConfiguration& active, const Machine& machine, const QDateTime& now) {
    const bool isOfStanding = active.standing && active.standing->isProfile && active.standing->name == active.name;
    if (!isOfSavedProfile(active) || !isOfStanding || active.standing->since.secsTo(now) <= kDay.count()) {
        return std::nullopt;
    }
    return StatusNote{u"“%1” has been in force since %2."_s.arg(nameOnOneLine(active.name),
                                                                machine.dateAndTimeText(active.standing->since)),
                      u"Revert…"_s};
}

RowText verifySystemRow() {
    return {u"Verify Current System Settings"_s, u"Compare live macOS settings against saved profiles and presets"_s,
            u"checkmark.shield"_s};
}

std::optional<RowText> snapshotRow(const std::optional<SavedSnapshot>& snapshot, const Machine& machine) {
    if (!snapshot) {
        return std::nullopt;
    }
    const QString label = nameOnOneLine(snapshot->label.value_or(QString())).trimmed();
    QStringList parts{label.isEmpty() ? u"System snapshot"_s : u"System snapshot: "_s + label};
    if (const QString date = machine.dateAndTimeText(snapshot->dateCreated); !date.isEmpty()) {
        parts.append(date);
    }
    return RowText{u"Restore baseline saved"_s, parts.join(u", "_s), u"checkmark.shield.fill"_s};
}

RowText createSnapshotRow() {
    return {u"Create System Snapshot"_s, u"Save your current macOS setup as the restore baseline"_s, u"camera.fill"_s};
}

RowText reinstateRow() {
    return {u"Reinstate System"_s, u"Restore from snapshot or standard defaults"_s,
            u"arrow.counterclockwise.circle.fill"_s};
}

QString systemStatusFooter(bool hasSnapshot) {
    return hasSnapshot ? u"Revert and Reinstate use your saved snapshot when available. Create a new snapshot before "
                         "applying tweaks."_s
                       : u"Create a snapshot before optimizing so Revert and Reinstate restore your actual setup, not "
                         "generic defaults."_s;
}

// ---- Saved Profiles

ProfileRow profileRow(const UnifiedProfile& profile, const ActiveConfiguration& active) {
    const bool isGreen = isInForce(active, profile);
    return {{nameOnOneLine(profile.name), contentOf(profile), u"slider.horizontal.3"_s},
            helpOf(isGreen, u"Select the row to apply, or use Delete to remove this profile"_s),
            lastAppliedMark(active.lastApplied.id == profile.id),
            isGreen};
}

ProfileRow defaultRow(const ActiveConfiguration& active) {
    const bool isGreen = isDefaultInForce(active);
    return {{UnifiedProfile::defaultProfile().name, kStandardOperation, u"display"_s},
            helpOf(isGreen, u"Select the row to apply"_s),
            lastAppliedMark(isDefaultProfileName(active.lastApplied.name)),
            isGreen};
}

RowText unreadableRow(const QString& name) {
    return {u"“"_s + nameOnOneLine(name + u".json"_s) + u"” can’t be read"_s,
            u"Its file is damaged or from another program. It is left as it is."_s, kTriangle};
}

QString savedProfilesFooter(const QList<UnifiedProfile>& profiles, const ActiveConfiguration& active) {
    if (profiles.isEmpty()) {
        return u"Profiles you create appear here and in the menu bar."_s;
    }
    if (!active.wasVerified) {
        return u"Scan macOS to see which saved profile matches your current settings."_s;
    }
    const bool isOneInForce = std::any_of(profiles.cbegin(), profiles.cend(), [&active](const UnifiedProfile& profile) {
        return isInForce(active, profile);
    });
    return isOneInForce ? u"This custom profile is active on your Mac."_s
                        : u"Profiles highlighted in green match your current system settings."_s;
}

// ---- Manual Configuration

RowText heroRow() {
    return {u"Create Custom Profile"_s,
            u"Step through system tweaks and startup optimization, then save to your menu bar."_s, u"wand.and.stars"_s};
}

RowText systemTweaksRow() {
    return {u"System Tweaks"_s, u"Fine-tune macOS performance settings"_s, u"gearshape.2.fill"_s};
}

RowText startupOptimizationRow() {
    return {u"Startup Optimization"_s, u"Manage login items and launch agents"_s, u"power.circle.fill"_s};
}

} // namespace quorvane
