#include "startup/background/BackgroundState.h"

#include "core/Json.h"
#include "startup/background/StartupMemory.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using OnOrOff = std::optional<bool>;

const QString kLabel = u"com.x.helper"_s;
const QString kPlistPath = u"/Library/LaunchDaemons/com.x.plist"_s;

BackgroundTaskItem recordOf(const QString& type, const QString& url = {}) {
    BackgroundTaskItem record;
    record.name = u"Helper"_s;
    record.identifier = u"16."_s + kLabel;
    record.itemType = type;
    record.disposition = u"[enabled, allowed, notified] (0xb)"_s;
    record.url = url;
    return record;
}

LaunchdReadings launchdSaying(const QString& userLine, const QString& systemLine) {
    const auto parsed = [](const QString& line) {
        return DisabledServices::parse(u"disabled services = {\n"_s + line + u"\n}\n"_s);
    };
    return LaunchdReadings({parsed(userLine), parsed(systemLine)}, {});
}

const QString kListedOff = u"\"com.x.helper\" => disabled"_s;
const QString kListedOn = u"\"com.x.helper\" => enabled"_s;

LaunchPlist daemonPlist() {
    LaunchPlist plist;
    plist.fileName = u"com.x.plist"_s;
    plist.folder.path = u"/Library/LaunchDaemons"_s;
    plist.folder.isDaemons = true;
    plist.label = kLabel;
    return plist;
}

LaunchdReadings withPlist(const LaunchdReadings& launchd, const LaunchPlist& plist) {
    return LaunchdReadings(launchd.overrides(), {plist});
}

OnOrOff labelState(const std::optional<BackgroundTaskList>& list, const LaunchdReadings& launchd) {
    return labelStanding(kLabel, list, launchd, StartupMemory()).isActive;
}

} // namespace

TEST(BackgroundState, anOverrideOfItsOwnDomainSwitchesARecordOff) {
    const BackgroundTaskItem agent = recordOf(u"agent (0x8)"_s);
    const BackgroundTaskItem daemon = recordOf(u"daemon (0x10)"_s);
    EXPECT_EQ(isOn(agent, launchdSaying(kListedOff, {})), OnOrOff(false));
    EXPECT_EQ(isOn(agent, launchdSaying({}, kListedOff)), OnOrOff(true)) << "that is another job";
    EXPECT_EQ(isOn(daemon, launchdSaying({}, kListedOff)), OnOrOff(false));
    EXPECT_EQ(isOn(daemon, launchdSaying(kListedOff, {})), OnOrOff(true));
    EXPECT_EQ(isOn(agent, launchdSaying(kListedOn, {})), OnOrOff(true));
}

TEST(BackgroundState, aRecordThatIsOffIsOffWhateverLaunchdSays) {
    BackgroundTaskItem agent = recordOf(u"agent (0x8)"_s);
    for (const QString& disposition : {u"[disabled, allowed] (0x2)"_s, u"[enabled, disallowed] (0x9)"_s}) {
        agent.disposition = disposition;
        EXPECT_EQ(isOn(agent, launchdSaying(kListedOn, {})), OnOrOff(false));
        EXPECT_EQ(isOn(agent, LaunchdReadings()), OnOrOff(false));
    }
}

TEST(BackgroundState, whatLaunchdDidNotTellNobodyKnows) {
    EXPECT_EQ(isOn(recordOf(u"agent (0x8)"_s), LaunchdReadings()), std::nullopt);
    EXPECT_EQ(isOn(recordOf(u"agent (0x8)"_s), launchdSaying(u"\"com.x.helper\" => paused"_s, {})), std::nullopt);
}

TEST(BackgroundState, aRecordWhosePlistIsGoneIsOff) {
    const BackgroundTaskItem daemon = recordOf(u"legacy daemon (0x10010)"_s, u"file://"_s + kPlistPath);
    EXPECT_EQ(isOn(daemon, launchdSaying({}, {})), OnOrOff(false));
    LaunchPlist plist = daemonPlist();
    EXPECT_EQ(isOn(daemon, withPlist(launchdSaying({}, {}), plist)), OnOrOff(true));
    plist.isDisabled = true;
    EXPECT_EQ(isOn(daemon, withPlist(launchdSaying({}, {}), plist)), OnOrOff(false))
        << "by itself, as no override tells otherwise";
    EXPECT_EQ(isOn(daemon, withPlist(launchdSaying({}, kListedOn), plist)), OnOrOff(true));
}

