#include "startup/apply/StartupDiscovery.h"

#include "fakes/MemoryBundles.h"
#include "fakes/ReadLaunchd.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Kind = StartupItemKind;

QStringList idsOf(const QList<StartupItem>& items) {
    QStringList ids;
    for (const StartupItem& item : items) {
        ids.append(item.id);
    }
    return ids;
}

StartupItem named(const QString& id, const QString& name) {
    StartupItem item;
    item.id = id;
    item.name = name;
    return item;
}

// ---- The agent test

TEST(StartupDiscovery, anAgentIsKnownByItsNameOrPath) {
    for (const QString& text : {u"/Applications/Foo.app/Contents/Library/LaunchAgents/x.plist"_s,
                                u"CONTENTS/LIBRARY/LAUNCHAGENTS"_s, u"com.foo.agent"_s, u".agent"_s, u"Com.Foo.AGENT"_s,
                                u"com.foo.agent.plist"_s, u"com.foo.agent.plist.bak"_s, u"Foo Agent"_s, u" agent"_s}) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_TRUE(looksLikeBackgroundAgent(text));
    }
    for (const QString& text :
         {u""_s, u"agent"_s, u"Agent Foo"_s, u"FooAgent"_s, u"Foo Agent "_s, u"Foo Agents"_s, u"com.foo.agents.plist"_s,
          u"/Users/alex/Library/LaunchAgents/x.plist"_s, u"com.foo.agent.x"_s}) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_FALSE(looksLikeBackgroundAgent(text));
    }
}

// ---- Login items

TEST(StartupDiscovery, aLoginItemBecomesALoginApp) {
    StartupItem expected;
    expected.id = u"login:/Applications/Foo.app"_s;
    expected.name = u"Foo"_s;
    expected.path = u"/Applications/Foo.app"_s;
    expected.kind = Kind::loginApp;
    expected.runsAtStartup = true;
    expected.hidden = true;
    EXPECT_EQ(startupItemOf(LoginItem{u"Foo"_s, u"/Applications/Foo.app"_s, true}), expected);
}

TEST(StartupDiscovery, aLoginItemWithoutAPathGoesByItsName) {
    const StartupItem item = startupItemOf(LoginItem{u"Foo"_s, u""_s, false});
    EXPECT_EQ(item.id, u"login:Foo"_s);
    EXPECT_EQ(item.hidden, std::optional(false));
    EXPECT_EQ(item.launchIdentifier, std::nullopt);
}

TEST(StartupDiscovery, aLoginItemIsAnAgentByItsNameOrItsPath) {
    const QString embedded = u"/Applications/Foo.app/Contents/Library/LaunchAgents/x.plist"_s;
    EXPECT_EQ(startupItemOf(LoginItem{u"x"_s, embedded, false}).kind, Kind::backgroundAgent);
    EXPECT_EQ(startupItemOf(LoginItem{u"Foo Agent"_s, u"/Applications/Foo.app"_s, false}).kind, Kind::backgroundAgent);
    EXPECT_EQ(startupItemOf(LoginItem{u"Foo Agent"_s, u"/Applications/Foo.app"_s, false}).id,
              u"login:/Applications/Foo.app"_s);
}

TEST(StartupDiscovery, aLoginItemOfAudioSoftwareIsProtectedByItsNameOrItsPath) {
    EXPECT_TRUE(startupItemOf(LoginItem{u"Ableton Helper"_s, u"/Applications/X.app"_s, false}).isProtected);
    EXPECT_TRUE(startupItemOf(LoginItem{u"Helper"_s, u"/Applications/Traktor Pro 4/H.app"_s, false}).isProtected);
    EXPECT_FALSE(startupItemOf(LoginItem{u"Dropbox"_s, u"/Applications/Dropbox.app"_s, false}).isProtected);
}

// ---- Launch plists

class LaunchPlistDiscoveryTest : public ::testing::Test {
protected:
    QList<StartupItem> found(const QStringList& users, const QStringList& agents = {},
                             const QStringList& daemons = {}) {
        const QList<LaunchFolder> folders = launchFolders(u"/Users/alex"_s);
        const LaunchdReadings launchd(
            readLaunchd().overrides(),
            readLaunchPlists({{folders.at(0), users}, {folders.at(1), agents}, {folders.at(2), daemons}},
                             propertyLists));
        return launchStartupItems(launchd, {}, propertyLists, bundles);
    }

    MemoryPropertyLists propertyLists;
    MemoryBundles bundles;
};

