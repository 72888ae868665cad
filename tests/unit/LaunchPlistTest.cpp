#include "startup/launchd/LaunchPlist.h"

#include "fakes/MemoryBundles.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

class LaunchPlists : public ::testing::Test {
protected:
    enum Folder { UsersAgents, Agents, Daemons };

    LaunchPlist read(const QVariantMap& plist, Folder folder = Daemons) const {
        MemoryPropertyLists lists;
        const LaunchFolder place = launchFolders(u"/Users/alex"_s).at(folder);
        lists.lists.insert(place.path + u"/x.plist"_s, plist);
        return readLaunchPlist(place, u"x.plist"_s, lists);
    }
    static LaunchdOverrides overridesOf(const QString& word) {
        LaunchdOverrides overrides;
        overrides.user = DisabledServices::parse(u"disabled services = {\n\"com.x\" => "_s + word + u"\n}\n"_s);
        overrides.system = overrides.user;
        return overrides;
    }
};

} // namespace

TEST_F(LaunchPlists, theLabelIsThePlistsOwnWhateverTheFileIsCalled) {
    const LaunchPlist plist = read({{u"Label"_s, u"com.other"_s}});
    EXPECT_EQ(plist.label, u"com.other"_s);
    EXPECT_EQ(plist.path(), u"/Library/LaunchDaemons/x.plist"_s);
}

TEST_F(LaunchPlists, aLabelThatCannotBeNamedToLaunchctlIsNone) {
    for (const QVariant& label :
         QVariantList{{}, u""_s, u"a/b"_s, u".."_s, u"-x"_s, u"a\nb"_s, 7, true, QVariantList{u"com.x"_s}}) {
        EXPECT_EQ(read({{u"Label"_s, label}}).label, QString()) << label.toString().toStdString();
    }
}

TEST_F(LaunchPlists, agentsAreTheUsersAndDaemonsTheSystems) {
    const QVariantMap plist{{u"Label"_s, u"com.x"_s}};
    EXPECT_EQ(read(plist, UsersAgents).service(), (LaunchdService{LaunchdDomain::User, u"com.x"_s}));
    EXPECT_EQ(read(plist, Agents).service(), (LaunchdService{LaunchdDomain::User, u"com.x"_s}));
    EXPECT_EQ(read(plist, Daemons).service(), (LaunchdService{LaunchdDomain::System, u"com.x"_s}));
}

TEST_F(LaunchPlists, eachTriggerLetsADaemonStartByItself) {
    const QList<std::pair<QString, QVariant>> triggers{
        {u"RunAtLoad"_s, true},
        {u"KeepAlive"_s, true},
        {u"KeepAlive"_s, QVariantMap{{u"SuccessfulExit"_s, false}}},
        {u"StartInterval"_s, 3600},
        {u"StartCalendarInterval"_s, QVariantMap{{u"Hour"_s, 3}}},
        {u"StartCalendarInterval"_s, QVariantList{QVariantMap{{u"Hour"_s, 3}}}},
        {u"WatchPaths"_s, QVariantList{u"/etc/hosts"_s}},
        {u"QueueDirectories"_s, QVariantList{u"/var/spool/x"_s}},
        {u"StartOnMount"_s, true}};
    for (const auto& [key, value] : triggers) {
        const LaunchPlist plist = read({{u"Label"_s, u"com.x"_s}, {key, value}});
        EXPECT_TRUE(plist.startsByItself) << key.toStdString();
        EXPECT_FALSE(plist.runsOnDemand());
    }
}

TEST_F(LaunchPlists, aDaemonWithoutATriggerWaitsForItsApplication) {
    const QList<QVariantMap> onDemand{
        {{u"Label"_s, u"com.x"_s}},
        {{u"Label"_s, u"com.x"_s}, {u"MachServices"_s, QVariantMap{{u"com.x"_s, true}}}},
        {{u"Label"_s, u"com.x"_s}, {u"RunAtLoad"_s, false}, {u"KeepAlive"_s, false}, {u"StartOnMount"_s, false}}};
    for (const QVariantMap& plist : onDemand) {
        EXPECT_TRUE(read(plist).runsOnDemand());
        EXPECT_FALSE(read(plist, Agents).runsOnDemand()) << "an agent isn't its application's only means";
    }
}

TEST_F(LaunchPlists, oneThatCannotBeReadSaysNothing) {
    const MemoryPropertyLists none;
    const LaunchPlist plist = readLaunchPlist(launchFolders(u"/Users/alex"_s).at(2), u"x.plist"_s, none);
    EXPECT_EQ(plist.label, QString());
    EXPECT_FALSE(plist.isDisabled);
    EXPECT_FALSE(plist.runsOnDemand());
}

TEST_F(LaunchPlists, anOverrideGoesBeforeThePlistsOwnWord) {
    for (const bool isDisabled : {false, true}) {
        const LaunchPlist plist = read({{u"Label"_s, u"com.x"_s}, {u"Disabled"_s, isDisabled}});
        EXPECT_EQ(isOn(plist, overridesOf(u"disabled"_s)), std::optional(false));
        EXPECT_EQ(isOn(plist, overridesOf(u"enabled"_s)), std::optional(true));
        EXPECT_EQ(isOn(plist, overridesOf(u"perhaps"_s)), std::nullopt);
        EXPECT_EQ(isOn(plist, LaunchdOverrides()), std::nullopt);
    }
}

TEST_F(LaunchPlists, oneThatIsNotListedGoesByItsOwnWord) {
    const LaunchdOverrides overrides{DisabledServices(), DisabledServices()};
    EXPECT_EQ(isOn(read({{u"Label"_s, u"com.x"_s}}), overrides), std::optional(true));
    EXPECT_EQ(isOn(read({{u"Label"_s, u"com.x"_s}, {u"Disabled"_s, true}}), overrides), std::optional(false));
    EXPECT_EQ(isOn(read({{u"Label"_s, u"com.x"_s}, {u"Disabled"_s, u"true"_s}}), overrides), std::optional(true));
}

TEST_F(LaunchPlists, onlyPlainLabelsOfOthersMayBeOverridden) {
    EXPECT_TRUE(mayOverride(u"com.example.agent"_s));
    EXPECT_TRUE(mayOverride(u"My Helper's \"$(x)\""_s));
    for (const QString& label :
         {u""_s, u"."_s, u"a/b"_s, u"-x"_s, u"a\nb"_s, u"com.apple.x"_s, u"com.quorvane.x"_s, u"com.ableton.live"_s}) {
        EXPECT_FALSE(mayOverride(label)) << label.toStdString();
    }
}

} // namespace quorvane
