#include "profiles/MasterProfileState.h"

#include <gtest/gtest.h>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QDateTime kNow(QDate(2026, 3, 14), QTime(20, 30), Qt::UTC);

StartupItem itemOf(StartupItemKind kind, const QString& id, const QString& name, bool runs = true) {
    StartupItem item;
    item.id = id;
    item.name = name;
    item.kind = kind;
    item.runsAtStartup = runs;
    return item;
}
StartupItem loginApp(const QString& name, bool runs = true) {
    return itemOf(StartupItemKind::loginApp, u"login:"_s + name, name, runs);
}
StartupItem addedApp(const QString& name, bool runs = true) {
    return itemOf(StartupItemKind::addedApp, addedItemId(u"/Applications/"_s + name + u".app"_s), name, runs);
}

/// As an old file is read: with content in each of the flat fields.
UnifiedProfile savedProfile() {
    UnifiedProfile profile;
    profile.id = QUuid(u"8d2c8e0a-41de-4d3a-9d3e-0e2f5a1f3b77"_s);
    profile.name = u"Live Set"_s;
    profile.dateCreated = QDateTime(QDate(2024, 6, 1), QTime(12, 0), Qt::UTC);
    profile.settings.siri = true;
    profile.settings.customIcons.insert(u"siri"_s, u"mic.slash"_s);
    profile.startup.items = {loginApp(u"Chat"_s, false)};
    profile.legacyDisabledLoginItems = {u"Chat"_s};
    profile.legacyDisabledLaunchItems = {u"com.chat.plist"_s};
    profile.legacyExcludedBackgroundActivityItems = {u"com.chat.helper"_s};
    profile.legacyKnownBackgroundActivityItemIds = {u"com.chat.helper"_s};
    profile.legacyPermittedStartupApps = {u"Mail"_s};
    profile.legacyStartupLaunchItems = {{u"Live"_s, u"/Applications/Live.app"_s, false}};
    profile.legacyDisableNetwork = true;
    return profile;
}

class MasterProfileStateTest : public ::testing::Test {
protected:
    MasterProfileStateTest() {
        QObject::connect(&state, &MasterProfileState::settingsChanged, [this] { signalled(u"settings"_s); });
        QObject::connect(&state, &MasterProfileState::startupChanged, [this] { signalled(u"startup"_s); });
        QObject::connect(&state, &MasterProfileState::currentProfileChanged, [this] { signalled(u"profile"_s); });
    }

    void setItems(const QList<StartupItem>& items) {
        StartupConfiguration startup;
        startup.items = items;
        state.setStartup(startup);
        takeSignals();
    }
    const StartupItem& item(qsizetype index) const { return state.startup().items.at(index); }
    QStringList names() const {
        QStringList list;
        for (const StartupItem& each : state.startup().items) {
            list.append(each.name);
        }
        return list;
    }
    /// Each change that was told of since the last call, with the current profile's name and item count at that moment.
    QStringList takeSignals() { return std::exchange(m_signals, {}); }

    MasterProfileState state;

private:
    void signalled(const QString& what) {
        const QString name = state.currentProfile() ? state.currentProfile()->name : u"none"_s;
        m_signals.append(u"%1: %2, %3 item(s)"_s.arg(what, name).arg(state.startup().items.size()));
    }

    QStringList m_signals;
};

} // namespace

TEST_F(MasterProfileStateTest, aWorkingCopyBeginsAsItWasGiven) {
    EXPECT_EQ(state.settings(), PerformanceSettings());
    EXPECT_EQ(state.startup(), StartupConfiguration());
    EXPECT_FALSE(state.currentProfile().has_value());
    const UnifiedProfile profile = savedProfile();
    const MasterProfileState given(profile.settings, profile.startup);
    EXPECT_EQ(given.settings(), profile.settings);
    EXPECT_EQ(given.startup(), profile.startup);
    EXPECT_FALSE(given.currentProfile().has_value());
}

