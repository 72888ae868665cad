#include "actions/StatusMenu.h"

#include "core/OneLine.h"
#include "fakes/HostileNames.h"
#include "fakes/ProfileStore.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = StatusMenuEntry::Kind;

const ApplyVerificationResult kSiriOff{{{u"Siri"_s, u"disabled"_s}}, {}};
const ApplyVerificationResult kSiriOffOnly{{{u"Siri"_s, u"disabled"_s}}, {{u"AirDrop"_s, u"still on"_s}}};

UnifiedProfile menuProfile(int number, const QString& name) {
    UnifiedProfile profile = numberedProfile(number, name);
    profile.settings.siri = true;
    profile.settings.appNap = true;
    profile.settings.cleanReboot = true;
    profile.settings.customIcons = {{u"siri"_s, u"star.fill"_s}, {u"appNap"_s, QString()}};
    return profile;
}

const QList<UnifiedProfile> kMenuProfiles{menuProfile(1, u"Live"_s), menuProfile(2, u"Club"_s)};

SystemConfigurationMatch foundOnSystem(const QString& name, const ApplyVerificationResult& check = kSiriOff) {
    return {name,
            isDefaultProfileName(name) ? MatchedConfigurationKind::builtinMode : MatchedConfigurationKind::savedProfile,
            check};
}

/// An entry as a line: its mark, its title, its symbol, and how it differs from one that can be chosen.
QString lineOf(const StatusMenuEntry& entry) {
    if (entry.kind == Kind::Separator) {
        return u"---"_s;
    }
    QString line = (entry.isChecked ? u"* "_s : QString()) + entry.title;
    line += entry.symbol.isEmpty() ? QString() : u" ["_s + entry.symbol + u']';
    line += entry.key.isEmpty() ? QString() : u" ("_s + entry.key + u')';
    return line + (entry.isEnabled ? QString() : u" off"_s);
}

QStringList menuLines(const ConfigurationReadings& readings, bool isIdle = true) {
    QStringList lines;
    for (const StatusMenuEntry& entry : statusMenu(activeConfiguration(readings), readings.profiles, isIdle)) {
        lines.append(lineOf(entry));
    }
    return lines;
}

const StatusMenuEntry* entryOf(const QList<StatusMenuEntry>& menu, Kind kind) {
    for (const StatusMenuEntry& entry : menu) {
        if (entry.kind == kind) {
            return &entry;
        }
    }
    return nullptr;
}

const QStringList kMenuEnd{u"Open Quorvane [app.fill]"_s, u"---"_s, u"Quit Quorvane (q)"_s};

} // namespace

TEST(StatusMenu, standsInItsOrder) {
    EXPECT_EQ(menuLines({true, foundOnSystem(u"Live"_s), u"Live"_s, kMenuProfiles}),
              QStringList({u"Quorvane off"_s, u"On system: Live [checkmark.seal.fill] off"_s, u"---"_s,
                           u"Restore Default [display]"_s, u"---"_s, u"Saved Profiles off"_s, u"* Live"_s,
                           u"Club [slider.horizontal.3]"_s, u"---"_s, u"Active Tweaks off"_s,
                           u"App Nap Bypass [gearshape.fill] off"_s, u"Siri [star.fill] off"_s, u"---"_s}) +
                  kMenuEnd);
}

TEST(StatusMenu, holdsLittleWhileNothingIsKnown) {
    EXPECT_EQ(menuLines({}), QStringList({u"Quorvane off"_s, u"---"_s, u"* Restore Default"_s, u"---"_s}) + kMenuEnd);
}

