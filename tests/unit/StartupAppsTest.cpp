#include "fakes/ProfileStore.h"
#include "fakes/ScriptedLoginItems.h"
#include "startup/background/StartupMemory.h"
#include "startup/login/LoginItemScripts.h"

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;

const QString kManagedPaths = u"QuorvaneManagedStartupAppPaths"_s;
const StartupLaunchItem kLiveApp{u"Live"_s, u"/Applications/Live.app"_s, false};
const StartupLaunchItem kMixer{u"Mixer"_s, u"/Applications/Mixer.app"_s, true};

QString shown(const QList<StartupLaunchItem>& items) {
    QStringList names;
    for (const StartupLaunchItem& item : items) {
        names.append(item.name + u" = "_s + item.path + (item.hidden ? u" hidden"_s : QString()));
    }
    return names.join(u'\n');
}

const QString kUnread =
    u"  [ERROR] Could not read login items: Not authorized\n"
    "  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security.\n"_s;

class StartupApps : public ScriptedStartup {
protected:
    void manage(const QStringList& paths) { defaults.setStringArray(kManagedPaths, paths); }
    QStringList managed() const { return defaults.stringArray(kManagedPaths); }
    bool remove(const std::optional<QSet<QString>>& paths = std::nullopt) {
        return QCoro::waitFor(system.removeManagedStartupApps(paths));
    }
    bool configure(const QList<StartupLaunchItem>& items) { return QCoro::waitFor(system.configureStartupApps(items)); }
};

StartupConfiguration opening(const QList<StartupLaunchItem>& applications) {
    StartupConfiguration configuration;
    for (const StartupLaunchItem& application : applications) {
        configuration.items.append(StartupItem::fromLaunchItem(application));
    }
    return configuration;
}

} // namespace

// ---- Suggestions

TEST_F(StartupApps, installedApplicationsForPerformersAreSuggestedByName) {
    for (const QString& name : {u"traktor pro 3.app"_s, u"Ableton Live 12 Suite.app"_s, u"Live.app"_s,
                                u"MAINSTAGE.app"_s, u"Pro Tools.txt"_s, u"Safari.app"_s, u".app"_s}) {
        files.addFolders(u"/Applications/"_s + name);
    }
    files.addFolders(u"/Applications/Music/REAPER.app"_s);
    EXPECT_EQ(shown(system.performanceApplications()),
              u"Ableton Live 12 Suite = /Applications/Ableton Live 12 Suite.app\n"
              "MAINSTAGE = /Applications/MAINSTAGE.app\n"
              "traktor pro 3 = /Applications/traktor pro 3.app"_s);
}

TEST_F(StartupApps, suggestionsAreListedOnce) {
    files.addFolders(u"/Applications/Cubase 14.app"_s);
    EXPECT_EQ(system.performanceApplications().size(), 1);
    files.addFolders(u"/Applications/rekordbox.app"_s);
    EXPECT_EQ(system.performanceApplications().size(), 1);
}

TEST_F(StartupApps, anUnreadableFolderSuggestsNothingAndIsListedAgain) {
    EXPECT_EQ(system.performanceApplications(), QList<StartupLaunchItem>());
    files.addFolders(u"/Applications/rekordbox.app"_s);
    EXPECT_EQ(system.performanceApplications().size(), 1);
}

// ---- The record of managed applications

TEST_F(StartupApps, managedPathsAreKeptInOrderWithoutRepeats) {
    system.recordManagedStartupAppPath(kMixer.path);
    system.recordManagedStartupApps({kLiveApp, kMixer, kLiveApp});
    EXPECT_EQ(managed(), (QStringList{kMixer.path, kLiveApp.path}));
    EXPECT_EQ(system.managedStartupAppPaths(), (QSet<QString>{kMixer.path, kLiveApp.path}));
}

TEST_F(StartupApps, aForgottenPathGoesWithAllItsOccurrences) {
    manage({kLiveApp.path, kMixer.path, kLiveApp.path, u"/x"_s});
    system.forgetManagedStartupAppPath(kLiveApp.path);
    EXPECT_EQ(managed(), (QStringList{kMixer.path, u"/x"_s}));
    system.forgetManagedStartupAppPath(u"/unknown"_s);
    EXPECT_EQ(managed(), (QStringList{kMixer.path, u"/x"_s}));
}