TEST_F(LaunchPlistDiscoveryTest, aPlistBecomesALaunchItem) {
    propertyLists.lists[u"/Users/alex/Library/LaunchAgents/com.x.plist"_s] = {{u"Label"_s, u"com.vendor.tool"_s}};
    StartupItem expected;
    expected.id = u"launch:com.x.plist"_s;
    expected.name = u"Vendor Tool"_s;
    expected.path = u"/Users/alex/Library/LaunchAgents/com.x.plist"_s;
    expected.kind = Kind::launchAgent;
    expected.runsAtStartup = true;
    expected.launchIdentifier = u"com.x.plist"_s;
    EXPECT_EQ(found({u"com.x.plist"_s}), QList<StartupItem>{expected});
}

TEST_F(LaunchPlistDiscoveryTest, theKindIsTheFoldersUnlessTheNameIsAnAgents) {
    QList<Kind> kinds;
    for (const StartupItem& item : found({u"a.plist"_s}, {u"b.plist"_s, u"c.agent.plist"_s},
                                         {u"d.plist"_s, u"com.example.helper.agent.plist"_s})) {
        kinds.append(item.kind);
    }
    EXPECT_EQ(kinds, (QList<Kind>{Kind::launchAgent, Kind::launchAgent, Kind::backgroundAgent, Kind::launchDaemon,
                                  Kind::backgroundAgent}));
}

TEST_F(LaunchPlistDiscoveryTest, ofOneNameInSeveralFoldersTheFirstFolderWins) {
    const QList<StartupItem> items = found({u"a.plist"_s}, {u"b.plist"_s, u"a.plist"_s}, {u"b.plist"_s, u"A.plist"_s});
    ASSERT_EQ(items.size(), 3);
    EXPECT_EQ(items.at(0).path, u"/Users/alex/Library/LaunchAgents/a.plist"_s);
    EXPECT_EQ(items.at(1).path, u"/Library/LaunchAgents/b.plist"_s);
    EXPECT_EQ(items.at(2).path, u"/Library/LaunchDaemons/A.plist"_s);
}

TEST_F(LaunchPlistDiscoveryTest, otherFilesAreNoLaunchItems) {
    EXPECT_EQ(found({u"a.plist.bak"_s, u"a.PLIST"_s, u"readme"_s, u""_s, u"aplist"_s}), QList<StartupItem>());
}

TEST_F(LaunchPlistDiscoveryTest, theFileNameProtectsAndTheShownNameDoesNot) {
    propertyLists.lists[u"/Library/LaunchAgents/com.x.plist"_s] = {{u"Label"_s, u"com.ableton.tool"_s}};
    const QList<StartupItem> items = found({}, {u"com.native instruments.plist"_s, u"com.x.plist"_s});
    ASSERT_EQ(items.size(), 2);
    EXPECT_TRUE(items.at(0).isProtected);
    EXPECT_EQ(items.at(1).name, u"Ableton Tool"_s);
    EXPECT_FALSE(items.at(1).isProtected);
}

TEST_F(LaunchPlistDiscoveryTest, anUnreadablePlistHasARowNamedAfterItsFile) {
    const QList<StartupItem> items = found({u"com.vendor.damagedFile.plist"_s});
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items.first().name, u"Vendor Damaged File"_s);
}

// ---- Background records

BackgroundTaskItem foundRecord(const QString& name, const QString& type) {
    return {name,
            u"com.foo.helper"_s,
            u"4.com.foo.helper"_s,
            type,
            u"[enabled, allowed, notified] (0xb)"_s,
            u"2.com.foo.app"_s,
            u"/exe"_s,
            u"file:///Applications/Foo.app/"_s};
}

TEST(StartupDiscovery, aBackgroundRecordBecomesABackgroundItem) {
    StartupItem expected;
    expected.id = u"btm:com.foo.helper"_s;
    expected.name = u"Foo"_s;
    expected.path = u"file:///Applications/Foo.app/"_s;
    expected.kind = Kind::backgroundLoginItem;
    expected.runsAtStartup = true;
    expected.launchIdentifier = u"com.foo.helper"_s;
    EXPECT_EQ(backgroundTaskStartupItem(foundRecord(u"Foo"_s, u"app (0x2)"_s)), std::optional(expected));
}

TEST(StartupDiscovery, aBackgroundRecordWithoutANameIsCalledByItsLabel) {
    for (const QString& name : {u""_s, u"(null)"_s}) {
        EXPECT_EQ(backgroundTaskStartupItem(foundRecord(name, u"agent"_s)).value_or(StartupItem()).name,
                  u"com.foo.helper"_s);
    }
    EXPECT_EQ(backgroundTaskStartupItem(foundRecord(u"(NULL)"_s, u"agent"_s)).value_or(StartupItem()).name,
              u"(NULL)"_s);
}

