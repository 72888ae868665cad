#include "startup/login/LoginItemScripts.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

TEST(LoginItemScripts, theReadingScript) {
    EXPECT_EQ(readLoginItemsScript(),
              u"tell application \"System Events\"\n    set output to \"\"\n    try\n"
              "        with timeout of 120 seconds\n            set itemCount to count of login items\n"
              "        end timeout\n        with timeout of 20 seconds\n"
              "            repeat with itemNumber from 1 to itemCount\n"
              "                set itemName to \"Unreadable login item \" & itemNumber\n"
              "                set itemPath to \"\"\n                set itemHidden to \"unreadable\"\n"
              "                try\n"
              "                    set itemName to name of login item itemNumber\n"
              "                    set itemHidden to false\n"
              "                    set itemHidden to hidden of login item itemNumber\n"
              "                    set itemPath to path of login item itemNumber\n"
              "                on error errMsg number errNum\n"
              "                    if errNum is -1743 or errNum is -600 or errNum is -609 then "
              "error errMsg number errNum\n"
              "                    if errNum is -1712 and itemHidden is \"unreadable\" then "
              "error errMsg number errNum\n"
              "                end try\n"
              "                set output to output & itemName & \"|\" & itemPath & \"|\" & itemHidden & \"\\n\"\n"
              "            end repeat\n        end timeout\n    on error errMsg number errNum\n"
              "        return \"ERROR|\" & errNum & \"|\" & errMsg\n    end try\n    return output\nend tell"_s);
}

QString changing(const QString& steps) {
    return u"tell application \"System Events\"\n    set output to \"\"\n    try\n"
           "        with timeout of 120 seconds\n            count login items\n        end timeout\n"
           "    on error errMsg number errNum\n        return \"ERROR|\" & errNum & \"|\" & errMsg\n    end try\n"
           "    with timeout of 20 seconds\n"_s +
           steps + u"    end timeout\n    return output\nend tell"_s;
}

QString removalStep(const QString& conditions) {
    const QString items = u"(every login item whose "_s + conditions + u')';
    return u"        try\n            if (count of "_s + items +
           u") is 0 then\n                set output to output & \"missing\\n\"\n            else\n                delete "_s +
           items +
           u"\n                set output to output & \"ok\\n\"\n            end if\n        on error number errNum\n"
           "            set output to output & \"error:\" & errNum & \"\\n\"\n        end try\n"_s;
}

QString additionStep(const QString& quotedPath, const QString& hidden) {
    return u"        try\n            if (count of (every login item whose path is \""_s + quotedPath +
           u"\")) > 0 then\n                set output to output & \"exists\\n\"\n            else\n"
           "                make new login item at end of login items with properties {path:\""_s +
           quotedPath + u"\", hidden:"_s + hidden +
           u"}\n                set output to output & \"ok\\n\"\n            end if\n        on error number errNum\n"
           "            set output to output & \"error:\" & errNum & \"\\n\"\n        end try\n"_s;
}

/// The only one.
QString only(const QList<LoginItemScript>& scripts) {
    EXPECT_EQ(scripts.size(), 1);
    return scripts.value(0).source;
}

TEST(LoginItemScripts, oneScriptRemovesThemAll) {
    const QList<LoginItemScript> scripts = removeLoginItemsScripts(
        {{u"Foo Helper"_s, {}}, {{}, u"/Applications/Foo.app"_s}, {u"Foo"_s, u"/Applications/Foo 2.app"_s}});
    EXPECT_EQ(only(scripts),
              changing(removalStep(u"name is \"Foo Helper\""_s) + removalStep(u"path is \"/Applications/Foo.app\""_s) +
                       removalStep(u"path is \"/Applications/Foo 2.app\" and name is \"Foo\""_s)));
    EXPECT_EQ(scripts.value(0).count, 3);
}

TEST(LoginItemScripts, oneScriptAddsThemAll) {
    const QList<LoginItemScript> scripts =
        addLoginItemsScripts({{u"/Applications/Foo.app"_s, true}, {u"/Applications/Bar.app"_s, false}});
    EXPECT_EQ(only(scripts), changing(additionStep(u"/Applications/Foo.app"_s, u"true"_s) +
                                      additionStep(u"/Applications/Bar.app"_s, u"false"_s)));
    EXPECT_EQ(scripts.value(0).count, 2);
}

TEST(LoginItemScripts, forNothingThereIsNone) {
    EXPECT_TRUE(removeLoginItemsScripts({}).isEmpty());
    EXPECT_TRUE(addLoginItemsScripts({}).isEmpty());
}

