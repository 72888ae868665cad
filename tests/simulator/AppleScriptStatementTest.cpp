#include "AppleScriptFakeHost.h"

using namespace Qt::StringLiterals;

namespace macsim {

namespace {

struct StatementCase {
    QString source;
    const char* value; // in source form
};

struct StatementErrorCase {
    QString source;
    ScriptError error;
};

void expectResults(std::initializer_list<StatementCase> cases) {
    for (const StatementCase& each : cases) {
        EXPECT_EQ(valueOf(each.source), each.value) << each.source.toStdString();
    }
}

} // namespace

TEST(AppleScriptStatement, theValueIsThatOfTheLastStatementThatRan) {
    expectResults({
        {u"1\n2"_s, "2"},
        {u"set x to 5"_s, "5"},
        {u"get 5"_s, "5"},
        {u"return 1\n2"_s, "1"},
        {u"7\nset x to result + 1"_s, "8"},
        {u"if true then\n3\nend if"_s, "3"},
    });
}

TEST(AppleScriptStatement, aScriptMayHaveNoValue) {
    FakeScriptHost host;
    for (const QString& source : {u""_s, u"\n-- nothing\n"_s, u"5\nreturn"_s, u"if false then 5"_s}) {
        EXPECT_EQ(resultOf(source, host), ScriptResult()) << source.toStdString();
    }
}

TEST(AppleScriptStatement, everyLineEndSeparatesStatements) {
    for (const QString& lineEnd : {u"\n"_s, u"\r"_s, u"\r\n"_s}) {
        EXPECT_EQ(valueOf(u"set x to 1"_s + lineEnd + u"if x is 1 then"_s + lineEnd + u"set x to 2"_s + lineEnd +
                          u"end if"_s + lineEnd + u"x"_s),
                  "2");
    }
}

TEST(AppleScriptStatement, namesIgnoreCaseAndBars) {
    expectResults({
        {u"SET MyName TO 1\nmyname"_s, "1"},
        {u"set |end| to 4\n|End|"_s, "4"},
        {u"copy 3 to x\nx"_s, "3"},
    });
}

TEST(AppleScriptStatement, anUndefinedVariableIsAnError) {
    EXPECT_EQ(errorOf(u"1 + Foo"_s), (ScriptError{-2753, u"The variable Foo is not defined."_s, 4, 7, false}));
    EXPECT_EQ(errorOf(u"result"_s).number, -2753);
}

TEST(AppleScriptStatement, ifTakesTheFirstBranchThatIsTrue) {
    const QString script = u"if x is 1 then\nreturn \"one\"\nelse if x is 2 then\nreturn \"two\"\nelse\n"
                           "return \"many\"\nend if"_s;
    expectResults({
        {u"set x to 1\n"_s + script, "\"one\""},
        {u"set x to 2\n"_s + script, "\"two\""},
        {u"set x to 3\n"_s + script, "\"many\""},
        {u"if 1 < 2 then return 5\n6"_s, "5"},
        {u"if 1 > 2 then return 5\n6"_s, "6"},
    });
    EXPECT_EQ(errorOf(u"if 5 then return 1"_s),
              (ScriptError{-1700, u"Can’t make 5 into type boolean."_s, 3, 4, false}));
}

TEST(AppleScriptStatement, everyKindOfLoop) {
    expectResults({
        {u"set n to 0\nrepeat\nset n to n + 1\nif n = 4 then exit repeat\nend repeat\nn"_s, "4"},
        {u"set n to 0\nrepeat 3 times\nset n to n + 1\nend repeat\nn"_s, "3"},
        {u"set n to 0\nrepeat -1 times\nset n to n + 1\nend repeat\nn"_s, "0"},
        {u"set n to 0\nrepeat while n < 5\nset n to n + 2\nend repeat\nn"_s, "6"},
        {u"set n to 0\nrepeat until n ≥ 5\nset n to n + 2\nend repeat\nn"_s, "6"},
        {u"set l to {}\nrepeat with i from 1 to 3\nset l to l & i\nend repeat\nl"_s, "{1, 2, 3}"},
        {u"set l to {}\nrepeat with i from 5 to 1 by -2\nset l to l & i\nend repeat\nl"_s, "{5, 3, 1}"},
        {u"set s to \"\"\nrepeat with x in {\"a\", 1}\nset s to s & x\nend\ns"_s, "\"a1\""},
        {u"set s to \"\"\nrepeat with x in \"abc\"\nset s to x & s\nend\ns"_s, "\"cba\""},
        {u"repeat with i from 1 to 3\nrepeat\nexit repeat\nend repeat\nend repeat\ni"_s, "3"},
        {u"repeat with i from 1 to 9\nif i = 4 then return i\nend repeat"_s, "4"},
    });
}

TEST(AppleScriptStatement, onlyListsAndTextsAreLoopedOver) {
    EXPECT_EQ(errorOf(u"repeat with x in 5\nend repeat"_s),
              (ScriptError{-1728, u"Can’t get every item of 5."_s, 17, 18, false}));
}

TEST(AppleScriptStatement, theVariableOfALoopOverAListIsAReference) {
    const QString loop = u"repeat with x in {\"a\", \"b\"}\nif %1 is \"B\" then return \"found\"\nend repeat\n0"_s;
    EXPECT_EQ(valueOf(loop.arg(u"x"_s)), "0");
    EXPECT_EQ(valueOf(loop.arg(u"contents of x"_s)), "\"found\"");
    EXPECT_EQ(valueOf(loop.arg(u"(x as text)"_s)), "\"found\"");
    EXPECT_EQ(valueOf(u"repeat with x in {{name:\"n\"}}\nreturn name of x\nend repeat"_s), "\"n\"");
    EXPECT_EQ(valueOf(u"repeat with x in {7}\nreturn x\nend repeat"_s), "item 1 of {7}");
}

TEST(AppleScriptStatement, tryCatchesTextAndNumber) {
    expectResults({
        {u"try\nerror \"no\" number 5\non error msg number n\nreturn {msg, n}\nend try"_s, "{\"no\", 5}"},
        {u"try\n1 / 0\non error msg\nreturn msg\nend try"_s, "\"Can’t divide 1.0 by zero.\""},
        {u"try\nfoo\non error number n\nreturn n\nend try"_s, "-2753"},
        {u"try\nerror \"x\"\nend try\n3"_s, "3"},
        {u"try\n4\non error\n5\nend try"_s, "4"},
        {u"repeat\ntry\nexit repeat\nend try\nend repeat\n6"_s, "6"},
        {u"try\nerror number -128\non error m\nm\nend try"_s, "\"User canceled.\""},
    });
}

TEST(AppleScriptStatement, errorsHaveANumberAndAText) {
    const StatementErrorCase cases[] = {
        {u"error \"no\" number 5"_s, {5, u"no"_s, 0, 19, false}},
        {u"error \"no\""_s, {-2700, u"no"_s, 0, 10, false}},
        {u"error number -128"_s, {-128, u"User canceled."_s, 0, 17, false}},
        {u"error number 9"_s, {9, u"An error of type 9 has occurred."_s, 0, 14, false}},
        {u"error"_s, {-2700, u"An error has occurred."_s, 0, 5, false}},
    };
    for (const StatementErrorCase& each : cases) {
        EXPECT_EQ(errorOf(each.source), each.error) << each.source.toStdString();
    }
    EXPECT_EQ(errorOf(u"try\nfoo\non error m number n\nerror m number n\nend try"_s).start, 28);
}

TEST(AppleScriptStatement, tellRunsWhatAddressesNoObject) {
    expectResults({
        {u"tell application \"System Events\" to return 0"_s, "0"},
        {u"tell application \"system events\"\nset x to 1\nx + 1\nend tell"_s, "2"},
        {u"tell application \"System Events\" to it"_s, "application \"System Events\""},
        {u"tell application \"System Events\"\nend tell\nit"_s, "«script»"},
        {u"tell application \"System Events\" to tell me to it"_s, "«script»"},
        {u"tell application \"System Events\" to me"_s, "«script»"},
        {u"try\ntell application \"System Events\" to error \"x\"\nend try\nit"_s, "«script»"},
    });
}

TEST(AppleScriptStatement, anUnknownApplicationIsAnErrorOnlyWhenItIsTold) {
    EXPECT_EQ(valueOf(u"if false then tell application \"Nope\" to return 0\n1"_s), "1");
    EXPECT_EQ(errorOf(u"1\ntell application \"Nope\"\nreturn 0\nend tell"_s),
              (ScriptError{-1728, u"Can’t get application \"Nope\"."_s, 2, 25, false}));
}

TEST(AppleScriptStatement, valuesNestOnlySoDeep) {
    EXPECT_EQ(valueOf(u"set x to {}\nrepeat 100 times\nset x to {x}\nend repeat\ncount x"_s), "1");
    for (const QString& wrap : {u"{x}"_s, u"{a:x}"_s, u"{1} & {x}"_s}) {
        const ScriptError error = errorOf(u"set x to {}\nrepeat\nset x to "_s + wrap + u"\nend repeat"_s);
        EXPECT_EQ(error.number, -2706) << wrap.toStdString();
        EXPECT_EQ(error.message, u"Stack overflow."_s);
    }
    const QString references = u"set l to {}\nrepeat\nrepeat with x in {l}\nset l to {x}\nend repeat\nend repeat"_s;
    EXPECT_EQ(errorOf(references).number, -2706);
}

TEST(AppleScriptStatement, aTimeoutHoldsForTheEventsInItsBlock) {
    FakeScriptHost host;
    resultOf(u"with timeout of 20 seconds\nwith timeout of 1 second\n5\nend timeout\nend"_s, host);
    using std::chrono::seconds;
    EXPECT_EQ(host.limits, (std::vector{seconds(20), seconds(1), seconds(20), seconds(120)}));
    host.limits.clear();
    resultOf(u"set limit to 7\ntry\nwith timeout of limit + 1 seconds\nerror \"x\"\nend timeout\nend try"_s, host);
    EXPECT_EQ(host.limits, (std::vector{seconds(8), seconds(120)})) << "however it ends";
    expectResults({
        {u"with timeout of 5 seconds\nset x to 3\nend timeout\nx"_s, "3"},
        {u"with timeout of 5 seconds\nreturn 4\nend timeout\n5"_s, "4"},
        {u"repeat\nwith timeout of 5 seconds\nexit repeat\nend timeout\nend repeat\n6"_s, "6"},
    });
    EXPECT_EQ(errorOf(u"with timeout 5 seconds\n1\nend timeout"_s).number, -2741);
    EXPECT_EQ(errorOf(u"with timeout of 5\n1\nend timeout"_s).number, -2741);
    EXPECT_EQ(errorOf(u"with timeout of 5 seconds\n1\nend try"_s).number, -2741);
}

} // namespace macsim
