#include "startup/items/StartupConfiguration.h"
#include "core/Json.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Kind = StartupItemKind;
using Texts = QSet<QString>;

StartupItem configuredItem(const QString& name, Kind kind, bool runs) {
    StartupItem made;
    made.id = rawValue(kind) + u':' + name;
    made.name = name;
    made.kind = kind;
    made.runsAtStartup = runs;
    return made;
}

StartupItem launchItem(const QString& name, Kind kind, bool runs, const QString& launchIdentifier) {
    StartupItem made = configuredItem(name, kind, runs);
    made.launchIdentifier = launchIdentifier;
    return made;
}

/// One of each kind that runs ("… on") and one that doesn't ("… off").
StartupConfiguration everyKind() {
    StartupConfiguration configuration;
    for (const Kind kind : allStartupItemKinds()) {
        configuration.items.append(configuredItem(rawValue(kind) + u" on"_s, kind, true));
        configuration.items.append(configuredItem(rawValue(kind) + u" off"_s, kind, false));
    }
    return configuration;
}

QStringList namesOf(const QList<StartupItem>& items) {
    QStringList names;
    for (const StartupItem& each : items) {
        names.append(each.name);
    }
    return names;
}

QString problemOf(const Json& json) {
    try {
        decodedValue<StartupConfiguration>(json);
    } catch (const DecodingError& error) {
        return error.message();
    }
    return {};
}

TEST(StartupConfiguration, permittedNamesCountBackgroundItemsAndDisabledNamesDoNot) {
    const StartupConfiguration configuration = everyKind();
    EXPECT_EQ(configuration.permittedLoginNames(),
              (Texts{u"loginApp on"_s, u"backgroundAgent on"_s, u"backgroundLoginItem on"_s}));
    EXPECT_EQ(configuration.disabledLoginNames(), (Texts{u"loginApp off"_s, u"backgroundAgent off"_s}));
}

TEST(StartupConfiguration, aLaunchItemWithoutIdentifierIsKnownByItsNameAndABackgroundItemIsNot) {
    StartupConfiguration configuration = everyKind();
    EXPECT_EQ(configuration.disabledLaunchLabels(), (Texts{u"launchAgent off"_s, u"launchDaemon off"_s}));
    EXPECT_EQ(configuration.disabledBackgroundLabels(), Texts());

    for (StartupItem& each : configuration.items) {
        each.launchIdentifier = each.name + u".id"_s;
    }
    EXPECT_EQ(configuration.disabledLaunchLabels(), (Texts{u"launchAgent off.id"_s, u"launchDaemon off.id"_s}));
    EXPECT_EQ(configuration.disabledBackgroundLabels(), Texts{u"backgroundLoginItem off.id"_s});
}

TEST(StartupConfiguration, onlyAddedAppsThatRunAreLaunched) {
    StartupConfiguration configuration = everyKind();
    StartupItem hidden = configuredItem(u"Mixer"_s, Kind::addedApp, true);
    hidden.path = u"/Applications/Mixer.app"_s;
    hidden.hidden = true;
    configuration.items.prepend(hidden);
    const QList<StartupLaunchItem> expected{{u"Mixer"_s, u"/Applications/Mixer.app"_s, true},
                                            {u"addedApp on"_s, QString(), false}};
    EXPECT_EQ(configuration.startupLaunchItems(), expected);
}

TEST(StartupConfiguration, anItemThatRunsKeepsItsApplicationByItsPathOrWithoutOneByItsName) {
    StartupItem known = configuredItem(u"Chat"_s, Kind::loginApp, true);
    known.path = u"/Applications/Chat.app/"_s;
    StartupItem unknown = configuredItem(u"Drive"_s, Kind::loginApp, true);
    unknown.id = u"login:Drive"_s;
    StartupConfiguration configuration;
    configuration.items = {known, unknown};
    EXPECT_EQ(configuration.notOpenedOf({u"/Applications/Chat.app"_s, u"/Applications/Drive.app"_s,
                                         u"/Applications/Old/Chat.app"_s, u"/Applications/Sync.app"_s}),
              (Texts{u"/Applications/Old/Chat.app"_s, u"/Applications/Sync.app"_s}));
}