TEST(LoginItemScripts, manyAreDividedSoThatEachFitsACommandLine) {
    constexpr int kItems = 2000;
    QList<LoginItemSelector> selectors;
    for (int i = 0; i < kItems; ++i) {
        selectors.append({u"Über %1"_s.arg(i), {}});
    }
    const QList<LoginItemScript> scripts = removeLoginItemsScripts(selectors);
    EXPECT_GT(scripts.size(), 1);
    int place = 0;
    for (const LoginItemScript& script : scripts) {
        EXPECT_LT(script.source.toUtf8().size(), 61'000);
        QString steps;
        for (qsizetype i = 0; i < script.count; ++i, ++place) {
            steps += removalStep(u"name is \"Über %1\""_s.arg(place));
        }
        EXPECT_EQ(script.source, changing(steps));
    }
    EXPECT_EQ(place, kItems);
}

TEST(LoginItemScripts, textsAreQuotedAndNothingElseOfThemIsTouched) {
    struct Row {
        QString text;
        QString quoted;
    };
    const QList<Row> rows{
        {u"a\"b"_s, u"a\\\"b"_s},
        {u"a\\b"_s, u"a\\\\b"_s},
        {u"a\\\"b\\"_s, u"a\\\\\\\"b\\\\"_s},
        {u"\" & (do shell script \"x\") & \""_s, u"\\\" & (do shell script \\\"x\\\") & \\\""_s},
        {u"%1 %2 Bob's $(x)\n|é"_s, u"%1 %2 Bob's $(x)\n|é"_s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text.toStdString());
        EXPECT_EQ(only(removeLoginItemsScripts({{row.text, {}}})),
                  changing(removalStep(u"name is \""_s + row.quoted + u'"')));
        EXPECT_EQ(only(removeLoginItemsScripts({{{}, row.text}})),
                  changing(removalStep(u"path is \""_s + row.quoted + u'"')));
        EXPECT_EQ(only(addLoginItemsScripts({{row.text, false}})), changing(additionStep(row.quoted, u"false"_s)));
    }
}

TEST(LoginItemScripts, noTextIsNoConditionUnlessThereIsNoneAtAll) {
    EXPECT_EQ(only(removeLoginItemsScripts({{}})), changing(removalStep(u"path is \"\""_s)));
    EXPECT_EQ(only(addLoginItemsScripts({{}})), changing(additionStep({}, u"false"_s)));
}

LoginItemList listOf(const QList<LoginItem>& items) {
    return {items, true};
}

TEST(LoginItemScripts, eachLineOfTheOutputIsALoginItem) {
    EXPECT_EQ(
        parsedLoginItems(u"Foo|/Applications/Foo.app|true\nBar Baz|/Applications/Bar.app|false\n\n"_s),
        listOf({{u"Foo"_s, u"/Applications/Foo.app"_s, true}, {u"Bar Baz"_s, u"/Applications/Bar.app"_s, false}}));
}

TEST(LoginItemScripts, aListWithOneThatToldNoNameDoesNotTellOfAll) {
    const LoginItemList list = parsedLoginItems(u"Unreadable login item 1||unreadable\nFoo|/Foo.app|false\n"_s);
    EXPECT_EQ(list, listOf({{u"Unreadable login item 1"_s, {}, false}, {u"Foo"_s, u"/Foo.app"_s, false}}));
    EXPECT_FALSE(list.tellsAll());
    EXPECT_TRUE(parsedLoginItems(u"Unreadable login item 1||false\n"_s).tellsAll()) << "somebody's application";
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
    const LoginItemList refused =
        parsedLoginItems(u"ERROR|-1743|Not authorized to send Apple events to System Events.\n"_s);
    EXPECT_FALSE(refused.wasRead);
    EXPECT_EQ(refused.failure, (ScriptFailure{-1743, u"Not authorized to send Apple events to System Events."_s}));
    EXPECT_EQ(parsedLoginItems(u"ERROR|-600|one|1\ntwo|/x|true\n"_s).failure,
              (ScriptFailure{-600, u"one|1\ntwo|/x|true"_s}));
    EXPECT_EQ(parsedLoginItems(u"ERROR|0|"_s).failure, (ScriptFailure{0, u"error 0"_s}));
    EXPECT_TRUE(parsedLoginItems(u"\n"_s).wasRead) << "no item";
    EXPECT_FALSE(parsedLoginItems(u"\n"_s).failure);
}

TEST(LoginItemScripts, anItemMayBeCalledError) {
    EXPECT_EQ(parsedLoginItems(u"ERROR|/a|true\nFoo|/x|true\n"_s),
              listOf({{u"ERROR"_s, u"/a"_s, true}, {u"Foo"_s, u"/x"_s, true}}));
    EXPECT_EQ(parsedLoginItems(u"ERROR||false\n"_s), listOf({{u"ERROR"_s, {}, false}}));
}

TEST(LoginItemScripts, noReplyIsOneThatIsNotUnderstood) {
    for (const QString& output : {QString(), u"one\ntwo|parts\n"_s, u"ERROR|late"_s}) {
        const LoginItemList list = parsedLoginItems(output);
        EXPECT_FALSE(list.wasRead) << output.toStdString();
        EXPECT_EQ(list.failure, (ScriptFailure{0, u"The answer of System Events isn’t understood."_s}));
    }
}

TEST(LoginItemScripts, whatIsSaidOfAListThatWasNotRead) {
    EXPECT_EQ(unreadReason(parsedLoginItems(u"\n"_s)), QString());
    EXPECT_EQ(unreadReason(parsedLoginItems(u"ERROR|-1743|Nein.\n"_s)), u"not permitted"_s);
    EXPECT_EQ(unreadReason(parsedLoginItems(u"ERROR|-1712|Zu spät.\n"_s)), u"not answered"_s);
    EXPECT_EQ(unreadReason(parsedLoginItems(u"ERROR|-609|Connection\nis invalid.\n"_s)), u"Connection is invalid."_s);
    EXPECT_EQ(unreadReason(parsedLoginItems(u"ERROR|-609|\n"_s)), u"error -609"_s);
    EXPECT_EQ(unreadReason(LoginItemList()), u"not answered"_s) << "nobody said anything";
}

TEST(LoginItemScripts, eachItemHasItsAnswer) {
    using Answer = LoginItemAnswer;
    const LoginItemAnswers read = parsedLoginItemAnswers(u"ok\nmissing\nexists\nerror:-1728\nok\n\n"_s, 5);
    EXPECT_EQ(read.answers,
              (QList<Answer>{Answer::Done, Answer::Unchanged, Answer::Unchanged, Answer::Failed, Answer::Done}));
    EXPECT_EQ(read.heldUpBy, std::nullopt);
}

TEST(LoginItemScripts, ofAnItemWithoutAnAnswerNobodyKnows) {
    using Answer = LoginItemAnswer;
    EXPECT_EQ(parsedLoginItemAnswers(u"ok\n"_s, 3).answers,
              (QList<Answer>{Answer::Done, Answer::Failed, Answer::Failed}));
    EXPECT_EQ(parsedLoginItemAnswers({}, 1).answers, QList<Answer>(1, Answer::Failed));
    EXPECT_EQ(parsedLoginItemAnswers(u"ok\nok\nok\n"_s, 1).answers, QList<Answer>(1, Answer::Done)) << "nobody else's";
    for (const QString& line : {u"OK"_s, u" ok"_s, u"okay"_s, u"error:ok"_s, u"done"_s}) {
        EXPECT_EQ(parsedLoginItemAnswers(line + u"\nok\n"_s, 2).answers, (QList<Answer>{Answer::Failed, Answer::Done}))
            << line.toStdString();
    }
}

TEST(LoginItemScripts, aRefusalIsKnownByItsNumberWhereverItStands) {
    using Answer = LoginItemAnswer;
    EXPECT_TRUE(parsedLoginItemAnswers(u"ok\nerror:-1743\n"_s, 2).heldUpBy->isNotPermitted());
    const LoginItemAnswers all = parsedLoginItemAnswers(u"ERROR|-1743|ok\nok\n"_s, 2);
    EXPECT_EQ(all.heldUpBy, (ScriptFailure{-1743, u"ok\nok"_s}));
    EXPECT_EQ(all.answers, (QList<Answer>{Answer::Failed, Answer::Failed}));
    EXPECT_TRUE(parsedLoginItemAnswers(u"ERROR|-1712|AppleEvent timed out.\n"_s, 1).heldUpBy) << "two minutes";
    EXPECT_FALSE(parsedLoginItemAnswers(u"error:-1712\n"_s, 1).heldUpBy) << "an item that takes long";
    EXPECT_FALSE(parsedLoginItemAnswers(u"ERROR|-600|Application isn’t running.\n"_s, 1).heldUpBy);
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

} // namespace
} // namespace quorvane
