#include "fakes/ReadingLines.h"
#include "fakes/StartupSystem.h"

#include "core/UserDefaultKeys.h"
#include "profiles/UnifiedProfile.h"

namespace quorvane {

namespace {

using Item = ApplyVerificationResult::Item;
using MatchedKind = MatchedConfigurationKind;

const QString kNoMatch = u"  [VERIFY] No saved profile fully matches the current system.\n"_s;
const QString kStart = u"\n[VERIFY] Scanning current system settings...\n"_s;

/// What a check of a profile reads that leaves all tweaks off.
const QString kReadings = reading::traced(reading::kTweaksOff);
const QString kRestorationReadings = reading::traced(reading::kAppRestoration);
/// What the check of the built-in Default reads.
const QString kDefaultReadings =
    reading::traced({reading::kPower, reading::kAppNap, reading::kUpdateDownload, reading::kUpdateCheck,
                     reading::kStoreUpdate, reading::kDoNotDisturb, reading::kSiri, reading::kAssistant,
                     reading::kCrashReporter, reading::kSounds, reading::kAirDrop, reading::kSpotlight,
                     reading::kTimeMachine}) +
    kRestorationReadings;

UnifiedProfile profileNamed(const QString& name, bool PerformanceSettings::*tweak = nullptr) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.name = name;
    if (tweak != nullptr) {
        profile.settings.*tweak = true;
    }
    return profile;
}

/// A Mac with standard settings, every key written.
class MatchingFlow : public StartupSystem {
protected:
    MatchingFlow() {
        set(reading::kAppNap, "0");
        set(reading::kUpdateDownload, "1");
        set(reading::kUpdateCheck, "1");
        set(reading::kStoreUpdate, "1");
        set(reading::kDoNotDisturb, "0");
        set(reading::kSiri, "Enabled");
        set(reading::kAssistant, "1");
        set(reading::kCrashReporter, "crashreport");
        set(reading::kSounds, "1");
        set(reading::kAirDrop, "0");
        set(reading::kLogoutState, "1");
        set(reading::kLoginRelaunch, "1");
        commands.print(reading::kPower, " standby 1\n disksleep 10\n sleep 1\n sms 1\n");
        commands.print(reading::kSpotlight, "\tIndexing enabled. \n");
        setAutomaticBackups(true);
    }
    void set(const QString& line, const QByteArray& value) { commands.print(line, value + '\n'); }
    void unset(const QString& line) { commands.fail(line, 1); }
    void setLastApplied(const QString& name) { defaults.values[kQuorvaneLastAppliedProfileName] = name; }

    std::optional<SystemConfigurationMatch> scan(const QList<UnifiedProfile>& profiles,
                                                 const std::optional<QString>& appliedName = {}) {
        return QCoro::waitFor(system.scanCurrentSystem(profiles, appliedName));
    }
    QString nameFound(const QList<UnifiedProfile>& profiles, const std::optional<QString>& appliedName = {}) {
        const auto match = QCoro::waitFor(system.findSystemMatch(profiles, appliedName));
        return match ? match->name : u"none"_s;
    }
};

} // namespace

// ---- The search

TEST_F(MatchingFlow, findsTheFirstProfileThatFits) {
    EXPECT_EQ(nameFound({profileNamed(u"Sounds"_s, &PerformanceSettings::uiSounds), profileNamed(u"Off"_s),
                         profileNamed(u"Also off"_s)}),
              u"Off"_s);
}

TEST_F(MatchingFlow, triesTheLastAppliedProfileFirst) {
    const QList<UnifiedProfile> profiles{profileNamed(u"Off"_s), profileNamed(u"Also off"_s)};
    EXPECT_EQ(nameFound(profiles, u"Also off"_s), u"Also off"_s);
    setLastApplied(u"Also off"_s);
    EXPECT_EQ(nameFound(profiles), u"Also off"_s);
    EXPECT_EQ(nameFound(profiles, u"Off"_s), u"Off"_s); // what is told goes before what is stored
}

TEST_F(MatchingFlow, ignoresALastAppliedNameThatNoProfileHas) {
    setLastApplied(u"Gone"_s);
    EXPECT_EQ(nameFound({profileNamed(u"Off"_s)}), u"Off"_s);
    EXPECT_EQ(nameFound({}), u"Default"_s);
}

