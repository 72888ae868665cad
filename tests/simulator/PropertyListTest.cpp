#include "simulator/PropertyList.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <stdexcept>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

QDateTime utc(int year, int month, int day, int hour = 0) {
    return {{year, month, day}, {hour, 0}, Qt::UTC};
}

QByteArray xml(const QByteArray& body) {
    return "<plist version=\"1.0\">" + body + "</plist>";
}

PropertyList everything() {
    return PropertyList::Dictionary{
        {u"array"_s, PropertyList::Array{1, true, u"é😀"_s, PropertyList::Array{}}},
        {u"data"_s, QByteArray("\0\x01\xff", 3)},
        {u"empty data"_s, QByteArray()},
        {u"date"_s, utc(2026, 1, 31, 10)},
        {u"never"_s, utc(4001, 1, 1)},
        {u"first"_s, utc(1, 1, 1)},
        {u"dictionary"_s, PropertyList::Dictionary{{u"a & <b>"_s, u"\"&'<>"_s}}},
        {u"empty"_s, PropertyList::Dictionary{}},
        {u"false"_s, false},
        {u"largest"_s, std::numeric_limits<qint64>::max()},
        {u"negative"_s, -1},
        {u"real"_s, 0.1},
        {u"one"_s, 1.0},
        {u"smallest"_s, std::numeric_limits<qint64>::min()},
        {u"text"_s, u""_s},
    };
}

QByteArray nestedXml(int levels) {
    return xml(QByteArray("<array>").repeated(levels) + QByteArray("</array>").repeated(levels));
}

/// A binary list whose every array names the next one `width` times; the last is empty.
QByteArray nestedBinary(int levels, int width) {
    QByteArray bytes = "bplist00";
    QByteArray offsets;
    const auto append16 = [](QByteArray& target, qsizetype value) {
        target += static_cast<char>(value >> 8);
        target += static_cast<char>(value & 0xff);
    };
    for (int level = 1; level <= levels; ++level) {
        const int count = level < levels ? width : 0;
        append16(offsets, bytes.size());
        bytes += static_cast<char>(0xa0 + count);
        for (int i = 0; i < count; ++i) {
            append16(bytes, level);
        }
    }
    const qsizetype table = bytes.size();
    bytes += offsets + QByteArray(6, '\0') + "\x02\x02" + QByteArray(6, '\0');
    append16(bytes, levels);
    bytes += QByteArray(8, '\0') + QByteArray(6, '\0');
    append16(bytes, table);
    return bytes;
}

QByteArray binaryOfOneObject(const QByteArray& object) {
    QByteArray bytes = "bplist00" + object + '\x08' + QByteArray(6, '\0') + "\x01\x01" + QByteArray(7, '\0') + '\x01';
    bytes += QByteArray(8, '\0') + QByteArray(7, '\0') + static_cast<char>(8 + object.size());
    return bytes;
}

} // namespace

TEST(PropertyList, typesAreDistinct) {
    const std::vector<PropertyList> ones{true, 1, 1.0, u"1"_s, QByteArray("1"), PropertyList::Array{1}};
    for (size_t i = 0; i < ones.size(); ++i) {
        for (size_t j = 0; j < ones.size(); ++j) {
            EXPECT_EQ(ones[i] == ones[j], i == j) << i << " and " << j;
        }
    }
}

TEST(PropertyList, aCopyIsIndependent) {
    const PropertyList original = everything();
    PropertyList copy = original;
    (*copy.as<PropertyList::Dictionary>())[u"dictionary"_s] = 3;
    EXPECT_EQ(original, everything());
    EXPECT_NE(copy, original);
}

TEST(PropertyList, comesBackFromXml) {
    EXPECT_EQ(parsePropertyList(xmlPropertyList(everything())), everything());
}

TEST(PropertyList, comesBackFromBinary) {
    const QByteArray bytes = binaryPropertyList(everything());
    EXPECT_TRUE(bytes.startsWith("bplist00"));
    EXPECT_EQ(parsePropertyList(bytes), everything());
}

TEST(PropertyList, aLoneScalarComesBackInBothForms) {
    const std::vector<PropertyList> scalars{true, 7, -0.25, u"text"_s, QByteArray("data"), utc(2026, 1, 1)};
    for (const PropertyList& scalar : scalars) {
        EXPECT_EQ(parsePropertyList(xmlPropertyList(scalar)), scalar);
        EXPECT_EQ(parsePropertyList(binaryPropertyList(scalar)), scalar);
    }
}