TEST_F(StartupApps, whatSavedProfilesOpenIsReadAfresh) {
    EXPECT_EQ(system.profileStartupAppPaths(), QSet<QString>());
    ProfileManager profiles(files, profilesDirectory(machine));
    UnifiedProfile first = numberedProfile(1, u"A"_s);
    first.startup = opening({kLiveApp, kMixer});
    UnifiedProfile second = numberedProfile(2, u"B"_s);
    second.startup = opening({kLiveApp});
    profiles.saveProfile(first);
    profiles.saveProfile(second);
    EXPECT_EQ(system.profileStartupAppPaths(), (QSet<QString>{kLiveApp.path, kMixer.path}));
    EXPECT_TRUE(trace.isEmpty());
}

// ---- Removing

TEST_F(StartupApps, removingWhenNothingIsManagedDoesNothing) {
    EXPECT_TRUE(remove());
    EXPECT_TRUE(remove(QSet<QString>()));
    EXPECT_TRUE(trace.isEmpty());
    EXPECT_TRUE(defaults.values.isEmpty());
}

TEST_F(StartupApps, managedOnesAreRemovedByPathAndForgotten) {
    loginItems.items = {
        {u"The Mixer"_s, kMixer.path, false}, {u"zoom"_s, u"/z.app"_s, false}, {u"Live"_s, kLiveApp.path, false}};
    manage({kMixer.path, kLiveApp.path});
    EXPECT_TRUE(remove());
    EXPECT_EQ(takeTrace(), u"  [ACTION] Removing 2 Quorvane-managed startup app(s)...\n"
                           "$> System Events: list\n"
                           "$> System Events: delete where path is /Applications/Live.app; "
                           "delete where path is /Applications/Mixer.app\n"
                           "$> System Events: list\n"
                           "  [APPLIED] Removed startup app from login items: Live\n"
                           "  [APPLIED] Removed startup app from login items: The Mixer\n"_s);
    EXPECT_EQ(managed(), QStringList());
    EXPECT_EQ(loginItems.names(), QStringList(u"zoom"_s));
}

TEST_F(StartupApps, oneThatIsGoneAlreadyIsForgottenToo) {
    manage({kLiveApp.path});
    EXPECT_TRUE(remove());
    EXPECT_EQ(takeTrace(), u"  [ACTION] Removing 1 Quorvane-managed startup app(s)...\n"
                           "$> System Events: list\n"
                           "$> System Events: delete where path is /Applications/Live.app\n"
                           "$> System Events: list\n"
                           "  [APPLIED] Removed startup app from login items: Live\n"_s);
    EXPECT_EQ(managed(), QStringList());
}

TEST_F(StartupApps, oneThatWillNotGoStaysRecordedAndStopsNoOther) {
    loginItems.items = {{u"Live"_s, kLiveApp.path, false}, {u"Mixer"_s, kMixer.path, false}};
    loginItems.undeletable = {u"Live"_s};
    manage({kLiveApp.path, kMixer.path});
    EXPECT_FALSE(remove());
    EXPECT_EQ(takeTrace(), u"  [ACTION] Removing 2 Quorvane-managed startup app(s)...\n"
                           "$> System Events: list\n"
                           "$> System Events: delete where path is /Applications/Live.app; "
                           "delete where path is /Applications/Mixer.app\n"
                           "$> System Events: list\n"
                           "  [ERROR] Failed to remove startup app from login items: Live\n"
                           "  [APPLIED] Removed startup app from login items: Mixer\n"_s);
    EXPECT_EQ(managed(), QStringList(kLiveApp.path));
}

