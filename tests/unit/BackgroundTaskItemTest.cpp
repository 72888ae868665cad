#include "startup/background/BackgroundTaskItem.h"
#include "startup/launchd/LaunchItemNames.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

BackgroundTaskItem withDisposition(const QString& disposition) {
    BackgroundTaskItem item;
    item.name = u"Helper"_s;
    item.disposition = disposition;
    return item;
}

TEST(BackgroundTaskItem, dispositionTokensAreRunsOfLetters) {
    struct Row {
        QString disposition;
        QSet<QString> tokens;
    };
    const QList<Row> rows{
        {u""_s, {}},
        {u"[] (0) 12 -,"_s, {}},
        {u"[enabled, allowed, visible, notified] (0xb)"_s,
         {u"enabled"_s, u"allowed"_s, u"visible"_s, u"notified"_s, u"xb"_s}},
        {u"[disabled, allowed, not notified] (0x2)"_s, {u"disabled"_s, u"allowed"_s, u"not"_s, u"notified"_s, u"x"_s}},
        {u"[enabled, allowed, visible, notified] (11)"_s, {u"enabled"_s, u"allowed"_s, u"visible"_s, u"notified"_s}},
        {u"ENABLED"_s, {u"enabled"_s}},
        {u"enabled1allowed_hidden"_s, {u"enabled"_s, u"allowed"_s, u"hidden"_s}},
        {u"[Éteint]"_s, {u"éteint"_s}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.disposition.toStdString());
        EXPECT_EQ(dispositionTokens(withDisposition(row.disposition)), row.tokens);
    }
}

TEST(BackgroundTaskItem, anItemIsOnWhenEnabledAndNeitherDisabledNorDisallowed) {
    struct Row {
        QString disposition;
        bool isActive;
    };
    const QList<Row> rows{
        {u"[enabled, allowed, notified] (0xb)"_s, true},
        {u"[enabled, allowed, visible, notified] (11)"_s, true},
        {u"[Enabled, Allowed]"_s, true},
        {u"enabled"_s, true},
        {u"[enabled, disallowed, notified] (0x9)"_s, false},
        {u"[disabled, allowed, notified] (0xa)"_s, false},
        {u"[disabled, enabled]"_s, false},
        {u"[allowed, notified]"_s, false},
        {u"[reenabled]"_s, false},
        {u""_s, false},
        {u"(null)"_s, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.disposition.toStdString());
        EXPECT_EQ(isActive(withDisposition(row.disposition)), row.isActive);
    }
}

TEST(BackgroundTaskItem, anIdentifierLosesOnlyANumberAndADotAtItsBeginning) {
    EXPECT_EQ(identifierLabel(u"4.com.x"_s), u"com.x"_s);
    EXPECT_EQ(identifierLabel(u"2048.com.x.look"_s), u"com.x.look"_s);
    for (const QString& whole :
         {u"com.docker.vmnetd"_s, u"vmnetd"_s, u"4com.x"_s, u"x.4.com"_s, u".com"_s, u"16"_s, u""_s}) {
        EXPECT_EQ(identifierLabel(whole), whole);
    }
    EXPECT_EQ(identifierLabel(u"4."_s), QString());
}

TEST(BackgroundTaskItem, launchdKnowsAgentsAndDaemonsByTheirIdentifier) {
    BackgroundTaskItem item;
    item.identifier = u"16.com.x.daemon"_s;
    item.bundleIdentifier = u"com.x.app"_s;
    item.itemType = u"daemon (0x10)"_s;
    EXPECT_EQ(launchdLabel(item), u"com.x.daemon"_s);
    EXPECT_EQ(backgroundItemLabel(item), u"com.x.app"_s);
    item.itemType = u"login item (0x4)"_s;
    EXPECT_EQ(launchdLabel(item), u"com.x.app"_s);
    item.itemType = u"agent (0x8)"_s;
    item.identifier = QString();
    EXPECT_EQ(launchdLabel(item), u"com.x.app"_s);
}

TEST(BackgroundTaskItem, whatAnOrganizationManagesSaysSoInItsTypeOrItsFlags) {
    BackgroundTaskItem item;
    EXPECT_FALSE(isManagedRecord(item));
    item.itemType = u"Managed legacy agent"_s;
    EXPECT_TRUE(isManagedRecord(item));
    item.itemType = u"agent (0x8)"_s;
    item.flags = u"[ legacy, managed ] (0x9)"_s;
    EXPECT_TRUE(isManagedRecord(item));
}

TEST(BackgroundTaskItem, anApplicationThatIsOnHasRegisteredItself) {
    BackgroundTaskItem item;
    item.itemType = u"app (0x2)"_s;
    item.url = u"file:///Applications/Chat.app/"_s;
    item.disposition = u"[enabled, allowed, notified] (0xb)"_s;
    EXPECT_TRUE(isRegisteredApplication(item));
    item.disposition = u"[enabled, disallowed, notified] (0x9)"_s;
    EXPECT_FALSE(isRegisteredApplication(item));
    item.disposition = u"[disabled, allowed, notified] (0xa)"_s;
    EXPECT_FALSE(isRegisteredApplication(item));
}

