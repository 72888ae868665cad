#include "startup/items/WorkingStartup.h"

#include "startup/items/StartupChanges.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = StartupItemKind;

StartupItem rowItem(Kind kind, const QString& id, const QString& name, bool runs = true) {
    StartupItem item;
    item.id = id;
    item.name = name;
    item.kind = kind;
    item.runsAtStartup = runs;
    return item;
}
StartupItem appAt(const QString& name, bool runs = true) {
    const QString path = u"/Applications/"_s + name + u".app"_s;
    StartupItem item = rowItem(Kind::loginApp, u"login:"_s + path, name, runs);
    item.path = path;
    item.hidden = false;
    return item;
}
StartupItem addedAt(const QString& name, bool runs = true) {
    StartupItem item = StartupItem::fromLaunchItem({name, u"/Applications/"_s + name + u".app"_s, false});
    item.runsAtStartup = runs;
    return item;
}
StartupItem daemonNamed(const QString& name, bool runs = true) {
    StartupItem item = rowItem(Kind::launchDaemon, launchItemId(name + u".plist"_s), name, runs);
    item.launchIdentifier = name + u".plist"_s;
    return item;
}
StartupItem protectedApp(const QString& name) {
    StartupItem item = appAt(name);
    item.isProtected = true;
    return item;
}

StartupLayers layersOf(const QList<StartupItem>& loaded, const QList<StartupItem>& discovered) {
    StartupLayers layers;
    layers.loaded = loaded;
    layers.discovered = DiscoveredStartup{discovered};
    return layers;
}
void choose(StartupLayers& layers, const StartupItem& item) {
    layers.choices.items.insert(comparableId(item), item);
}

/// "Chat off", "Mail new"
QStringList rowTexts(const WorkingStartup& working, const QList<StartupRow>& rows) {
    QStringList texts;
    for (const StartupRow& row : rows) {
        const StartupItem& item = working.itemOf(row);
        texts.append(item.name + (item.runsAtStartup ? QString() : u" off"_s) +
                     (row.isAdded ? u" added"_s : QString()) + (row.isNew ? u" new"_s : QString()));
    }
    return texts;
}
QStringList shown(const StartupLayers& layers) {
    const WorkingStartup working = workingStartup(layers);
    return rowTexts(working, working.shown);
}
QStringList absent(const StartupLayers& layers) {
    const WorkingStartup working = workingStartup(layers);
    return rowTexts(working, working.absent);
}
QStringList saved(const StartupLayers& layers) {
    QStringList texts;
    for (const StartupItem& item : workingStartup(layers).configuration.items) {
        texts.append(item.id + (item.runsAtStartup ? QString() : u" off"_s));
    }
    return texts;
}

} // namespace

TEST(WorkingStartupTest, beforeAnybodyHasLookedWhatWasLoadedStaysAsItIs) {
    StartupLayers layers;
    layers.loaded = {appAt(u"Zoom"_s, false), appAt(u"Chat"_s)};
    layers.rules.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
    EXPECT_EQ(workingStartup(layers).configuration.items, layers.loaded);
    EXPECT_EQ(shown(layers), QStringList({u"Zoom off"_s, u"Chat"_s}));
    EXPECT_EQ(absent(layers), QStringList());
}

TEST(WorkingStartupTest, theUsersChoiceComesBeforeTheLoadedOneAndThatBeforeTheDefault) {
    StartupLayers layers = layersOf({appAt(u"Chat"_s, false), appAt(u"Mail"_s, false)},
                                    {appAt(u"Chat"_s), appAt(u"Mail"_s), appAt(u"News"_s)});
    choose(layers, appAt(u"Chat"_s));
    EXPECT_EQ(shown(layers), QStringList({u"Chat"_s, u"Mail off"_s, u"News new"_s}));
    choose(layers, appAt(u"News"_s));
    EXPECT_EQ(shown(layers).last(), u"News"_s) << "touched";
}

