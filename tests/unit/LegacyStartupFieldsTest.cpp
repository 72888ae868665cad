#include "startup/items/LegacyStartupFields.h"

#include "startup/items/StartupConfiguration.h"

#include <gtest/gtest.h>

#include <vector>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Kind = StartupItemKind;

StartupItem itemOfKind(const QString& id, const QString& name, Kind kind, bool runs) {
    StartupItem made;
    made.id = id;
    made.name = name;
    made.kind = kind;
    made.runsAtStartup = runs;
    return made;
}

StartupItem launchItemOfKind(const QString& fileName, Kind kind, bool runs) {
    StartupItem made = itemOfKind(u"launch:"_s + fileName, fileName, kind, runs);
    made.launchIdentifier = fileName;
    return made;
}

StartupItem loginItem(const QString& id, const QString& name, const QString& path) {
    StartupItem made = itemOfKind(id, name, Kind::backgroundAgent, true);
    made.path = path;
    return made;
}

LegacyStartupFields disabledLogin(const QStringList& values) {
    LegacyStartupFields fields;
    fields.disabledLoginItems = values;
    return fields;
}

LegacyStartupFields disabledLaunch(const QStringList& values) {
    LegacyStartupFields fields;
    fields.disabledLaunchItems = values;
    return fields;
}

LegacyStartupFields excluded(const QStringList& ids) {
    LegacyStartupFields fields;
    fields.excludedBackgroundActivityItems = ids;
    return fields;
}

LegacyStartupFields permitted(const QStringList& values, bool cleanReboot) {
    LegacyStartupFields fields;
    fields.permittedStartupApps = values;
    fields.cleanReboot = cleanReboot;
    return fields;
}

TEST(LegacyStartupFields, eachListBecomesItsItems) {
    struct Case {
        const char* what;
        LegacyStartupFields fields;
        QList<StartupItem> items;
    };
    const std::vector<Case> cases{
        {"nothing", {}, {}},
        {"a login item by name",
         disabledLogin({u"Sync"_s}),
         {itemOfKind(u"login:Sync"_s, u"Sync"_s, Kind::loginApp, false)}},
        {"blanks stay in the name only",
         disabledLogin({u"  Sync \n"_s}),
         {itemOfKind(u"login:Sync"_s, u"  Sync \n"_s, Kind::loginApp, false)}},
        {"a blank value is its own identifier",
         disabledLogin({u" \t"_s}),
         {itemOfKind(u"login: \t"_s, u" \t"_s, Kind::loginApp, false)}},
        {"the last of two with one identifier counts",
         disabledLogin({u"Sync"_s, u" Sync"_s}),
         {itemOfKind(u"login:Sync"_s, u" Sync"_s, Kind::loginApp, false)}},
        {"a path stays a name",
         disabledLogin({u"/Applications/Sync.app"_s}),
         {itemOfKind(u"login:/Applications/Sync.app"_s, u"/Applications/Sync.app"_s, Kind::loginApp, false)}},
        {"a launch plist, untrimmed",
         disabledLaunch({u" com.sync.plist"_s}),
         {launchItemOfKind(u" com.sync.plist"_s, Kind::launchAgent, false)}},
        {"an excluded launch plist",
         excluded({u"launch:com.sync.plist"_s}),
         {launchItemOfKind(u"com.sync.plist"_s, Kind::backgroundAgent, true)}},
        {"an excluded path",
         excluded({u"login:/Applications/Sync.app"_s}),
         {loginItem(u"login:/Applications/Sync.app"_s, u"Sync.app"_s, u"/Applications/Sync.app"_s)}},
        {"an excluded path with a slash at its end",
         excluded({u"login:/Applications/Sync.app/"_s}),
         {loginItem(u"login:/Applications/Sync.app/"_s, u"Sync.app"_s, u"/Applications/Sync.app/"_s)}},
        {"an excluded root", excluded({u"/"_s}), {loginItem(u"/"_s, u"/"_s, u"/"_s)}},
        {"an excluded path without a prefix",
         excluded({u"/Applications/Sync.app"_s}),
         {loginItem(u"/Applications/Sync.app"_s, u"Sync.app"_s, u"/Applications/Sync.app"_s)}},
        {"an excluded name", excluded({u"login:Sync"_s}), {loginItem(u"login:Sync"_s, u"Sync"_s, QString())}},
        {"an excluded text", excluded({u"Sync"_s}), {loginItem(u"Sync"_s, u"Sync"_s, QString())}},
        {"an excluded relative path",
         excluded({u"login:Tools/Sync"_s}),
         {loginItem(u"login:Tools/Sync"_s, u"Sync"_s, QString())}},
        {"an excluded prefix alone", excluded({u"login:"_s}), {loginItem(u"login:"_s, QString(), QString())}},
        {"an excluded background record",
         excluded({u"btm:com.sync"_s}),
         {loginItem(u"btm:com.sync"_s, u"btm:com.sync"_s, QString())}},
        {"permitted for a clean reboot",
         permitted({u" Live "_s}, true),
         {itemOfKind(u"login:Live"_s, u" Live "_s, Kind::loginApp, true)}},
        {"permitted without a clean reboot", permitted({u"Live"_s}, false), {}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.what);
        EXPECT_EQ(StartupConfiguration::fromLegacyFields(each.fields), (StartupConfiguration{each.items, false, {}}));
    }
}