TEST_F(MatchingFlow, letsTheLastAppliedProfileBePartlyOff) {
    // 9 of 12 hold: App Nap, the sounds and AirDrop don't.
    UnifiedProfile applied = profileNamed(u"Live"_s, &PerformanceSettings::appNap);
    applied.settings.uiSounds = true;
    applied.settings.airdrop = true;
    const QList<UnifiedProfile> profiles{profileNamed(u"Off"_s), applied};
    EXPECT_EQ(nameFound(profiles, u"Live"_s), u"Live"_s);
    EXPECT_EQ(nameFound(profiles, u"Off"_s), u"Off"_s);
    EXPECT_EQ(nameFound({applied}), u"Default"_s);
}

TEST_F(MatchingFlow, doesNotLetHalfOfItBeOff) {
    UnifiedProfile half = profileNamed(u"Half"_s);
    for (const auto tweak :
         {&PerformanceSettings::appNap, &PerformanceSettings::uiSounds, &PerformanceSettings::airdrop,
          &PerformanceSettings::siri, &PerformanceSettings::crashReporter, &PerformanceSettings::spotlight}) {
        half.settings.*tweak = true;
    }
    EXPECT_EQ(nameFound({half, profileNamed(u"Off"_s)}, u"Half"_s), u"Off"_s); // 6 of 12 hold
}

TEST_F(MatchingFlow, checksTheStartupHalfOfAProfileToo) {
    UnifiedProfile withoutMail = profileNamed(u"No mail"_s);
    withoutMail.startup.items = {loginAppOff(u"Mail"_s)};
    login = {{u"Mail"_s, u"/Applications/Mail.app"_s, false}};
    EXPECT_EQ(nameFound({withoutMail, profileNamed(u"Off"_s)}), u"Off"_s);
    login.clear(); // what has changed since is seen
    EXPECT_EQ(nameFound({withoutMail, profileNamed(u"Off"_s)}), u"No mail"_s);
}

TEST_F(MatchingFlow, readsOncePerCandidateAndStopsAtTheFirstThatFits) {
    QCoro::waitFor(system.findSystemMatch({profileNamed(u"Off"_s), profileNamed(u"Other"_s)}));
    EXPECT_EQ(takeTrace(), kReadings + kRestorationReadings);
    QCoro::waitFor(system.findSystemMatch({}));
    EXPECT_EQ(takeTrace(), kDefaultReadings);
}

// ---- The built-in Default

TEST_F(MatchingFlow, isDefaultWhereNoTweakIsInForce) {
    EXPECT_EQ(scan({}), (SystemConfigurationMatch{u"Default"_s,
                                                  MatchedKind::builtinMode,
                                                  {{{u"Default preset"_s, u"no performance optimizations active"_s},
                                                    {u"Clean Reboot"_s, u"standard app restoration"_s}},
                                                   {}}}));
    EXPECT_EQ(takeTrace(), kStart + kDefaultReadings +
                               u"\n[VERIFY] System matches: Default\n"
                               "  [OK] Default preset — no performance optimizations active\n"
                               "  [OK] Clean Reboot — standard app restoration\n"
                               "  [VERIFY] All settings confirmed on system.\n"
                               "  [VERIFY] Active configuration: Default (default)\n"_s);
    const QList<QPair<QString, QVariantMap>> expected{
        {u"QuorvaneSystemVerified"_s, {{u"matchName"_s, u"Default"_s}, {u"matchKind"_s, u"mode"_s}}}};
    EXPECT_EQ(posted, expected);
}

TEST_F(MatchingFlow, isNotDefaultWhileATweakIsInForce) {
    set(reading::kAppNap, "1");
    EXPECT_EQ(scan({}), std::nullopt);
    EXPECT_EQ(takeTrace(), kStart + kDefaultReadings + kNoMatch);
    EXPECT_TRUE(system.hasVerifiedSystem());
    EXPECT_EQ(system.systemMatch(), std::nullopt);
    const QList<QPair<QString, QVariantMap>> expected{{u"QuorvaneSystemVerified"_s, {{u"matchKind"_s, QString()}}}};
    EXPECT_EQ(posted, expected);
}

TEST_F(MatchingFlow, isNotDefaultWhereBackupsAreOff) {
    setAutomaticBackups(false);
    EXPECT_EQ(nameFound({}), u"none"_s);
}

TEST_F(MatchingFlow, isDefaultWhateverThisMacLacks) {
    commands.print(reading::kPower, " disksleep 10\n sleep 1\n"); // neither a motion sensor nor standby
    EXPECT_EQ(nameFound({}), u"Default"_s);
    files.removeAsRoot(kTimeMachineSettings);
    setBackupDestination(false);
    EXPECT_EQ(nameFound({}), u"Default"_s);
    EXPECT_EQ(nameFound({profileNamed(u"Off"_s)}), u"Off"_s);
}