TEST(StatusMenu, namesEveryTweakInItsOrderButTheCleanReboot) {
    UnifiedProfile full = numberedProfile(1, u"Live"_s);
    full.settings = PerformanceSettings::fullSelection();
    full.settings.cleanReboot = true;
    const QStringList lines = menuLines({false, {}, u"Live"_s, {full}});
    EXPECT_EQ(
        lines.mid(lines.indexOf(u"Active Tweaks off"_s)),
        QStringList({u"Active Tweaks off"_s, u"App Nap Bypass [bolt.shield.fill] off"_s,
                     u"Spotlight Indexing [cpu.fill] off"_s, u"USB Power [battery.100.bolt] off"_s,
                     u"Motion Sensor [exclamationmark.triangle.fill] off"_s,
                     u"Time Machine [clock.arrow.circlepath] off"_s, u"Software Updates [arrow.down.app.fill] off"_s,
                     u"Notifications [bell.slash.fill] off"_s, u"Crash Reporter [doc.text.magnifyingglass] off"_s,
                     u"AirDrop [antenna.radiowaves.left.and.right.slash] off"_s, u"Siri [mic.slash.fill] off"_s,
                     u"UI Sounds [speaker.slash.fill] off"_s, u"---"_s}) +
            kMenuEnd);
}

TEST(StatusMenu, saysOfTheSystemOnlyWhatWasVerified) {
    const QString none = u"On system: No match [questionmark.circle] off"_s;
    SystemConfigurationMatch kept = foundOnSystem(u"Live"_s, {});
    kept.isKept = true;
    const struct {
        const char* what;
        ConfigurationReadings readings;
        QString line;
    } cases[] = {
        {"a profile",
         {true, foundOnSystem(u"Club"_s), u"Live"_s, kMenuProfiles},
         u"On system: Club [checkmark.seal.fill] off"_s},
        {"a profile in part",
         {true, foundOnSystem(u"Live"_s, kSiriOffOnly), u"Live"_s, kMenuProfiles},
         u"On system: Live [exclamationmark.triangle.fill] off"_s},
        {"Default",
         {true, foundOnSystem(u"Default"_s), {}, kMenuProfiles},
         u"On system: Default [checkmark.seal.fill] off"_s},
        {"kept", {true, kept, u"Live"_s, kMenuProfiles}, none},
        {"nothing", {true, {}, u"Live"_s, kMenuProfiles}, none},
        {"not yet", {false, {}, u"Live"_s, kMenuProfiles}, u"---"_s},
    };
    for (const auto& [what, readings, line] : cases) {
        EXPECT_EQ(menuLines(readings).at(1), line) << what;
    }
}

TEST(StatusMenu, ticksTheCurrentOneAndShowsItsTweaks) {
    const QString bothTweaks = u"App Nap Bypass [gearshape.fill] off|Siri [star.fill] off"_s;
    SystemConfigurationMatch kept = foundOnSystem(u"Live"_s, {});
    kept.isKept = true;
    const struct {
        const char* what;
        ConfigurationReadings readings;
        QString ticked;
        bool hasTweaks;
        QString tweaks;
    } cases[] = {
        {"applied last", {false, {}, u"Live"_s, kMenuProfiles}, u"* Live"_s, true, bothTweaks},
        {"applied last in another case", {false, {}, u"LIVE"_s, kMenuProfiles}, u"* Live"_s, true, bothTweaks},
        {"applied last before what was found",
         {true, foundOnSystem(u"Club"_s), u"Live"_s, kMenuProfiles},
         u"* Live"_s,
         true,
         bothTweaks},
        {"Default applied last",
         {true, foundOnSystem(u"Club"_s), u"dEFAULT"_s, kMenuProfiles},
         u"* Restore Default"_s,
         true,
         {}},
        {"found, nothing applied", {true, foundOnSystem(u"Club"_s), {}, kMenuProfiles}, u"* Club"_s, true, bothTweaks},
        {"found, nothing applied but an empty name",
         {true, foundOnSystem(u"Club"_s), u""_s, kMenuProfiles},
         u"* Club"_s,
         true,
         bothTweaks},
        {"found, what was applied is gone",
         {true, foundOnSystem(u"Club"_s), u"Tour"_s, kMenuProfiles},
         u"* Club"_s,
         true,
         bothTweaks},
        {"Default found, nothing applied",
         {true, foundOnSystem(u"Default"_s), {}, kMenuProfiles},
         u"* Restore Default"_s,
         true,
         {}},
        {"only kept, nothing applied", {true, kept, {}, kMenuProfiles}, u"* Restore Default"_s, false, {}},
        {"nothing found, nothing applied", {true, {}, {}, kMenuProfiles}, u"* Restore Default"_s, false, {}},
        {"what was applied is gone", {false, {}, u"Tour"_s, kMenuProfiles}, u"* Restore Default"_s, false, {}},
    };
    for (const auto& [what, readings, ticked, hasTweaks, tweaks] : cases) {
        const QStringList lines = menuLines(readings);
        EXPECT_EQ(lines.filter(u"* "_s), QStringList(ticked)) << what;
        const qsizetype header = lines.indexOf(u"Active Tweaks off"_s);
        EXPECT_EQ(header >= 0, hasTweaks) << what;
        if (header >= 0) {
            const qsizetype end = lines.indexOf(u"---"_s, header);
            EXPECT_EQ(lines.mid(header + 1, end - header - 1).join(u'|'), tweaks) << what;
        }
    }
}

