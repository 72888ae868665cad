// The ways back on a simulated Mac through real child processes: what a snapshot, an apply and a way back leave.

#include "core/UserDefaultKeys.h"
#include "fakes/ManualClock.h"
#include "fakes/SimulatedStartup.h"
#include "snapshots/RestoreBaseline.h"
#include "snapshots/SnapshotManager.h"

namespace quorvane {

namespace {

using macsim::Json;

const QString kLive = u"/Applications/Ableton Live 11 Suite.app"_s;
const QString kHomeBaseline = u"/Users/alex/.quorvane/master-baseline-current.json"_s;
const QString kCloudBaseline = u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app/Documents/Quorvane/"
                               "SystemBaselines/master-baseline-current.json"_s;
const QString kCancelledLine = u"  [ERROR] Administrator authorization was cancelled or failed: User canceled."_s;

/// alex's Mac, on which Chat opens at login, and a profile that changes everything that a way back can bring back.
class WayBack : public SimulatedStartup {
protected:
    explicit WayBack(const QString& description = u"fresh-macbook"_s)
        : SimulatedStartup(description) {}

    void SetUp() override {
        changeState("loginItems", [](Json& items) {
            items.push_back({{"name", "Chat"}, {"path", "/Applications/Chat.app"}, {"hidden", true}});
        });
    }

    static UnifiedProfile gig() {
        UnifiedProfile profile = exampleProfile(u"live-set"_s);
        profile.name = u"Gig"_s;
        profile.settings.cleanReboot = true;
        profile.startup.disableNetworkAtStartup = true;
        profile.startup.items = {loginAppOff(u"Chat"_s), StartupItem::fromLaunchItem({u"Live"_s, kLive, false})};
        return profile;
    }

    bool capture(SystemManager::MasterArchive archive = SystemManager::MasterArchive::No) {
        return QCoro::waitFor(system->captureSystemSnapshot(u"Before the gig"_s, archive)).isSaved;
    }
    RestoreOutcome reinstate() { return QCoro::waitFor(system->reinstateWholeSystem()); }
    RestoreOutcome revert() { return QCoro::waitFor(system->undoTweaks()); }
    RestoreOutcome restoreDefault() { return QCoro::waitFor(system->restoreDefault()); }
    std::optional<SystemConfigurationMatch> scan(const QList<UnifiedProfile>& profiles = {}) {
        return QCoro::waitFor(system->scanCurrentSystem(profiles));
    }

    /// What the log has got since it had so many lines.
    QString logSince(qsizetype lines) const { return system->logMessages().mid(lines).join(u'\n') + u'\n'; }
    std::optional<QString> appliedName() const { return host->host().defaults.string(kQuorvaneLastAppliedProfileName); }
    QStringList managedApps() const { return host->host().defaults.stringArray(kQuorvaneManagedStartupAppPaths); }
    void removeLocalSnapshot() const {
        volume().remove(SnapshotManager(host->host().files, host->host().machine).snapshotFileURL());
    }

    // ---- What the Mac holds

    QString networkServices() {
        return shell(u"networksetup -getnetworkserviceenabled Wi-Fi; networksetup -getnetworkserviceenabled Ethernet; "
                     "networksetup -getnetworkserviceenabled 'Bluetooth PAN'"_s);
    }
    QString powerSettings() { return shell(u"pmset -g custom"_s); }
    /// Every preference that a snapshot knows, in its order; a key that isn't set is an empty line.
    QString preferences() {
        QStringList lines;
        for (const SnapshotPreference& preference : snapshotPreferences()) {
            QStringList arguments{u"/usr/bin/defaults"_s};
            if (preference.isNotificationCenters()) {
                arguments.append(u"-currentHost"_s);
            }
            arguments += {u"read"_s,
                          preference.isNotificationCenters() ? system->notificationCenterPreferences()
                                                             : preference.domain.toString(),
                          preference.key.toString()};
            lines.append(run(arguments).standardOutput.trimmed());
        }
        return lines.join(u'\n');
    }
    Json loginItems() const { return host->mac().state().read("loginItems"); }