TEST(WorkingStartupTest, nothingIsNewToAProfileThatListsNothing) {
    EXPECT_EQ(shown(layersOf({}, {appAt(u"Chat"_s)})), QStringList(u"Chat"_s));
    EXPECT_EQ(shown(layersOf({addedAt(u"Live"_s)}, {appAt(u"Chat"_s)})), QStringList({u"Chat"_s, u"Live added"_s}));
}

TEST(WorkingStartupTest, whatIsNotThereNowIsKeptWithItsChoiceAndComesBackWithIt) {
    StartupLayers layers = layersOf({appAt(u"Chat"_s, false), daemonNamed(u"VPN"_s, false)}, {appAt(u"Chat"_s)});
    EXPECT_EQ(shown(layers), QStringList(u"Chat off"_s));
    EXPECT_EQ(absent(layers), QStringList(u"VPN off"_s));
    EXPECT_EQ(saved(layers), QStringList({u"login:/Applications/Chat.app off"_s, u"launch:VPN.plist off"_s}));
    layers.discovered->items.append(daemonNamed(u"VPN"_s));
    EXPECT_EQ(shown(layers), QStringList({u"Chat off"_s, u"VPN off"_s}));
    EXPECT_EQ(absent(layers), QStringList());
}

TEST(WorkingStartupTest, aChoiceOutlivesItsItemAndAnUndecidedOneDoesNot) {
    StartupLayers layers = layersOf({}, {appAt(u"Chat"_s), appAt(u"Mail"_s)});
    choose(layers, appAt(u"Chat"_s, false));
    layers.discovered->items.clear();
    EXPECT_EQ(absent(layers), QStringList(u"Chat off"_s));
    EXPECT_EQ(shown(layers), QStringList());
}

TEST(WorkingStartupTest, anApplicationThatHasMovedIsAnotherItem) {
    StartupItem moved = appAt(u"Chat"_s);
    moved.path = u"/Users/dj/Applications/Chat.app"_s;
    moved.id = loginItemId(moved.name, moved.path);
    const StartupLayers layers = layersOf({appAt(u"Chat"_s, false)}, {moved});
    EXPECT_EQ(shown(layers), QStringList(u"Chat new"_s));
    EXPECT_EQ(absent(layers), QStringList(u"Chat off"_s));
}

TEST(WorkingStartupTest, whatWasRemovedCountsAsNeverLoaded) {
    StartupLayers layers = layersOf({appAt(u"Chat"_s, false), appAt(u"Mail"_s)}, {appAt(u"Mail"_s)});
    layers.choices.removed.insert(comparableId(appAt(u"Chat"_s)));
    EXPECT_EQ(absent(layers), QStringList());
    EXPECT_EQ(saved(layers).size(), 1);
    layers.discovered->items.append(appAt(u"Chat"_s));
    EXPECT_EQ(shown(layers), QStringList({u"Chat new"_s, u"Mail"_s}));
}

TEST(WorkingStartupTest, undecidedItemsFollowTheCleanReboot) {
    StartupItem agentOff = rowItem(Kind::backgroundLoginItem, u"btm:off"_s, u"Agent"_s, false);
    StartupLayers layers =
        layersOf({appAt(u"Chat"_s)}, {agentOff, appAt(u"Chat"_s), protectedApp(u"Focusrite"_s), appAt(u"Mail"_s)});
    EXPECT_EQ(shown(layers), QStringList({u"Agent off new"_s, u"Chat"_s, u"Focusrite new"_s, u"Mail new"_s}));
    layers.rules.cleanReboot = true;
    EXPECT_EQ(shown(layers), QStringList({u"Agent off new"_s, u"Chat"_s, u"Focusrite new"_s, u"Mail off new"_s}));
}

// ---- Added applications

TEST(WorkingStartupTest, anAddedApplicationStandsInThePlaceOfItsLoginItem) {
    StartupLayers layers = layersOf({appAt(u"Live"_s, false)}, {appAt(u"Chat"_s), appAt(u"Live"_s)});
    choose(layers, addedAt(u"Live"_s));
    EXPECT_EQ(shown(layers), QStringList({u"Chat new"_s, u"Live added"_s}));
    EXPECT_EQ(absent(layers), QStringList());
    EXPECT_EQ(saved(layers).last(), u"added:/Applications/Live.app"_s);
    layers.choices.items.clear();
    EXPECT_EQ(shown(layers), QStringList({u"Chat new"_s, u"Live off"_s})) << "its login item shows again";
}

