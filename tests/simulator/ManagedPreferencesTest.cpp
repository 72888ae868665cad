#include "simulator/ManagedPreferences.h"

#include "ToolRun.h"
#include "simulator/MacDescription.h"
#include "simulator/SettingsInForce.h"
#include "simulator/tools/Defaults.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

const QString kManagedSounds = u"com.apple.sound.uiaudio.enabled"_s;

class ManagedPreferences : public testing::Test {
protected:
    void make(const Json& preferences) {
        createMac(path(), {{"machine", SimulatedMacFolder::defaultMachine()}, {"preferences", preferences}},
                  {u"/bin/ls"_s}, u"/nowhere/macsim"_s);
    }
    Mac mac() const { return Mac(path()); }
    SettingsInForce inForce() const { return settingsInForce(mac()); }
    ToolRun defaults(const QStringList& words, Actor actor = Actor::User) const {
        ScriptedAuthorizer authorizer;
        const ToolTable tools;
        const Mac made = mac();
        ToolContext context{made, tools, authorizer, made.volume(actor), QStringList{u"defaults"_s} + words, {}};
        const int status = runDefaults(context);
        return {status, context.output, context.error};
    }

private:
    QString path() const { return m_folder.path() + u"/Mac"_s; }

    QTemporaryDir m_folder;
};

} // namespace

TEST_F(ManagedPreferences, theyStandInRootsFilesThatEverybodyReads) {
    make({{"managed", {{"com.x", {{"a", 1}}}, {"NSGlobalDomain", {{"g", 2}}}}},
          {"managedUser", {{"com.x", {{"b", true}}}}}});
    const Volume disk = mac().volume(Actor::User);
    for (const QString& file :
         {u"/Library/Managed Preferences/com.x.plist"_s, u"/Library/Managed Preferences/.GlobalPreferences.plist"_s,
          u"/Library/Managed Preferences/alex/com.x.plist"_s}) {
        EXPECT_TRUE(disk.isReadable(file)) << file.toStdString();
        EXPECT_FALSE(disk.isWritable(file)) << file.toStdString();
        EXPECT_EQ(disk.owner(file), Actor::Root) << file.toStdString();
    }
    EXPECT_EQ(managedPreference(mac(), u"com.x"_s, u"a"_s), PropertyList(1));
    EXPECT_EQ(managedPreference(mac(), u"com.x"_s, u"b"_s), PropertyList(true));
    EXPECT_EQ(managedPreference(mac(), u"NSGlobalDomain"_s, u"g"_s), PropertyList(2));
    EXPECT_FALSE(managedPreference(mac(), u"com.x"_s, u"c"_s).has_value());
}

TEST_F(ManagedPreferences, aMacThatNobodyManagesHasNoSuchFolder) {
    make(Json::object());
    EXPECT_FALSE(mac().volume(Actor::Root).exists(u"/Library/Managed Preferences"_s));
    EXPECT_FALSE(managedPreference(mac(), u"com.x"_s, u"a"_s).has_value());
}

TEST_F(ManagedPreferences, whatIsDecidedForOneUserWins) {
    make({{"managed", {{"com.x", {{"a", 1}}}}}, {"managedUser", {{"com.x", {{"a", 2}}}}}});
    EXPECT_EQ(managedPreference(mac(), u"com.x"_s, u"a"_s), PropertyList(2));
}

TEST_F(ManagedPreferences, whatIsDecidedForAnotherUserDoesNotCount) {
    make({{"files", {{"/Library/Managed Preferences/kim/com.x", {{"a", 1}}}}}});
    EXPECT_FALSE(managedPreference(mac(), u"com.x"_s, u"a"_s).has_value());
}

TEST_F(ManagedPreferences, theyWinOverWhatIsStored) {
    make({{"user", {{"NSGlobalDomain", {{"com.apple.sound.uiaudio.enabled", true}}}}},
          {"files", {{"/Library/Preferences/com.apple.SoftwareUpdate", {{"AutomaticDownload", false}}}}},
          {"managed",
           {{"com.apple.SoftwareUpdate", {{"AutomaticDownload", true}}},
            {"com.apple.commerce", {{"AutoUpdate", false}}}}},
          {"managedUser",
           {{"NSGlobalDomain", {{"com.apple.sound.uiaudio.enabled", false}}},
            {"com.apple.assistant.support", {{"Assistant Enabled", true}}}}}});
    EXPECT_TRUE(inForce().downloadsUpdates);
    EXPECT_TRUE(inForce().installsSystemUpdates);
    EXPECT_FALSE(inForce().updatesStoreApplications);
    EXPECT_FALSE(inForce().playsInterfaceSounds);
    EXPECT_TRUE(inForce().hasSiri);
}

TEST_F(ManagedPreferences, readShowsWhatIsStoredAndAWriteChangesNothingInForce) {
    make({{"managedUser", {{"NSGlobalDomain", {{"com.apple.sound.uiaudio.enabled", false}}}}}});
    EXPECT_EQ(defaults({u"read"_s, u"-g"_s, kManagedSounds}).status, 1);
    EXPECT_EQ(defaults({u"write"_s, u"-g"_s, kManagedSounds, u"-bool"_s, u"true"_s}), kSilent);
    EXPECT_EQ(defaults({u"read"_s, u"-g"_s, kManagedSounds}), (ToolRun{0, "1\n", {}}));
    EXPECT_FALSE(inForce().playsInterfaceSounds);
    EXPECT_EQ(defaults({u"read"_s, u"/Library/Managed Preferences/alex/.GlobalPreferences"_s, kManagedSounds}),
              (ToolRun{0, "0\n", {}}));
}

} // namespace macsim
