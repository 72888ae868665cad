#include "maintenance/CacheCleaning.h"

#include "core/ExcludedNames.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(CacheCleaning, everyKeywordProtectsInAnyCaseAndInsideAName) {
    for (const QString& keyword : excludedKeywords()) {
        EXPECT_TRUE(isProtectedCacheItem(keyword)) << keyword.toStdString();
        EXPECT_TRUE(isProtectedCacheItem(keyword.toUpper())) << keyword.toStdString();
        EXPECT_TRUE(isProtectedCacheItem(u"com.maker."_s + keyword + u".cache"_s)) << keyword.toStdString();
    }
    EXPECT_EQ(excludedKeywords().size(), 23);
}

TEST(CacheCleaning, audioSoftwareIsProtected) {
    for (const QString& name : {u"com.ableton.live"_s, u"ABLETON Live 12"_s, u"com.apple.AudioUnits.cache"_s,
                                u"AudioUnitCache"_s, u"SeratoDJ"_s, u"Native Instruments"_s, u"My.VST3.scanner"_s}) {
        EXPECT_TRUE(isProtectedCacheItem(name)) << name.toStdString();
    }
}

TEST(CacheCleaning, aWordThatMerelyHoldsTheLettersIsProtectedToo) {
    for (const QString& name :
         {u"clapboard"_s, u"com.geological.maps"_s, u"Thunderclap"_s, u"plugins-of-a-browser"_s}) {
        EXPECT_TRUE(isProtectedCacheItem(name)) << name.toStdString();
    }
}

TEST(CacheCleaning, otherCachesAreNotProtected) {
    for (const QString& name : {u"com.apple.Safari"_s, u"Google"_s, u"com.apple.iconservices.store"_s, u""_s}) {
        EXPECT_FALSE(isProtectedCacheItem(name)) << name.toStdString();
    }
}

TEST(CacheCleaning, aNameThatCouldEndItsQuotesIsUnsafe) {
    for (const QString& name : {u"x'; touch y; '"_s, u"a\"b"_s, u"a\\b"_s, u"a\nb"_s, u"a\rb"_s, u"a\tb"_s,
                                u"a\u007fb"_s, u"a\u0085b"_s, u"a\0b"_s, u"\x1b[2J"_s}) {
        EXPECT_TRUE(isUnsafeCacheName(name)) << name.toStdString();
    }
}

TEST(CacheCleaning, whatQuotesHoldIsSafe) {
    for (const QString& name : {u"com.apple.Safari"_s, u"$(touch x)"_s, u"`touch x`"_s, u"a; b & c | d"_s, u"*"_s,
                                u"-rf"_s, u"Größe ★"_s, u"Alex’s cache"_s, u" "_s}) {
        EXPECT_FALSE(isUnsafeCacheName(name)) << name.toStdString();
    }
}

TEST(CacheCleaning, onlyTheIconStoreItselfIsLeftWithoutAWord) {
    EXPECT_TRUE(isSystemIconStore(u"com.apple.iconservices.store"_s));
    EXPECT_FALSE(isSystemIconStore(u"com.apple.IconServices.store"_s));
    EXPECT_FALSE(isSystemIconStore(u"com.apple.iconservices.store.old"_s));
}

TEST(CacheCleaning, oneLineRemovesAllOfThem) {
    EXPECT_EQ(systemCacheFolders(), QStringList({u"/Library/Caches"_s, u"/System/Library/Caches"_s}));
    EXPECT_EQ(cacheRemovalLine({{u"/Library/Caches/Google Cache"_s, 1}, {u"/System/Library/Caches/x"_s, 2}}),
              u"rm -rf '/Library/Caches/Google Cache'; rm -rf '/System/Library/Caches/x'"_s);
}

} // namespace quorvane