TEST_F(MasterProfileStateTest, whoHearsOfALoadedProfileFindsAllOfIt) {
    const UnifiedProfile profile = savedProfile();
    state.load(profile);
    EXPECT_EQ(state.settings(), profile.settings);
    EXPECT_EQ(state.startup(), profile.startup);
    ASSERT_TRUE(state.currentProfile().has_value());
    EXPECT_EQ(state.currentProfile()->id, profile.id);
    EXPECT_EQ(state.currentProfile()->legacyPermittedStartupApps, profile.legacyPermittedStartupApps);
    EXPECT_EQ(takeSignals(), QStringList({u"settings: Live Set, 1 item(s)"_s, u"startup: Live Set, 1 item(s)"_s,
                                          u"profile: Live Set, 1 item(s)"_s}));
    state.load(profile);
    EXPECT_EQ(takeSignals(), QStringList()) << "nothing has changed";
}

TEST_F(MasterProfileStateTest, theSameProfileUnderAnotherNameOrDateIsAChange) {
    UnifiedProfile profile = savedProfile();
    state.load(profile);
    takeSignals();
    profile.name = u"Late Set"_s;
    state.load(profile);
    EXPECT_EQ(takeSignals(), QStringList(u"profile: Late Set, 1 item(s)"_s));
    profile.dateCreated = kNow;
    state.setCurrentProfile(profile);
    EXPECT_EQ(takeSignals(), QStringList(u"profile: Late Set, 1 item(s)"_s));
    EXPECT_EQ(state.currentProfile()->dateCreated, kNow);
}

TEST_F(MasterProfileStateTest, clearingEmptiesEverything) {
    state.load(savedProfile());
    takeSignals();
    state.clear();
    EXPECT_EQ(state.settings(), PerformanceSettings());
    EXPECT_TRUE(state.settings().customIcons.isEmpty());
    EXPECT_EQ(state.startup(), StartupConfiguration());
    EXPECT_FALSE(state.currentProfile().has_value());
    EXPECT_EQ(takeSignals(), QStringList({u"settings: none, 0 item(s)"_s, u"startup: none, 0 item(s)"_s,
                                          u"profile: none, 0 item(s)"_s}));
}

// ---- Making a profile

TEST_F(MasterProfileStateTest, anEditedProfileKeepsItsIdentityAndItsDateAndNoFlatKeys) {
    const UnifiedProfile saved = savedProfile();
    state.load(saved);
    PerformanceSettings edited = saved.settings;
    edited.airdrop = true;
    state.setSettings(edited);
    state.setRunsAtStartup(u"login:Chat"_s, true);
    takeSignals();

    const UnifiedProfile made = state.makeProfile(u" Late: Set "_s, kNow);
    EXPECT_EQ(made.id, saved.id);
    EXPECT_EQ(made.dateCreated, saved.dateCreated);
    EXPECT_EQ(made.name, u" Late: Set "_s) << "the store makes a file name of it";
    EXPECT_EQ(made.settings, edited);
    EXPECT_EQ(made.startup.items, QList<StartupItem>{loginApp(u"Chat"_s)});
    EXPECT_EQ(made.legacyDisabledLoginItems, QStringList());
    EXPECT_EQ(made.legacyDisabledLaunchItems, QStringList());
    EXPECT_EQ(made.legacyExcludedBackgroundActivityItems, QStringList());
    EXPECT_EQ(made.legacyKnownBackgroundActivityItemIds, QStringList());
    EXPECT_EQ(made.legacyPermittedStartupApps, QStringList());
    EXPECT_EQ(made.legacyStartupLaunchItems, QList<StartupLaunchItem>());
    EXPECT_FALSE(made.legacyDisableNetwork);
    EXPECT_EQ(takeSignals(), QStringList()) << "making changes nothing";
    EXPECT_EQ(state.currentProfile()->name, u"Live Set"_s);
}

TEST_F(MasterProfileStateTest, withoutACurrentProfileEachOneThatIsMadeIsNew) {
    state.load(savedProfile());
    state.setCurrentProfile(std::nullopt);
    const UnifiedProfile one = state.makeProfile(u"One"_s, kNow);
    const UnifiedProfile two = state.makeProfile(u"Two"_s, kNow.addSecs(60));
    EXPECT_FALSE(one.id.isNull());
    EXPECT_NE(one.id, two.id);
    EXPECT_NE(one.id, savedProfile().id);
    EXPECT_EQ(one.dateCreated, kNow);
    EXPECT_EQ(two.dateCreated, kNow.addSecs(60));
    EXPECT_EQ(one.settings, savedProfile().settings);
}

