#include "actions/PageTexts.h"

#include "actions/ActiveProfile.h"
#include "actions/SnapshotStatus.h"
#include "fakes/HostileNames.h"
#include "fakes/ProfileStore.h"
#include "fakes/ScriptedSystem.h"

namespace quorvane {

namespace {

using Tone = StatusRow::Tone;

const QString kSeal = u"checkmark.seal.fill"_s;
const QString kTriangle = u"exclamationmark.triangle.fill"_s;
const ApplyVerificationResult kWholeCheck{{{u"Siri"_s, u"disabled"_s}, {u"App Nap"_s, u"off"_s}}, {}};
const ApplyVerificationResult kPartCheck{{{u"Siri"_s, u"disabled"_s}, {u"App Nap"_s, u"off"_s}},
                                         {{u"AirDrop"_s, u"still on"_s}}};
const QString kWholeSummary = u"All 2 setting(s) verified on the system."_s;
const QString kPartSummary = u"2 verified, 1 not confirmed. Check Logs for details."_s;
const QString kConfirm = u"Run Verify to confirm current system state"_s;
const UnifiedProfile kLiveProfile = numberedProfile(1, u"Live"_s);
const UnifiedProfile kClubProfile = numberedProfile(2, u"Club"_s);

ActiveConfiguration unscannedAfter(const QString& name) {
    return activeConfiguration({false, {}, name, {kLiveProfile, kClubProfile}});
}

ActiveConfiguration scanned(const std::optional<SystemConfigurationMatch>& match, const QString& lastApplied = {}) {
    return activeConfiguration({true, match, lastApplied, {kLiveProfile, kClubProfile}});
}

SystemConfigurationMatch profileFound(const QString& name, const ApplyVerificationResult& check = kWholeCheck) {
    return {name, MatchedConfigurationKind::savedProfile, check};
}

SystemConfigurationMatch defaultFound(const ApplyVerificationResult& check = kWholeCheck) {
    return {u"Default"_s, MatchedConfigurationKind::builtinMode, check};
}

SystemConfigurationMatch kept(SystemConfigurationMatch match) {
    match.verification = {};
    match.isKept = true;
    return match;
}

} // namespace

// ---- System Status

TEST(StatusRowTest, saysWhatIsKnownAndNoMore) {
    const struct {
        const char* what;
        ActiveConfiguration active;
        StatusRow row;
    } cases[] = {
        {"nothing is known",
         unscannedAfter({}),
         {u"Run Verify Current System Settings to scan macOS"_s, {}, kTriangle, Tone::Unknown}},
        {"a profile was applied last",
         unscannedAfter(u"Live"_s),
         {u"Last applied: Live — run Verify to confirm current system state"_s, {}, kTriangle, Tone::Unknown}},
        {"Default was applied last",
         unscannedAfter(u"Default"_s),
         {u"Last applied: Default — run Verify to confirm current system state"_s, {}, kTriangle, Tone::Unknown}},
        {"what was applied last is gone",
         unscannedAfter(u"Tour"_s),
         {u"Run Verify Current System Settings to scan macOS"_s, {}, kTriangle, Tone::Unknown}},
        {"a profile matches",
         scanned(profileFound(u"Live"_s)),
         {u"Profile: Live"_s, kWholeSummary, kSeal, Tone::Verified}},
        {"it matches in part",
         scanned(profileFound(u"Live"_s, kPartCheck)),
         {u"Profile: Live"_s, kPartSummary, kTriangle, Tone::Warning}},
        {"it was only kept",
         scanned(kept(profileFound(u"Live"_s))),
         {u"Profile: Live (unverified)"_s, kConfirm, kTriangle, Tone::Warning}},
        {"Default matches",
         scanned(defaultFound()),
         {u"Standard macOS operation — "_s + kWholeSummary, {}, kSeal, Tone::Verified}},
        {"Default matches in part",
         scanned(defaultFound(kPartCheck)),
         {u"Standard macOS operation — "_s + kPartSummary, {}, kTriangle, Tone::Warning}},
        {"Default was only kept",
         scanned(kept(defaultFound())),
         {u"Standard macOS operation (unverified)"_s, kConfirm, kTriangle, Tone::Warning}},
        {"nothing matches",
         scanned({}, u"Live"_s),
         {u"No matching profile"_s, u"Check the Logs tab for details."_s, kTriangle, Tone::Warning}},
    };
    for (const auto& [what, active, row] : cases) {
        EXPECT_EQ(statusRow(active, false), row) << what;
        StatusRow verifying = row;
        verifying.detail = u"Verifying system settings…"_s;
        EXPECT_EQ(statusRow(active, true), verifying) << what;
    }
}

TEST(StatusRowTest, namesStandOnItsOneLine) {
    for (const QString& name : hostileNames()) {
        const QList<UnifiedProfile> profiles{numberedProfile(1, name)};
        expectNameInside(statusRow(activeConfiguration({false, {}, name, profiles}), false).text, name);
        expectNameInside(statusRow(activeConfiguration({true, profileFound(name), {}, profiles}), false).text, name);
        expectNameInside(statusRow(activeConfiguration({true, kept(profileFound(name)), {}, profiles}), false).text,
                         name);
    }
}

TEST(SystemStatusRows, haveTheirTextsAndSymbols) {
    EXPECT_EQ(verifySystemRow(),
              (RowText{u"Verify Current System Settings"_s,
                       u"Compare live macOS settings against saved profiles and presets"_s, u"checkmark.shield"_s}));
    EXPECT_EQ(createSnapshotRow(),
              (RowText{u"Create System Snapshot"_s, u"Save your current macOS setup as the restore baseline"_s,
                       u"camera.fill"_s}));
    EXPECT_EQ(reinstateRow(), (RowText{u"Reinstate System"_s, u"Restore from snapshot or standard defaults"_s,
                                       u"arrow.counterclockwise.circle.fill"_s}));
    EXPECT_EQ(systemStatusFooter(true), u"Revert and Reinstate use your saved snapshot when available. Create a new "
                                        "snapshot before applying tweaks."_s);
    EXPECT_EQ(systemStatusFooter(false), u"Create a snapshot before optimizing so Revert and Reinstate restore your "
                                         "actual setup, not generic defaults."_s);
}

TEST(SnapshotRow, showsItsLabelAndDate) {
    const FixedMachine machine;
    const QDateTime taken(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);
    const struct {
        std::optional<QString> label;
        QDateTime date;
        QString subtitle;
    } cases[] = {
        {u"Manual snapshot"_s, taken, u"System snapshot: Manual snapshot, Nov 15, 2026 at 9:05 PM"_s},
        {std::nullopt, taken, u"System snapshot, Nov 15, 2026 at 9:05 PM"_s},
        {u" \n"_s, taken, u"System snapshot, Nov 15, 2026 at 9:05 PM"_s},
        {u"Manual snapshot"_s, {}, u"System snapshot: Manual snapshot"_s},
    };
    for (const auto& [label, date, subtitle] : cases) {
        EXPECT_EQ(snapshotRow(SavedSnapshot{label, date}, machine),
                  (RowText{u"Restore baseline saved"_s, subtitle, u"checkmark.shield.fill"_s}));
    }
    EXPECT_EQ(snapshotRow({}, machine), std::nullopt);
    for (const QString& name : hostileNames()) {
        expectNameInside(snapshotRow(SavedSnapshot{name, taken}, machine)->subtitle, name);
    }
}

// ---- Saved Profiles

TEST(ProfileRowTest, saysInShortWhatTheProfileHolds) {
    UnifiedProfile tweaked = kLiveProfile;
    tweaked.settings.siri = true;
    tweaked.settings.cleanReboot = true;
    UnifiedProfile both = tweaked;
    both.startup.items.append(StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s}));
    UnifiedProfile offline = kLiveProfile;
    offline.startup.disableNetworkAtStartup = true;
    const struct {
        UnifiedProfile profile;
        QString subtitle;
    } cases[] = {
        {kLiveProfile, u"Empty profile"_s},
        {tweaked, u"2 performance tweak(s)"_s},
        {both, u"2 performance tweak(s), 1 app(s) at login"_s},
        {offline, u"network off"_s},
    };
    for (const auto& [profile, subtitle] : cases) {
        EXPECT_EQ(profileRow(profile, {}).text, (RowText{u"Live"_s, subtitle, u"slider.horizontal.3"_s}));
    }
}