TEST(BackgroundState, theLabelOfThePlistCountsNotThatOfTheRecord) {
    BackgroundTaskItem daemon = recordOf(u"legacy daemon (0x10010)"_s, u"file://"_s + kPlistPath);
    daemon.identifier = u"16.com.other"_s;
    const LaunchdReadings launchd = withPlist(launchdSaying({}, kListedOff), daemonPlist());
    EXPECT_EQ(serviceOf(daemon, launchd), (LaunchdService{LaunchdDomain::System, kLabel}));
    EXPECT_EQ(isOn(daemon, launchd), OnOrOff(false));
}

TEST(BackgroundState, theHomeMayBeNamedByTheUsersNumber) {
    BackgroundTaskItem agent =
        recordOf(u"legacy agent (0x10008)"_s, u"file:///Users/501/Library/LaunchAgents/com.x.plist"_s);
    LaunchPlist plist = daemonPlist();
    plist.folder = {};
    plist.folder.path = u"/Users/alex/Library/LaunchAgents"_s;
    plist.folder.isUsers = true;
    const LaunchdReadings launchd = withPlist(launchdSaying({}, {}), plist);
    EXPECT_EQ(isOn(agent, launchd), OnOrOff(true));
    EXPECT_EQ(isOn(recordOf(u"legacy agent"_s, u"/Library/LaunchAgents/com.x.plist"_s), launchd), OnOrOff(false));
}

TEST(BackgroundState, aPlistThatTheUserHasDisallowedIsOff) {
    BackgroundTaskItem record = recordOf(u"legacy daemon (0x10010)"_s, u"file://"_s + kPlistPath);
    record.disposition = u"[enabled, disallowed, notified] (0x9)"_s;
    const LaunchdReadings launchd = withPlist(launchdSaying({}, {}), daemonPlist());
    EXPECT_EQ(isFileOn(u"com.x.plist"_s, std::nullopt, launchd), OnOrOff(true));
    EXPECT_EQ(isFileOn(u"com.x.plist"_s, BackgroundTaskList({record}), launchd), OnOrOff(false));
    EXPECT_EQ(labelState(BackgroundTaskList({record}), launchd), OnOrOff(false));
    EXPECT_EQ(isFileOn(u"com.other.plist"_s, std::nullopt, launchd), OnOrOff(false));
}

TEST(BackgroundState, aLabelIsOnWhileAnythingThatBearsItIs) {
    const BackgroundTaskList list({recordOf(u"agent (0x8)"_s), recordOf(u"daemon (0x10)"_s)});
    EXPECT_EQ(labelState(list, launchdSaying(kListedOff, kListedOff)), OnOrOff(false));
    EXPECT_EQ(labelState(list, launchdSaying(kListedOff, {})), OnOrOff(true)) << "the daemon is";
    EXPECT_EQ(labelState(std::nullopt, launchdSaying(kListedOff, kListedOff)), OnOrOff(false));
    EXPECT_EQ(labelState(std::nullopt, withPlist(launchdSaying(kListedOff, {}), daemonPlist())), OnOrOff(true))
        << "its plist is in its place";
}

TEST(BackgroundState, withoutAListNobodyKnowsWhoseALabelIsUnlessTheLastOneTold) {
    EXPECT_EQ(labelState(std::nullopt, launchdSaying(kListedOff, {})), std::nullopt) << "it may be a daemon's";
    EXPECT_EQ(labelState(std::nullopt, launchdSaying({}, kListedOff)), std::nullopt);
    const auto remembered = [](const QList<KnownService>& services, const LaunchdReadings& launchd) {
        StartupMemory memory;
        memory.services = services;
        return labelStanding(kLabel, std::nullopt, launchd, memory).isActive;
    };
    EXPECT_EQ(remembered({}, launchdSaying(kListedOff, {})), OnOrOff(false)) << "the last dump had it as the user's";
    EXPECT_EQ(remembered({}, launchdSaying({}, kListedOff)), std::nullopt);
    const KnownService daemon{kLabel, {LaunchdDomain::System, kLabel}};
    const KnownService agent{kLabel, {LaunchdDomain::User, kLabel}};
    EXPECT_EQ(remembered({daemon}, launchdSaying({}, kListedOff)), OnOrOff(false));
    EXPECT_EQ(remembered({daemon}, launchdSaying(kListedOff, {})), std::nullopt);
    EXPECT_EQ(remembered({daemon, agent}, launchdSaying(kListedOff, {})), std::nullopt);
    EXPECT_EQ(remembered({daemon, agent}, launchdSaying(kListedOff, kListedOff)), OnOrOff(false));
    const KnownService renamed{kLabel, {LaunchdDomain::System, u"com.other"_s}};
    EXPECT_EQ(remembered({renamed}, launchdSaying({}, kListedOff)), std::nullopt) << "launchd knows it otherwise";
}