TEST_F(StartupApps, withoutPermissionNothingCountsAsRemoved) {
    loginItems.items = {{u"Live"_s, kLiveApp.path, false}};
    loginItems.denial = "Not authorized";
    manage({kLiveApp.path});
    EXPECT_FALSE(remove());
    EXPECT_EQ(takeTrace(), u"  [ACTION] Removing 1 Quorvane-managed startup app(s)...\n"
                           "$> System Events: list\n"_s +
                               kUnread +
                               u"$> System Events: delete where path is /Applications/Live.app\n"
                               "$> System Events: list\n"
                               "  [ERROR] Failed to remove startup app from login items: Live\n"_s);
    EXPECT_EQ(managed(), QStringList(kLiveApp.path));
}

TEST_F(StartupApps, anotherItemOfTheNameIsSpared) {
    loginItems.items = {{u"live"_s, u"/Users/alex/Live.app"_s, false}};
    manage({kLiveApp.path});
    EXPECT_TRUE(remove());
    EXPECT_EQ(takeTrace(), u"  [ACTION] Removing 1 Quorvane-managed startup app(s)...\n"
                           "$> System Events: list\n"
                           "$> System Events: delete where path is /Applications/Live.app and name is Live\n"
                           "$> System Events: list\n"
                           "  [APPLIED] Removed startup app from login items: Live\n"_s);
    EXPECT_EQ(loginItems.names(), QStringList(u"live"_s));
}

TEST_F(StartupApps, anItemThatSystemEventsTakesForTheSamePathIsSpared) {
    loginItems.items = {{u"Other"_s, u"/applications/live.app"_s, false}};
    manage({kLiveApp.path});
    EXPECT_TRUE(remove());
    EXPECT_EQ(takeTrace(), u"  [ACTION] Removing 1 Quorvane-managed startup app(s)...\n"
                           "$> System Events: list\n"
                           "$> System Events: delete where path is /Applications/Live.app and name is Live\n"
                           "$> System Events: list\n"
                           "  [APPLIED] Removed startup app from login items: Live\n"_s);
    EXPECT_EQ(loginItems.names(), QStringList(u"Other"_s));
}

TEST_F(StartupApps, aPathThatEndsInASlashIsTheSameApplication) {
    loginItems.items = {{u"Live"_s, kLiveApp.path + u'/', false}};
    manage({kLiveApp.path});
    EXPECT_TRUE(remove());
    EXPECT_EQ(loginItems.items, QList<LoginItem>());
    EXPECT_EQ(managed(), QStringList());
}

TEST_F(StartupApps, oneWhosePathEndsInASlashGoesThoughAnotherHasItsName) {
    const LoginItem other{u"Live"_s, u"/Users/alex/Live.app"_s, false};
    loginItems.items = {{u"Live"_s, kLiveApp.path + u'/', false}, other};
    manage({kLiveApp.path});
    EXPECT_TRUE(remove());
    EXPECT_EQ(takeTrace(), u"  [ACTION] Removing 1 Quorvane-managed startup app(s)...\n"
                           "$> System Events: list\n"
                           "$> System Events: delete where path is /Applications/Live.app/ and name is Live\n"
                           "$> System Events: list\n"
                           "  [APPLIED] Removed startup app from login items: Live\n"_s);
    EXPECT_EQ(loginItems.items, QList<LoginItem>{other});
}

TEST_F(StartupApps, oneWhoseFileIsGoneIsKnownByItsName) {
    loginItems.listing = "Live|missing value|false\n";
    loginItems.unchangeable = {u"Live"_s};
    manage({kLiveApp.path});
    EXPECT_FALSE(remove());
    EXPECT_EQ(managed(), QStringList(kLiveApp.path));
}

TEST_F(StartupApps, aPathIsRecordedAndForgottenWithOrWithoutASlashAtItsEnd) {
    system.recordManagedStartupAppPath(kLiveApp.path + u'/');
    system.recordManagedStartupAppPath(kLiveApp.path);
    EXPECT_EQ(managed(), QStringList(kLiveApp.path));
    manage({kLiveApp.path + u'/', kMixer.path});
    EXPECT_EQ(system.managedStartupAppPaths(), (QSet<QString>{kLiveApp.path, kMixer.path}));
    system.recordManagedStartupAppPath(kLiveApp.path);
    EXPECT_EQ(managed().size(), 2);
    system.forgetManagedStartupAppPath(kLiveApp.path);
    EXPECT_EQ(managed(), QStringList(kMixer.path));
}

