#include "profiles/ApplyPreviews.h"
#include "tweaks/TweakCatalogue.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

/// Each section as "{title} [{symbol}]", each row as "  {text} – {detail}".
template <typename Preview>
QStringList shown(const Preview& preview) {
    QStringList lines;
    for (const ReviewSection& section : reviewSections(preview)) {
        lines.append(u"%1 [%2]"_s.arg(section.title, section.symbol));
        for (const ReviewSection::Row& row : section.rows) {
            lines.append(u"  %1 – %2"_s.arg(row.text, row.detail));
        }
    }
    return lines;
}

StartupItem item(const QString& name, StartupItemKind kind) {
    StartupItem made;
    made.name = name;
    made.kind = kind;
    return made;
}

TEST(ApplyPreviews, theSectionsOfStartupChanges) {
    StartupChangePreview preview;
    preview.willDisable = {item(u"a"_s, StartupItemKind::loginApp),
                           item(u"b"_s, StartupItemKind::launchAgent),
                           item(u"c"_s, StartupItemKind::launchDaemon),
                           item(u"d"_s, StartupItemKind::backgroundAgent),
                           item(u"e"_s, StartupItemKind::backgroundLoginItem),
                           item(u"f"_s, StartupItemKind::addedApp)};
    preview.willDisableUnknownBackgroundItems = true;
    preview.willAdd = {{u"New"_s, u"/New.app"_s, true}};
    preview.willRemove = {{u"Old"_s, u"/Old.app"_s, false}, {u"Older"_s, u"/Older.app"_s, false}};
    preview.disabledCloudSync = {CloudSyncService::dropbox, CloudSyncService::iCloudDrive};
    preview.disableNetwork = true;
    EXPECT_EQ(
        shown(preview),
        (QStringList{u"Will disable at login [minus.circle.fill]"_s, u"  a – App"_s, u"  b – Launch Agent"_s,
                     u"  c – Daemon"_s, u"  d – Background Agent"_s, u"  e – Background Item"_s, u"  f – Added App"_s,
                     u"  Background items that aren't permitted – known when the password is given"_s,
                     u"Will add at login [plus.circle.fill]"_s, u"  New – "_s,
                     u"Will remove from login items [trash.circle.fill]"_s, u"  Old – "_s, u"  Older – "_s,
                     u"Cloud sync disabled at login [externaldrive.badge.xmark]"_s,
                     u"  Dropbox – login item and launch agents"_s, u"  iCloud Drive – login item and launch agents"_s,
                     u"Network interfaces will be disabled [network.slash]"_s}));
}

TEST(ApplyPreviews, whatCouldNotBeReadStandsBeforeAllElse) {
    StartupChangePreview preview;
    preview.unreadLoginItems = u"not permitted"_s;
    preview.willAdd = {{u"New"_s, u"/New.app"_s, true}};
    EXPECT_EQ(shown(preview),
              (QStringList{u"Could not be read [exclamationmark.triangle.fill]"_s, u"  Login items: not permitted – "_s,
                           u"Will add at login [plus.circle.fill]"_s, u"  New – "_s}));
}

TEST(ApplyPreviews, whatCouldNotBeReadStandsBeforeTheTweaks) {
    ProfileApplyPreview profile{u"Gig"_s, {u"Bypass macOS App Nap Throttling"_s}, {}};
    profile.startup.unreadLoginItems = u"not permitted"_s;
    EXPECT_EQ(reviewSections(profile).first().title, u"Could not be read"_s);
    const TweaksApplyPreview tweaks{profile.enabledTweaks, profile.startup};
    EXPECT_EQ(reviewSections(tweaks).first().title, u"Could not be read"_s);
}

TEST(ApplyPreviews, whatIsProtectedStaysOnAndIsSaidSo) {
    StartupChangePreview preview;
    preview.willDisable = {item(u"Traktor Helper"_s, StartupItemKind::loginApp)};
    preview.willDisable.first().isProtected = true;
    EXPECT_EQ(shown(preview), QStringList({u"Will disable at login [minus.circle.fill]"_s,
                                           u"  Traktor Helper – App, protected: stays on"_s}));
}

TEST(ApplyPreviews, sectionsWithoutContentAreLeftOut) {
    EXPECT_EQ(shown(StartupChangePreview()), QStringList());
    StartupChangePreview network;
    network.disableNetwork = true;
    EXPECT_EQ(shown(network), QStringList(u"Network interfaces will be disabled [network.slash]"_s));
    StartupChangePreview addition;
    addition.willAdd = {{u"New"_s, u"/New.app"_s, false}};
    EXPECT_EQ(shown(addition), (QStringList{u"Will add at login [plus.circle.fill]"_s, u"  New – "_s}));
}

TEST(ApplyPreviews, someTweaksOfAProfileAreOffAndTheOthersArePutBack) {
    ProfileApplyPreview preview;
    PerformanceSettings settings;
    for (const Tweak& tweak : tweakCatalogue()) {
        settings.*tweak.isSelected = true;
    }
    preview.enabledTweaks = selectedTweakTitles(settings);
    EXPECT_EQ(shown(preview).size(), 13) << "none is off";
    preview.enabledTweaks.removeLast();
    EXPECT_EQ(shown(preview).size(), 13);
    EXPECT_EQ(shown(preview).last(), u"  Restore all other performance tweaks to macOS defaults – "_s);
    preview.hasOwnSettings = true;
    EXPECT_EQ(shown(preview).last(), u"  Restore all other performance tweaks to your own settings – "_s);
}

TEST(ApplyPreviews, aProfileShowsItsTweaksBeforeItsStartupChanges) {
    ProfileApplyPreview preview;
    preview.profileName = u"Gig"_s;
    preview.enabledTweaks = {u"Disable Spotlight"_s, u"Disable App Nap"_s};
    preview.startup.disableNetwork = true;
    EXPECT_EQ(shown(preview),
              (QStringList{u"Will enable [slider.horizontal.3]"_s, u"  Disable Spotlight – "_s,
                           u"  Disable App Nap – "_s, u"  Restore all other performance tweaks to macOS defaults – "_s,
                           u"Network interfaces will be disabled [network.slash]"_s}));
}

TEST(ApplyPreviews, aProfileWithoutTweaksPutsAllBack) {
    EXPECT_EQ(shown(ProfileApplyPreview()), (QStringList{u"System tweaks [slider.horizontal.3]"_s,
                                                         u"  Restore all performance tweaks to macOS defaults – "_s}));
}

TEST(ApplyPreviews, tweaksAloneShowWhatIsSelected) {
    EXPECT_EQ(shown(TweaksApplyPreview{{u"Disable App Nap"_s}, {}}),
              (QStringList{u"Will enable [slider.horizontal.3]"_s, u"  Disable App Nap – "_s}));
    EXPECT_EQ(shown(TweaksApplyPreview()), QStringList());
}

} // namespace
} // namespace quorvane