TEST(StartupConfiguration, theSummaryHasOnlyTheLinesThatApply) {
    EXPECT_EQ(StartupConfiguration().summaryLines(), QStringList());

    StartupConfiguration configuration = everyKind();
    EXPECT_EQ(configuration.summaryLines(), (QStringList{u"1 app(s) at login"_s, u"5 disabled"_s}));

    configuration.items.clear();
    configuration.disableNetworkAtStartup = true;
    configuration.disabledCloudSyncAtStartup = {CloudSyncService::pCloud, CloudSyncService::iCloudDrive,
                                                CloudSyncService::yandexDisk, CloudSyncService::box};
    EXPECT_EQ(configuration.summaryLines(),
              (QStringList{u"network off"_s, u"cloud sync off: Box, Yandex Disk, iCloud Drive, pCloud"_s}));
}

TEST(StartupConfiguration, theFileNamesDisabledServicesOnlyWhenThereAreSome) {
    EXPECT_EQ(jsonText(encodeJson(StartupConfiguration())), R"({
  "items": [],
  "disableNetworkAtStartup": false
})");

    StartupConfiguration configuration;
    configuration.disableNetworkAtStartup = true;
    configuration.disabledCloudSyncAtStartup = {CloudSyncService::dropbox, CloudSyncService::box};
    EXPECT_EQ(jsonText(encodeJson(configuration)), R"({
  "items": [],
  "disableNetworkAtStartup": true,
  "disabledCloudSyncAtStartup": [
    "box",
    "dropbox"
  ]
})");
}

TEST(StartupConfiguration, survivesAFile) {
    StartupConfiguration configuration = everyKind();
    configuration.disableNetworkAtStartup = true;
    for (const CloudSyncService service : allCloudSyncServices()) {
        configuration.disabledCloudSyncAtStartup.insert(service);
    }
    EXPECT_EQ(decodedValue<StartupConfiguration>(encodeJson(configuration)), configuration);
}

TEST(StartupConfiguration, onlyTheItemsAreRequired) {
    EXPECT_EQ(decodedValue<StartupConfiguration>(parseJson(R"({"items":[]})")), StartupConfiguration());
    EXPECT_EQ(decodedValue<StartupConfiguration>(
                  parseJson(R"({"items":[],"disableNetworkAtStartup":null,"disabledCloudSyncAtStartup":null})")),
              StartupConfiguration());
    EXPECT_EQ(problemOf(parseJson("{}")), u"\"items\": missing"_s);
    EXPECT_EQ(problemOf(parseJson("[]")), u"not an object"_s);
}

TEST(StartupConfiguration, aServiceNamedTwiceCountsOnceAndAnUnknownOneIsAnError) {
    const auto decoded = decodedValue<StartupConfiguration>(
        parseJson(R"({"items":[],"disabledCloudSyncAtStartup":["mega","box","mega"]})"));
    EXPECT_EQ(decoded.disabledCloudSyncAtStartup, (CloudSyncServices{CloudSyncService::box, CloudSyncService::mega}));
    EXPECT_EQ(problemOf(parseJson(R"({"items":[],"disabledCloudSyncAtStartup":["box","floppy"]})")),
              u"\"disabledCloudSyncAtStartup[1]\": unknown value \"floppy\""_s);
}

TEST(StartupConfiguration, anErrorInAnItemNamesTheItem) {
    EXPECT_EQ(problemOf(parseJson(R"({"items":[{"id":"a"}]})")), u"\"items[0].name\": missing"_s);
}

TEST(StartupMerge, takesTheSavedChoiceAndTheFreshFacts) {
    StartupItem saved = configuredItem(u"Old name"_s, Kind::loginApp, false);
    saved.id = u"login:/Applications/Sync.app"_s;
    saved.path = u"/old"_s;
    saved.hidden = true;
    StartupItem fresh = configuredItem(u"New name"_s, Kind::backgroundAgent, true);
    fresh.id = saved.id;
    fresh.path = u"/Applications/Sync.app"_s;
    fresh.hidden = false;
    fresh.isProtected = true;
    fresh.launchIdentifier = u"fresh"_s;

    StartupItem expected = fresh;
    expected.runsAtStartup = false;
    expected.hidden = true;
    EXPECT_EQ((StartupConfiguration{{saved}, false, {}}.mergedWithDiscovered({fresh}, false).configuration.items),
              QList<StartupItem>{expected});

    saved.hidden = std::nullopt;
    expected.hidden = false;
    EXPECT_EQ((StartupConfiguration{{saved}, false, {}}.mergedWithDiscovered({fresh}, false).configuration.items),
              QList<StartupItem>{expected});
}

