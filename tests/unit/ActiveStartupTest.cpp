#include "startup/apply/ActiveStartup.h"

#include "core/Paths.h"
#include "fakes/ReadLaunchd.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Kind = StartupItemKind;

StartupItem savedItem(Kind kind, const QString& name, const std::optional<QString>& launchIdentifier = std::nullopt) {
    StartupItem made;
    made.id = u"id:"_s + name;
    made.name = name;
    made.kind = kind;
    made.launchIdentifier = launchIdentifier;
    return made;
}

StartupReadings readingsOfLoginItems(const QList<LoginItem>& items) {
    StartupReadings readings;
    readings.loginItems = {items, true};
    return readings;
}

/// Those of the names, wherever they lie.
LoginItemTargets targetsNamed(const QStringList& names) {
    return names;
}

BackgroundTaskItem recordWith(const QString& label, const QString& disposition) {
    BackgroundTaskItem made;
    made.name = u"record"_s;
    made.bundleIdentifier = label;
    made.disposition = disposition;
    return made;
}

TEST(ActiveStartup, aLoginAppOrAgentIsActiveWhileALoginItemHasItsExactName) {
    const StartupReadings readings = readingsOfLoginItems({{u"Foo"_s, u"/Applications/Foo.app"_s, false}});
    const ActiveStartup active(readings, targetsNamed({u"Foo"_s, u"foo"_s}));
    for (const Kind kind : {Kind::loginApp, Kind::backgroundAgent}) {
        EXPECT_EQ(active.isActive(savedItem(kind, u"Foo"_s)), std::optional(true));
        EXPECT_EQ(active.isActive(savedItem(kind, u"foo"_s)), std::optional(false));
        EXPECT_EQ(active.isActive(savedItem(kind, u"Bar"_s)), std::optional(false));
    }
}

TEST(ActiveStartup, ofTwoItemsOfANameThePathTellsWhichIsActive) {
    const StartupReadings readings = readingsOfLoginItems(
        {{u"Foo"_s, u"/Applications/Foo.app/"_s, false}, {u"Bar"_s, u""_s, false}, {u"Kept"_s, u"/k"_s, false}});
    const ActiveStartup active(readings, targetsNamed({u"Foo"_s, u"Bar"_s}));
    StartupItem item = savedItem(Kind::loginApp, u"Foo"_s);
    item.path = u"/Applications/Foo.app"_s;
    EXPECT_EQ(active.isActive(item), std::optional(true));
    item.path = u"/elsewhere/Foo.app"_s;
    EXPECT_EQ(active.isActive(item), std::optional(false));
    item.path = u"missing value"_s;
    EXPECT_EQ(active.isActive(item), std::optional(true)) << "it is known by its name alone";
    item.name = u"Bar"_s;
    item.path = u"/Applications/Bar.app"_s;
    EXPECT_EQ(active.isActive(item), std::optional(true)) << "its file is gone";
    EXPECT_EQ(active.isActive(savedItem(Kind::loginApp, u"Kept"_s)), std::optional(false));
}

TEST(ActiveStartup, withoutTheLoginItemsNobodyCanTell) {
    const StartupReadings readings;
    const ActiveStartup active(readings, {});
    EXPECT_FALSE(active.areLoginItemsKnown());
    EXPECT_EQ(active.isActive(savedItem(Kind::loginApp, u"Foo"_s)), std::nullopt);
    EXPECT_EQ(active.isActive(savedItem(Kind::backgroundAgent, u"Foo"_s)), std::nullopt);
}

