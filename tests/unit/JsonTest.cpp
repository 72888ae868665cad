#include "core/Json.h"

#include <gtest/gtest.h>

#include <random>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

/// The message of the error that an action raises; empty when it raises none.
template <typename Action>
QString problemIn(Action action) {
    try {
        action();
    } catch (const DecodingError& error) {
        return error.message();
    }
    return {};
}

QByteArray nested(int depth) {
    return QByteArray(depth, '[') + QByteArray(depth, ']');
}

TEST(Json, textsThatAreNoJsonAreErrors) {
    const QByteArray broken[] = {
        "",
        "   ",
        "{",
        "{}{}",
        "{\"a\":1,}",
        "{'a':1}",
        "// comment\n{}",
        "nul",
        "\"open",
        "[1e999]",
        "[-1e999]",
        "[NaN]",
        "[01]",
        QByteArray("{\"a\":\"\xff\xfe\"}"),
        QByteArray("{\"a\":\"\xc0\xaf\"}"),
        QByteArray("{\"a\":\"\xed\xa0\x80\"}"),
        QByteArray("\"\\ud800\""),
        QByteArray("{\"a\":1}\0", 8),
        QByteArray("{\"a\":1}\0oops", 12),
        QByteArray("\0", 1),
        QByteArray("{\"a\":\"x\0y\"}", 11),
        QByteArray("\xff\xfe{\0}\0", 6),
        QByteArray(1 << 20, '['),
        QByteArray(1 << 20, '{'),
    };
    for (const QByteArray& text : broken) {
        SCOPED_TRACE(text.left(20).toStdString());
        EXPECT_FALSE(problemIn([&] { parseJson(text); }).isEmpty());
    }
}

TEST(Json, anErrorOfSyntaxNamesTheLine) {
    EXPECT_EQ(problemIn([] { parseJson("{\n  \"a\": 1,\n  oops\n}"); }), u"not valid JSON (line 3)"_s);
}

TEST(Json, nestingIsLimited) {
    EXPECT_EQ(problemIn([] { parseJson(nested(512)); }), QString());
    EXPECT_EQ(problemIn([] { parseJson(nested(513)); }), u"nested too deeply"_s);
    EXPECT_EQ(problemIn([] { parseJson(nested(1 << 19)); }), u"nested too deeply"_s);
}

TEST(Json, aTreeIsReadAsItIsWritten) {
    const QByteArray text = R"({
  "z": 1,
  "a": [
    true,
    null,
    -2,
    1.5,
    {},
    []
  ],
  "m": {
    "ü": "\u0000 \" \\ é"
  },
  "b": 2,
  "c": 3,
  "d": 4
})";
    EXPECT_EQ(jsonText(parseJson(text)), text);
}

TEST(Json, theFirstOfTwoMembersWithOneKeyCounts) {
    const Json json = parseJson(R"({"a":"first","a":"second"})");
    EXPECT_EQ(requiredMember<QString>(json, "a"), u"first"_s);
    EXPECT_EQ((decodedValue<QMap<QString, QString>>(json)), (QMap<QString, QString>{{u"a"_s, u"first"_s}}));
}

TEST(Json, anObjectMayHaveVeryManyMembers) {
    constexpr int kMembers = 60000;
    QMap<QString, QString> texts;
    for (int number = 0; number < kMembers; ++number) {
        texts.insert(u"key %1"_s.arg(number), u"value"_s);
    }
    EXPECT_EQ((decodedValue<QMap<QString, QString>>(parseJson(jsonText(encodeJson(texts))))), texts);
}

TEST(Json, anErrorNamesTheWayToItsPlace) {
    const Json json = parseJson(R"({"a":["x",1]})");
    EXPECT_EQ(problemIn([&] { requiredMember<QList<QString>>(json, "a"); }), u"\"a[1]\": not a string"_s);
    EXPECT_EQ(problemIn([&] { requiredMember<bool>(json, "b"); }), u"\"b\": missing"_s);
    EXPECT_EQ(problemIn([&] { requiredMember<bool>(Json(1), "b"); }), u"not an object"_s);
    EXPECT_EQ(DecodingError(u"missing"_s, u"kind"_s).within(u"[3]"_s).within(u"items"_s).key(), u"items[3].kind"_s);
}