TEST(PropertyList, realXmlFilesAreRead) {
    const QByteArray file =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
        "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
        "<!-- runs at login; without --quiet <array> it is noisy -->\n"
        "<plist version=\"1.0\">\n<dict>\n\t<key>Label</key>\n\t<string>org.example &#233;&amp;</string>\n"
        "\t<!-- <key>Disabled</key> -->\n\t<key>RunAtLoad</key><true/>\n"
        "\t<key>Text</key><string><![CDATA[a <!-- b -->]]></string>\n</dict>\n</plist>\n";
    const PropertyList expected = PropertyList::Dictionary{
        {u"Label"_s, u"org.example é&"_s}, {u"RunAtLoad"_s, true}, {u"Text"_s, u"a <!-- b -->"_s}};
    QByteArray withoutLiteral = file;
    withoutLiteral.replace("<![CDATA[a <!-- b -->]]>", "a &lt;!-- b --&gt;");
    EXPECT_EQ(parsePropertyList(withoutLiteral), expected);
    EXPECT_EQ(parsePropertyList("\xef\xbb\xbf" + withoutLiteral), expected);
    QByteArray withoutDashes = file;
    withoutDashes.replace("--quiet", "quiet");
    EXPECT_EQ(parsePropertyList(withoutDashes), expected);
}

TEST(PropertyList, damagedBytesAreRefused) {
    const std::vector<QByteArray> damaged{
        "",
        "hello",
        "bplist00",
        "bplist00" + QByteArray(100, '\xff'),
        "<?xml version=\"1.0\"",
        xml(""),
        xml("<array><string>a</string>"),
        xml("<dict><string>a</string></dict>"),
        xml("<string>a</array>"),
        xml("<string>&bogus;</string>"),
        xml("<other/>"),
        "<plist><array>",
        "<!DOCTYPE plist [<!ENTITY a \"b\">]>" + xml("<string>text</string>"),
        xml("<array><?x \" ?></array><?x \" ?>"),
    };
    for (const QByteArray& bytes : damaged) {
        EXPECT_EQ(parsePropertyList(bytes), std::nullopt) << bytes.toStdString();
    }
}

TEST(PropertyList, integersThatDoNotFitAndIdentifiersAreRefused) {
    EXPECT_EQ(parsePropertyList(xml("<integer>9223372036854775808</integer>")), std::nullopt);
    EXPECT_EQ(parsePropertyList(xml("<integer>18446744073709551615</integer>")), std::nullopt);
    EXPECT_EQ(parsePropertyList(xml("<integer>-9223372036854775808</integer>")), std::numeric_limits<qint64>::min());
    EXPECT_EQ(parsePropertyList(binaryOfOneObject("\x10\x04")), 4);
    EXPECT_EQ(parsePropertyList(binaryOfOneObject("\x80\x04")), std::nullopt);
}

TEST(PropertyList, aTextWithANullCharacterIsRefused) {
    EXPECT_EQ(parsePropertyList(binaryOfOneObject("\x53"
                                                  "abc")),
              u"abc"_s);
    EXPECT_EQ(parsePropertyList(binaryOfOneObject(QByteArray("\x53"
                                                             "a\0c",
                                                             4))),
              std::nullopt);
    EXPECT_EQ(parsePropertyList(binaryOfOneObject(QByteArray("\x62\0a\0\0", 5))), std::nullopt);
    EXPECT_EQ(parsePropertyList(xml(QByteArray("<string>a\0</string>", 19))), std::nullopt);
    EXPECT_EQ(parsePropertyList(xml("<string>&#0;</string>")), std::nullopt);
}

