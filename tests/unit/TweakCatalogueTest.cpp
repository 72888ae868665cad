#include "tweaks/TweakCatalogue.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

TEST(TweakCatalogue, hasOneTweakForEachBoolean) {
    ASSERT_EQ(tweakCatalogue().size(), 12);
    ASSERT_EQ(tweakFields().size(), 12U);
    for (const TweakField& field : tweakFields()) {
        SCOPED_TRACE(field.key);
        const Tweak* tweak = findTweak(QString::fromUtf8(field.key));
        ASSERT_NE(tweak, nullptr);
        EXPECT_EQ(tweak->isSelected, field.isSelected);
        EXPECT_FALSE(tweak->title.isEmpty());
    }
    EXPECT_EQ(findTweak(u"turbo"_s), nullptr);
}

TEST(TweakCatalogue, hasTheSymbolsOfTheSystem) {
    QStringList icons;
    for (const Tweak& tweak : tweakCatalogue())
        icons.append(tweak.icon);
    EXPECT_EQ(icons, (QStringList{
                         u"bolt.shield.fill"_s,
                         u"cpu.fill"_s,
                         u"battery.100.bolt"_s,
                         u"exclamationmark.triangle.fill"_s,
                         u"clock.arrow.circlepath"_s,
                         u"arrow.down.app.fill"_s,
                         u"bell.slash.fill"_s,
                         u"doc.text.magnifyingglass"_s,
                         u"antenna.radiowaves.left.and.right.slash"_s,
                         u"mic.slash.fill"_s,
                         u"speaker.slash.fill"_s,
                         u"power.circle.fill"_s,
                     }));
}

TEST(TweakCatalogue, theUsersIconGoesFirst) {
    PerformanceSettings settings;
    const Tweak& appNap = *findTweak(u"appNap"_s);
    EXPECT_EQ(tweakIcon(settings, appNap), u"bolt.shield.fill"_s);
    settings.customIcons = {{u"appNap"_s, u"star"_s}, {u"turbo"_s, u"hare.fill"_s}};
    EXPECT_EQ(tweakIcon(settings, appNap), u"star"_s);
    EXPECT_EQ(tweakIcon(settings, *findTweak(u"siri"_s)), u"mic.slash.fill"_s);
}

TEST(TweakCatalogue, theSectionsHoldEachTweakOnce) {
    QStringList titles;
    QStringList keys;
    for (const TweakSection& section : tweakSections()) {
        titles.append(section.title);
        for (const TweakDescription& tweak : section.tweaks)
            keys.append(tweak.key);
    }
    EXPECT_EQ(titles, (QStringList{u"Power & Performance"_s, u"Services & Background"_s,
                                   u"Connectivity & Features"_s, u"Login & Reboot"_s}));
    EXPECT_EQ(keys, (QStringList{u"appNap"_s, u"spotlight"_s, u"usbPower"_s, u"sms"_s, u"timeMachine"_s,
                                 u"updates"_s, u"notifications"_s, u"crashReporter"_s, u"airdrop"_s,
                                 u"siri"_s, u"uiSounds"_s, u"cleanReboot"_s}));
}

TEST(TweakCatalogue, eachTweakIsDescribed) {
    const TweakSection& last = tweakSections().last();
    EXPECT_EQ(last.tweaks.first().text,
              u"Prevent macOS from reopening apps and windows after restart. Only startup "
              "items you leave enabled in Startup Items may still open."_s);
    EXPECT_EQ(tweakSections().first().tweaks.first().text,
              u"Prevent macOS from throttling audio apps in the background"_s);
    EXPECT_EQ(tweakSections().at(1).tweaks.at(2).text, u"Disable Notification Center during sessions"_s);
    EXPECT_EQ(tweakSections().at(2).tweaks.at(0).text,
              u"Disable proximity sharing to reduce network overhead"_s);
}

} // namespace
} // namespace quorvane
