#include "tweaks/TweakCatalogue.h"

#include <gtest/gtest.h>

#include <iterator>

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

TEST(TweakCatalogue, eachTweakHasItsSymbolAndTitleInOrder) {
    const struct {
        QString key;
        QString icon;
        QString title;
    } rows[] = {
        {u"appNap"_s, u"bolt.shield.fill"_s, u"Bypass macOS App Nap Throttling"_s},
        {u"spotlight"_s, u"cpu.fill"_s, u"Suspend Spotlight Drive Indexing"_s},
        {u"usbPower"_s, u"battery.100.bolt"_s, u"Prevent USB Hardware Standby"_s},
        {u"sms"_s, u"exclamationmark.triangle.fill"_s, u"Disable HDD Sudden Motion Sensor"_s},
        {u"timeMachine"_s, u"clock.arrow.circlepath"_s, u"Disable Time Machine Auto-Backups"_s},
        {u"updates"_s, u"arrow.down.app.fill"_s, u"Block Background Software Updates"_s},
        {u"notifications"_s, u"bell.slash.fill"_s, u"Suppress Notifications and Alerts"_s},
        {u"crashReporter"_s, u"doc.text.magnifyingglass"_s, u"Disable Crash Reporting Daemons"_s},
        {u"airdrop"_s, u"antenna.radiowaves.left.and.right.slash"_s, u"Deactivate AirDrop & Sharing Services"_s},
        {u"siri"_s, u"mic.slash.fill"_s, u"Deactivate Siri Core Services"_s},
        {u"uiSounds"_s, u"speaker.slash.fill"_s, u"Silence System UI Sound Effects"_s},
        {u"cleanReboot"_s, u"power.circle.fill"_s, u"Start Clean on Reboot"_s},
    };
    ASSERT_EQ(tweakCatalogue().size(), std::ssize(rows));
    for (qsizetype i = 0; i < std::ssize(rows); ++i) {
        const Tweak& tweak = tweakCatalogue().at(i);
        EXPECT_EQ(tweak.key, rows[i].key);
        EXPECT_EQ(tweak.icon, rows[i].icon);
        EXPECT_EQ(tweak.title, rows[i].title);
    }
}

TEST(TweakCatalogue, theUsersIconGoesFirst) {
    PerformanceSettings settings;
    const Tweak& appNap = *findTweak(u"appNap"_s);
    EXPECT_EQ(tweakIcon(settings, appNap), u"bolt.shield.fill"_s);
    settings.customIcons = {{u"appNap"_s, u"star"_s}, {u"turbo"_s, u"hare.fill"_s}};
    EXPECT_EQ(tweakIcon(settings, appNap), u"star"_s);
    EXPECT_EQ(tweakIcon(settings, *findTweak(u"siri"_s)), u"mic.slash.fill"_s);
}

TEST(TweakCatalogue, theSectionsDescribeTheirTweaksInOrder) {
    const QList<TweakSection> sections{
        {u"Power & Performance"_s,
         {{u"appNap"_s, u"Prevent macOS from throttling audio apps in the background"_s},
          {u"spotlight"_s, u"Stop mdworker from consuming CPU during sessions"_s},
          {u"usbPower"_s, u"Keep USB audio interfaces powered at all times"_s},
          {u"sms"_s, u"Prevent drive head parking from causing audio dropouts"_s}}},
        {u"Services & Background"_s,
         {{u"timeMachine"_s, u"Stop scheduled backups from interrupting audio processing"_s},
          {u"updates"_s, u"Prevent automatic macOS and App Store downloads"_s},
          {u"notifications"_s, u"Disable Notification Center during sessions"_s},
          {u"crashReporter"_s, u"Stop crash reporter dialogs from interrupting workflow"_s}}},
        {u"Connectivity & Features"_s,
         {{u"airdrop"_s, u"Disable proximity sharing to reduce network overhead"_s},
          {u"siri"_s, u"Stop Siri voice processing and background listening"_s},
          {u"uiSounds"_s, u"Mute system alert and interface sounds"_s}}},
        {u"Login & Reboot"_s,
         {{u"cleanReboot"_s, u"Prevent macOS from reopening apps and windows after restart. Only startup items "
                             "you leave enabled in Startup Items may still open."_s}}},
    };
    ASSERT_EQ(tweakSections().size(), sections.size());
    for (qsizetype i = 0; i < sections.size(); ++i) {
        const TweakSection& section = tweakSections().at(i);
        EXPECT_EQ(section.title, sections.at(i).title);
        ASSERT_EQ(section.tweaks.size(), sections.at(i).tweaks.size()) << section.title.toStdString();
        for (qsizetype k = 0; k < section.tweaks.size(); ++k) {
            EXPECT_EQ(section.tweaks.at(k).key, sections.at(i).tweaks.at(k).key);
            EXPECT_EQ(section.tweaks.at(k).text, sections.at(i).tweaks.at(k).text);
        }
    }
}

} // namespace
} // namespace quorvane