// ---- What runs at login

TEST_F(MasterProfileStateTest, discoveredItemsTakeTheSavedChoices) {
    setItems({loginApp(u"Chat"_s, false), addedApp(u"Live"_s)});
    const QStringList problems = state.mergeDiscoveredStartup({{loginApp(u"Mail"_s), loginApp(u"Chat"_s)}});
    EXPECT_EQ(problems, QStringList());
    EXPECT_EQ(state.startup().items,
              QList<StartupItem>({loginApp(u"Chat"_s, false), addedApp(u"Live"_s), loginApp(u"Mail"_s)}));
    EXPECT_EQ(takeSignals(), QStringList(u"startup: none, 3 item(s)"_s));
}

TEST_F(MasterProfileStateTest, withACleanRebootWhatHasAppearedStartsSwitchedOff) {
    PerformanceSettings settings;
    settings.cleanReboot = true;
    state.setSettings(settings);
    state.mergeDiscoveredStartup({{loginApp(u"Mail"_s)}});
    EXPECT_EQ(state.startup().items, QList<StartupItem>{loginApp(u"Mail"_s, false)});
}

TEST_F(MasterProfileStateTest, anItemOfAServiceThatIsOffIsOffWhenItAppears) {
    state.setCloudSyncDisabled(CloudSyncService::dropbox, true);
    state.mergeDiscoveredStartup({{loginApp(u"Dropbox"_s), loginApp(u"Mail"_s)}});
    EXPECT_EQ(state.startup().items, QList<StartupItem>({loginApp(u"Dropbox"_s, false), loginApp(u"Mail"_s)}));
}

TEST_F(MasterProfileStateTest, twoSavedItemsOfOneIdAreReported) {
    setItems({loginApp(u"Chat"_s, false), loginApp(u"Chat"_s)});
    EXPECT_EQ(state.mergeDiscoveredStartup({{loginApp(u"Chat"_s)}}),
              QStringList(u"Duplicate values for key: 'login:Chat'"_s));
    EXPECT_EQ(state.startup().items, QList<StartupItem>{loginApp(u"Chat"_s, false)});
}

TEST_F(MasterProfileStateTest, aServiceTakesItsItemsAlongOnlyWhenItGoesOff) {
    setItems({loginApp(u"Dropbox"_s), loginApp(u"Mail"_s)});
    state.setCloudSyncDisabled(CloudSyncService::dropbox, true);
    EXPECT_EQ(state.startup().disabledCloudSyncAtStartup, CloudSyncServices{CloudSyncService::dropbox});
    EXPECT_FALSE(item(0).runsAtStartup);
    EXPECT_TRUE(item(1).runsAtStartup);
    state.setCloudSyncDisabled(CloudSyncService::dropbox, false);
    EXPECT_EQ(state.startup().disabledCloudSyncAtStartup, CloudSyncServices());
    EXPECT_FALSE(item(0).runsAtStartup);
    EXPECT_EQ(takeSignals(), QStringList({u"startup: none, 2 item(s)"_s, u"startup: none, 2 item(s)"_s}));
}

TEST_F(MasterProfileStateTest, ofSeveralItemsWithOneIdTheFirstIsSwitchedAndCountsFromThenOn) {
    setItems({loginApp(u"Chat"_s), loginApp(u"Chat"_s, false)});
    EXPECT_EQ(names().size(), 2) << "as it was loaded, as long as nobody decides anything";
    state.setRunsAtStartup(u"login:Chat"_s, false);
    EXPECT_EQ(state.startup().items, QList<StartupItem>{loginApp(u"Chat"_s, false)});
    EXPECT_EQ(takeSignals().size(), 1);
    state.setRunsAtStartup(u"login:Chat"_s, false);
    state.setRunsAtStartup(u"login:Nobody"_s, false);
    EXPECT_EQ(takeSignals(), QStringList());
}