TEST(StatusMenu, ticksBothOfTwoNamesThatDifferInCase) {
    const QList<UnifiedProfile> profiles{menuProfile(1, u"Live"_s), numberedProfile(2, u"live"_s)};
    const QStringList lines = menuLines({false, {}, u"live"_s, profiles});
    EXPECT_EQ(lines.filter(u"* "_s), QStringList({u"* Live"_s, u"* live"_s}));
    EXPECT_EQ(lines.filter(u"Siri"_s), QStringList()) << "the tweaks are those of the one with that very name";
}

TEST(StatusMenu, leavesOnlyWindowAndQuittingWhileSomethingRuns) {
    const QStringList lines = menuLines({false, {}, {}, kMenuProfiles}, false);
    EXPECT_EQ(lines,
              QStringList({u"Quorvane off"_s, u"---"_s, u"* Restore Default off"_s, u"---"_s, u"Saved Profiles off"_s,
                           u"Live [slider.horizontal.3] off"_s, u"Club [slider.horizontal.3] off"_s, u"---"_s}) +
                  kMenuEnd);
}

TEST(StatusMenu, aProfilesEntryKnowsWhichOneItIs) {
    for (const QString& name : hostileNames()) {
        const UnifiedProfile profile = menuProfile(1, name);
        const QList<UnifiedProfile> profiles{profile};
        const ActiveConfiguration active = activeConfiguration({true, foundOnSystem(name), name, profiles});
        const QList<StatusMenuEntry> menu = statusMenu(active, profiles, true);
        const StatusMenuEntry* const entry = entryOf(menu, Kind::Profile);
        ASSERT_NE(entry, nullptr);
        EXPECT_EQ(entry->name, name);
        EXPECT_EQ(entry->id, profile.id);
        EXPECT_TRUE(entry->isChecked);
        expectNameInside(entry->title, name);
        expectNameInside(menu.at(1).title, name);
    }
}

TEST(StatusMenu, eachEntryIsOfItsKind) {
    const QList<StatusMenuEntry> menu =
        statusMenu(activeConfiguration({false, {}, u"Live"_s, kMenuProfiles}), kMenuProfiles, true);
    QList<Kind> kinds;
    for (const StatusMenuEntry& entry : menu) {
        kinds.append(entry.kind);
    }
    EXPECT_EQ(kinds, QList<Kind>({Kind::Text, Kind::Separator, Kind::RestoreDefault, Kind::Separator, Kind::Header,
                                  Kind::Profile, Kind::Profile, Kind::Separator, Kind::Header, Kind::Text, Kind::Text,
                                  Kind::Separator, Kind::OpenWindow, Kind::Separator, Kind::Quit}));
}

} // namespace quorvane