TEST(BackgroundState, aPlistThatCannotBeReadBearsTheLabelOfItsRecord) {
    const BackgroundTaskItem daemon = recordOf(u"legacy daemon (0x10010)"_s, u"file://"_s + kPlistPath);
    LaunchPlist unreadable = daemonPlist();
    unreadable.label.clear();
    const LaunchdReadings off = withPlist(launchdSaying({}, kListedOff), unreadable);
    EXPECT_EQ(serviceOf(daemon, off), (LaunchdService{LaunchdDomain::System, kLabel}));
    EXPECT_EQ(isOn(daemon, off), OnOrOff(false));
    EXPECT_EQ(isFileOn(u"com.x.plist"_s, BackgroundTaskList({daemon}), off), OnOrOff(false));
    EXPECT_EQ(labelState(BackgroundTaskList({daemon}), off), OnOrOff(false));
    EXPECT_EQ(isOn(daemon, withPlist(launchdSaying({}, {}), unreadable)), OnOrOff(true));
}

TEST(BackgroundState, whatLiesInAFolderThatNobodyMayReadMayBeOn) {
    const LaunchFolder users = launchFolders(u"/Users/alex"_s).first();
    const BackgroundTaskItem agent =
        recordOf(u"legacy agent (0x10008)"_s, u"file:///Users/501/Library/LaunchAgents/com.x.plist"_s);
    const auto readings = [&users](const QString& userLine, bool isRead) {
        return LaunchdReadings(launchdSaying(userLine, {}).overrides(), {}, {{users, {}, isRead}});
    };
    EXPECT_EQ(isOn(agent, readings({}, true)), OnOrOff(false)) << "its plist is gone";
    EXPECT_EQ(isOn(agent, readings({}, false)), std::nullopt);
    EXPECT_EQ(isOn(agent, readings(kListedOff, false)), OnOrOff(false));
    EXPECT_EQ(fileStanding(u"com.x.plist"_s, std::nullopt, readings({}, false)).isActive, std::nullopt);
    EXPECT_EQ(fileStanding(u"com.x.plist"_s, std::nullopt, readings({}, true)).isActive, OnOrOff(false));
}

TEST(BackgroundState, onlyTheThreeLaunchFoldersMakeAPlistThatIsGone) {
    const LaunchFolder users = launchFolders(u"/Users/alex"_s).first();
    const LaunchdReadings launchd(launchdSaying({}, {}).overrides(), {}, {{users, {}}});
    for (const QString& folder : {u"/Library/LaunchAgents"_s, u"/Users/alex/Library/LaunchAgents"_s}) {
        EXPECT_EQ(isOn(recordOf(u"legacy agent"_s, folder + u"/com.x.plist"_s), launchd), OnOrOff(false))
            << folder.toStdString();
    }
    for (const QString& folder : {u"/System/Library/LaunchDaemons"_s, u"/System/Library/LaunchAgents"_s,
                                  u"/opt/x/Library/LaunchAgents"_s, u"/Users/sam/Library/LaunchAgents"_s}) {
        EXPECT_EQ(isOn(recordOf(u"legacy agent"_s, folder + u"/com.x.plist"_s), launchd), OnOrOff(true))
            << folder.toStdString();
    }
}

