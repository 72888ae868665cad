#include "fakes/ReadingLines.h"
#include "fakes/StartupSystem.h"

#include "core/UserDefaultKeys.h"
#include "matching/SystemMatching.h"
#include "profiles/UnifiedProfile.h"
#include "snapshots/SnapshotManager.h"

#include <functional>
#include <random>

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
const QString kDefaultReadings = kReadings + kRestorationReadings;

const SystemConfigurationMatch kKeptLive{u"Live"_s, MatchedKind::savedProfile, {}, true};

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
        noteEveryTweakChanged();
        set(reading::kAppNap, "0");
        set(reading::kSystemUpdateDownload, "1");
        set(reading::kSystemUpdateInstall, "1");
        set(reading::kSystemStoreUpdate, "1");
        set(reading::kDoNotDisturb, "0");
        set(reading::kAssistant, "1");
        set(reading::kCrashReporter, "crashreport");
        set(reading::kSounds, "1");
        set(reading::kAirDrop, "0");
        set(reading::kLogoutState, "1");
        set(reading::kLoginRelaunch, "1");
        commands.print(reading::kPower, " standby 1\n disksleep 10\n sleep 1\n sms 1\n");
        commands.print(reading::kSpotlight, reading::indexing("Indexing enabled. "));
        setAutomaticBackups(true);
    }
    void set(const QString& line, const QByteArray& value) { commands.print(line, value + '\n'); }
    void unset(const QString& line) { commands.fail(line, 1); }
    void setLastApplied(const QString& name) { defaults.values[kQuorvaneLastAppliedProfileName] = name; }

    std::optional<SystemConfigurationMatch> scan(const QList<UnifiedProfile>& profiles,
                                                 const std::optional<QString>& appliedName = {}) {
        return QCoro::waitFor(system.scanCurrentSystem(profiles, appliedName));
    }
    /// Of every tweak the other way round, on a Mac that isn't in the Default configuration either.
    UnifiedProfile profileThatIsOff(const QString& name) {
        set(reading::kAppNap, "1");
        UnifiedProfile profile = profileNamed(name);
        for (const TweakField& field : tweakFields()) {
            profile.settings.*field.isSelected = true;
        }
        profile.settings.appNap = false;
        return profile;
    }
    QString nameFound(const QList<UnifiedProfile>& profiles, const std::optional<QString>& appliedName = {}) {
        const auto match = QCoro::waitFor(system.findSystemMatch(profiles, appliedName));
        return match ? match->name : u"none"_s;
    }
};

/// A Mac that changes, with profiles of any kind.
class RandomMatching : public MatchingFlow {
protected:
    bool chance(int of) { return number(of) == 0; }
    int number(int below) { return std::uniform_int_distribution(0, below - 1)(m_random); }

    void changeWorld() {
        const QList<QByteArray> values{"0", "1", "none", "Disabled"};
        for (const QString& line : kPreferences) {
            if (chance(3)) {
                unset(line);
            } else {
                set(line, values.at(number(4)));
            }
        }
        commands.print(reading::kSpotlight, reading::indexing(chance(2) ? "Indexing enabled." : "Indexing disabled."));
        login.clear();
        for (const QString& name : kApplications) {
            if (chance(2)) {
                login.append({name, u"/Applications/"_s + name + u".app"_s, chance(2)});
            }
        }
        deniesSystemEvents = chance(4);
        system.invalidateStartupCaches();
    }
    QList<UnifiedProfile> randomProfiles(qsizetype count) {
        QList<UnifiedProfile> profiles;
        while (profiles.size() < count) {
            UnifiedProfile profile = profileNamed(u"Profile %1"_s.arg(profiles.size()));
            for (const TweakField& field : tweakFields()) {
                profile.settings.*field.isSelected = chance(3);
            }
            for (const QString& name : kApplications) {
                if (chance(3)) {
                    profile.startup.items.append(loginAppOff(name));
                }
            }
            profile.startup.disableNetworkAtStartup = chance(4);
            profiles.append(profile);
        }
        return profiles;
    }

