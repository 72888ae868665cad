#include "tweaks/PopularIcons.h"

#include "tweaks/TweakCatalogue.h"

#include <gtest/gtest.h>

#include <QSet>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(PopularIcons, areFiftyInTheirOrder) {
    const QStringList& icons = popularIcons();
    ASSERT_EQ(icons.size(), 50);
    EXPECT_EQ(QSet<QString>(icons.cbegin(), icons.cend()).size(), 50);
    EXPECT_EQ(icons.first(), u"bolt.shield.fill"_s);
    EXPECT_EQ(icons.at(24), u"headphones"_s);
    EXPECT_EQ(icons.last(), u"minus.circle.fill"_s);
}

TEST(PopularIcons, includeWhatEachTweakHasByItself) {
    for (const Tweak& tweak : tweakCatalogue()) {
        EXPECT_TRUE(popularIcons().contains(tweak.icon)) << tweak.icon.toStdString();
    }
}

TEST(PopularIcons, areFoundByAPartOfTheirNameInAnyCase) {
    const struct {
        QString searched;
        QStringList found;
    } cases[] = {
        {u""_s, popularIcons()},
        {u"SLASH"_s,
         {u"bell.slash.fill"_s, u"antenna.radiowaves.left.and.right.slash"_s, u"mic.slash.fill"_s,
          u"speaker.slash.fill"_s, u"wifi.slash"_s, u"eye.slash.fill"_s, u"printer.slash.fill"_s, u"network.slash"_s}},
        {u"Phone"_s, {u"headphones"_s, u"iphone"_s}},
        {u".*"_s, {}},
        {u"turbo"_s, {}},
    };
    for (const auto& [searched, found] : cases) {
        EXPECT_EQ(matchingIcons(searched), found) << searched.toStdString();
    }
}

} // namespace quorvane