TEST(StartupDiscovery, aBackgroundRecordsPathIsTheFirstThingThatTellsWhereItIs) {
    BackgroundTaskItem item = foundRecord(u"Foo"_s, u"agent"_s);
    const auto path = [&item] { return backgroundTaskStartupItem(item).value_or(StartupItem()).path; };
    EXPECT_EQ(path(), u"file:///Applications/Foo.app/"_s);
    item.url = std::nullopt;
    EXPECT_EQ(path(), u"/exe"_s);
    item.executablePath = std::nullopt;
    EXPECT_EQ(path(), u"com.foo.helper"_s);
    item.bundleIdentifier = std::nullopt;
    item.identifier = u"16.com.foo.daemon"_s;
    EXPECT_EQ(path(), u"com.foo.daemon"_s);
}

TEST(StartupDiscovery, aBackgroundRecordWithoutALabelIsNoItem) {
    BackgroundTaskItem item = foundRecord(u"Foo"_s, u"agent"_s);
    item.bundleIdentifier = u""_s;
    item.identifier = u"16."_s;
    EXPECT_EQ(backgroundTaskStartupItem(item), std::nullopt);
    EXPECT_EQ(backgroundStartupItems({item}, readLaunchd()), QList<StartupItem>());
}

TEST(StartupDiscovery, aBackgroundRecordRunsWhenItIsOn) {
    struct Row {
        QString disposition;
        bool runs;
    };
    for (const Row& row :
         {Row{u"[enabled, allowed, notified] (0xb)"_s, true}, Row{u"[enabled, disallowed, notified] (0x9)"_s, false},
          Row{u"[disabled, allowed, not notified] (0x2)"_s, false}, Row{u"[allowed, visible]"_s, false},
          Row{u""_s, false}}) {
        SCOPED_TRACE(row.disposition.toStdString());
        BackgroundTaskItem item = foundRecord(u"Foo"_s, u"agent"_s);
        item.disposition = row.disposition;
        EXPECT_EQ(backgroundTaskStartupItem(item).value_or(StartupItem()).runsAtStartup, row.runs);
    }
}

TEST(StartupDiscovery, onlyLoginItemsAgentsAndDaemonsAreListedAndNoProtectedRecordOrItsOwn) {
    BackgroundTaskItem byPath = foundRecord(u"Helper"_s, u"agent (0x8)"_s);
    byPath.url = u"file:///Applications/Ableton%20Live.app/"_s;
    BackgroundTaskItem own = foundRecord(u"Quorvane"_s, u"login item (0x4)"_s);
    own.bundleIdentifier = u"com.quorvane.app"_s;
    QStringList names;
    for (const StartupItem& item : backgroundStartupItems(
             {own, foundRecord(u"app"_s, u"app (0x2)"_s), foundRecord(u"item"_s, u"Login Item (0x4)"_s),
              foundRecord(u"agent"_s, u"legacy agent (0x10008)"_s), foundRecord(u"daemon"_s, u"daemon (0x10)"_s),
              foundRecord(u"developer"_s, u"developer (0x20)"_s), foundRecord(u"Serato Helper"_s, u"agent (0x8)"_s),
              byPath},
             readLaunchd())) {
        names.append(item.name);
    }
    EXPECT_EQ(names, (QStringList{u"item"_s, u"agent"_s, u"daemon"_s}));
}

// ---- All sources

TEST(StartupDiscovery, ofOneIdTheEarlierSourceWins) {
    const QList<StartupItem> items =
        mergedSources({{named(u"1"_s, u"b"_s), named(u"1"_s, u"z"_s)}, {named(u"1"_s, u"x"_s), named(u"2"_s, u"a"_s)}});
    EXPECT_EQ(items, (QList<StartupItem>{named(u"2"_s, u"a"_s), named(u"1"_s, u"b"_s)}));
}

TEST(StartupDiscovery, theListIsSortedByNameWithoutRegardToCaseAndEqualNamesKeepTheirOrder) {
    EXPECT_EQ(idsOf(mergedSources({{named(u"1"_s, u"beta"_s), named(u"2"_s, u"Éclair"_s), named(u"3"_s, u"alpha"_s)},
                                   {named(u"4"_s, u"Alpha"_s), named(u"5"_s, u"Zed"_s), named(u"6"_s, u"BETA"_s)}})),
              (QStringList{u"3"_s, u"4"_s, u"1"_s, u"6"_s, u"2"_s, u"5"_s}));
}

TEST(StartupDiscovery, withoutSourcesTheListIsEmpty) {
    EXPECT_EQ(mergedSources({}), QList<StartupItem>());
    EXPECT_EQ(mergedSources({{}, {}}), QList<StartupItem>());
}

} // namespace
} // namespace quorvane
