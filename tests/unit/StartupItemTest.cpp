#include "startup/items/StartupItem.h"
#include "core/Json.h"

#include <gtest/gtest.h>

#include <QSet>

#include <functional>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

StartupItem agent() {
    StartupItem item;
    item.id = u"launch:com.example.agent.plist"_s;
    item.name = u"com.example.agent"_s;
    item.path = u"/Library/LaunchAgents/com.example.agent.plist"_s;
    item.kind = StartupItemKind::launchAgent;
    item.launchIdentifier = u"com.example.agent.plist"_s;
    return item;
}

QString itemProblem(const Json& json) {
    try {
        decodedValue<StartupItem>(json);
    } catch (const DecodingError& error) {
        return error.message();
    }
    return {};
}

TEST(StartupItem, theKindsHaveTheirRawValuesAndLabelsInOrder) {
    QStringList raw;
    QStringList labels;
    for (const StartupItemKind kind : allStartupItemKinds()) {
        raw.append(rawValue(kind));
        labels.append(label(kind));
    }
    EXPECT_EQ(raw, (QStringList{u"loginApp"_s, u"launchAgent"_s, u"launchDaemon"_s, u"backgroundAgent"_s,
                                u"backgroundLoginItem"_s, u"addedApp"_s}));
    EXPECT_EQ(labels, (QStringList{u"App"_s, u"Launch Agent"_s, u"Daemon"_s, u"Background Agent"_s,
                                   u"Background Item"_s, u"Added App"_s}));
}

TEST(StartupItem, eachKindSurvivesAFile) {
    for (const StartupItemKind kind : allStartupItemKinds()) {
        StartupItem item = agent();
        item.kind = kind;
        EXPECT_EQ(decodedValue<StartupItem>(encodeJson(item)), item);
    }
}

TEST(StartupItem, theFileHasItsKeysInOrder) {
    StartupItem item = agent();
    item.hidden = true;
    EXPECT_EQ(jsonText(encodeJson(item)), R"({
  "id": "launch:com.example.agent.plist",
  "name": "com.example.agent",
  "path": "/Library/LaunchAgents/com.example.agent.plist",
  "kind": "launchAgent",
  "runsAtStartup": true,
  "hidden": true,
  "isProtected": false,
  "launchIdentifier": "com.example.agent.plist"
})");
}

TEST(StartupItem, anAbsentHiddenFlagIsNotWritten) {
    for (const std::optional<bool> hidden : {std::optional<bool>(), std::optional(true), std::optional(false)}) {
        StartupItem item = agent();
        item.hidden = hidden;
        const Json json = encodeJson(item);
        EXPECT_EQ(json.contains("hidden"), hidden.has_value());
        EXPECT_EQ(decodedValue<StartupItem>(json).hidden, hidden);
    }
}

TEST(StartupItem, anAbsentLaunchIdentifierIsNotWrittenAndAnEmptyOneIs) {
    StartupItem item = agent();
    item.launchIdentifier = std::nullopt;
    EXPECT_FALSE(encodeJson(item).contains("launchIdentifier"));
    EXPECT_EQ(decodedValue<StartupItem>(encodeJson(item)), item);
    item.launchIdentifier = QString();
    EXPECT_TRUE(encodeJson(item).contains("launchIdentifier"));
    EXPECT_TRUE(decodedValue<StartupItem>(encodeJson(item)).launchIdentifier.has_value());
}

TEST(StartupItem, nullIsAbsentForTheOptionalFields) {
    Json json = encodeJson(agent());
    json["hidden"] = nullptr;
    json["launchIdentifier"] = nullptr;
    EXPECT_EQ(decodedValue<StartupItem>(json).hidden, std::nullopt);
    EXPECT_EQ(decodedValue<StartupItem>(json).launchIdentifier, std::nullopt);
}

TEST(StartupItem, anUnknownKindIsAnError) {
    Json json = encodeJson(agent());
    json["kind"] = "kernelExtension";
    EXPECT_EQ(itemProblem(json), u"\"kind\": unknown value \"kernelExtension\""_s);
    json["kind"] = "launchagent";
    EXPECT_EQ(itemProblem(json), u"\"kind\": unknown value \"launchagent\""_s);
}