TEST(ProfileRowTest, isGreenOnlyWhereTheProfileWasFound) {
    const struct {
        const char* what;
        ActiveConfiguration active;
        bool isInForce;
    } cases[] = {
        {"found", scanned(profileFound(u"Live"_s)), true},
        {"found in part", scanned(profileFound(u"Live"_s, kPartCheck)), true},
        {"only kept", scanned(kept(profileFound(u"Live"_s))), false},
        {"another was found", scanned(profileFound(u"Club"_s)), false},
        {"one was found whose name differs in case", scanned(profileFound(u"live"_s)), false},
        {"applied last, never scanned", unscannedAfter(u"Live"_s), false},
        {"nothing was found", scanned({}, u"Live"_s), false},
        {"Default was found", scanned(defaultFound(), u"Live"_s), false},
    };
    for (const auto& [what, active, isInForce] : cases) {
        const ProfileRow row = profileRow(kLiveProfile, active);
        EXPECT_EQ(row.isInForce, isInForce) << what;
        EXPECT_EQ(row.help, isInForce ? u"This profile matches current system settings"_s
                                      : u"Select the row to apply, or use Delete to remove this profile"_s)
            << what;
    }
}

TEST(ProfileRowTest, marksTheOneThatWasAppliedLast) {
    EXPECT_EQ(profileRow(kLiveProfile, unscannedAfter(u"Live"_s)).mark, u"Last applied"_s);
    EXPECT_EQ(profileRow(kLiveProfile, scanned(profileFound(u"Club"_s), u"Live"_s)).mark, u"Last applied"_s);
    EXPECT_EQ(profileRow(kClubProfile, unscannedAfter(u"Live"_s)).mark, QString());
    EXPECT_EQ(profileRow(kLiveProfile, {}).mark, QString());
    const UnifiedProfile lower = numberedProfile(3, u"live"_s);
    const ActiveConfiguration active = activeConfiguration({false, {}, u"live"_s, {kLiveProfile, lower}});
    EXPECT_EQ(profileRow(lower, active).mark, u"Last applied"_s);
    EXPECT_EQ(profileRow(kLiveProfile, active).mark, QString()) << "only its case is another";
}

