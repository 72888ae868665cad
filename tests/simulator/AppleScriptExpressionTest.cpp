#include "AppleScriptFakeHost.h"

using namespace Qt::StringLiterals;

namespace macsim {

namespace {

struct ExpressionCase {
    QString source;
    const char* value; // in source form
};

struct ExpressionErrorCase {
    QString source;
    int number;
    QString message;
};

void expectValues(std::initializer_list<ExpressionCase> cases) {
    for (const ExpressionCase& each : cases) {
        EXPECT_EQ(valueOf(each.source), each.value) << each.source.toStdString();
    }
}

void expectErrors(std::initializer_list<ExpressionErrorCase> cases) {
    for (const ExpressionErrorCase& each : cases) {
        const ScriptError error = errorOf(each.source);
        EXPECT_EQ(error.number, each.number) << each.source.toStdString();
        EXPECT_EQ(error.message, each.message) << error.message.toStdString();
        EXPECT_FALSE(error.isSyntaxError);
    }
}

} // namespace

TEST(AppleScriptExpression, literalsAreTheirValues) {
    expectValues({
        {u"\"a\\\\\\\"b\""_s, "\"a\\\\\\\"b\""},
        {u"TRUE"_s, "true"},
        {u"missing value"_s, "missing value"},
        {u"{1, \"a\", {}}"_s, "{1, \"a\", {}}"},
        {u"{name:\"x\", |my key|:{1}}"_s, "{name:\"x\", my key:{1}}"},
    });
}

TEST(AppleScriptExpression, numbersAreWrittenAsAppleScriptDoes) {
    expectValues({
        {u"536870911"_s, "536870911"},
        {u"536870912"_s, "5.36870912E+8"},
        {u"1.50"_s, "1.5"},
        {u"2.0"_s, "2.0"},
        {u"0.0"_s, "0.0"},
        {u"9999.5"_s, "9999.5"},
        {u"10000.0"_s, "1.0E+4"},
        {u"1.0E-5"_s, "1.0E-5"},
        {u"1 / 3"_s, "0.333333333333"},
        {u"-0.25"_s, "-0.25"},
    });
}

TEST(AppleScriptExpression, arithmeticKeepsIntegersWhereItCan) {
    expectValues({
        {u"2 + 3 * 4"_s, "14"},
        {u"(2 + 3) * 4"_s, "20"},
        {u"10 - 3 - 2"_s, "5"},
        {u"4 / 2"_s, "2.0"},
        {u"9 ÷ 2"_s, "4.5"},
        {u"7 div 2"_s, "3"},
        {u"-7 div 2"_s, "-3"},
        {u"-7 mod 3"_s, "-1"},
        {u"7.5 mod 2"_s, "1.5"},
        {u"\"2\" + 3"_s, "5"},
        {u"- - 5"_s, "5"},
        {u"536870911 + 1"_s, "5.36870912E+8"},
    });
    expectErrors({
        {u"1 / 0"_s, -2701, u"Can’t divide 1.0 by zero."_s},
        {u"1 div 0"_s, -2701, u"Can’t divide 1 by zero."_s},
        {u"5 mod 0"_s, -2701, u"Can’t divide 5 by zero."_s},
        {u"1.0E+300 * 1.0E+300"_s, -2702, u"The result of a numeric operation was too large."_s},
        {u"\"a\" + 1"_s, -1700, u"Can’t make \"a\" into type number."_s},
    });
}

TEST(AppleScriptExpression, ampersandJoinsTextsListsAndRecords) {
    expectValues({
        {u"\"a\" & \"b\" & 1 & true & missing value"_s, "\"ab1truemissing value\""},
        {u"\"a\" & {1, \"b\"}"_s, "\"a1b\""},
        {u"1 & \"a\""_s, "{1, \"a\"}"},
        {u"{1} & {2, 3} & \"x\""_s, "{1, 2, 3, \"x\"}"},
        {u"{a:1} & {A:2, b:3}"_s, "{a:1, b:3}"},
        {u"\"a\" & 1 + 1"_s, "\"a2\""},
        {u"\"x\" & \"y\" as list"_s, "{\"xy\"}"},
    });
}

TEST(AppleScriptExpression, textComparesWithoutCase) {
    expectValues({
        {u"\"Docker\" = \"dOCKER\""_s, "true"},
        {u"\"é\" is \"É\""_s, "true"},
        {u"\"a\" < \"B\""_s, "true"},
        {u"\"Hello World\" contains \"WORLD\""_s, "true"},
        {u"\"Hello\" starts with \"he\""_s, "true"},
        {u"\"Hello\" begins with \"lo\""_s, "false"},
        {u"\"Hello\" ends with \"LO\""_s, "true"},
        {u"{\"A\", {b:\"C\"}} = {\"a\", {B:\"c\"}}"_s, "true"},
    });
}

TEST(AppleScriptExpression, everySpellingOfAComparisonIsKnown) {
    expectValues({
        {u"1 = 1.0"_s, "true"},
        {u"1 equals 2"_s, "false"},
        {u"1 is equal to 1"_s, "true"},
        {u"1 ≠ 1"_s, "false"},
        {u"1 /= 2"_s, "true"},
        {u"1 is not 2"_s, "true"},
        {u"1 is not equal to 1"_s, "false"},
        {u"1 does not equal 1"_s, "false"},
        {u"1 < 2"_s, "true"},
        {u"2 is less than 2"_s, "false"},
        {u"2 ≤ 2"_s, "true"},
        {u"2 <= 1"_s, "false"},
        {u"2 is less than or equal to 2"_s, "true"},
        {u"3 > 2"_s, "true"},
        {u"2 is greater than 3"_s, "false"},
        {u"2 ≥ 3"_s, "false"},
        {u"3 >= 3"_s, "true"},
        {u"3 is greater than or equal to 4"_s, "false"},
        {u"3 is not greater than 3"_s, "true"},
        {u"3 is not less than 4"_s, "false"},
        {u"\"b\" comes after \"a\""_s, "true"},
        {u"{1, 2, 3} contains 2"_s, "true"},
        {u"{1, 2, 3} contains {2, 3}"_s, "true"},
        {u"{1, 2, 3} contains {1, 3}"_s, "false"},
        {u"{1} does not contain 1"_s, "false"},
        {u"2 is in {1, 2}"_s, "true"},
        {u"2 is not in {1, 2}"_s, "false"},
        {u"{a:1, b:2} contains {b:2}"_s, "true"},
        {u"{1, 2} starts with {1}"_s, "true"},
        {u"{1, 2} ends with 1"_s, "false"},
    });
}

TEST(AppleScriptExpression, valuesOfDifferentTypesAreNotEqual) {
    expectValues({
        {u"\"1\" = 1"_s, "false"},
        {u"missing value is \"\""_s, "false"},
        {u"missing value is missing value"_s, "true"},
        {u"true = 1"_s, "false"},
        {u"{1} = 1"_s, "false"},
        {u"{a:1} = {a:1, b:2}"_s, "false"},
    });
}

TEST(AppleScriptExpression, operatorsBindInAppleScriptsOrder) {
    expectValues({
        {u"not true or true"_s, "true"},
        {u"not 1 = 2"_s, "true"},
        {u"true or true and false"_s, "true"},
        {u"1 < 2 = true"_s, "true"},
        {u"1 + 1 & \"\" as text = \"2\""_s, "true"},
        {u"not not true"_s, "true"},
    });
}

TEST(AppleScriptExpression, andAndOrSkipARightSideThatDoesNotDecide) {
    expectValues({
        {u"false and (1 / 0 = 1)"_s, "false"},
        {u"true or undefinedThing"_s, "true"},
    });
    expectErrors({{u"true and 5"_s, -1700, u"Can’t make 5 into type boolean."_s}});
}

TEST(AppleScriptExpression, coercionsFollowTheTypes) {
    expectValues({
        {u"5 as text"_s, "\"5\""},
        {u"1.0 as string"_s, "\"1.0\""},
        {u"{\"a\", 1, {true}} as text"_s, "\"a1true\""},
        {u"missing value as text"_s, "\"missing value\""},
        {u"\" 12 \" as integer"_s, "12"},
        {u"\"1.6\" as integer"_s, "2"},
        {u"2.5 as integer"_s, "2"},
        {u"3.5 as integer"_s, "4"},
        {u"\"1.5\" as number"_s, "1.5"},
        {u"true as integer"_s, "1"},
        {u"\"TRUE\" as boolean"_s, "true"},
        {u"0 as boolean"_s, "false"},
        {u"\"a\" as list"_s, "{\"a\"}"},
        {u"{a:1, b:2} as list"_s, "{1, 2}"},
        {u"{\"7\"} as integer"_s, "7"},
    });
    expectErrors({
        {u"\"abc\" as integer"_s, -1700, u"Can’t make \"abc\" into type integer."_s},
        {u"\"\" as number"_s, -1700, u"Can’t make \"\" into type number."_s},
        {u"\"nan\" as number"_s, -1700, u"Can’t make \"nan\" into type number."_s},
        {u"1.0E+10 as integer"_s, -1700, u"Can’t make 1.0E+10 into type integer."_s},
        {u"{a:\"x\"} as text"_s, -1700, u"Can’t make {a:\"x\"} into type Unicode text."_s},
        {u"5 as boolean"_s, -1700, u"Can’t make 5 into type boolean."_s},
        {u"{1, 2} as number"_s, -1700, u"Can’t make {1, 2} into type number."_s},
    });
}

TEST(AppleScriptExpression, elementsAreCountedFromOneAndFromTheEnd) {
    expectValues({
        {u"item 2 of {1, 2, 3}"_s, "2"},
        {u"item -1 of {1, 2, 3}"_s, "3"},
        {u"item (1 + 1) of {1, 2, 3}"_s, "2"},
        {u"first item of {1, 2}"_s, "1"},
        {u"last item of {1, 2}"_s, "2"},
        {u"items of {1, 2}"_s, "{1, 2}"},
        {u"every item of \"ab\""_s, "{\"a\", \"b\"}"},
        {u"characters of \"ae\u0301b\""_s, "{\"a\", \"e\u0301\", \"b\"}"},
        {u"character 1 of item 2 of {\"ab\", \"cd\"}"_s, "\"c\""},
        {u"last character of \"abc\""_s, "\"c\""},
    });
    expectErrors({
        {u"item 5 of {1, 2}"_s, -1728, u"Can’t get item 5 of {1, 2}."_s},
        {u"item 0 of {1, 2}"_s, -1728, u"Can’t get item 0 of {1, 2}."_s},
        {u"first item of {}"_s, -1728, u"Can’t get item 1 of {}."_s},
        {u"last item of {}"_s, -1728, u"Can’t get last item of {}."_s},
        {u"item \"a\" of {1}"_s, -1728, u"Can’t get item \"a\" of {1}."_s},
        {u"character 3 of \"ab\""_s, -1728, u"Can’t get character 3 of \"ab\"."_s},
        {u"items of 5"_s, -1728, u"Can’t get every item of 5."_s},
    });
}

TEST(AppleScriptExpression, propertiesAndCounts) {
    expectValues({
        {u"name of {NAME:\"x\", path:\"/\"}"_s, "\"x\""},
        {u"the name of the first item of {{name:\"x\"}}"_s, "\"x\""},
        {u"count of {1, 2}"_s, "2"},
        {u"count {1, 2}"_s, "2"},
        {u"(count of items of \"abc\") is 3"_s, "true"},
        {u"count of {1} & {2}"_s, "{1, 2}"},
        {u"length of \"e\u0301\""_s, "1"},
        {u"length of {a:1, b:2}"_s, "2"},
        {u"quoted form of \"it's\""_s, "\"'it'\\\\''s'\""},
        {u"contents of 5"_s, "5"},
    });
    expectErrors({
        {u"foo of {a:1}"_s, -1728, u"Can’t get foo of {a:1}."_s},
        {u"name of 5"_s, -1728, u"Can’t get name of 5."_s},
        {u"length of 5"_s, -1728, u"Can’t get length of 5."_s},
        {u"quoted form of 5"_s, -1728, u"Can’t get quoted form of 5."_s},
    });
}

TEST(AppleScriptExpression, anErrorHasThePlaceOfTheInnermostExpression) {
    const ScriptError error = errorOf(u"set x to 1 + (item 3 of {1})"_s);
    EXPECT_EQ(error.start, 14);
    EXPECT_EQ(error.end, 27);
}

TEST(AppleScriptExpression, theResultIsGivenBareAndInSourceForm) {
    FakeScriptHost host;
    const ScriptResult list = resultOf(u"{\"a\", 1, {true, \"b\"}}"_s, host);
    EXPECT_EQ(list.text, u"a, 1, true, b"_s);
    EXPECT_EQ(list.sourceForm, u"{\"a\", 1, {true, \"b\"}}"_s);
    EXPECT_EQ(resultOf(u"{name:\"x\", path:\"y\"}"_s, host).text, u"name:x, path:y"_s);
    EXPECT_EQ(resultOf(u"missing value"_s, host).text, u"missing value"_s);
    EXPECT_EQ(resultOf(u"\"say \\\"hi\\\"\""_s, host).text, u"say \"hi\""_s);
    const ScriptResult empty = resultOf(u"\"\""_s, host);
    EXPECT_TRUE(empty.hasValue);
    EXPECT_EQ(empty.text, u""_s);
}

} // namespace macsim
