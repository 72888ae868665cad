#include "simulator/SettingsInForce.h"

#include "ToolRun.h"
#include "simulator/PreferenceStore.h"
#include "simulator/tools/Defaults.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

const QString kSystemUpdates = u"/Library/Preferences/com.apple.SoftwareUpdate"_s;
const QString kSystemStore = u"/Library/Preferences/com.apple.commerce"_s;
const QString kInterfaceSounds = u"com.apple.sound.uiaudio.enabled"_s;

class SettingsInForceTest : public testing::Test {
protected:
    explicit SettingsInForceTest(const char* systemVersion = "14.7")
        : mac({}, {{"userName", "alex"}, {"userId", 501}, {"systemVersion", systemVersion}}) {}

    ToolRun defaults(const QStringList& words, Actor actor = Actor::User) {
        return runTool(mac, runDefaults, QStringList{u"defaults"_s} + words, actor);
    }
    ToolRun write(const QString& domain, const QString& key, const QString& flag, Actor actor = Actor::User) {
        return defaults({u"write"_s, domain, key, u"-bool"_s, flag}, actor);
    }
    void store(Actor actor, const QString& domain, const QString& key, const PropertyList& value) {
        const PreferenceStore preferences(mac.mac, mac.mac.volume(actor));
        ASSERT_EQ(preferences.write({domain}, key, value), PreferenceStore::Outcome::Done);
    }
    QStringList inForce() const {
        const SettingsInForce settings = settingsInForce(mac.mac);
        QStringList names;
        const std::pair<bool, QString> all[] = {{settings.downloadsUpdates, u"download"_s},
                                                {settings.installsSystemUpdates, u"install"_s},
                                                {settings.updatesStoreApplications, u"store"_s},
                                                {settings.playsInterfaceSounds, u"sounds"_s},
                                                {settings.hasSiri, u"Siri"_s}};
        for (const auto& [isInForce, name] : all) {
            names += isInForce ? QStringList{name} : QStringList();
        }
        return names;
    }

    SimulatedMacFolder mac;
};

class SettingsInForceOnTahoe : public SettingsInForceTest {
protected:
    SettingsInForceOnTahoe()
        : SettingsInForceTest("26.1") {}
};

} // namespace

TEST_F(SettingsInForceTest, aBareMacUpdatesItselfSoundsAndHasNoSiri) {
    EXPECT_EQ(inForce(), (QStringList{u"download"_s, u"install"_s, u"store"_s, u"sounds"_s}));
}

TEST_F(SettingsInForceTest, updatesObeyTheSystemsDomains) {
    EXPECT_EQ(write(kSystemUpdates, u"AutomaticDownload"_s, u"false"_s, Actor::Root), kSilent);
    EXPECT_EQ(inForce(), (QStringList{u"install"_s, u"store"_s, u"sounds"_s}));
    EXPECT_EQ(write(kSystemUpdates, u"AutomaticallyInstallMacOSUpdates"_s, u"false"_s, Actor::Root), kSilent);
    EXPECT_EQ(inForce(), (QStringList{u"store"_s, u"sounds"_s}));
    EXPECT_EQ(write(kSystemStore, u"AutoUpdate"_s, u"false"_s, Actor::Root), kSilent);
    EXPECT_EQ(inForce(), QStringList{u"sounds"_s});
    EXPECT_EQ(defaults({u"delete"_s, kSystemUpdates, u"AutomaticDownload"_s}, Actor::Root), kSilent);
    EXPECT_EQ(inForce(), (QStringList{u"download"_s, u"sounds"_s}));
}

TEST_F(SettingsInForceTest, nobodyReadsWhatAUserOrRootSaysOfUpdatesAtHome) {
    for (const Actor actor : {Actor::User, Actor::Root}) {
        EXPECT_EQ(write(u"com.apple.SoftwareUpdate"_s, u"AutomaticDownload"_s, u"false"_s, actor), kSilent);
        EXPECT_EQ(write(u"com.apple.SoftwareUpdate"_s, u"AutomaticallyInstallMacOSUpdates"_s, u"false"_s, actor),
                  kSilent);
        EXPECT_EQ(write(u"com.apple.commerce"_s, u"AutoUpdate"_s, u"false"_s, actor), kSilent);
    }
    EXPECT_EQ(inForce(), (QStringList{u"download"_s, u"install"_s, u"store"_s, u"sounds"_s}));
}