TEST(LegacyStartupFields, anExcludedItemRunsThoughItIsDisabled) {
    LegacyStartupFields fields = disabledLogin({u"Sync"_s});
    fields.disabledLaunchItems = {u"com.sync.plist"_s};
    fields.excludedBackgroundActivityItems = {u"login:Sync"_s, u"launch:com.sync.plist"_s};
    EXPECT_EQ(StartupConfiguration::fromLegacyFields(fields).items,
              (QList<StartupItem>{launchItemOfKind(u"com.sync.plist"_s, Kind::launchAgent, true),
                                  itemOfKind(u"login:Sync"_s, u"Sync"_s, Kind::loginApp, true)}));
}

TEST(LegacyStartupFields, aPermittedItemRunsThoughItIsDisabled) {
    LegacyStartupFields fields = disabledLogin({u"Sync "_s});
    fields.permittedStartupApps = {u"Sync"_s};
    fields.cleanReboot = true;
    EXPECT_EQ(StartupConfiguration::fromLegacyFields(fields).items,
              QList<StartupItem>{itemOfKind(u"login:Sync"_s, u"Sync "_s, Kind::loginApp, true)});
    fields.cleanReboot = false;
    EXPECT_EQ(StartupConfiguration::fromLegacyFields(fields).items,
              QList<StartupItem>{itemOfKind(u"login:Sync"_s, u"Sync "_s, Kind::loginApp, false)});
}

TEST(LegacyStartupFields, anAddedAppReplacesAnExcludedItemOfItsIdentifier) {
    const StartupLaunchItem live{u"Live"_s, u"/Applications/Live.app"_s, true};
    LegacyStartupFields fields = excluded({u"added:/Applications/Live.app"_s});
    fields.startupLaunchItems = {{u"Older"_s, live.path, false}, live};
    EXPECT_EQ(StartupConfiguration::fromLegacyFields(fields).items,
              QList<StartupItem>{StartupItem::fromLaunchItem(live)});
}

TEST(LegacyStartupFields, theItemsAreSortedAndTheNetworkIsKept) {
    LegacyStartupFields fields = disabledLogin({u"gamma"_s, u"Beta"_s});
    fields.disabledLaunchItems = {u"alpha"_s};
    fields.startupLaunchItems = {{u"Delta"_s, u"/d"_s, false}};
    fields.disableNetwork = true;
    const StartupConfiguration configuration = StartupConfiguration::fromLegacyFields(fields);
    QStringList names;
    for (const StartupItem& each : configuration.items) {
        names.append(each.name);
    }
    EXPECT_EQ(names, (QStringList{u"alpha"_s, u"Beta"_s, u"Delta"_s, u"gamma"_s}));
    EXPECT_TRUE(configuration.disableNetworkAtStartup);
    EXPECT_TRUE(configuration.disabledCloudSyncAtStartup.empty());
}

} // namespace
} // namespace quorvane
