#include "startup/apply/StartupTargets.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Kind = StartupItemKind;

StartupItem targetItem(const QString& id, const QString& name, Kind kind, bool runs,
                       const std::optional<QString>& launchIdentifier = std::nullopt) {
    StartupItem made;
    made.id = id;
    made.name = name;
    made.kind = kind;
    made.runsAtStartup = runs;
    made.launchIdentifier = launchIdentifier;
    return made;
}

/// The sets, the login items by their names.
struct TargetTexts {
    QSet<QString> loginNames;
    QSet<QString> loginPaths;
    QSet<QString> launchLabels;
    QSet<QString> backgroundLabels;

    bool operator==(const TargetTexts&) const = default;
};

TargetTexts textsOf(const StartupTargetSets& targets) {
    return {targets.loginItems.names(), targets.loginPaths, targets.launchLabels, targets.backgroundLabels};
}

TargetTexts targetsOf(const QList<StartupItem>& items, const CloudSyncServices& services = {}) {
    return textsOf(disabledTargetSets({items, false, {}}, services, items));
}

TEST(StartupTargets, withoutServicesTheyAreWhatTheConfigurationSwitchesOff) {
    const QList<StartupItem> items{
        targetItem(u"login:a"_s, u"a"_s, Kind::loginApp, false),
        targetItem(u"login:b"_s, u"b"_s, Kind::backgroundAgent, false),
        targetItem(u"login:c"_s, u"c"_s, Kind::loginApp, true),
        targetItem(u"launch:d"_s, u"d"_s, Kind::launchAgent, false, u"d.plist"_s),
        targetItem(u"launch:e"_s, u"e"_s, Kind::launchDaemon, false),
        targetItem(u"btm:f"_s, u"f"_s, Kind::backgroundLoginItem, false, u"f.label"_s),
        targetItem(u"btm:g"_s, u"g"_s, Kind::backgroundLoginItem, false),
        targetItem(u"added:h"_s, u"h"_s, Kind::addedApp, false),
    };
    EXPECT_EQ(targetsOf(items), (TargetTexts{{u"a"_s, u"b"_s}, {}, {u"d.plist"_s, u"e"_s}, {u"f.label"_s}}));
}

TEST(StartupTargets, aServiceAddsItsItemsByTheirKind) {
    StartupItem login = targetItem(u"login:1"_s, u"Dropbox"_s, Kind::loginApp, true);
    login.path = u"/Applications/Dropbox.app"_s;
    const QList<StartupItem> items{
        login,
        targetItem(u"login:2"_s, u"Dropbox Agent"_s, Kind::backgroundAgent, true),
        targetItem(u"launch:3"_s, u"dropbox updater"_s, Kind::launchAgent, true, u"com.dropbox.plist"_s),
        targetItem(u"launch:4"_s, u"dropbox daemon"_s, Kind::launchDaemon, true),
        targetItem(u"btm:5"_s, u"Dropbox Helper"_s, Kind::backgroundLoginItem, true, u"com.getdropbox"_s),
        targetItem(u"btm:6"_s, u"Dropbox Other"_s, Kind::backgroundLoginItem, true),
        targetItem(u"added:7"_s, u"Dropbox"_s, Kind::addedApp, true),
        targetItem(u"login:8"_s, u"Live"_s, Kind::loginApp, true),
    };
    EXPECT_EQ(targetsOf(items, {CloudSyncService::dropbox}), (TargetTexts{{u"Dropbox"_s, u"Dropbox Agent"_s},
                                                                          {u"/Applications/Dropbox.app"_s},
                                                                          {u"com.dropbox.plist"_s},
                                                                          {u"com.getdropbox"_s}}));
    EXPECT_EQ(targetsOf(items, {CloudSyncService::box}), TargetTexts());
    EXPECT_EQ(targetsOf(items), TargetTexts());
}

TEST(StartupTargets, anItemKnownByItsLaunchPlistIsNoLoginItem) {
    StartupItem agent = targetItem(u"launch:com.dropbox.plist"_s, u"com.dropbox"_s, Kind::backgroundAgent, false,
                                   u"com.dropbox.plist"_s);
    agent.path = u"/Library/LaunchAgents/com.dropbox.plist"_s;
    const TargetTexts expected{{}, {}, {u"com.dropbox.plist"_s}, {}};
    EXPECT_EQ(targetsOf({agent}), expected);
    agent.runsAtStartup = true;
    EXPECT_EQ(targetsOf({agent}, {CloudSyncService::dropbox}), expected);
    EXPECT_EQ(targetsOf({agent}), TargetTexts());

    agent.launchIdentifier = std::nullopt;
    agent.runsAtStartup = false;
    EXPECT_EQ(targetsOf({agent}), (TargetTexts{{}, {}, {u"com.dropbox"_s}, {}}));
}

TEST(StartupTargets, discoveredItemsOfAServiceAreTargetsThoughTheConfigurationIsEmpty) {
    const StartupItem found = targetItem(u"login:Mega"_s, u"MEGAsync"_s, Kind::loginApp, true);
    const StartupConfiguration empty;
    EXPECT_EQ(textsOf(disabledTargetSets(empty, {CloudSyncService::mega}, wideningItems(empty, {found}))),
              (TargetTexts{{u"MEGAsync"_s}, {}, {}, {}}));
    EXPECT_EQ(textsOf(disabledTargetSets(empty, {CloudSyncService::mega}, {})), TargetTexts());
}

TEST(StartupTargets, anEmptyListStillLeavesWhatIsSwitchedOff) {
    const StartupConfiguration configuration{{targetItem(u"login:a"_s, u"a"_s, Kind::loginApp, false)}, false, {}};
    EXPECT_EQ(textsOf(disabledTargetSets(configuration, {CloudSyncService::mega}, {})),
              (TargetTexts{{u"a"_s}, {}, {}, {}}));
}

TEST(StartupTargets, theConfigurationsItemsGoBeforeDiscoveredOnes) {
    const StartupItem saved = targetItem(u"login:a"_s, u"saved"_s, Kind::loginApp, false);
    const StartupItem twin = targetItem(u"login:a"_s, u"discovered"_s, Kind::loginApp, true);
    const StartupItem other = targetItem(u"login:b"_s, u"other"_s, Kind::loginApp, true);
    EXPECT_EQ(wideningItems({{saved}, false, {}}, {other, twin}), (QList<StartupItem>{saved, other}));
    const StartupItem byPath = targetItem(u"login:/a/"_s, u"saved"_s, Kind::loginApp, false);
    const StartupItem found = targetItem(u"login:/a"_s, u"discovered"_s, Kind::loginApp, true);
    EXPECT_EQ(wideningItems({{byPath}, false, {}}, {found}), QList<StartupItem>{byPath});
}

} // namespace
} // namespace quorvane