TEST_F(SettingsInForceTest, aUserReadsTheSystemsDomainAndMayNotWriteIt) {
    EXPECT_EQ(write(kSystemUpdates, u"AutomaticDownload"_s, u"true"_s, Actor::Root), kSilent);
    const ToolRun refused = write(kSystemUpdates, u"AutomaticDownload"_s, u"false"_s);
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(
        refused.error.endsWith("Could not write domain /Library/Preferences/com.apple.SoftwareUpdate; exiting\n"))
        << refused.error.toStdString();
    EXPECT_EQ(defaults({u"read"_s, kSystemUpdates, u"AutomaticDownload"_s}), (ToolRun{0, "1\n", {}}));
    EXPECT_EQ(inForce().first(), u"download"_s);
}

TEST_F(SettingsInForceTest, interfaceSoundsAndSiriAreTheUsers) {
    EXPECT_EQ(write(u"NSGlobalDomain"_s, kInterfaceSounds, u"false"_s), kSilent);
    EXPECT_EQ(write(u"com.apple.assistant.support"_s, u"Assistant Enabled"_s, u"true"_s), kSilent);
    EXPECT_EQ(inForce(), (QStringList{u"download"_s, u"install"_s, u"store"_s, u"Siri"_s}));
}

TEST_F(SettingsInForceTest, theOlderDomainOfSoundsAndTheStatusOfSiriSwitchNothing) {
    EXPECT_EQ(write(u"com.apple.systemsound"_s, kInterfaceSounds, u"false"_s), kSilent);
    EXPECT_EQ(defaults({u"write"_s, u"com.apple.Siri"_s, u"Status"_s, u"Enabled"_s}), kSilent);
    EXPECT_EQ(write(u"NSGlobalDomain"_s, kInterfaceSounds, u"false"_s, Actor::Root), kSilent);
    EXPECT_EQ(inForce(), (QStringList{u"download"_s, u"install"_s, u"store"_s, u"sounds"_s}));
}

TEST_F(SettingsInForceTest, aSettingIsReadInEveryTypeThatMeansYesOrNo) {
    const std::pair<PropertyList, bool> cases[] = {
        {0, false},     {1, true},       {0.0, false},        {0.5, true},        {u"NO"_s, false},
        {u"1"_s, true}, {u"0"_s, false}, {u"False"_s, false}, {u"maybe"_s, true}, {PropertyList::Array{}, true}};
    for (const auto& [value, isOn] : cases) {
        store(Actor::User, u"NSGlobalDomain"_s, kInterfaceSounds, value);
        EXPECT_EQ(settingsInForce(mac.mac).playsInterfaceSounds, isOn) << value.value().index();
    }
    store(Actor::User, u"com.apple.assistant.support"_s, u"Assistant Enabled"_s, u"maybe"_s);
    EXPECT_FALSE(settingsInForce(mac.mac).hasSiri);
}

TEST_F(SettingsInForceTest, theCheckForUpdatesStaysWhereItWasWritten) {
    EXPECT_EQ(write(kSystemUpdates, u"AutomaticCheckEnabled"_s, u"false"_s, Actor::Root), kSilent);
    EXPECT_EQ(defaults({u"read"_s, kSystemUpdates, u"AutomaticCheckEnabled"_s}), (ToolRun{0, "0\n", {}}));
}

TEST_F(SettingsInForceOnTahoe, theCheckForUpdatesIsDeletedAgainAndNothingElse) {
    for (const QString& typed : {kSystemUpdates, QString(kSystemUpdates + u".plist"_s)}) {
        EXPECT_EQ(write(typed, u"AutomaticDownload"_s, u"false"_s, Actor::Root), kSilent);
        EXPECT_EQ(write(typed, u"AutomaticCheckEnabled"_s, u"false"_s, Actor::Root), kSilent);
        EXPECT_EQ(defaults({u"read"_s, kSystemUpdates}), (ToolRun{0, "{\n    AutomaticDownload = 0;\n}\n", {}}));
    }
    EXPECT_EQ(
        defaults({u"write"_s, kSystemUpdates, u"{AutomaticCheckEnabled = 1; AutomaticDownload = 1;}"_s}, Actor::Root),
        kSilent);
    EXPECT_EQ(defaults({u"read"_s, kSystemUpdates, u"AutomaticCheckEnabled"_s}).status, 1);
    EXPECT_EQ(write(u"com.apple.SoftwareUpdate"_s, u"AutomaticCheckEnabled"_s, u"true"_s), kSilent);
    EXPECT_EQ(defaults({u"read"_s, u"com.apple.SoftwareUpdate"_s, u"AutomaticCheckEnabled"_s}),
              (ToolRun{0, "1\n", {}}));
}

} // namespace macsim
