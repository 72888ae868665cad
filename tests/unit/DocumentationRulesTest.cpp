#include "platform/macos/DocumentationRules.h"

#include <gtest/gtest.h>

#include <array>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(DocumentationRules, thePageGoesToItselfAndToPlacesWithinIt) {
    EXPECT_TRUE(staysInPage(u"about:blank"_s));
    EXPECT_TRUE(staysInPage(u"about:blank#the-lock"_s));
}

TEST(DocumentationRules, nothingElseIsGoneTo) {
    for (const QString& address : {u"https://example.com/"_s, u"http://about:blank"_s, u"about:blank.example.com"_s,
                                   u"about:blankets"_s, u"about:config"_s, u"file:///etc/hosts"_s, u"mailto:a@b.c"_s,
                                   u"javascript:alert(1)"_s, u"data:text/html,x"_s, u""_s}) {
        EXPECT_FALSE(staysInPage(address)) << address.toStdString();
    }
}

TEST(DocumentationRules, keysThatEveryWindowHas) {
    struct Key {
        QString characters;
        PageCommand command;
    };
    const std::array keys{
        Key{u"w"_s, PageCommand::Close},        Key{u"c"_s, PageCommand::Copy},    Key{u"a"_s, PageCommand::SelectAll},
        Key{u"+"_s, PageCommand::Enlarge},      Key{u"="_s, PageCommand::Enlarge}, Key{u"-"_s, PageCommand::Reduce},
        Key{u"0"_s, PageCommand::OriginalSize}, Key{u"q"_s, PageCommand::None},    Key{u""_s, PageCommand::None},
        Key{u"ww"_s, PageCommand::None},        Key{u"W"_s, PageCommand::None},
    };
    for (const Key& key : keys) {
        EXPECT_EQ(pageCommandOf(key.characters), key.command) << key.characters.toStdString();
    }
}

TEST(DocumentationRules, thePageGrowsAndShrinksBetweenLimits) {
    double zoom = pageZoomAfter(PageCommand::Enlarge, 1);
    EXPECT_GT(zoom, 1);
    EXPECT_DOUBLE_EQ(pageZoomAfter(PageCommand::Reduce, zoom), 1);
    for (int presses = 0; presses < 100; ++presses) {
        zoom = pageZoomAfter(PageCommand::Enlarge, zoom);
    }
    EXPECT_DOUBLE_EQ(zoom, 3);
    for (int presses = 0; presses < 100; ++presses) {
        zoom = pageZoomAfter(PageCommand::Reduce, zoom);
    }
    EXPECT_DOUBLE_EQ(zoom, 0.5);
    EXPECT_DOUBLE_EQ(pageZoomAfter(PageCommand::OriginalSize, zoom), 1);
    EXPECT_DOUBLE_EQ(pageZoomAfter(PageCommand::Copy, zoom), zoom);
}

} // namespace quorvane