TEST(ProfileRowTest, ofDefaultOffersNoDelete) {
    ProfileRow row{{u"Default"_s, u"Standard macOS operation"_s, u"display"_s},
                   u"Select the row to apply"_s,
                   u"Last applied"_s,
                   false};
    EXPECT_EQ(defaultRow(unscannedAfter(u"Default"_s)), row);
    row.mark.clear();
    EXPECT_EQ(defaultRow(scanned({})), row);
    EXPECT_EQ(defaultRow(scanned(profileFound(u"Live"_s))), row);
    EXPECT_EQ(defaultRow(scanned(kept(defaultFound()))), row);
    row.help = u"This profile matches current system settings"_s;
    row.isInForce = true;
    EXPECT_EQ(defaultRow(scanned(defaultFound())), row);
}

TEST(ProfileRowTest, namesStandOnItsOneLine) {
    for (const QString& name : hostileNames()) {
        expectNameInside(profileRow(numberedProfile(1, name), {}).text.title, name);
    }
}

TEST(UnreadableRow, namesTheFile) {
    EXPECT_EQ(unreadableRow(u"Old set"_s),
              (RowText{u"“Old set.json” can’t be read"_s,
                       u"Its file is damaged or from another program. It is left as it is."_s, kTriangle}));
    for (const QString& name : hostileNames()) {
        expectNameInside(unreadableRow(name).title, name + u".json"_s);
    }
}

TEST(SavedProfilesFooter, isTheFirstThatHolds) {
    const QString none = u"Profiles you create appear here and in the menu bar."_s;
    const QString unverified = u"Scan macOS to see which saved profile matches your current settings."_s;
    const QString active = u"This custom profile is active on your Mac."_s;
    const QString green = u"Profiles highlighted in green match your current system settings."_s;
    const QList<UnifiedProfile> saved{kLiveProfile, kClubProfile};
    EXPECT_EQ(savedProfilesFooter({}, {}), none);
    EXPECT_EQ(savedProfilesFooter({}, scanned(defaultFound())), none);
    EXPECT_EQ(savedProfilesFooter(saved, unscannedAfter(u"Live"_s)), unverified);
    EXPECT_EQ(savedProfilesFooter(saved, scanned(profileFound(u"Club"_s))), active);
    EXPECT_EQ(savedProfilesFooter(saved, scanned(kept(profileFound(u"Club"_s)))), green);
    EXPECT_EQ(savedProfilesFooter(saved, scanned(defaultFound())), green);
    EXPECT_EQ(savedProfilesFooter(saved, scanned({})), green);
}

TEST(ManualConfiguration, leadsToTheTweaks) {
    EXPECT_EQ(systemTweaksRow(),
              (RowText{u"System Tweaks"_s, u"Fine-tune macOS performance settings"_s, u"gearshape.2.fill"_s}));
}

} // namespace quorvane