TEST(BackgroundTaskItem, theTypeTellsLoginRecordsAndApplications) {
    struct Row {
        QString type;
        bool isLogin;
        bool isApplication;
    };
    const QList<Row> rows{
        {u"app (0x2)"_s, false, true},
        {u"App"_s, false, true},
        {u"login item (0x4)"_s, true, false},
        {u"Login Item"_s, true, false},
        {u"agent (0x8)"_s, true, false},
        {u"legacy agent (0x10008)"_s, true, false},
        {u"curated legacy daemon (0x90010)"_s, true, false},
        {u"DAEMON"_s, true, false},
        {u"developer (0x20)"_s, false, false},
        {u"background tasks (0x2000)"_s, false, false},
        {u"login"_s, false, false},
        {u""_s, false, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.type.toStdString());
        BackgroundTaskItem item;
        item.itemType = row.type;
        EXPECT_EQ(isLoginRecord(item), row.isLogin);
        EXPECT_EQ(isApplicationRecord(item), row.isApplication);
    }
}

TEST(BackgroundTaskItem, theSearchTextIsEverythingThatNamesItInLowerCase) {
    const BackgroundTaskItem whole{u"My Helper"_s, u"com.Example.B"_s, u"4.com.Example.I"_s, u"login item"_s,
                                   u"[enabled]"_s, u"2.com.Parent"_s,  u"/Path/To/X"_s,      u"file:///U%20RL"_s};
    EXPECT_EQ(backgroundItemSearchText(whole),
              u"my helper com.example.b 4.com.example.i 2.com.parent /path/to/x file:///u%20rl"_s);

    BackgroundTaskItem bare;
    bare.name = u"Ä"_s;
    bare.identifier = u"Unknown Developer"_s;
    bare.url = u"(null)"_s;
    EXPECT_EQ(backgroundItemSearchText(bare), u"ä unknown developer (null)"_s);
}

TEST(BackgroundTaskItem, theLabelIsTheBundleIdentifierOrWhatFollowsTheNumber) {
    struct Row {
        std::optional<QString> bundleIdentifier;
        QString identifier;
        std::optional<QString> label;
    };
    const QList<Row> rows{
        {u"com.example.b"_s, u"4.com.example.i"_s, u"com.example.b"_s},
        {std::nullopt, u"16.com.example.helper"_s, u"com.example.helper"_s},
        {u""_s, u"16.com.example.helper"_s, u"com.example.helper"_s},
        {u"(null)"_s, u"16.com.example.helper"_s, u"(null)"_s},
        {std::nullopt, u"com.apple.softwareupdate"_s, u"com.apple.softwareupdate"_s},
        {std::nullopt, u".x"_s, u".x"_s},
        {std::nullopt, u"16.."_s, u"."_s},
        {std::nullopt, u"16."_s, std::nullopt},
        {std::nullopt, u"Unknown Developer"_s, u"Unknown Developer"_s},
        {std::nullopt, u""_s, std::nullopt},
        {u""_s, u""_s, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.identifier.toStdString());
        BackgroundTaskItem item;
        item.bundleIdentifier = row.bundleIdentifier;
        item.identifier = row.identifier;
        EXPECT_EQ(backgroundItemLabel(item), row.label);
    }
}

TEST(BackgroundTaskItem, audioSoftwareIsProtectedByAnyOfItsTexts) {
    EXPECT_FALSE(isProtectedRecord(withDisposition(u"[enabled] ableton"_s)));
    const QList<BackgroundTaskItem> records{
        {u"Traktor Helper"_s, {}, {}, {}, {}, {}, {}, {}},
        {u"Helper"_s, u"com.Ableton.helper"_s, {}, {}, {}, {}, {}, {}},
        {u"Helper"_s, {}, u"4.com.serato.x"_s, {}, {}, {}, {}, {}},
        {u"Helper"_s, {}, {}, {}, {}, u"2.com.rekordbox.app"_s, {}, {}},
        {u"Helper"_s, {}, {}, {}, {}, {}, u"/Library/Audio/Plug-Ins/VST3/x"_s, {}},
        {u"Helper"_s, {}, {}, {}, {}, {}, {}, u"file:///Applications/Logic%20Pro.app/"_s},
    };
    for (const BackgroundTaskItem& record : records) {
        SCOPED_TRACE(backgroundItemSearchText(record).toStdString());
        EXPECT_TRUE(isProtectedRecord(record));
    }
}

TEST(BackgroundTaskItem, onlyALabelThatCanStandInALaunchdTargetIsUsable) {
    for (const QString& label : {u"com.example.helper"_s, u"Foo Helper"_s, u"a"_s, u"..."_s, u".a"_s,
                                 u"Bob's \"$(x)\";"_s, u"a-b"_s, u"Jörg"_s, u"(null)"_s}) {
        SCOPED_TRACE(label.toStdString());
        EXPECT_TRUE(isUsableLaunchdLabel(label));
    }
    for (const QString& label : {u""_s, u"."_s, u".."_s, u"-k"_s, u"--"_s, u"/"_s, u"a/b"_s, u"../x"_s, u"a\nb"_s,
                                 u"a\tb"_s, u"a\r"_s, QString(1, QChar::Null), u"a\x7f"_s, u"a\u0085"_s}) {
        SCOPED_TRACE(label.toStdString());
        EXPECT_FALSE(isUsableLaunchdLabel(label));
    }
}

} // namespace
} // namespace quorvane