TEST_F(MasterProfileStateTest, hiddenGoesFromAbsentToTrueToFalse) {
    setItems({loginApp(u"Chat"_s)});
    ASSERT_FALSE(item(0).hidden.has_value());
    state.toggleHidden(u"login:Chat"_s);
    EXPECT_EQ(item(0).hidden, std::optional(true));
    state.toggleHidden(u"login:Chat"_s);
    EXPECT_EQ(item(0).hidden, std::optional(false));
    takeSignals();
    state.toggleHidden(u"login:Nobody"_s);
    EXPECT_EQ(takeSignals(), QStringList());
}

TEST_F(MasterProfileStateTest, anAddedApplicationTakesItsPlaceAmongTheNames) {
    setItems({loginApp(u"zoom"_s), loginApp(u"Anchor"_s)});
    state.addLaunchItem({u"live"_s, u"/Applications/Live.app"_s, true});
    EXPECT_EQ(names(), QStringList({u"Anchor"_s, u"live"_s, u"zoom"_s}));
    EXPECT_EQ(item(1), StartupItem::fromLaunchItem({u"live"_s, u"/Applications/Live.app"_s, true}));
}

TEST_F(MasterProfileStateTest, addingWhatIsThereChangesNothing) {
    setItems({addedApp(u"Live"_s, false), loginApp(u"Chat"_s)});
    state.addLaunchItem({u"Live"_s, u"/Applications/Live.app/"_s, true});
    EXPECT_EQ(state.startup().items, QList<StartupItem>({addedApp(u"Live"_s, false), loginApp(u"Chat"_s)}));
    EXPECT_EQ(takeSignals(), QStringList());
}

TEST_F(MasterProfileStateTest, enablingAllLeavesAddedApplicationsAsTheyAre) {
    StartupConfiguration startup;
    startup.items = {loginApp(u"Chat"_s, false), addedApp(u"Live"_s, false), addedApp(u"Traktor"_s),
                     itemOf(StartupItemKind::launchDaemon, u"launch:vpn"_s, u"VPN"_s, false)};
    startup.disableNetworkAtStartup = true;
    startup.disabledCloudSyncAtStartup = {CloudSyncService::dropbox, CloudSyncService::box};
    state.setStartup(startup);

    state.enableAllStartupItems();
    startup.items[0].runsAtStartup = true;
    startup.items[3].runsAtStartup = true;
    startup.disableNetworkAtStartup = false;
    startup.disabledCloudSyncAtStartup = {};
    EXPECT_EQ(state.startup(), startup);
}

TEST_F(MasterProfileStateTest, resettingTakesAddedApplicationsOut) {
    StartupConfiguration startup;
    startup.items = {loginApp(u"Chat"_s, false), addedApp(u"Live"_s), addedApp(u"Traktor"_s, false)};
    startup.disableNetworkAtStartup = true;
    startup.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
    state.setStartup(startup);

    state.resetStartup();
    StartupConfiguration expected;
    expected.items = {loginApp(u"Chat"_s)};
    EXPECT_EQ(state.startup(), expected);
}

TEST_F(MasterProfileStateTest, resettingForgetsWhatIsNotOnThisMacNow) {
    setItems({loginApp(u"Chat"_s, false), loginApp(u"Gone"_s, false)});
    state.mergeDiscoveredStartup({{loginApp(u"Chat"_s), loginApp(u"Mail"_s)}});
    ASSERT_EQ(names(), QStringList({u"Chat"_s, u"Gone"_s, u"Mail"_s}));
    state.resetStartup();
    EXPECT_EQ(state.startup().items, QList<StartupItem>({loginApp(u"Chat"_s), loginApp(u"Mail"_s)}));
}

TEST_F(MasterProfileStateTest, resettingUnderACleanRebootSwitchesEverythingOnThatIsShown) {
    PerformanceSettings settings;
    settings.cleanReboot = true;
    state.setSettings(settings);
    state.mergeDiscoveredStartup({{loginApp(u"Chat"_s)}});
    ASSERT_FALSE(item(0).runsAtStartup);
    state.resetStartup();
    EXPECT_TRUE(item(0).runsAtStartup);
}

// ---- Layers