TEST_F(StartupApps, audioSoftwareGoesOnlyWhenTheProgramHasAddedIt) {
    const QString traktor = u"/Applications/Traktor Pro 3.app"_s;
    const QString serato = u"/Applications/Serato DJ Pro.app"_s;
    const QString deck = u"/Applications/Deck.app"_s;
    loginItems.items = {
        {u"Traktor Pro 3"_s, traktor, false}, {u"Serato DJ Pro"_s, serato, false}, {u"Serato Deck"_s, deck, false}};
    manage({traktor});
    EXPECT_TRUE(remove(QSet<QString>{traktor, serato, deck}));
    EXPECT_EQ(takeTrace(), u"  [ACTION] Removing 3 Quorvane-managed startup app(s)...\n"
                           "$> System Events: list\n"
                           "$> System Events: delete where path is /Applications/Traktor Pro 3.app\n"
                           "$> System Events: list\n"
                           "  [SKIPPED] Protected login item at path: /Applications/Deck.app\n"
                           "  [SKIPPED] Protected login item at path: /Applications/Serato DJ Pro.app\n"
                           "  [APPLIED] Removed startup app from login items: Traktor Pro 3\n"_s);
    EXPECT_EQ(loginItems.names(), (QStringList{u"Serato DJ Pro"_s, u"Serato Deck"_s}));
}