TEST(Json, nullIsAbsentWhereAbsenceIsAllowed) {
    const Json json = parseJson(R"({"a":null})");
    EXPECT_EQ(optionalMember<bool>(json, "a"), std::nullopt);
    EXPECT_EQ(optionalMember<bool>(json, "b"), std::nullopt);
    EXPECT_EQ(problemIn([&] { requiredMember<bool>(json, "a"); }), u"\"a\": not a boolean"_s);
}

TEST(Json, aTextKeepsAByteOrderMarkAtItsBeginning) {
    const Json json = parseJson("\xef\xbb\xbf{\"name\": \"\\ufeffLive\", \"icons\": {\"\xef\xbb\xbf"
                                "a\": \"b\", \"a\": \"c\"}}");
    EXPECT_EQ(requiredMember<QString>(json, "name"), u"\ufeffLive"_s);
    EXPECT_EQ((requiredMember<QMap<QString, QString>>(json, "icons")),
              (QMap<QString, QString>{{u"\ufeffa"_s, u"b"_s}, {u"a"_s, u"c"_s}}));
    EXPECT_EQ(decodedValue<QString>(parseJson(jsonText(encodeJson(u"\ufeffLive"_s)))), u"\ufeffLive"_s);
}

TEST(Json, aNumberIsWholeAndFits) {
    const struct {
        QByteArray text;
        std::optional<int> value;
    } cases[] = {{"0", 0},
                 {"-0", 0},
                 {"2147483647", 2147483647},
                 {"-2147483648", -2147483647 - 1},
                 {"2147483648", {}},
                 {"-2147483649", {}},
                 {"4294967297", {}},
                 {"9223372036854775807", {}},
                 {"9223372036854775808", {}},
                 {"18446744073709551615", {}},
                 {"18446744073709551616", {}},
                 {"-9223372036854775808", {}},
                 {"1.0", {}},
                 {"1e0", {}},
                 {"1e300", {}}};
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text.toStdString());
        const Json json = parseJson(text);
        const auto& value = expected;
        EXPECT_EQ(problemIn([&] { EXPECT_EQ(decodedValue<int>(json), value); }).isEmpty(), value.has_value());
    }
}

// ---- Blanks

TEST(Json, anErrorBehindManyBlanksNamesItsLine) {
    EXPECT_EQ(problemIn([] { parseJson(QByteArray(1000, '\n')); }), u"not valid JSON (line 1001)"_s);
    EXPECT_EQ(problemIn([] { parseJson("{" + QByteArray(1000, '\n') + "oops"); }), u"not valid JSON (line 1001)"_s);
    EXPECT_EQ(problemIn([] { parseJson("nul\n\n\n\n"); }), u"not valid JSON (line 2)"_s);
    EXPECT_EQ(problemIn([] { parseJson("{\n\n\n\"a\n\n\n"); }), u"not valid JSON (line 5)"_s);
}

TEST(Json, blanksChangeNothingWhereverTheyStand) {
    const QByteArray whole =
        R"({"one": ["a \\\" b", "c\\", -1.5e2, true, null], "two":{"three" :"", "four": [ ]} , "five":"\u00e9  x"})";
    const QByteArray blanks = " \t\n\r";
    std::mt19937 random(7);
    int read = 0;
    for (int round = 0; round < 4000; ++round) {
        QByteArray text = whole;
        for (unsigned change = random() % 4; change > 0; --change) {
            const qsizetype place = static_cast<qsizetype>(random() % static_cast<unsigned>(text.size()));
            if (random() % 3 == 0) {
                text.remove(place, 1);
            } else {
                text.insert(place, QByteArray(1 + static_cast<qsizetype>(random() % 3),
                                              blanks.at(static_cast<qsizetype>(random() % 4))));
            }
        }
        SCOPED_TRACE(text.toStdString());
        const Json expected = Json::parse(text.cbegin(), text.cend(), nullptr, false);
        const QString problem = problemIn([&] { EXPECT_EQ(parseJson(text), expected); });
        ASSERT_EQ(problem.isEmpty(), !expected.is_discarded());
        read += problem.isEmpty() ? 1 : 0;
    }
    EXPECT_GT(read, 500);
    EXPECT_LT(read, 3500);
}