TEST_F(MasterProfileStateTest, aDefaultFollowsTheCleanRebootAndADecisionDoesNot) {
    state.mergeDiscoveredStartup({{loginApp(u"Chat"_s), loginApp(u"Mail"_s)}});
    state.setRunsAtStartup(u"login:Mail"_s, false);
    state.setRunsAtStartup(u"login:Mail"_s, true);
    PerformanceSettings settings;
    settings.cleanReboot = true;
    state.setSettings(settings);
    EXPECT_EQ(state.startup().items, QList<StartupItem>({loginApp(u"Chat"_s, false), loginApp(u"Mail"_s)}));
    state.setSettings({});
    EXPECT_EQ(state.startup().items, QList<StartupItem>({loginApp(u"Chat"_s), loginApp(u"Mail"_s)}));
}

TEST_F(MasterProfileStateTest, whatWasDecidedMeanwhileIsNotOverwrittenByAMergeThatTookItsTime) {
    state.mergeDiscoveredStartup({{loginApp(u"Chat"_s)}});
    const StartupLayers before = state.layersWith({{loginApp(u"Chat"_s), loginApp(u"Mail"_s)}});
    state.setRunsAtStartup(u"login:Chat"_s, false);
    EXPECT_FALSE(state.takeMerged(before, workingStartup(before)));
    EXPECT_EQ(state.startup().items, QList<StartupItem>{loginApp(u"Chat"_s, false)});
    const StartupLayers after = state.layersWith(*before.discovered);
    takeSignals();
    EXPECT_TRUE(state.takeMerged(after, workingStartup(after)));
    EXPECT_EQ(state.startup().items, QList<StartupItem>({loginApp(u"Chat"_s, false), loginApp(u"Mail"_s)}));
    EXPECT_EQ(takeSignals().size(), 1);
}

TEST_F(MasterProfileStateTest, whatThisMacHasOutlivesTheProfileAndAnEditIsKnown) {
    state.mergeDiscoveredStartup({{loginApp(u"Chat"_s), loginApp(u"Mail"_s)}});
    EXPECT_FALSE(state.isEdited()) << "what was only found is no edit";
    state.load(savedProfile());
    EXPECT_EQ(state.startup().items, QList<StartupItem>({loginApp(u"Chat"_s, false), loginApp(u"Mail"_s)}));
    EXPECT_FALSE(state.isEdited());
    state.setRunsAtStartup(u"login:Mail"_s, false);
    EXPECT_TRUE(state.isEdited());
    UnifiedProfile stored = state.makeProfile(u"Live Set"_s, kNow);
    state.load(stored);
    EXPECT_FALSE(state.isEdited()) << "saved";
    EXPECT_EQ(state.startup().items, QList<StartupItem>({loginApp(u"Chat"_s, false), loginApp(u"Mail"_s, false)}));
    state.clear();
    EXPECT_EQ(state.startup().items, QList<StartupItem>({loginApp(u"Chat"_s), loginApp(u"Mail"_s)}));
    EXPECT_FALSE(state.isEdited());
    state.setNetworkDisabled(true);
    EXPECT_TRUE(state.isEdited());
}

// ---- What cards and requests show

TEST_F(MasterProfileStateTest, nothingIsPermittedWithoutACleanReboot) {
    setItems({loginApp(u"Chat"_s), loginApp(u"Mail"_s), loginApp(u"Off"_s, false)});
    EXPECT_EQ(state.permittedLoginNames(), QSet<QString>());
    PerformanceSettings settings;
    settings.cleanReboot = true;
    state.setSettings(settings);
    EXPECT_EQ(state.permittedLoginNames(), QSet<QString>({u"Chat"_s, u"Mail"_s}));
}

TEST_F(MasterProfileStateTest, theSummaryIsOneLine) {
    EXPECT_EQ(state.startupSummary(), u"None selected"_s);
    StartupConfiguration startup;
    startup.items = {loginApp(u"Chat"_s, false), addedApp(u"Live"_s)};
    startup.disableNetworkAtStartup = true;
    state.setStartup(startup);
    EXPECT_EQ(state.startupSummary(), u"1 app(s) at login, 1 disabled, network off"_s);
}

} // namespace quorvane