TEST_F(StartupApps, whatTheConfigurationOpensStays) {
    loginItems.items = {{u"Live"_s, kLiveApp.path, false}, {u"Mixer"_s, kMixer.path, false}};
    manage({kLiveApp.path, kMixer.path});
    EXPECT_TRUE(QCoro::waitFor(system.removeUnconfiguredManagedApps(opening({kLiveApp}))));
    EXPECT_EQ(managed(), QStringList(kLiveApp.path));
    EXPECT_EQ(loginItems.names(), QStringList(u"Live"_s));
    trace.clear();
    EXPECT_TRUE(QCoro::waitFor(system.removeUnconfiguredManagedApps(opening({kLiveApp, kMixer}))));
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(StartupApps, whatTheConfigurationOpensStaysHoweverItsPathEnds) {
    manage({kLiveApp.path, kMixer.path + u'/'});
    EXPECT_TRUE(QCoro::waitFor(
        system.removeUnconfiguredManagedApps(opening({{kLiveApp.name, kLiveApp.path + u'/', false}, kMixer}))));
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(StartupApps, whatTheConfigurationKnowsAsALoginItemThatRunsStays) {
    loginItems.items = {{u"Live"_s, kLiveApp.path, false}, {u"Mixer"_s, kMixer.path, false}};
    manage({kLiveApp.path, kMixer.path});
    StartupConfiguration configuration;
    configuration.items = {startupItemOf(loginItems.items.first()), startupItemOf(loginItems.items.last())};
    configuration.items.last().runsAtStartup = false;
    EXPECT_TRUE(QCoro::waitFor(system.removeUnconfiguredManagedApps(configuration)));
    EXPECT_EQ(loginItems.names(), QStringList(u"Live"_s));
    EXPECT_EQ(managed(), QStringList(kLiveApp.path)) << "to go when no profile keeps it";
}

// ---- Adding

TEST_F(StartupApps, configuringNoneDoesNothing) {
    EXPECT_TRUE(configure({}));
    EXPECT_TRUE(trace.isEmpty());
}

TEST_F(StartupApps, aHiddenOneIsAddedHiddenAndSaidSo) {
    EXPECT_TRUE(configure({kMixer, kLiveApp}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: add /Applications/Mixer.app hidden:true; "
                           "add /Applications/Live.app hidden:false\n"
                           "  [APPLIED] Added login item: Mixer (hidden)\n"
                           "  [APPLIED] Added login item: Live\n"_s);
    EXPECT_EQ(loginItems.items, (QList<LoginItem>{{u"Mixer"_s, kMixer.path, true}, {u"Live"_s, kLiveApp.path, false}}));
    EXPECT_EQ(managed(), (QStringList{kMixer.path, kLiveApp.path}));
}

TEST_F(StartupApps, oneThatOpensAlreadyStaysTheUsersOwn) {
    loginItems.items = {{u"My Live"_s, kLiveApp.path, false}};
    EXPECT_TRUE(configure({kLiveApp}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "  [SKIPPED] Already configured to start at login: Live\n"_s);
    EXPECT_EQ(managed(), QStringList());
    EXPECT_TRUE(QCoro::waitFor(system.removeUnconfiguredManagedApps({})));
    EXPECT_EQ(loginItems.names(), QStringList(u"My Live"_s));
}

TEST_F(StartupApps, oneThatTheProgramHasAddedStaysItsOwnWhenItIsConfiguredAgain) {
    EXPECT_TRUE(configure({kLiveApp}));
    EXPECT_TRUE(configure({kLiveApp}));
    EXPECT_EQ(managed(), QStringList(kLiveApp.path));
    EXPECT_TRUE(QCoro::waitFor(system.removeUnconfiguredManagedApps({})));
    EXPECT_EQ(loginItems.names(), QStringList());
}

TEST_F(StartupApps, oneThatOpensAlreadyIsKnownHoweverItsPathEnds) {
    loginItems.items = {{u"Live"_s, kLiveApp.path + u'/', false}, {u"Mixer"_s, kMixer.path, false}};
    EXPECT_TRUE(configure({kLiveApp, {kMixer.name, kMixer.path + u'/', false}}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "  [SKIPPED] Already configured to start at login: Live\n"
                           "  [SKIPPED] Already configured to start at login: Mixer\n"_s);
    EXPECT_EQ(managed(), QStringList());
}

TEST_F(StartupApps, oneIsAddedWithoutASlashAtTheEnd) {
    EXPECT_TRUE(configure({{kLiveApp.name, kLiveApp.path + u'/', false}}));
    EXPECT_EQ(loginItems.items, (QList<LoginItem>{{u"Live"_s, kLiveApp.path, false}}));
}

TEST_F(StartupApps, oneThatCannotBeAddedIsNotRecordedAndStopsNoOther) {
    loginItems.unchangeable = {kMixer.path};
    EXPECT_FALSE(configure({kMixer, kLiveApp}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"
                           "$> System Events: add /Applications/Mixer.app hidden:true; "
                           "add /Applications/Live.app hidden:false\n"
                           "  [ERROR] Failed to add login item: Mixer\n"
                           "  [APPLIED] Added login item: Live\n"_s);
    EXPECT_EQ(managed(), QStringList(kLiveApp.path));
}

TEST_F(StartupApps, oneThatWasRemovedJustBeforeIsAddedAgain) {
    loginItems.items = {{u"Live"_s, kLiveApp.path, false}};
    QCoro::waitFor(system.rawLoginItems());
    const QList<LoginItemSelector> live{{u"Live"_s, {}}};
    QCoro::waitFor(system.removeLoginItems(live));
    EXPECT_TRUE(configure({kLiveApp}));
    EXPECT_EQ(loginItems.names(), QStringList(u"Live"_s));
}

TEST_F(StartupApps, withoutPermissionNothingIsAdded) {
    loginItems.denial = "Not authorized";
    EXPECT_FALSE(configure({kLiveApp}));
    EXPECT_EQ(takeTrace(), u"$> System Events: list\n"_s + kUnread +
                               u"$> System Events: add /Applications/Live.app hidden:false\n"
                               "  [ERROR] Failed to add login item: Live\n"_s);
    EXPECT_EQ(managed(), QStringList());
}

TEST_F(StartupApps, oneThatOpensByItsOwnRegistrationIsNotAddedASecondTime) {
    ASSERT_EQ(StartupMemoryFile(files, machine).save({{}, {kLiveApp.path + u'/'}}), std::nullopt);
    EXPECT_TRUE(configure({kLiveApp}));
    EXPECT_EQ(system.logMessages(),
              QStringList(u"  [SKIPPED] Already configured to start at login: "_s + kLiveApp.name));
    EXPECT_EQ(loginItems.names(), QStringList());
}

} // namespace quorvane