TEST(ActiveStartup, aLaunchItemIsActiveWhileItsPlistLiesInALaunchFolder) {
    StartupReadings readings;
    readings.launchd = readLaunchd({u"com.a.plist"_s});
    const ActiveStartup active(readings, {});
    StartupItem agent = savedItem(Kind::backgroundAgent, u"A"_s, u"com.a.plist"_s);
    agent.id = u"launch:com.a.plist"_s;
    for (const StartupItem& each : {savedItem(Kind::launchAgent, u"A"_s, u"com.a.plist"_s),
                                    savedItem(Kind::launchDaemon, u"A"_s, u"com.a.plist"_s),
                                    savedItem(Kind::launchAgent, u"com.a.plist"_s), agent}) {
        EXPECT_EQ(active.isActive(each), std::optional(true));
    }
    EXPECT_EQ(active.isActive(savedItem(Kind::launchAgent, u"com.a.plist"_s, u"com.b.plist"_s)), std::optional(false));
    EXPECT_EQ(active.isActive(savedItem(Kind::launchDaemon, u"A"_s)), std::optional(false));
}

TEST(ActiveStartup, aBackgroundItemIsActiveWhileARecordWithItsLabelIsOn) {
    StartupReadings readings;
    readings.launchd = readLaunchd();
    const StartupItem known = savedItem(Kind::backgroundLoginItem, u"A"_s, u"com.a"_s);
    EXPECT_EQ(ActiveStartup(readings, {}).isActive(known), std::nullopt);

    readings.backgroundItems = BackgroundTaskList(
        {recordWith(u"com.a"_s, u"[enabled, allowed]"_s), recordWith(u"com.b"_s, u"[disabled, allowed]"_s)});
    const ActiveStartup active(readings, {});
    EXPECT_EQ(active.isActive(known), std::optional(true));
    EXPECT_EQ(active.isActive(savedItem(Kind::backgroundLoginItem, u"B"_s, u"com.b"_s)), std::optional(false));
    EXPECT_EQ(active.isActive(savedItem(Kind::backgroundLoginItem, u"C"_s, u"com.c"_s)), std::optional(false));
    EXPECT_EQ(active.isActive(savedItem(Kind::backgroundLoginItem, u"com.a"_s)), std::optional(false));
}

TEST(ActiveStartup, ofAnAddedApplicationNothingIsTold) {
    const StartupReadings readings = readingsOfLoginItems({{u"Foo"_s, u"/Foo.app"_s, false}});
    EXPECT_EQ(ActiveStartup(readings, {}).isActive(savedItem(Kind::addedApp, u"Foo"_s)), std::nullopt);
}

TEST(ActiveStartup, aPathIsCalledByItsLoginItemElseByItsLastComponent) {
    const StartupReadings readings = readingsOfLoginItems({{u"Shown"_s, u"/Applications/Foo.app"_s, false}});
    const ActiveStartup active(readings, {});
    EXPECT_TRUE(active.hasLoginPath(u"/Applications/Foo.app"_s));
    EXPECT_TRUE(active.hasLoginPath(u"/Applications/Foo.app/"_s));
    EXPECT_FALSE(active.hasLoginPath(u"/applications/foo.app"_s));
    EXPECT_EQ(active.nameOfLoginPath(u"/Applications/Foo.app"_s), u"Shown"_s);
    EXPECT_EQ(active.nameOfLoginPath(u"/Applications/My Bar.app"_s), u"My Bar"_s);
}

TEST(ActiveStartup, theNameInAPathHasNoExtension) {
    struct Row {
        QString path;
        QString name;
    };
    const QList<Row> rows{
        {u"/Applications/Foo.app"_s, u"Foo"_s},
        {u"/Applications/Foo.app/"_s, u"Foo"_s},
        {u"/Applications/Foo.app//"_s, u"Foo"_s},
        {u"/Applications/Foo 2.1.app"_s, u"Foo 2.1"_s},
        {u"/usr/bin/tool"_s, u"tool"_s},
        {u"Foo.app"_s, u"Foo"_s},
        {u"/x/.hidden"_s, u".hidden"_s},
        {u"/x.y/z"_s, u"z"_s},
        {u"/"_s, u""_s},
        {u""_s, u""_s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path.toStdString());
        EXPECT_EQ(nameInPath(row.path), row.name);
    }
}

} // namespace
} // namespace quorvane
