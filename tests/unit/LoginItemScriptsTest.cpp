#include "startup/login/LoginItemScripts.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

TEST(LoginItemScripts, theReadingScript) {
    EXPECT_EQ(readLoginItemsScript(),
              u"tell application \"System Events\"\n    set output to \"\"\n    try\n"
              "        repeat with loginItem in login items\n            set itemName to name of loginItem\n"
              "            set itemPath to path of loginItem\n            set itemHidden to hidden of loginItem\n"
              "            set output to output & itemName & \"|\" & itemPath & \"|\" & itemHidden & \"\\n\"\n"
              "        end repeat\n    on error errMsg\n        return \"ERROR|\" & errMsg\n    end try\n"
              "    return output\nend tell"_s);
}

TEST(LoginItemScripts, theProbe) {
    EXPECT_EQ(systemEventsProbeScript(), u"tell application \"System Events\" to return 0"_s);
}

QString removal(const QString& comparison) {
    return u"tell application \"System Events\"\n    try\n        set matches to every login item whose "_s +
           comparison +
           u"\n        if (count of matches) is 0 then\n            return \"missing\"\n        end if\n"
           "        repeat with loginItem in matches\n            delete loginItem\n        end repeat\n"
           "        return \"ok\"\n    on error errMsg\n        return \"error:\" & errMsg\n    end try\nend tell"_s;
}

QString addition(const QString& quotedPath, const QString& hidden) {
    return u"tell application \"System Events\"\n    try\n        set matches to every login item whose path is \""_s +
           quotedPath +
           u"\"\n        if (count of matches) > 0 then\n            return \"exists\"\n        end if\n"
           "        make new login item at end of login items with properties {path:\""_s +
           quotedPath + u"\", hidden:"_s + hidden +
           u"}\n        return \"ok\"\n    on error errMsg\n        return \"error:\" & errMsg\n    end try\nend tell"_s;
}

TEST(LoginItemScripts, theRemovalScripts) {
    EXPECT_EQ(removeLoginItemByNameScript(u"Foo Helper"_s), removal(u"name is \"Foo Helper\""_s));
    EXPECT_EQ(removeLoginItemAtPathScript(u"/Applications/Foo.app"_s), removal(u"path is \"/Applications/Foo.app\""_s));
}

TEST(LoginItemScripts, theAddingScript) {
    EXPECT_EQ(addLoginItemScript(u"/Applications/Foo.app"_s, true), addition(u"/Applications/Foo.app"_s, u"true"_s));
    EXPECT_EQ(addLoginItemScript(u"/Applications/Foo.app"_s, false), addition(u"/Applications/Foo.app"_s, u"false"_s));
}

TEST(LoginItemScripts, textsAreQuotedAndNothingElseOfThemIsTouched) {
    struct Row {
        QString text;
        QString quoted;
    };
    const QList<Row> rows{
        {u""_s, u""_s},
        {u"a\"b"_s, u"a\\\"b"_s},
        {u"a\\b"_s, u"a\\\\b"_s},
        {u"a\\\"b\\"_s, u"a\\\\\\\"b\\\\"_s},
        {u"\" & (do shell script \"x\") & \""_s, u"\\\" & (do shell script \\\"x\\\") & \\\""_s},
        {u"%1 %2 Bob's $(x)\n|é"_s, u"%1 %2 Bob's $(x)\n|é"_s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text.toStdString());
        EXPECT_EQ(removeLoginItemByNameScript(row.text), removal(u"name is \""_s + row.quoted + u'"'));
        EXPECT_EQ(removeLoginItemAtPathScript(row.text), removal(u"path is \""_s + row.quoted + u'"'));
        EXPECT_EQ(addLoginItemScript(row.text, false), addition(row.quoted, u"false"_s));
    }
}

LoginItemList listOf(const QList<LoginItem>& items) {
    return {items, true};
}

TEST(LoginItemScripts, eachLineOfTheOutputIsALoginItem) {
    EXPECT_EQ(
        parsedLoginItems(u"Foo|/Applications/Foo.app|true\nBar Baz|/Applications/Bar.app|false\n\n"_s),
        listOf({{u"Foo"_s, u"/Applications/Foo.app"_s, true}, {u"Bar Baz"_s, u"/Applications/Bar.app"_s, false}}));
}

TEST(LoginItemScripts, linesAreReadAsTheyStand) {
    struct Row {
        QString output;
        QList<LoginItem> items;
    };
    const QList<Row> rows{
        {u"\n\n"_s, {}},
        {u"Foo|missing value|true"_s, {{u"Foo"_s, {}, true}}}, // the file is gone
        {u"Foo|/x|TRUE"_s, {{u"Foo"_s, u"/x"_s, true}}},
        {u"Foo|/x|true "_s, {{u"Foo"_s, u"/x"_s, false}}},
        {u"Foo|/x|true|more"_s, {{u"Foo"_s, u"/x"_s, false}}},
        {u" Foo | /x |true"_s, {{u" Foo "_s, u" /x "_s, true}}},
        {u"A|B|/x|true"_s, {{u"A"_s, u"B"_s, false}}}, // a bar in a name shifts the fields
        {u"||"_s, {{u""_s, u""_s, false}}},
        {u"|/x|true"_s, {{u""_s, u"/x"_s, true}}},
        {u"Foo|/x|"_s, {{u"Foo"_s, u"/x"_s, false}}},
        {u"bad\nFoo|/x|true\nbad|"_s, {{u"Foo"_s, u"/x"_s, true}}},
        {u"Foo\"'\\$(x)|/x|true"_s, {{u"Foo\"'\\$(x)"_s, u"/x"_s, true}}},
        {u"Foo|/x|true\nERROR|late"_s, {{u"Foo"_s, u"/x"_s, true}}},
        {u" ERROR|x|true"_s, {{u" ERROR"_s, u"x"_s, true}}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.output.toStdString());
        EXPECT_EQ(parsedLoginItems(row.output), listOf(row.items));
    }
}

TEST(LoginItemScripts, anErrorIsNoEmptyList) {
    EXPECT_EQ(parsedLoginItems(u"ERROR|Not authorized to send Apple events to System Events.\n"_s), LoginItemList());
    EXPECT_EQ(parsedLoginItems(u"ERROR|a|true"_s), LoginItemList());
    EXPECT_FALSE(parsedLoginItems(u"ERROR|"_s).wasRead);
    EXPECT_TRUE(parsedLoginItems(u"\n"_s).wasRead) << "no item";
    EXPECT_FALSE(parsedLoginItems({}).wasRead) << "no reply";
}

TEST(LoginItemScripts, aNameThatNoFieldCanHoldIsLookedForInTheOutput) {
    const LoginItemList list =
        parsedLoginItems(u"A|/a|false\nSet | List|/Applications/Ableton Live.app|true\nB|/b|true\n"_s);
    EXPECT_EQ(shownLine(list, u"Set | List"_s), u"Set | List|/Applications/Ableton Live.app|true"_s);
    EXPECT_EQ(shownLine(list, u"A"_s), QString()) << "the list itself shows it";
    EXPECT_EQ(shownLine(list, u"t | List"_s), QString());
    EXPECT_EQ(shownLine(list, u"Gone|x"_s), QString());
    EXPECT_EQ(shownLine(list, u"A|/a|false\nSet "_s), u"A|/a|false\nSet | List|/Applications/Ableton Live.app|true"_s);
}

TEST(LoginItemScripts, linesOfWhichNoneIsAnItemTellNothing) {
    EXPECT_EQ(parsedLoginItems(u"one\ntwo|parts\n"_s), LoginItemList());
}

} // namespace
} // namespace quorvane