    /// The same search, in which nothing is read once for all.
    std::optional<SystemConfigurationMatch> foundOneByOne(const QList<UnifiedProfile>& profiles,
                                                          const QString& applied) {
        for (const UnifiedProfile& profile : candidateOrder(profiles, applied)) {
            const ApplyVerificationResult verification = QCoro::waitFor(system.verifyProfile(profile));
            if (isMatch(verification, profile.name == applied)) {
                return SystemConfigurationMatch{profile.name, MatchedKind::savedProfile, verification};
            }
        }
        return QCoro::waitFor(system.findSystemMatch({}));
    }
    void expectEachCommandOnce() {
        QStringList lines = trace.filter(QRegularExpression(u"^\\$"_s));
        EXPECT_FALSE(lines.isEmpty());
        EXPECT_EQ(lines.removeDuplicates(), 0);
    }

    /// From now on some tools don't answer.
    void loseAnswers() {
        m_missing.clear();
        for (const QString& line : kPreferences + QStringList{reading::kPower, reading::kSpotlight}) {
            if (chance(12)) {
                m_missing.insert(line);
            }
        }
        m_respond = commands.respond;
        commands.respond = [this](const QStringList& arguments) -> std::optional<CommandOutcome> {
            if (!m_missing.contains(commandLine(arguments))) {
                return m_respond(arguments);
            }
            const QList<CommandOutcome> ways = ScriptedCommandLauncher::unanswered();
            return ways.at(number(static_cast<int>(ways.size())));
        };
    }
    void answerAgain() { commands.respond = m_respond; }
    QStringList askedForMissing() {
        QStringList asked;
        for (const QString& line : m_missing) {
            if (trace.contains(u"$> "_s + line)) {
                asked.append(line);
            }
        }
        return asked;
    }

    qsizetype commandsOf(const std::function<void()>& flow) {
        trace.clear();
        system.invalidateStartupCaches();
        flow();
        return trace.filter(u"$> "_s).size();
    }
    /// Does something when the n-th command from now on has been asked for and hasn't answered yet; 0 is never.
    void atCommand(qsizetype count, const std::function<void()>& step) {
        if (!m_respond) {
            m_respond = commands.respond;
        }
        commands.respond = [this, step, left = count](const QStringList& arguments) mutable {
            if (--left == 0) {
                step();
            }
            return m_respond(arguments);
        };
    }

private:
    const QStringList kPreferences{reading::kAppNap,      reading::kUpdateDownload, reading::kUpdateCheck,
                                   reading::kStoreUpdate, reading::kDoNotDisturb,   reading::kSiri,
                                   reading::kAssistant,   reading::kCrashReporter,  reading::kSounds,
                                   reading::kAirDrop,     reading::kLogoutState,    reading::kLoginRelaunch,
                                   reading::kKeptWindows};
    const QStringList kApplications{u"Mail"_s, u"Notes"_s, u"Dropbox"_s};

    std::mt19937 m_random{2217};
    QSet<QString> m_missing;
    std::function<std::optional<CommandOutcome>(const QStringList&)> m_respond;
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
    defaults.remove(kQuorvaneChangedTweaks);
    EXPECT_EQ(nameFound({}), u"Default"_s);
    EXPECT_EQ(nameFound({profileNamed(u"Off"_s)}), u"Off"_s);
    defaults.setBoolean(kQuorvaneSwitchedBackupsOff, true);
    EXPECT_EQ(nameFound({profileNamed(u"Off"_s)}), u"none"_s);
}

TEST_F(MatchingFlow, isDefaultWhereNobodyHasSetAKey) {
    for (const QString& line : reading::kPreferences) {
        unset(line);
    }
    EXPECT_EQ(nameFound({}), u"Default"_s);
    EXPECT_EQ(nameFound({profileNamed(u"Siri"_s, &PerformanceSettings::siri)}), u"Siri"_s)
        << "one that was never set up";
    EXPECT_EQ(nameFound({profileNamed(u"Updates"_s, &PerformanceSettings::updates)}), u"Default"_s);
    EXPECT_EQ(nameFound({profileNamed(u"Sounds"_s, &PerformanceSettings::uiSounds)}), u"Default"_s);
}

// ---- The user's own settings

