#include "lock/PasswordLength.h"

#include <QList>
#include <QPair>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(PasswordLength, countsCharactersAsAReaderDoes) {
    const QList<QPair<QString, qsizetype>> passwords{
        {u""_s, 0},
        {u"abc"_s, 3},
        {u"abcd"_s, 4},
        {u"    "_s, 4},
        {u"a\nb\t"_s, 4},
        {u"🎛🎚🎙🎧"_s, 4},
        {u"🎛🎚🎙"_s, 3},
        {u"🇩🇪🇫🇷🇯🇵🇧🇷"_s, 4},
        {u"👨‍👩‍👧‍👦👨‍👩‍👧👩‍👦👨‍👨‍👧"_s, 4},
        {u"👍🏽👍🏿👍👍🏻"_s, 4},
        {u"e\u0301a\u0308o\u0302u\u0300"_s, 4},
        {u"e\u0301\u0323a\u0308o\u0302"_s, 3},
        {u"음악관실"_s, 4},
        {u"ab\r\n"_s, 3},
    };
    for (const auto& [password, length] : passwords) {
        EXPECT_EQ(passwordLength(password), length) << password.toStdString();
    }
}

} // namespace quorvane