TEST(WorkingStartupTest, anAddedApplicationThatIsOffTakesItsLoginItemAlongAndIsStillOneRow) {
    StartupLayers layers = layersOf({}, {appAt(u"Live"_s)});
    choose(layers, addedAt(u"Live"_s, false));
    EXPECT_EQ(shown(layers), QStringList(u"Live off added"_s));
    EXPECT_EQ(saved(layers),
              QStringList({u"added:/Applications/Live.app off"_s, u"login:/Applications/Live.app off"_s}));
    EXPECT_TRUE(hasStartupChanges(workingStartup(layers).configuration));
}

// ---- Services

TEST(WorkingStartupTest, aServiceThatIsOffPassesOverProtectedItems) {
    StartupItem protectedItem = protectedApp(u"Dropbox Audio"_s);
    StartupLayers layers = layersOf({daemonNamed(u"com.dropbox.old"_s)}, {appAt(u"Dropbox"_s), protectedItem});
    layers.rules.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
    EXPECT_EQ(shown(layers), QStringList({u"Dropbox off new"_s, u"Dropbox Audio new"_s}));
    EXPECT_EQ(absent(layers), QStringList(u"com.dropbox.old off"_s));
    EXPECT_FALSE(isHeldOff(protectedItem, layers.rules.disabledCloudSyncAtStartup));
    EXPECT_TRUE(isHeldOff(appAt(u"Dropbox"_s), layers.rules.disabledCloudSyncAtStartup));
}

// ---- What older profiles hold

TEST(WorkingStartupTest, aDecisionByNameAloneCountsForTheLoginItemOfThatName) {
    const StartupItem byName = rowItem(Kind::loginApp, u"login:Chat"_s, u"Chat"_s, false);
    StartupLayers layers = layersOf({byName}, {appAt(u"Mail"_s)});
    EXPECT_EQ(absent(layers), QStringList(u"Chat off"_s));
    layers.discovered->items.append(appAt(u"Chat"_s));
    EXPECT_EQ(shown(layers), QStringList({u"Chat off"_s, u"Mail new"_s}));
    EXPECT_EQ(absent(layers), QStringList());
    choose(layers, appAt(u"Chat"_s));
    EXPECT_EQ(shown(layers).first(), u"Chat"_s);
    EXPECT_EQ(absent(layers), QStringList()) << "decided anew, it isn't decided by its name any more";
}

TEST(WorkingStartupTest, twoLoadedItemsWithOneIdentifierAreSaidAndTheFirstCounts) {
    const WorkingStartup working =
        workingStartup(layersOf({appAt(u"Chat"_s, false), appAt(u"Chat"_s), appAt(u"Chat"_s)}, {appAt(u"Chat"_s)}));
    EXPECT_EQ(working.errors, QStringList(u"Duplicate values for key: 'login:/Applications/Chat.app'"_s));
    EXPECT_EQ(rowTexts(working, working.shown), QStringList(u"Chat off"_s));
}

TEST(WorkingStartupTest, aServiceThatIsOnAgainTellsWhatItLeftOff) {
    StartupChoices choices;
    choices.items.insert(u"login:/Applications/Dropbox.app"_s, appAt(u"Dropbox"_s, false));
    EXPECT_EQ(servicesWithItemsLeftOff(choices, {}), CloudSyncServices()) << "switched off by itself";
    choices.offByService.insert(u"login:/Applications/Dropbox.app"_s);
    EXPECT_EQ(servicesWithItemsLeftOff(choices, {}), CloudSyncServices{CloudSyncService::dropbox});
    EXPECT_EQ(servicesWithItemsLeftOff(choices, {CloudSyncService::dropbox}), CloudSyncServices());
}

} // namespace quorvane
