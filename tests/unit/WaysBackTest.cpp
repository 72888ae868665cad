#include "fakes/RestoreSystem.h"

#include "core/UserDefaultKeys.h"
#include "profiles/ProfileJson.h"
#include "profiles/UnifiedProfile.h"

namespace quorvane {

namespace {

const QString kProfileFolder = u"/Users/alex/Library/Application Support/Quorvane/UnifiedProfiles/"_s;

class WaysBack : public RestoreSystem {
protected:
    WaysBack() {
        QObject::connect(&system, &SystemManager::busyMessageChanged,
                         [this](const QString& message) { busyMessages.append(message); });
        defaults.values[kQuorvaneLastAppliedProfileName] = u"Festival"_s;
    }
    RestoreOutcome undo() { return QCoro::waitFor(system.undoTweaks()); }
    RestoreOutcome restoreDefault() { return QCoro::waitFor(system.restoreDefault()); }
    RestoreOutcome reinstate() { return QCoro::waitFor(system.reinstateWholeSystem()); }
    QString lastApplied() const { return defaults.values.value(kQuorvaneLastAppliedProfileName).toString(); }

    /// Zoom was put into the login items by the program, Mail stands in a saved profile.
    void addStartupApps() {
        defaults.values[kQuorvaneManagedStartupAppPaths] = QStringList(u"/Applications/Zoom.app"_s);
        UnifiedProfile profile;
        profile.id = QUuid::createUuid();
        profile.name = u"Festival"_s;
        profile.dateCreated = timeAt(0);
        profile.startup.items = {StartupItem::fromLaunchItem({u"Mail"_s, u"/Applications/Mail.app"_s, false})};
        files.addFile(kProfileFolder + u"Festival.json"_s, encodeProfile(profile));
        login = {{u"Zoom"_s, u"/Applications/Zoom.app"_s, false},
                 {u"Mail"_s, u"/Applications/Mail.app"_s, false},
                 {u"Own"_s, u"/Applications/Own.app"_s, false}};
    }
    static SystemSnapshot withLoginItems(const QList<LoginItemSnapshot>& items) {
        SystemSnapshot snapshot = usersOwn();
        snapshot.loginItems = items;
        return snapshot;
    }
    const LoginItemSnapshot kOwn{u"Own"_s, u"/Applications/Own.app"_s, false};
    const QString kRemoval = u"  [ACTION] Removing 2 Quorvane-managed startup app(s)...\n"
                             "$> osascript: list\n"
                             "$> osascript: delete where path is /Applications/Mail.app; "
                             "delete where path is /Applications/Zoom.app\n"
                             "$> osascript: list\n"
                             "  [APPLIED] Removed startup app from login items: Mail\n"
                             "  [APPLIED] Removed startup app from login items: Zoom\n"_s;

