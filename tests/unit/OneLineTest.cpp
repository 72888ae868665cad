#include "core/OneLine.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(OneLine, aNameHoldsNothingThatEndsOrTurnsTheLine) {
    const struct {
        QString text;
        QString plain;
    } cases[] = {{u"Live"_s, u"Live"_s},
                 {u"Gig\nQuorvane needs"_s, u"Gig Quorvane needs"_s},
                 {u"a\u202Eb\u2066c\u2028d\u0007e"_s, u"a b c d e"_s},
                 {u"Späti 🎛"_s, u"Späti 🎛"_s},
                 {u"👩‍🎤"_s, u"👩‍🎤"_s}, // one character of two, joined
                 {QString(38, u'x') + u"🎛"_s + QString(60, u'y'), QString(38, u'x') + u'…' + QString(40, u'y')},
                 {QString(60, u'x') + u"🎛"_s + QString(39, u'y'), QString(39, u'x') + u'…' + QString(39, u'y')},
                 {QString(80, u'x'), QString(80, u'x')},
                 {QString(60, u'x') + QString(60, u'y'), QString(39, u'x') + u'…' + QString(40, u'y')}};
    for (const auto& [text, plain] : cases) {
        EXPECT_EQ(nameOnOneLine(text), plain);
    }
}

TEST(OneLine, aTextIsAsLongAsItWas) {
    EXPECT_EQ(onOneLine(u"a\r\nb\tc"_s), u"a  b c"_s);
    EXPECT_EQ(onOneLine(QString(300, u'x')), QString(300, u'x'));
}

} // namespace quorvane