TEST(Json, nothingIsConverted) {
    const Json values = parseJson(R"([null,true,0,1,1.5,"true",[],{}])");
    for (const Json& value : values) {
        SCOPED_TRACE(value.dump());
        EXPECT_EQ(problemIn([&] { decodedValue<bool>(value); }).isEmpty(), value.is_boolean());
        EXPECT_EQ(problemIn([&] { decodedValue<QString>(value); }).isEmpty(), value.is_string());
        EXPECT_EQ(problemIn([&] { decodedValue<QList<QString>>(value); }).isEmpty(), value.is_array());
        EXPECT_EQ(problemIn([&] { decodedValue<QMap<QString, QString>>(value); }).isEmpty(), value.is_object());
    }
}

TEST(Json, aDateHasOneForm) {
    const QDateTime date(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);
    EXPECT_EQ(encodeJson(date).dump(), "\"2026-11-15T21:05:37Z\"");
    EXPECT_EQ(decodedValue<QDateTime>(encodeJson(date)), date);

    const QString others[] = {
        u""_s,
        u"2026-11-15"_s,
        u"2026-11-15 21:05:37Z"_s,
        u"2026-11-15T21:05:37"_s,
        u"2026-11-15T21:05:37z"_s,
        u"2026-11-15T21:05:37+00:00"_s,
        u"2026-11-15T21:05:37.000Z"_s,
        u"2026-11-15T21:05Z"_s,
        u"20261115T210537Z"_s,
        u"2026-11-15T21:05:37Z\n"_s,
        u" 2026-11-15T21:05:37Z"_s,
        u"2026-13-15T21:05:37Z"_s,
        u"2026-02-30T21:05:37Z"_s,
        u"2026-11-15T24:00:00Z"_s,
        u"2026-11-15T21:05:60Z"_s,
        u"0000-11-15T21:05:37Z"_s,
        u"+026-11-15T21:05:37Z"_s,
        u"\u0662\u0660\u0662\u0666-11-15T21:05:37Z"_s,
    };
    for (const QString& text : others) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_FALSE(problemIn([&] { decodedValue<QDateTime>(encodeJson(text)); }).isEmpty());
    }
}

TEST(Json, aDateIsWrittenInUtcAtWholeSeconds) {
    const QDateTime date(QDate(2026, 1, 1), QTime(0, 30, 15, 999), Qt::OffsetFromUTC, 3600);
    EXPECT_EQ(encodeJson(date).dump(), "\"2025-12-31T23:30:15Z\"");
    EXPECT_THROW(encodeJson(QDateTime()), EncodingError);
    EXPECT_THROW(encodeJson(QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC)), EncodingError);
}

TEST(Json, aUuidIsReadInEitherCaseAndWrittenInUpperCase) {
    const QString upper = u"0B7E9D60-3C1F-4A52-8E6D-9F00AABBCCDD"_s;
    const QUuid id(upper);
    EXPECT_EQ(decodedValue<QUuid>(encodeJson(upper)), id);
    EXPECT_EQ(decodedValue<QUuid>(encodeJson(upper.toLower())), id);
    EXPECT_EQ(encodeJson(id), encodeJson(upper));

    const QString others[] = {
        u""_s,
        u'{' + upper + u'}',
        upper.chopped(1),
        upper + u'0',
        upper + u'\n',
        u' ' + upper,
        QString(upper).remove(u'-'),
        QString(upper).replace(u'0', u'G'),
    };
    for (const QString& text : others) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(problemIn([&] { decodedValue<QUuid>(encodeJson(text)); }), u"not a UUID"_s);
    }
}

TEST(Json, aTextInAnErrorIsShortAndOnOneLine) {
    EXPECT_EQ(quotedForError(u"a\n\"b\""_s), u"\"a\\n\\\"b\\\"\""_s);
    EXPECT_EQ(quotedForError(QString(1000, u'x')), u'"' + QString(40, u'x') + u"…\""_s);
    EXPECT_EQ(quotedForError(u"a\u202eb\u2028c\u0085d\u007fe"_s), u"\"a b c d e\""_s);
}

} // namespace
} // namespace quorvane