    QStringList busyMessages;
};

} // namespace

TEST_F(WaysBack, undoTakesTheProgramsAppsOutAndRevertsTheTweaks) {
    addStartupApps();
    save(withLoginItems({kOwn}));
    EXPECT_EQ(undo(), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_EQ(takeTrace(),
              kRemoval + u"\nRestoring from saved system snapshot...\n"_s + kRestoreSteps + kApplied + readBack());
    EXPECT_EQ(login, (QList<LoginItem>{{u"Own"_s, u"/Applications/Own.app"_s, false}}));
    EXPECT_EQ(busyMessages, (QStringList{u"Reverting performance tweaks…"_s, QString()}));
    EXPECT_EQ(lastApplied(), u"Festival"_s);
}

TEST_F(WaysBack, undoWithoutASnapshotSaysSo) {
    EXPECT_EQ(undo(), (RestoreOutcome{true, RestoreSource::StandardDefaults}));
    files.addFile(kSnapshotFile, "damaged");
    EXPECT_EQ(undo(), (RestoreOutcome{true, RestoreSource::StandardDefaults}));
}

TEST_F(WaysBack, defaultTakesTheSameRoadAndIsRecorded) {
    addStartupApps();
    save(withLoginItems({kOwn}));
    EXPECT_EQ(restoreDefault(), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_EQ(takeTrace(),
              kRemoval + u"\nRestoring from saved system snapshot...\n"_s + kRestoreSteps + kApplied + readBack());
    EXPECT_EQ(busyMessages, (QStringList{u"Restoring default settings…"_s, QString()}));
    EXPECT_EQ(lastApplied(), u"Default"_s);
}

TEST_F(WaysBack, theUsersOwnLoginItemsStay) {
    addStartupApps();
    const QList<LoginItem> before = login;
    save(withLoginItems(
        {{u"Zoom"_s, u"/Applications/Zoom.app"_s, false}, {u"Mail"_s, u"/Applications/Mail.app/"_s, true}}));
    EXPECT_TRUE(undo().succeeded);
    EXPECT_TRUE(restoreDefault().succeeded);
    EXPECT_EQ(login, before);
    EXPECT_EQ(trace.filter(u"osascript"_s), QStringList());
}

TEST_F(WaysBack, withoutCapturedLoginItemsOnlyTheProgramsOwnAdditionsGo) {
    for (const bool hasSnapshot : {true, false}) {
        addStartupApps();
        if (hasSnapshot) {
            save(usersOwn());
        } else {
            files.remove(kSnapshotFile);
        }
        EXPECT_TRUE(undo().succeeded);
        EXPECT_EQ(login, (QList<LoginItem>{{u"Mail"_s, u"/Applications/Mail.app"_s, false},
                                           {u"Own"_s, u"/Applications/Own.app"_s, false}}));
        EXPECT_TRUE(system.logMessages().contains(u"  [ACTION] Removing 1 Quorvane-managed startup app(s)..."_s));
    }
}

TEST_F(WaysBack, whatIsRemovedAndWhatIsRestoredGoByOneChoice) {
    addStartupApps();
    save(withLoginItems({}));
    SystemSnapshot later = withLoginItems({kOwn});
    later.dateCreated = timeAt(30);
    // It comes while the first application is being removed.
    const auto answer = commands.respond;
    commands.respond = [&](const QStringList& arguments) {
        saveBaseline(kHomeBaseline, later);
        return answer(arguments);
    };
    EXPECT_EQ(undo(), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_EQ(trace.filter(u"[MASTER]"_s), QStringList());
}

TEST_F(WaysBack, aFlowGoesByWhatWasFoundForItsQuestion) {
    const FoundBaseline nothing = QCoro::waitFor(system.findRestoreBaseline());
    ASSERT_FALSE(nothing.baseline.has_value());
    save(withLoginItems({}));
    const FoundBaseline snapshot = QCoro::waitFor(system.findRestoreBaseline());
    EXPECT_EQ(QCoro::waitFor(system.reinstateWholeSystem(nothing)).source, RestoreSource::StandardDefaults);
    EXPECT_EQ(QCoro::waitFor(system.undoTweaks(nothing)).source, RestoreSource::StandardDefaults);
    files.remove(kSnapshotFile);
    EXPECT_EQ(QCoro::waitFor(system.reinstateWholeSystem(snapshot)), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_EQ(QCoro::waitFor(system.undoTweaks(snapshot)), (RestoreOutcome{true, RestoreSource::Snapshot}));
}

TEST_F(WaysBack, defaultTellsABaselineFromASnapshot) {
    saveBaseline(kHomeBaseline, usersOwn());
    EXPECT_EQ(restoreDefault(), (RestoreOutcome{true, RestoreSource::Baseline}));
}

TEST_F(WaysBack, aCancelledDefaultIsNotRecorded) {
    scripts.failNext(u"User canceled."_s);
    EXPECT_EQ(restoreDefault(), (RestoreOutcome{false, RestoreSource::StandardDefaults}));
    EXPECT_TRUE(takeTrace().contains(kCancelled));
    EXPECT_EQ(lastApplied(), u"Festival"_s);
    EXPECT_FALSE(system.isBusy());
}

TEST_F(WaysBack, defaultIsNotRecordedWhereSomethingHasNotComeBack) {
    save(usersOwn());
    scripts.carryOut = {};
    defaults.setBoolean(kQuorvaneSwitchedBackupsOff, true);
    EXPECT_EQ(restoreDefault(), (RestoreOutcome{false, RestoreSource::Snapshot, {u"Time Machine"_s}}));
    EXPECT_EQ(lastApplied(), u"Festival"_s);
    EXPECT_EQ(system.logMessages().last(), u"  [MISSING] Time Machine — automatic backup is off, was on"_s);
}

TEST_F(WaysBack, anAppThatStaysDoesNotKeepTheSettingsFromComingBack) {
    addStartupApps();
    deniesSystemEvents = true;
    EXPECT_TRUE(restoreDefault().succeeded);
    EXPECT_TRUE(system.logMessages().contains(u"  [ERROR] Failed to remove startup app from login items: Zoom"_s));
    EXPECT_EQ(system.managedStartupAppPaths(), QSet<QString>{u"/Applications/Zoom.app"_s});
}

TEST_F(WaysBack, reinstatingIsAnnouncedAndBusy) {
    addStartupApps();
    save(usersOwn());
    EXPECT_EQ(reinstate(), (RestoreOutcome{true, RestoreSource::Snapshot}));
    EXPECT_EQ(takeTrace(), u"\n[REINSTATE] Restoring system...\n"
                           "\nReinstating from saved system snapshot...\n"_s +
                               kRestoreSteps + kApplied +
                               u"$> osascript: list\n"
                               "  [ACTION] Removing 1 Quorvane-managed startup app(s)...\n"
                               "$> osascript: delete where path is /Applications/Zoom.app\n"
                               "$> osascript: list\n"
                               "  [APPLIED] Removed startup app from login items: Zoom\n"_s +
                               readBack());
    EXPECT_EQ(busyMessages, (QStringList{u"Reinstating system…"_s, QString()}));
    EXPECT_EQ(login.size(), 2);
    EXPECT_EQ(lastApplied(), u"Festival"_s);
}

} // namespace quorvane