TEST(StartupMerge, aCleanRebootSwitchesOffOnlyWhatIsNewUnprotectedAndNotAdded) {
    const StartupItem savedOn = configuredItem(u"1 saved on"_s, Kind::launchAgent, true);
    const StartupItem savedOff = configuredItem(u"2 saved off"_s, Kind::launchAgent, false);
    const StartupItem added = configuredItem(u"3 added"_s, Kind::addedApp, true);
    StartupItem guarded = configuredItem(u"4 protected"_s, Kind::launchAgent, true);
    guarded.isProtected = true;
    const StartupItem fresh = configuredItem(u"5 new"_s, Kind::launchAgent, true);
    StartupItem discoveredOff = savedOff;
    discoveredOff.runsAtStartup = true;

    const StartupConfiguration configuration{{savedOn, savedOff}, true, {CloudSyncService::box}};
    const QList<StartupItem> discovered{savedOn, discoveredOff, added, guarded, fresh};
    StartupItem freshOff = fresh;
    freshOff.runsAtStartup = false;

    const StartupMerge clean = configuration.mergedWithDiscovered(discovered, true);
    EXPECT_EQ(clean.configuration.items, (QList<StartupItem>{savedOn, savedOff, added, guarded, freshOff}));
    EXPECT_TRUE(clean.configuration.disableNetworkAtStartup);
    EXPECT_EQ(clean.configuration.disabledCloudSyncAtStartup, CloudSyncServices{CloudSyncService::box});
    EXPECT_EQ(clean.errors, QStringList());
    EXPECT_EQ(configuration.mergedWithDiscovered(discovered, false).configuration.items,
              (QList<StartupItem>{savedOn, savedOff, added, guarded, fresh}));
}

TEST(StartupMerge, onlyAddedAppsOutliveTheirDiscovery) {
    const StartupItem added = configuredItem(u"Added"_s, Kind::addedApp, false);
    const StartupItem agent = configuredItem(u"Agent"_s, Kind::launchAgent, false);
    const StartupItem login = configuredItem(u"Login"_s, Kind::loginApp, true);
    const StartupMerge merge = StartupConfiguration{{agent, added, login}, false, {}}.mergedWithDiscovered({}, true);
    EXPECT_EQ(merge.configuration.items, QList<StartupItem>{added});
}

TEST(StartupMerge, aSavedAddedApplicationWithADiscoveredTwinStandsOnce) {
    StartupItem saved = configuredItem(u"Added"_s, Kind::addedApp, false);
    saved.hidden = true;
    StartupItem twin = saved;
    twin.name = u"Added, as found"_s;
    twin.runsAtStartup = true;
    twin.hidden = false;
    StartupItem expected = twin;
    expected.runsAtStartup = false;
    expected.hidden = true;
    EXPECT_EQ((StartupConfiguration{{saved}, false, {}}.mergedWithDiscovered({twin}, true).configuration.items),
              QList<StartupItem>{expected});
}

TEST(StartupMerge, theLoginItemOfAnAddedApplicationThatRunsIsNoSecondItem) {
    const StartupItem added = StartupItem::fromLaunchItem({u"Bitwig Studio"_s, u"/Applications/Bitwig.app"_s, false});
    StartupItem addedButOff = added;
    addedButOff.runsAtStartup = false;
    StartupItem found = configuredItem(u"Bitwig Studio"_s, Kind::loginApp, true);
    found.id = u"login:/Applications/Bitwig.app"_s;
    found.path = u"/Applications/Bitwig.app/"_s;
    StartupItem savedTrace = found;
    savedTrace.runsAtStartup = false;
    for (const bool cleanReboot : {true, false}) {
        EXPECT_EQ(
            (StartupConfiguration{{added}, false, {}}.mergedWithDiscovered({found}, cleanReboot)).configuration.items,
            QList<StartupItem>{added});
        EXPECT_EQ((StartupConfiguration{{savedTrace, added}, false, {}}.mergedWithDiscovered({found}, cleanReboot))
                      .configuration.items,
                  QList<StartupItem>{added})
            << "also where an earlier merge has made one";
        EXPECT_EQ((StartupConfiguration{{addedButOff}, false, {}}.mergedWithDiscovered({found}, cleanReboot))
                      .configuration.items.size(),
                  2)
            << "one that doesn't open any more says nothing";
    }
}

