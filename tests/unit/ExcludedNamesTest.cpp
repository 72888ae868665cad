#include "core/ExcludedNames.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

TEST(ExcludedNames, theKeywordsAreTheTwentyThreeInTheirOrder) {
    EXPECT_EQ(excludedKeywords().join(u'|'),
              u"ableton|com.ableton.live|Ableton|logic|logicpro|com.apple.logic10|com.apple.audiounits.cache|"
              "com.apple.audiounits.sandboxed.cache|audiounits|audiounit|AudioUnit|vst|vst2|vst3|clap|aax|plugin|"
              "plug-in|traktor|serato|rekordbox|pioneer|native instruments"_s);
}

TEST(ExcludedNames, eachKeywordIsFoundInsideANameInAnyCase) {
    for (const QString& keyword : excludedKeywords()) {
        SCOPED_TRACE(keyword.toStdString());
        EXPECT_TRUE(isExcludedName(keyword));
        EXPECT_TRUE(isExcludedName(keyword.toUpper()));
        EXPECT_TRUE(isExcludedName(u"/Applications/My"_s + keyword + u"Helper.app"_s));
    }
}

TEST(ExcludedNames, whatHoldsOneAmongOtherWordsIsExcluded) {
    for (const QString& name : {u"TRAKTOR Pro 4"_s, u"my TrAkToR tool"_s, u"SomePluginsManager"_s,
                                u"com.apple.AudioUnits.cache"_s, u"Logical Disk"_s, u"Overclapped"_s}) {
        SCOPED_TRACE(name.toStdString());
        EXPECT_TRUE(isExcludedName(name));
    }
}

TEST(ExcludedNames, hyphensUnderscoresAndDotsCountAsBlanks) {
    for (const QString& name : {u"com.native-instruments.NTKDaemon"_s, u"Native_Instruments"_s, u"native.instruments"_s,
                                u"/Library/Application Support/NATIVE-instruments/x"_s}) {
        SCOPED_TRACE(name.toStdString());
        EXPECT_TRUE(isExcludedName(name));
    }
    EXPECT_FALSE(isExcludedName(u"native/instruments"_s));
    EXPECT_FALSE(isExcludedName(u"native--instruments"_s));
}

TEST(ExcludedNames, otherNamesAreNot) {
    for (const QString& name : {u""_s, u" "_s, u"Dropbox"_s, u"able ton"_s, u"plug in"_s, u"native  instruments"_s,
                                u"vs t"_s, u"com.apple.finder"_s}) {
        SCOPED_TRACE(name.toStdString());
        EXPECT_FALSE(isExcludedName(name));
    }
}

} // namespace
} // namespace quorvane