TEST_F(MatchingFlow, isDefaultWhereATweakIsInForceAsTheUserHadItBefore) {
    set(reading::kAssistant, "0");
    commands.print(reading::kPower, "AC Power:\n standby 0\n disksleep 0\n sleep 0\n sms 1\n");
    EXPECT_EQ(nameFound({}), u"none"_s);
    SystemSnapshot own;
    own.id = QUuid::createUuid();
    own.dateCreated = clock.now();
    own.assistantEnabled = u"0"_s;
    own.pmsetStandby = u"0"_s;
    own.pmsetDisksleep = u"0"_s;
    own.pmsetSleep = u"0"_s;
    SnapshotManager(files, machine).save(own);
    EXPECT_EQ(nameFound({}), u"Default"_s);
    set(reading::kAirDrop, "1");
    EXPECT_EQ(nameFound({}), u"none"_s) << "that wasn't the user's";
}

TEST_F(MatchingFlow, isDefaultWhereAnOrganizationHasPutATweakInForce) {
    propertyLists.lists.insert(u"/Library/Managed Preferences/com.apple.NetworkBrowser.plist"_s,
                               {{u"DisableAirDrop"_s, true}});
    EXPECT_EQ(nameFound({}), u"Default"_s);
    EXPECT_EQ(nameFound({profileNamed(u"Off"_s)}), u"Off"_s);
    EXPECT_EQ(nameFound({profileNamed(u"AirDrop"_s, &PerformanceSettings::airdrop)}), u"AirDrop"_s);
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

TEST_F(MatchingFlow, keepsTheLastAppliedProfileUnverifiedAndWithoutAWordWhereNothingFits) {
    const UnifiedProfile applied = profileThatIsOff(u"Live"_s);
    EXPECT_EQ(scan({applied}, u"Live"_s), kKeptLive);
    const QStringList log = system.logMessages();
    EXPECT_EQ(log.filter(u"[VERIFY]"_s), QStringList(kStart.chopped(1)));
    EXPECT_TRUE(posted.isEmpty());
    EXPECT_TRUE(system.hasVerifiedSystem());
    EXPECT_FALSE(system.isVerifyingSystem());
}

TEST_F(MatchingFlow, keepsItUnverifiedWhateverTheLastApplyFound) {
    UnifiedProfile applied = profileNamed(u"Live"_s);
    ASSERT_TRUE(QCoro::waitFor(system.applyProfile(applied)));
    ASSERT_TRUE(system.lastApplyVerification()->failed.isEmpty());
    applied = profileThatIsOff(u"Live"_s);
    posted.clear();
    int changes = 0;
    int records = 0;
    QObject::connect(&system, &SystemManager::systemMatchChanged, [&changes] { ++changes; });
    QObject::connect(&system, &SystemManager::appliedConfigurationRecorded, [&records] { ++records; });
    EXPECT_EQ(scan({applied}), kKeptLive);
    EXPECT_EQ(system.systemMatch(), kKeptLive);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(records, 0);
    EXPECT_TRUE(posted.isEmpty());
}

TEST_F(MatchingFlow, tellsThatItIsVerifying) {
    QList<bool> states;
    QObject::connect(&system, &SystemManager::isVerifyingSystemChanged,
                     [&states](bool isVerifying) { states.append(isVerifying); });
    scan({});
    EXPECT_EQ(states, (QList<bool>{true, false}));
}

// ---- Readings that are missing

TEST_F(MatchingFlow, withoutAnAnswerKeepsTheMatchThatItHadAndSaysWhatIsMissing) {
    const UnifiedProfile off = profileNamed(u"Off"_s);
    scan({off});
    posted.clear();
    takeTrace();
    int changes = 0;
    QObject::connect(&system, &SystemManager::systemMatchChanged, [&changes] { ++changes; });
    commands.answer(reading::kAppNap, ScriptedCommandLauncher::unanswered().first());
    commands.answer(reading::kSpotlight, ScriptedCommandLauncher::unanswered().last());
    const SystemConfigurationMatch kept{u"Off"_s, MatchedKind::savedProfile, {}, true};
    EXPECT_EQ(scan({off, profileNamed(u"Other"_s)}), kept);
    EXPECT_EQ(system.systemMatch(), kept);
    EXPECT_TRUE(posted.isEmpty());
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(
        takeTrace(),
        kStart + kReadings + kRestorationReadings +
            u"  [VERIFY] Nothing can be said of this system, because these readings are missing: "
            "/usr/bin/defaults read NSGlobalDomain NSAppSleepDisabled, /usr/bin/mdutil -s / /System/Volumes/Data\n"_s);
    EXPECT_EQ(nameFound({off}), u"none"_s);
}

TEST_F(MatchingFlow, withoutAnAnswerTheFirstScanTellsNothing) {
    commands.answer(reading::kLoginRelaunch, ScriptedCommandLauncher::unanswered().first());
    EXPECT_EQ(scan({}), std::nullopt); // neither is it Default
    EXPECT_FALSE(system.hasVerifiedSystem());
    EXPECT_TRUE(posted.isEmpty());
    EXPECT_EQ(scan({profileNamed(u"Off"_s)}, u"Off"_s), std::nullopt);
}

TEST_F(MatchingFlow, loginItemsWithoutAnAnswerAreMissingToo) {
    UnifiedProfile withoutMail = profileNamed(u"No mail"_s);
    withoutMail.startup.items = {loginAppOff(u"Mail"_s)};
    const auto respond = commands.respond;
    commands.respond = [&respond](const QStringList& arguments) {
        return arguments.first().endsWith(u"osascript"_s) ? ScriptedCommandLauncher::unanswered().first()
                                                          : respond(arguments);
    };
    EXPECT_EQ(scan({withoutMail, profileNamed(u"Off"_s)}), std::nullopt);
    EXPECT_TRUE(system.logMessages().last().endsWith(u"these readings are missing: login items"_s));
    commands.respond = respond;
    EXPECT_EQ(scan({withoutMail, profileNamed(u"Off"_s)})->name, u"No mail"_s) << "it is asked again";
}

// ---- Worlds at random

TEST_F(RandomMatching, findsWhatReadingEachProfileByItselfFinds) {
    for (int round = 0; round < 60; ++round) {
        SCOPED_TRACE(round);
        changeWorld();
        const QList<UnifiedProfile> profiles = randomProfiles(12);
        const QString applied = chance(2) ? profiles.at(number(12)).name : QString();
        const std::optional<SystemConfigurationMatch> expected = foundOneByOne(profiles, applied);
        trace.clear();
        EXPECT_EQ(QCoro::waitFor(system.findSystemMatch(profiles, applied)), expected);
        expectEachCommandOnce();
    }
}

TEST_F(RandomMatching, readsNoMoreForAThousandProfilesThanForTen) {
    const auto commandsFor = [this](qsizetype count) {
        UnifiedProfile everything = profileNamed(u"Everything"_s, &PerformanceSettings::cleanReboot);
        for (const TweakField& field : tweakFields()) {
            everything.settings.*field.isSelected = true;
        }
        everything.startup.disableNetworkAtStartup = true;
        const QList<UnifiedProfile> profiles = QList<UnifiedProfile>{everything} + randomProfiles(count - 1);
        trace.clear();
        system.invalidateStartupCaches();
        QCoro::waitFor(system.scanCurrentSystem(profiles));
        expectEachCommandOnce();
        return trace.filter(u"$"_s).size();
    };
    set(reading::kCrashReporter, "neither"); // nothing fits
    EXPECT_EQ(commandsFor(10), commandsFor(1000));
}

TEST_F(RandomMatching, findsNothingWhereAReadingIsMissing) {
    int missed = 0;
    for (int round = 0; round < 120; ++round) {
        SCOPED_TRACE(round);
        changeWorld();
        const QList<UnifiedProfile> profiles = randomProfiles(6);
        const std::optional<SystemConfigurationMatch> expected = foundOneByOne(profiles, {});
        const std::optional<SystemConfigurationMatch> before = system.systemMatch();
        const bool hadEnded = system.hasVerifiedSystem();
        loseAnswers();
        trace.clear();
        const auto found = scan(profiles);
        const QStringList log = trace.filter(u"these readings are missing"_s);
        if (askedForMissing().isEmpty()) {
            EXPECT_EQ(found, expected);
            EXPECT_TRUE(log.isEmpty());
        } else {
            ++missed;
            EXPECT_TRUE(!found || (found->isKept && found->name == before->name));
            EXPECT_TRUE(!found || found->verification == ApplyVerificationResult());
            EXPECT_EQ(found.has_value(), before.has_value());
            EXPECT_EQ(system.hasVerifiedSystem(), hadEnded);
            ASSERT_EQ(log.size(), 1);
            for (const QString& line : askedForMissing()) {
                EXPECT_TRUE(QString(log.first()).remove(u'"').contains(QString(line).remove(u'"')))
                    << line.toStdString();
            }
        }
        answerAgain();
    }
    EXPECT_GT(missed, 20);
}

// ---- Scans that are given up

TEST_F(RandomMatching, oneThatIsAbandonedEndsAtItsNextReadingAndLeavesNoTrace) {
    deniesSystemEvents = true; // which a scan has something to say of
    const QList<UnifiedProfile> profiles = randomProfiles(8);
    scan({profileNamed(u"Off"_s)});
    const qsizetype commandCount = commandsOf([&] { scan(profiles); });
    const std::optional<SystemConfigurationMatch> before = system.systemMatch();
    ASSERT_GT(commandCount, 15);
    for (qsizetype last = 1; last <= commandCount; ++last) {
        SCOPED_TRACE(last);
        system.invalidateStartupCaches();
        Abandonment abandonment;
        qsizetype logged = 0;
        atCommand(last, [&] {
            abandonment.abandon();
            logged = system.logMessages().size();
        });
        posted.clear();
        trace.clear();
        int changes = 0;
        const auto connection =
            QObject::connect(&system, &SystemManager::systemMatchChanged, [&changes] { ++changes; });
        EXPECT_EQ(QCoro::waitFor(system.scanCurrentSystem(profiles, {}, abandonment)), std::nullopt);
        QObject::disconnect(connection);
        EXPECT_EQ(trace.filter(u"$> "_s).size(), last);
        EXPECT_EQ(system.logMessages().size(), logged);
        EXPECT_TRUE(posted.isEmpty());
        EXPECT_EQ(changes, 0);
        EXPECT_EQ(system.systemMatch(), before);
        EXPECT_FALSE(system.isVerifyingSystem());
    }
}

TEST_F(RandomMatching, whatOneDidNotComeToReadIsKnownToNobody) {
    login = {{u"Mail"_s, u"/Applications/Mail.app"_s, false}};
    const QList<UnifiedProfile> profiles = randomProfiles(8);
    const qsizetype commandCount = commandsOf([&] { scan(profiles); });
    for (qsizetype last = 1; last <= commandCount; ++last) {
        SCOPED_TRACE(last);
        system.invalidateStartupCaches();
        Abandonment abandonment;
        atCommand(last, [&abandonment] { abandonment.abandon(); });
        QCoro::waitFor(system.scanCurrentSystem(profiles, {}, abandonment));
        EXPECT_EQ(QCoro::waitFor(system.rawLoginItems()), login);
        EXPECT_EQ(QCoro::waitFor(system.discoverStartupItems(SystemManager::StartupRefresh::UseCache)).size(), 1);
    }
}

TEST_F(RandomMatching, oneThatWasAbandonedBeforeItBeganDoesNothing) {
    Abandonment abandonment;
    abandonment.abandon();
    trace.clear();
    EXPECT_EQ(QCoro::waitFor(system.scanCurrentSystem(randomProfiles(3), {}, abandonment)), std::nullopt);
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(RandomMatching, oneThatEndsWhileTheProgramQuitsFindsNothing) {
    const QList<UnifiedProfile> profiles{profileNamed(u"Off"_s)};
    const qsizetype commandCount = commandsOf([&] { ASSERT_EQ(scan(profiles)->name, u"Off"_s); });
    atCommand(commandCount, [this] { commands.shutDown(); });
    EXPECT_TRUE(scan(profiles)->isKept);
    atCommand(0, {});
    EXPECT_TRUE(scan(profiles)->isKept);
}

} // namespace quorvane