TEST(BackgroundState, whatAnApplyLeavesAloneIsNotActive) {
    const QString path = u"/Applications/X.app/Contents/Library/LaunchDaemons/com.x.plist"_s;
    const BackgroundTaskItem daemon = recordOf(u"daemon (0x10)"_s, path);
    LaunchPlist bundled = daemonPlist();
    bundled.startsByItself = false;
    const LaunchdReadings launchd = launchdSaying({}, {});
    const auto standing = [&](const QList<BackgroundTaskItem>& items) {
        return labelStanding(kLabel, BackgroundTaskList(items, {{path, bundled}}), launchd, StartupMemory());
    };
    EXPECT_TRUE(standing({daemon}).isLeftAlone) << "it only runs when its application needs it";
    EXPECT_FALSE(standing({daemon, recordOf(u"agent (0x8)"_s)}).isLeftAlone);
    EXPECT_EQ(standing({daemon, recordOf(u"agent (0x8)"_s)}).isActive, OnOrOff(true)) << "the agent is";
    BackgroundTaskItem disallowed = recordOf(u"agent (0x8)"_s);
    disallowed.disposition = u"[enabled, disallowed] (0x9)"_s;
    EXPECT_EQ(standing({daemon, disallowed}).isActive, OnOrOff(false));
    bundled.startsByItself = true;
    EXPECT_FALSE(standing({daemon}).isLeftAlone);
    EXPECT_TRUE(standing({recordOf(u"managed daemon (0x10)"_s, path)}).isLeftAlone);

    BackgroundTaskItem legacy = recordOf(u"managed legacy daemon (0x10010)"_s, u"file://"_s + kPlistPath);
    const Standing file =
        fileStanding(u"com.x.plist"_s, BackgroundTaskList({legacy}), withPlist(launchd, daemonPlist()));
    EXPECT_TRUE(file.isLeftAlone);
    EXPECT_EQ(file.isActive, OnOrOff(false));
}

TEST(BackgroundState, aLabelThatNothingBearsIsOffOnlyWhereTheListWasRead) {
    const BackgroundTaskList others({BackgroundTaskItem()});
    EXPECT_EQ(labelState(others, launchdSaying({}, {})), OnOrOff(false));
    EXPECT_EQ(labelState(std::nullopt, launchdSaying({}, {})), std::nullopt);
    EXPECT_EQ(labelState(BackgroundTaskList({}), launchdSaying({}, {})), std::nullopt) << "an empty list wasn't read";
}

TEST(StartupMemory, isWrittenAndReadAsItIs) {
    const StartupMemory memory{
        {{{LaunchdDomain::System, u"com.x"_s}, u"/Library/LaunchDaemons/x.plist"_s, u"X"_s, u"com.bundle"_s, true},
         {{LaunchdDomain::User, u"com.y"_s}, {}}},
        {u"/Applications/Chat.app"_s},
        QList<KnownService>{{u"com.bundle"_s, {LaunchdDomain::System, u"com.x"_s}}}};
    EXPECT_EQ(decodedValue<StartupMemory>(parseJson(jsonText(encodeJson(memory)))), memory);
    for (const QString& identifier : {u"com.x"_s, u"com.bundle"_s, u"x.plist"_s, u"com.y"_s}) {
        EXPECT_TRUE(memory.waitsFor(identifier)) << identifier.toStdString();
    }
    EXPECT_FALSE(memory.waitsFor(QString()));
    EXPECT_FALSE(memory.waitsFor(u"com.z"_s));
    for (const QByteArray& text : {QByteArray("{}"), QByteArray("[]"), QByteArray(R"({"waiting": 1})")}) {
        EXPECT_THROW(decodedValue<StartupMemory>(parseJson(text)), DecodingError);
    }
}

TEST(StartupMemory, ofAnEarlierVersionIsRead) {
    const QByteArray text = R"({"waiting": [{"label": "com.x", "isSystem": true, "path": "/x.plist"}],
                                "registeredApplications": []})";
    const StartupMemory memory = decodedValue<StartupMemory>(parseJson(text));
    EXPECT_EQ(memory.waiting, (QList<WaitingService>{{{LaunchdDomain::System, u"com.x"_s}, u"/x.plist"_s}}));
    EXPECT_EQ(memory.waiting.first().shownName(), u"com.x"_s);
    EXPECT_FALSE(memory.services);
}

} // namespace quorvane