TEST_F(MatchingFlow, isDefaultWhereBackupsMayNotBeReadUnlessTheProgramHadSwitchedThemOff) {
    makeBackupsUnreadable();
    EXPECT_EQ(nameFound({}), u"Default"_s);
    EXPECT_EQ(nameFound({profileNamed(u"Off"_s)}), u"Off"_s);
    defaults.setBoolean(kQuorvaneSwitchedBackupsOff, true);
    EXPECT_EQ(nameFound({profileNamed(u"Off"_s)}), u"none"_s);
}

TEST_F(MatchingFlow, isNotDefaultWhereMutedSoundsCannotBeToldFromAnUnsetKey) {
    unset(reading::kSounds);
    EXPECT_EQ(nameFound({}), u"none"_s);
}

TEST_F(MatchingFlow, isNotDefaultWhereApplicationsDoNotReopen) {
    set(reading::kLogoutState, "0");
    set(reading::kLoginRelaunch, "0");
    EXPECT_EQ(nameFound({}), u"none"_s);
}

// ---- The scan

TEST_F(MatchingFlow, recordsTheProfileThatFits) {
    EXPECT_EQ(scan({profileNamed(u"Off"_s)})->kind, MatchedKind::savedProfile);
    const QString log = takeTrace();
    EXPECT_TRUE(log.startsWith(kStart + kReadings + kRestorationReadings +
                               u"\n[VERIFY] System matches: Off\n  [OK] App Nap — enabled\n"_s));
    EXPECT_TRUE(log.endsWith(u"  [VERIFY] All settings confirmed on system.\n"
                             "  [VERIFY] Active configuration: Off (saved profile)\n"_s));
    EXPECT_EQ(system.systemMatch()->name, u"Off"_s);
    EXPECT_TRUE(system.hasVerifiedSystem());
    const QList<QPair<QString, QVariantMap>> expected{
        {u"QuorvaneSystemVerified"_s, {{u"matchName"_s, u"Off"_s}, {u"matchKind"_s, u"profile"_s}}}};
    EXPECT_EQ(posted, expected);
    EXPECT_FALSE(defaults.values.contains(kQuorvaneLastAppliedProfileName));
}

TEST_F(MatchingFlow, keepsTheLastAppliedProfileActiveWithoutAWordWhereNothingFits) {
    set(reading::kAppNap, "1"); // so that it isn't Default either
    UnifiedProfile applied = profileNamed(u"Live"_s);
    for (const TweakField& field : tweakFields()) {
        applied.settings.*field.isSelected = true;
    }
    applied.settings.appNap = false;
    EXPECT_EQ(scan({applied}, u"Live"_s), (SystemConfigurationMatch{u"Live"_s, MatchedKind::savedProfile, {}}));
    const QStringList log = system.logMessages();
    EXPECT_EQ(log.filter(u"[VERIFY]"_s), QStringList(kStart.chopped(1)));
    EXPECT_TRUE(posted.isEmpty());
    EXPECT_TRUE(system.hasVerifiedSystem());
    EXPECT_FALSE(system.isVerifyingSystem());
}

TEST_F(MatchingFlow, keepsItWithWhatTheLastApplyFoundWhereThatIsKnown) {
    UnifiedProfile applied = profileNamed(u"Live"_s, &PerformanceSettings::appNap);
    QCoro::waitFor(system.applyPerformanceTweaks(applied.settings)); // App Nap doesn't read as bypassed
    const ApplyVerificationResult last = *system.lastApplyVerification();
    ASSERT_FALSE(last.failed.isEmpty());
    for (const TweakField& field : tweakFields()) {
        applied.settings.*field.isSelected = true;
    }
    set(reading::kUpdateDownload, "0");
    set(reading::kUpdateCheck, "0");
    set(reading::kStoreUpdate, "0");
    setLastApplied(u"Live"_s);
    posted.clear();
    EXPECT_EQ(scan({applied}), (SystemConfigurationMatch{u"Live"_s, MatchedKind::savedProfile, last}));
    EXPECT_EQ(posted.size(), 1);
    EXPECT_EQ(posted.value(0).second.value(u"matchName"_s), u"Live"_s);
}

TEST_F(MatchingFlow, tellsThatItIsVerifying) {
    QList<bool> states;
    QObject::connect(&system, &SystemManager::isVerifyingSystemChanged,
                     [&states](bool isVerifying) { states.append(isVerifying); });
    scan({});
    EXPECT_EQ(states, (QList<bool>{true, false}));
}

} // namespace quorvane