TEST(PropertyList, nestingIsLimited) {
    const int limit = kMaximumPropertyListDepth;
    EXPECT_TRUE(parsePropertyList(nestedXml(limit)));
    EXPECT_TRUE(parsePropertyList(nestedBinary(limit, 1)));
    EXPECT_FALSE(parsePropertyList(nestedXml(limit + 2)));
    EXPECT_FALSE(parsePropertyList(nestedBinary(limit + 2, 1)));
    EXPECT_FALSE(parsePropertyList(nestedXml(300'000)));
    EXPECT_FALSE(parsePropertyList(QByteArray("<array>").repeated(300'000)));
    EXPECT_FALSE(parsePropertyList(nestedBinary(9'000, 1)));
    // A quote that closes an instruction for one reader and opens a text for another would hide the closing
    // tags.
    EXPECT_FALSE(parsePropertyList(xml(QByteArray("<array><?x \" ?></array><?x \" ?>").repeated(300'000))));
}

TEST(PropertyList, aBinaryListThatUnfoldsWithoutEndIsRefused) {
    EXPECT_TRUE(parsePropertyList(nestedBinary(4, 2)));
    EXPECT_FALSE(parsePropertyList(nestedBinary(60, 2)));
}

TEST(PropertyList, aBinaryListThatContainsItselfIsRefused) {
    QByteArray bytes = nestedBinary(2, 1);
    bytes[10] = '\0'; // the first array's only reference, now to itself
    EXPECT_FALSE(parsePropertyList(bytes));
}

TEST(PropertyList, everyTruncationIsRefusedOrWhole) {
    const QByteArray text = xmlPropertyList(everything());
    const QByteArray binary = binaryPropertyList(everything());
    for (qsizetype length = 0; length < text.trimmed().size(); ++length) {
        EXPECT_FALSE(parsePropertyList(text.left(length))) << length;
    }
    for (qsizetype length = 0; length < binary.size(); ++length) {
        EXPECT_FALSE(parsePropertyList(binary.left(length)) == everything()) << length;
    }
}

TEST(PropertyList, randomDamageNeverCrashes) {
    const QByteArray originals[] = {xmlPropertyList(everything()), binaryPropertyList(everything())};
    std::mt19937 random(20260131); // NOLINT(bugprone-random-generator-seed): the same damage at every run
    int readable = 0;
    for (int round = 0; round < 4000; ++round) {
        QByteArray bytes = originals[round % 2];
        for (unsigned changes = random() % 4 + 1; changes > 0; --changes) {
            bytes[static_cast<qsizetype>(random()) % bytes.size()] = static_cast<char>(random());
        }
        if (const auto list = parsePropertyList(bytes)) {
            ++readable;
        }
    }
    EXPECT_GT(readable, 0);
}

TEST(PropertyList, whatCannotBeWrittenIsRefused) {
    const QString withNull = u"a\0b"_s;
    EXPECT_THROW(binaryPropertyList(withNull), std::invalid_argument);
    EXPECT_THROW(xmlPropertyList(PropertyList::Dictionary{{withNull, 1}}), std::invalid_argument);
    EXPECT_THROW(binaryPropertyList(QDateTime()), std::invalid_argument);
    PropertyList deep = PropertyList::Array{};
    for (int level = 0; level <= kMaximumPropertyListDepth; ++level) {
        deep = PropertyList::Array{deep};
    }
    EXPECT_THROW(binaryPropertyList(deep), std::invalid_argument);
}

TEST(PropertyList, isMadeOfJson) {
    const Json json = Json::parse(R"({"bool": true, "int": -1, "big": 9223372036854775807, "real": 1.0, "text": "é",
        "array": [1, [], {}], "data": {"$data": "AAH/"}, "date": {"$date": "2026-01-31T12:00:00+02:00"},
        "other": {"$data": 1}})");
    const PropertyList expected = PropertyList::Dictionary{
        {u"bool"_s, true},
        {u"int"_s, -1},
        {u"big"_s, std::numeric_limits<qint64>::max()},
        {u"real"_s, 1.0},
        {u"text"_s, u"é"_s},
        {u"array"_s, PropertyList::Array{1, PropertyList::Array{}, PropertyList::Dictionary{}}},
        {u"data"_s, QByteArray("\0\x01\xff", 3)},
        {u"date"_s, utc(2026, 1, 31, 10)},
        {u"other"_s, PropertyList::Dictionary{{u"$data"_s, 1}}},
    };
    EXPECT_EQ(propertyListFromJson(json), expected);
}

TEST(PropertyList, jsonThatIsNoPropertyListIsRefused) {
    for (const char* text :
         {"null", "[null]", "18446744073709551615", R"({"$data": "no base64!"})", R"({"$date": "yesterday"})"}) {
        EXPECT_THROW(propertyListFromJson(Json::parse(text)), std::invalid_argument) << text;
    }
    const std::string deep = std::string(400, '[') + std::string(400, ']');
    EXPECT_THROW(propertyListFromJson(Json::parse(deep)), std::invalid_argument);
}

} // namespace macsim
