#include "core/Utf8.h"

#include <QByteArray>
#include <QList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

TEST(Utf8, whatIsWellFormedIsRead) {
    EXPECT_EQ(strictUtf8({}), QString());
    EXPECT_EQ(strictUtf8("plain\r\n"), u"plain\r\n"_s);
    EXPECT_EQ(strictUtf8("Gerät – \xf0\x9f\x8e\xa7"), u"Gerät – 🎧"_s);
    EXPECT_EQ(strictUtf8(QByteArray("a\0b", 3)), QString(u"a\0b"_s));
}

TEST(Utf8, aByteOrderMarkIsPartOfAWholeText) {
    EXPECT_EQ(wholeUtf8("\xef\xbb\xbfLive"), u"\ufeffLive"_s);
    EXPECT_EQ(wholeUtf8(""), u""_s);
    EXPECT_EQ(wholeUtf8("Li\xffve"), std::nullopt);
}

TEST(Utf8, oneBadByteMakesNoText) {
    const QList<QByteArray> bad{
        "before \xff after", // no byte of UTF-8
        "\x80",              // a continuation without a beginning
        "cut off \xc3",      // a sequence that ends with the text
        "cut off \xf0\x9f\x8e",
        "\xc3(",            // a sequence that another character cuts off
        "\xc0\xaf",         // longer than it need be
        "\xed\xa0\x80",     // half a surrogate pair
        "\xf4\x90\x80\x80", // beyond the last character
        "Latin-1: Ger\xe4t",
    };
    for (const QByteArray& bytes : bad) {
        SCOPED_TRACE(bytes.toHex().toStdString());
        EXPECT_EQ(strictUtf8(bytes), QString());
    }
}

} // namespace
} // namespace quorvane