    /// The commands of the user that the journal has got since it had so many records.
    QStringList commandsSince(qsizetype records) const {
        QStringList lines;
        const QList<QByteArray> all = journal();
        for (const QByteArray& line : all.mid(records)) {
            const Json record = Json::parse(line.cbegin(), line.cend());
            QStringList arguments;
            for (const Json& argument : record.at("arguments")) {
                arguments.append(QString::fromStdString(argument.get<std::string>()));
            }
            if (arguments.first() != u"/usr/bin/env") {
                lines.append(arguments.join(u' '));
            }
        }
        return lines;
    }
    QList<QByteArray> journal() const {
        QFile file(macFolder() + macsim::kStateFolder.toString() + u"/journal.jsonl"_s);
        QList<QByteArray> lines;
        if (file.open(QIODevice::ReadOnly)) { // it comes with the first command
            lines = file.readAll().split('\n');
        }
        lines.removeAll(QByteArray());
        return lines;
    }
};

class WayBackOnLaptop : public WayBack {
protected:
    WayBackOnLaptop()
        : WayBack(u"dj-laptop"_s) {}
    void SetUp() override {}
};

} // namespace

// ---- With a snapshot

TEST_F(WayBack, reinstateBringsBackPreferencesPowerNetworkAndLoginItems) {
    const QString preferencesBefore = preferences();
    const QString powerBefore = powerSettings();
    const QString networkBefore = networkServices();
    const Json loginBefore = loginItems();
    ASSERT_TRUE(capture());
    ASSERT_TRUE(apply(gig()));
    EXPECT_NE(preferences(), preferencesBefore);
    EXPECT_NE(powerSettings(), powerBefore);
    EXPECT_EQ(networkServices(), u"Disabled\nDisabled\nDisabled\n"_s);
    EXPECT_EQ(loginNames(), QStringList(u"Ableton Live 11 Suite"_s));

    const qsizetype lines = system->logMessages().size();
    EXPECT_EQ(reinstate(), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_EQ(logSince(lines), QString::fromUtf8(projectFile(u"tests/flows/gig-reinstated.log"_s)));
    EXPECT_EQ(preferences(), preferencesBefore);
    EXPECT_EQ(powerSettings(), powerBefore);
    EXPECT_EQ(networkServices(), networkBefore);
    EXPECT_EQ(loginNames(), QStringList(u"Chat"_s)) << "what the program has added goes";
    EXPECT_EQ(loginItems().back(), loginBefore.front()) << "hidden as it was";
    EXPECT_EQ(authorization.prompts().size(), 2);
}

TEST_F(WayBack, reinstateLeavesNothingElseChanged) {
    const macsim::MacPicture before = picture();
    ASSERT_TRUE(capture());
    ASSERT_TRUE(apply(gig()));
    ASSERT_TRUE(reinstate().succeeded);
    removeLocalSnapshot();
    EXPECT_EQ(picture().changesSince(before),
              QString::fromUtf8(projectFile(u"tests/flows/gig-reinstated-changes.txt"_s)));
}

TEST_F(WayBack, revertLeavesLoginItemsAndNetworkAlone) {
    const QString preferencesBefore = preferences();
    const QString powerBefore = powerSettings();
    ASSERT_TRUE(capture());
    ASSERT_TRUE(apply(gig()));
    const qsizetype lines = system->logMessages().size();
    EXPECT_EQ(revert(), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_TRUE(logSince(lines).contains(u"\nRestoring from saved system snapshot (Before the gig)...\n"_s));
    EXPECT_EQ(preferences(), preferencesBefore);
    EXPECT_EQ(powerSettings(), powerBefore);
    EXPECT_EQ(networkServices(), u"Disabled\nDisabled\nDisabled\n"_s);
    EXPECT_EQ(loginNames(), QStringList()) << "Chat stays away, and the program's own application goes";
    EXPECT_EQ(managedApps(), QStringList());
    EXPECT_EQ(appliedName(), u"Gig"_s);
}

TEST_F(WayBackOnLaptop, reinstateAfterAFestivalBringsBackItsSettingsAndLoginItems) {
    const QString preferencesBefore = preferences();
    const QString powerBefore = powerSettings();
    const QStringList loginBefore = loginNames();
    ASSERT_TRUE(capture());
    ASSERT_TRUE(apply(exampleProfile(u"festival"_s)));
    ASSERT_NE(preferences(), preferencesBefore);
    EXPECT_TRUE(reinstate().succeeded);
    EXPECT_EQ(preferences(), preferencesBefore);
    EXPECT_EQ(powerSettings(), powerBefore);
    const QStringList login = loginNames();
    for (const QString& name : loginBefore) {
        EXPECT_TRUE(login.contains(name)) << name.toStdString();
    }
    EXPECT_EQ(login.size(), loginBefore.size()) << "the two applications of the profile go";
}

TEST_F(WayBack, servicesThatAreGoneDoNotKeepTheOthersFromComingBack) {
    changeState("networkServices", [](Json& services) {
        services.push_back({{"name", "Bob's iPhone"}, {"device", "en7"}, {"enabled", true}});
    });
    ASSERT_TRUE(capture());
    ASSERT_TRUE(apply(gig()));
    // The last one of the line among them.
    changeState("networkServices", [](Json& services) {
        std::erase_if(services.get_ref<Json::array_t&>(), [](const Json& service) {
            return service["name"] == "Wi-Fi" || service["name"] == "Bluetooth PAN";
        });
        services.push_back({{"name", "Dock LAN"}, {"device", "en9"}, {"enabled", false}});
    });
    const qsizetype lines = system->logMessages().size();
    EXPECT_EQ(reinstate(), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_TRUE(logSince(lines).contains(u"  [INFO] Not restored: network service Bluetooth PAN\n"
                                         "  [INFO] Not restored: network service Wi-Fi\n"
                                         "  [RESTORED] Network services from snapshot.\n"_s))
        << logSince(lines).toStdString();
    EXPECT_EQ(shell(u"networksetup -getnetworkserviceenabled Ethernet; networksetup -getnetworkserviceenabled "
                    "\"Bob's iPhone\"; networksetup -getnetworkserviceenabled 'Dock LAN'"_s),
              u"Enabled\nEnabled\nDisabled\n"_s);
}

TEST_F(WayBack, theUsersOwnLoginItemStaysThoughAProfileOpensIt) {
    UnifiedProfile opens = gig();
    opens.id = QUuid::createUuid();
    opens.startup.items = {StartupItem::fromLaunchItem({u"Chat"_s, u"/Applications/Chat.app"_s, false}),
                           StartupItem::fromLaunchItem({u"Live"_s, kLive, false})};
    ProfileManager(host->host().files, u"/Users/alex/Library/Application Support/Quorvane/UnifiedProfiles"_s)
        .saveProfile(opens);
    ASSERT_TRUE(capture());
    ASSERT_TRUE(apply(opens));
    EXPECT_EQ(managedApps(), QStringList(kLive));
    EXPECT_TRUE(revert().succeeded);
    EXPECT_EQ(loginNames(), QStringList(u"Chat"_s));
    EXPECT_TRUE(restoreDefault().succeeded);
    EXPECT_EQ(loginNames(), QStringList(u"Chat"_s));
}

// ---- Without one

TEST_F(WayBack, withoutASnapshotReinstateTakesTheStandardDefaults) {
    ASSERT_TRUE(apply(gig()));
    const qsizetype lines = system->logMessages().size();
    EXPECT_EQ(reinstate(), (RestoreOutcome{true, RestoreSource::StandardDefaults}));
    EXPECT_TRUE(
        logSince(lines).startsWith(u"\n[REINSTATE] Restoring system...\n"
                                   "  [INFO] No system snapshot found — using standard restore.\n"
                                   "\nUndoing Audio Performance tweaks (no snapshot — using standard defaults)...\n"_s))
        << logSince(lines).toStdString();
    EXPECT_EQ(preferences(), u"\n\n1\n1\n1\n\n\n\n\n\n1\n\n1\n\n0\n1\n1\n"_s);
    EXPECT_EQ(networkServices(), u"Enabled\nEnabled\nDisabled\n"_s) << "as the program has noted";
    EXPECT_EQ(loginNames(), QStringList(u"Ableton Live 11 Suite"_s));
}

TEST_F(WayBack, defaultRemovesTheProgramsApplicationsAndBecomesTheLastAppliedProfile) {
    ASSERT_TRUE(apply(gig()));
    ASSERT_EQ(managedApps(), QStringList(kLive));
    EXPECT_EQ(restoreDefault(), (RestoreOutcome{true, RestoreSource::StandardDefaults}));
    EXPECT_EQ(appliedName(), u"Default"_s);
    EXPECT_EQ(managedApps(), QStringList());
    EXPECT_EQ(loginNames(), QStringList());
    EXPECT_FALSE(system->isBusy());
}

// ---- Cancelled

TEST_F(WayBack, aCancelledPromptIsAFailureAndLeavesTheLastAppliedProfile) {
    ASSERT_TRUE(capture());
    ASSERT_TRUE(apply(gig()));
    authorization.setAnswer(macsim::Authorization::Cancel);
    for (const RestoreOutcome& outcome : {restoreDefault(), reinstate(), revert()}) {
        EXPECT_EQ(outcome, (RestoreOutcome{false, RestoreSource::Snapshot}));
    }
    EXPECT_EQ(system->logMessages().count(kCancelledLine), 3);
    EXPECT_EQ(appliedName(), u"Gig"_s);
    EXPECT_EQ(powerSettings().count(u" sleep                0\n"_s), 2) << "what needs root stays as it is";
    EXPECT_FALSE(system->isBusy());
}

TEST_F(WayBack, reinstateBringsBackTheLoginItemsOfAnApplyThatWasCancelledInTheSameProcess) {
    ASSERT_TRUE(capture());
    authorization.setAnswer(macsim::Authorization::Cancel);
    EXPECT_FALSE(apply(gig()));
    ASSERT_EQ(loginNames(), QStringList(u"Ableton Live 11 Suite"_s));
    authorization.setAnswer(macsim::Authorization::Allow);
    EXPECT_TRUE(reinstate().succeeded);
    EXPECT_EQ(loginNames(), QStringList(u"Chat"_s));
    EXPECT_TRUE(logs(u"  [RESTORED] 1 login item(s) from snapshot."_s));
}

// ---- Master baselines

TEST_F(WayBack, aBaselineOfAnotherMacIsNamedAfterIt) {
    ASSERT_TRUE(capture(SystemManager::MasterArchive::Yes));
    removeLocalSnapshot();
    Json baseline = Json::parse(volume().read(kHomeBaseline).toStdString());
    baseline["deviceName"] = "Studio";
    baseline["deviceId"] = "C2B7E4A1-0F93-5D1C-B6E8-7F50A1D3926C";
    volume().write(kHomeBaseline, QByteArray::fromStdString(baseline.dump()));
    const qsizetype lines = system->logMessages().size();
    EXPECT_EQ(reinstate(), (RestoreOutcome{true, RestoreSource::Baseline}));
    EXPECT_TRUE(logSince(lines).startsWith(u"\n[REINSTATE] Restoring system...\n"
                                           "  [MASTER] Using protected baseline from ~/.quorvane.\n"
                                           "  [INFO] This baseline was saved on Studio.\n"
                                           "\nReinstating from saved system snapshot (Before the gig)...\n"_s))
        << logSince(lines).toStdString();
}

TEST_F(WayBack, anotherMacsBaselineInICloudPutsNothingOntoAMacWithItsOwn) {
    ASSERT_TRUE(capture(SystemManager::MasterArchive::Yes));
    Json others = Json::parse(volume().read(kHomeBaseline).toStdString());
    others["deviceId"] = "C2B7E4A1-0F93-5D1C-B6E8-7F50A1D3926C";
    others["capturedAt"] = others["snapshot"]["dateCreated"] = "2099-01-01T00:00:00Z";
    others["snapshot"]["loginItems"] =
        Json::array({{{"name", "B"}, {"path", "/Applications/B.app"}, {"hidden", false}}});
    others["snapshot"]["networkServicesEnabled"] = {{"Wi-Fi", false}};
    changeState("cloud", [](Json& cloud) { cloud = {{"account", true}, {"container", true}}; });
    volume().createFolders(kCloudBaseline.section(u'/', 0, -2));
    volume().write(kCloudBaseline, QByteArray::fromStdString(others.dump()));
    const QString networkBefore = networkServices();
    for (const bool hasSnapshot : {true, false}) {
        if (!hasSnapshot) {
            removeLocalSnapshot();
        }
        EXPECT_EQ(reinstate().source, hasSnapshot ? RestoreSource::Snapshot : RestoreSource::Baseline);
        EXPECT_EQ(loginNames(), QStringList(u"Chat"_s));
        EXPECT_EQ(networkServices(), networkBefore);
    }
}

TEST_F(WayBack, aBaselineThatOnlyICloudHasIsWaitedFor) {
    ASSERT_TRUE(capture(SystemManager::MasterArchive::Yes));
    const QByteArray baseline = volume().read(kHomeBaseline);
    volume().remove(kHomeBaseline);
    removeLocalSnapshot();
    changeState("cloud", [&baseline](Json& cloud) {
        cloud = {{"account", true}, {"container", true}};
        cloud["files"][kCloudBaseline.toStdString()] = {{"text", baseline.toStdString()}, {"looks", 2}};
    });
    ManualClock clock;
    const Host base = host->host();
    SystemManager patient({base.commands, base.scripts, base.files, base.defaults, base.machine, base.propertyLists,
                           base.bundles, base.backgroundTaskPermissions, base.cloud, clock, base.keychain,
                           base.biometrics, base.displays, base.notifications, base.filePanels, base.loginService},
                          notifications);
    EXPECT_EQ(QCoro::waitFor(patient.reinstateWholeSystem()), (RestoreOutcome{true, RestoreSource::Baseline}));
    EXPECT_EQ(patient.logMessages().at(1), u"  [MASTER] Using protected baseline from iCloud."_s);
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>(2, std::chrono::milliseconds(250)));
    EXPECT_EQ(volume().read(kCloudBaseline), baseline);
}

// ---- Which configuration a Mac is in

TEST_F(WayBack, aScanAfterAnApplyNamesTheProfile) {
    const UnifiedProfile liveSet = exampleProfile(u"live-set"_s);
    ASSERT_TRUE(apply(liveSet));
    const auto match = scan({exampleProfile(u"studio-day"_s), liveSet});
    ASSERT_TRUE(match.has_value());
    EXPECT_EQ(match->name, u"Live Set"_s);
    EXPECT_EQ(match->kind, MatchedConfigurationKind::savedProfile);
    EXPECT_EQ(match->verification.failed, QList<ApplyVerificationResult::Item>());
    EXPECT_EQ(system->logMessages().last(), u"  [VERIFY] Active configuration: Live Set (saved profile)"_s);
}

TEST_F(WayBack, defaultIsRecognisedOnceItHasBeenRestored) {
    ASSERT_TRUE(apply(exampleProfile(u"live-set"_s)));
    ASSERT_TRUE(restoreDefault().succeeded);
    const auto match = scan({exampleProfile(u"live-set"_s)});
    ASSERT_TRUE(match.has_value());
    EXPECT_EQ(match->name, u"Default"_s);
    EXPECT_EQ(match->kind, MatchedConfigurationKind::builtinMode);
    EXPECT_EQ(match->verification,
              (ApplyVerificationResult{{{u"Default preset"_s, u"no performance optimizations active"_s},
                                        {u"Clean Reboot"_s, u"standard app restoration"_s}},
                                       {}}));
    EXPECT_EQ(system->logMessages().last(), u"  [VERIFY] Active configuration: Default (default)"_s);
}

// A key that is absent is macOS's own choice: updates and sounds are on, and a Siri that nobody has set up is off.
TEST_F(WayBack, aMacWithoutTheKeysIsDefault) {
    shell(
        u"defaults delete com.apple.assistant.support; defaults delete NSGlobalDomain com.apple.sound.uiaudio.enabled; "
        "defaults delete com.apple.loginwindow"_s);
    const auto match = scan();
    ASSERT_TRUE(match.has_value());
    EXPECT_EQ(match->name, u"Default"_s);
    const ApplyVerificationResult inForce = QCoro::waitFor(
        system->verifyAppliedSettings(PerformanceSettings::fullSelection(), SystemManager::UnselectedTweaks::Ignored));
    QStringList names;
    for (const ApplyVerificationResult::Item& item : inForce.verified) {
        if (item.isOnThisMac) {
            names.append(item.name);
        }
    }
    EXPECT_EQ(names, QStringList(u"Siri"_s));
}

TEST_F(WayBack, aScanRunsExactlyTheReadsThatItNeeds) {
    const qsizetype records = journal().size();
    EXPECT_TRUE(scan().has_value());
    const QString notificationCenter = system->notificationCenterPreferences();
    EXPECT_EQ(
        commandsSince(records),
        QStringList(
            {u"/usr/bin/pmset -g custom"_s, u"/usr/bin/defaults read NSGlobalDomain NSAppSleepDisabled"_s,
             u"/usr/bin/defaults read /Library/Preferences/com.apple.SoftwareUpdate AutomaticDownload"_s,
             u"/usr/bin/defaults read /Library/Preferences/com.apple.SoftwareUpdate AutomaticallyInstallMacOSUpdates"_s,
             u"/usr/bin/defaults read /Library/Preferences/com.apple.commerce AutoUpdate"_s,
             u"/usr/bin/defaults -currentHost read "_s + notificationCenter + u" doNotDisturb"_s,
             u"/usr/bin/defaults read com.apple.assistant.support Assistant Enabled"_s,
             u"/usr/bin/defaults read com.apple.CrashReporter DialogType"_s,
             u"/usr/bin/defaults read NSGlobalDomain com.apple.sound.uiaudio.enabled"_s,
             u"/usr/bin/defaults read com.apple.NetworkBrowser DisableAirDrop"_s,
             u"/usr/bin/mdutil -s / /System/Volumes/Data"_s,
             u"/usr/bin/defaults read /Library/Preferences/com.apple.TimeMachine AutoBackup"_s,
             u"/usr/bin/defaults read com.apple.loginwindow TALLogoutSavesState"_s,
             u"/usr/bin/defaults read com.apple.loginwindow LoginwindowLaunchesRelaunchApps"_s}));
}

} // namespace quorvane