TEST(StartupMerge, aSavedItemIsFoundHoweverItsPathEndsAndByItsNameWhenItsFileWasGone) {
    struct Row {
        QString savedId;
        QString foundId;
    };
    for (const Row& row : {Row{u"login:/Applications/Sync.app/"_s, u"login:/Applications/Sync.app"_s},
                           Row{u"login:/Applications/Sync.app"_s, u"login:/Applications/Sync.app/"_s},
                           Row{u"login:missing value"_s, u"login:Sync"_s}}) {
        StartupItem saved = configuredItem(u"Sync"_s, Kind::loginApp, true);
        saved.id = row.savedId;
        StartupItem found = saved;
        found.id = row.foundId;
        EXPECT_EQ((StartupConfiguration{{saved}, false, {}}.mergedWithDiscovered({found}, true).configuration.items),
                  QList<StartupItem>{found});
    }
}

TEST(StartupMerge, sortsByNameWithoutRegardToCase) {
    const QList<StartupItem> discovered{
        configuredItem(u"beta"_s, Kind::loginApp, true), configuredItem(u"Alpha"_s, Kind::loginApp, true),
        configuredItem(u"BETA"_s, Kind::loginApp, true), configuredItem(u"gamma"_s, Kind::loginApp, true)};
    const StartupConfiguration saved{{configuredItem(u"Delta"_s, Kind::addedApp, true)}, false, {}};
    EXPECT_EQ(namesOf(saved.mergedWithDiscovered(discovered, false).configuration.items),
              (QStringList{u"Alpha"_s, u"beta"_s, u"BETA"_s, u"Delta"_s, u"gamma"_s}));
}

TEST(StartupMerge, theFirstOfSeveralSavedItemsCountsAndTheRestIsReported) {
    StartupItem first = configuredItem(u"Sync"_s, Kind::launchAgent, false);
    StartupItem second = first;
    second.runsAtStartup = true;
    StartupItem fresh = first;
    fresh.runsAtStartup = true;
    const StartupItem added = configuredItem(u"Added"_s, Kind::addedApp, true);
    StartupItem addedAgain = added;
    addedAgain.name = u"Added again"_s;

    const StartupConfiguration saved{{first, second, second, added, addedAgain}, false, {}};
    const StartupMerge merge = saved.mergedWithDiscovered({fresh}, false);
    EXPECT_EQ(merge.configuration.items, (QList<StartupItem>{added, first}));
    EXPECT_EQ(merge.errors, (QStringList{u"Duplicate values for key: 'launchAgent:Sync'"_s,
                                         u"Duplicate values for key: 'addedApp:Added'"_s}));
}

TEST(StartupConfiguration, textsOfASetAreSortedPlainly) {
    EXPECT_EQ(sortedTexts({u"b"_s, u"a"_s, u"B"_s}), (QStringList{u"B"_s, u"a"_s, u"b"_s}));
}

TEST(StartupConfiguration, launchItemsKeepTheirIdentifierInLabels) {
    const StartupConfiguration configuration{{launchItem(u"a"_s, Kind::launchDaemon, false, u"a.plist"_s),
                                              launchItem(u"b"_s, Kind::backgroundLoginItem, true, u"b"_s)},
                                             false,
                                             {}};
    EXPECT_EQ(configuration.disabledLaunchLabels(), Texts{u"a.plist"_s});
    EXPECT_EQ(configuration.disabledBackgroundLabels(), Texts());
}

} // namespace
} // namespace quorvane
