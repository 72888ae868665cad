#include "simulator/PropertyListText.h"

#include <gtest/gtest.h>

#include <vector>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;

std::string text(const PropertyList& list) {
    return propertyListText(list).toStdString();
}

} // namespace

TEST(PropertyListText, aLoneScalarStandsAsItIs) {
    const std::vector<std::pair<PropertyList, std::string>> cases{
        {true, "1"},
        {false, "0"},
        {42, "42"},
        {-42, "-42"},
        {0.5, "0.5"},
        {1.0, "1"},
        {0.0, "0"},
        {0.1, "0.1"},
        {u"a \"b\" é"_s, "a \"b\" é"},
        {u""_s, ""},
        {QDateTime({2026, 1, 31}, {10, 0}, Qt::UTC), "2026-01-31 10:00:00 +0000"},
        {QByteArray(), "{length = 0, bytes = 0x}"},
        {QByteArray("\x01\x02"), "{length = 2, bytes = 0x0102}"},
        {QByteArray(24, '\x07'), "{length = 24, bytes = 0x" + std::string(QByteArray(24, '\x07').toHex()) + "}"},
        {QByteArray("0123456789012345678901234"),
         "{length = 25, bytes = 0x30313233 34353637 38393031 32333435 ... 37383930 31323334 }"},
    };
    for (const auto& [list, expected] : cases) {
        EXPECT_EQ(text(list), expected);
    }
}

TEST(PropertyListText, insideAContainerOnlyPlainWordsStandWithoutQuotes) {
    const std::vector<std::pair<PropertyList, std::string>> cases{
        {u"abcXYZ019"_s, "abcXYZ019"},
        {u""_s, "\"\""},
        {u"a b"_s, "\"a b\""},
        {u"_a"_s, "\"_a\""},
        {u"com.apple"_s, "\"com.apple\""},
        {u"a\"b\\c\nd\te"_s, R"("a\"b\\c\nd\te")"},
        {u"é😀"_s, R"("\\U00e9\\Ud83d\\Ude00")"},
        {true, "1"},
        {42, "42"},
        {-1, "\"-1\""},
        {0.5, "\"0.5\""},
        {1.0, "1"},
        {QDateTime({2026, 1, 31}, {10, 0}, Qt::UTC), "\"2026-01-31 10:00:00 +0000\""},
        {QByteArray("\x01\x02"), "{length = 2, bytes = 0x0102}"},
    };
    for (const auto& [list, expected] : cases) {
        EXPECT_EQ(text(Array{list}), "(\n    " + expected + "\n)");
    }
}

TEST(PropertyListText, emptyContainersTakeTwoLines) {
    EXPECT_EQ(text(Array{}), "(\n)");
    EXPECT_EQ(text(Dictionary{}), "{\n}");
}

TEST(PropertyListText, keysAreSortedAndQuotedWhereNeeded) {
    const Dictionary dictionary{{u"b"_s, 1}, {u"B"_s, 2}, {u"a-b"_s, 3}, {u"_x"_s, 4}};
    EXPECT_EQ(text(dictionary), "{\n    B = 2;\n    \"_x\" = 4;\n    \"a-b\" = 3;\n    b = 1;\n}");
}

TEST(PropertyListText, aDictionaryInAnArrayBeginsAtEightBlanks) {
    const Array array{Dictionary{{u"a"_s, 1}}, Dictionary{{u"b"_s, u"x y"_s}}};
    EXPECT_EQ(text(array), "(\n"
                           "        {\n"
                           "        a = 1;\n"
                           "    },\n"
                           "        {\n"
                           "        b = \"x y\";\n"
                           "    }\n"
                           ")");
}

TEST(PropertyListText, aContainerInADictionaryRepeatsTheIndentation) {
    const Dictionary dictionary{
        {u"list"_s, Array{1, 2}},
        {u"outer"_s, Dictionary{{u"inner"_s, Dictionary{{u"key"_s, true}}}}},
    };
    EXPECT_EQ(text(dictionary), "{\n"
                                "    list =     (\n"
                                "        1,\n"
                                "        2\n"
                                "    );\n"
                                "    outer =     {\n"
                                "        inner =         {\n"
                                "            key = 1;\n"
                                "        };\n"
                                "    };\n"
                                "}");
}

TEST(PropertyListText, oldStyleTextIsRead) {
    const std::vector<std::pair<QString, PropertyList>> cases{
        {u"word"_s, u"word"_s},
        {u" \"two words\" "_s, u"two words"_s},
        {u"'it\"s'"_s, u"it\"s"_s},
        {u"\"a\\\"b\\\\c\\n\\U00e9\\101\""_s, u"a\"b\\c\né"
                                              "A"_s},
        {u"()"_s, Array{}},
        {u"(255, 0, 0)"_s, Array{u"255"_s, u"0"_s, u"0"_s}},
        {u"(a, (b),)"_s, Array{u"a"_s, Array{u"b"_s}}},
        {u"{}"_s, Dictionary{}},
        {u"{ a = 1; \"b c\" = ( x ); }"_s, Dictionary{{u"a"_s, u"1"_s}, {u"b c"_s, Array{u"x"_s}}}},
        {u"{url = http://a.b/c-d_$;}"_s, Dictionary{{u"url"_s, u"http://a.b/c-d_$"_s}}},
        {u"<0fbd 77>"_s, QByteArray("\x0f\xbd\x77")},
        {u"<>"_s, QByteArray()},
        {u"/* before */ (a, // first\n b) // after"_s, Array{u"a"_s, u"b"_s}},
    };
    for (const auto& [source, expected] : cases) {
        EXPECT_EQ(parsePropertyListText(source), expected) << source.toStdString();
    }
}

TEST(PropertyListText, malformedTextIsRefused) {
    for (const char16_t* source :
         {u"",           u"(",          u"(a b)", u"(,)",  u"{a}",     u"{a = 1}", u"{a = ;}",
          u"{(a) = 1;}", u"{\"a\": 1}", u"<0>",   u"<xy>", u"<00",     u"\"open",  u"two words",
          u"(a) b",      u"[a]",        u"é",     u"\"\\", u"/* open", u"/",       u"<plist/>"}) {
        const QString text = QString::fromUtf16(source);
        const auto list = parsePropertyListText(text);
        EXPECT_EQ(list.has_value(), text == u"/"_s) << text.toStdString();
    }
}

TEST(PropertyListText, nestingIsLimited) {
    const auto nested = [](int levels) { return QString(levels, u'(') + QString(levels, u')'); };
    EXPECT_TRUE(parsePropertyListText(nested(kMaximumPropertyListDepth)));
    EXPECT_FALSE(parsePropertyListText(nested(kMaximumPropertyListDepth + 2)));
    EXPECT_FALSE(parsePropertyListText(nested(500'000)));
}

} // namespace macsim