TEST(StartupItem, everyFieldCountsInAComparison) {
    using Change = std::function<void(StartupItem&)>;
    const Change changes[] = {
        [](StartupItem& item) { item.id += u'x'; },
        [](StartupItem& item) { item.name += u'x'; },
        [](StartupItem& item) { item.path += u'x'; },
        [](StartupItem& item) { item.kind = StartupItemKind::launchDaemon; },
        [](StartupItem& item) { item.runsAtStartup = false; },
        [](StartupItem& item) { item.hidden = false; },
        [](StartupItem& item) { item.isProtected = true; },
        [](StartupItem& item) { item.launchIdentifier = std::nullopt; },
    };
    QSet<StartupItem> items{agent(), agent()};
    EXPECT_EQ(items.size(), 1);
    for (const Change& change : changes) {
        StartupItem item = agent();
        change(item);
        EXPECT_NE(item, agent());
        EXPECT_NE(qHash(item), qHash(agent()));
        items.insert(item);
    }
    EXPECT_EQ(items.size(), 9);
}

TEST(StartupItem, anAddedAppIsMadeOfItsLaunchItem) {
    const StartupLaunchItem launchItem{u"Live"_s, u"/Applications/Live.app"_s, true};
    const StartupItem item = StartupItem::fromLaunchItem(launchItem);
    EXPECT_EQ(item.id, u"added:/Applications/Live.app"_s);
    EXPECT_EQ(item.name, u"Live"_s);
    EXPECT_EQ(item.path, u"/Applications/Live.app"_s);
    EXPECT_EQ(item.kind, StartupItemKind::addedApp);
    EXPECT_TRUE(item.runsAtStartup);
    EXPECT_EQ(item.hidden, true);
    EXPECT_FALSE(item.isProtected);
    EXPECT_EQ(item.launchIdentifier, std::nullopt);
}

TEST(StartupItem, aLaunchItemSurvivesAFile) {
    const StartupLaunchItem launchItem{u"Live"_s, u"/Applications/Live.app"_s, true};
    EXPECT_EQ(jsonText(encodeJson(launchItem)), R"({
  "name": "Live",
  "path": "/Applications/Live.app",
  "hidden": true
})");
    EXPECT_EQ(decodedValue<StartupLaunchItem>(encodeJson(launchItem)), launchItem);
    EXPECT_EQ(launchItem.id(), launchItem.path);
    EXPECT_EQ((QSet<StartupLaunchItem>{launchItem, launchItem}.size()), 1);
}

TEST(StartupItem, identifiersAreFormedByTheirSource) {
    EXPECT_EQ(loginItemId(u"Live"_s, u"/Applications/Live.app"_s, u"com.live.plist"_s), u"launch:com.live.plist"_s);
    EXPECT_EQ(loginItemId(u"Live"_s, u" /Applications/Live.app\n"_s), u"login:/Applications/Live.app"_s);
    EXPECT_EQ(loginItemId(u" Live "_s, u" \t\n"_s), u"login: Live "_s);
    EXPECT_EQ(loginItemId(u"Live"_s, QString()), u"login:Live"_s);
    EXPECT_EQ(loginItemId(u"Live"_s, u"/Applications/Live.app/"_s), u"login:/Applications/Live.app"_s);
    EXPECT_EQ(loginItemId(u"Live/"_s, QString()), u"login:Live/"_s);
    EXPECT_EQ(launchItemId(u"com.live.plist"_s), u"launch:com.live.plist"_s);
    EXPECT_EQ(backgroundItemId(u"com.live.helper"_s), u"btm:com.live.helper"_s);
    EXPECT_EQ(addedItemId(u"/Applications/Live.app"_s), u"added:/Applications/Live.app"_s);
    EXPECT_EQ(addedItemId(u"/Applications/Live.app//"_s), u"added:/Applications/Live.app"_s);
    EXPECT_TRUE(isLaunchItemId(u"launch:x"_s));
    EXPECT_FALSE(isLaunchItemId(u"login:launch:x"_s));
}

} // namespace
} // namespace quorvane
