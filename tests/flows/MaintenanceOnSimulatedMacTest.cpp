// Cleaning up on a simulated Mac through real child processes: what is left on its disk.

#include "fakes/MacSetUp.h"
#include "fakes/SimulatedSystem.h"
#include "maintenance/MaintenanceSelection.h"

namespace quorvane {

namespace {

using macsim::Actor;

const QString kUsersHome = u"/Users/alex"_s;
const QString kUserCaches = kUsersHome + u"/Library/Caches/"_s;
const QString kSystemChanges = u"Quorvane needs your administrator password to make these system changes."_s;
const MaintenanceSelection kEverything{true, true, true};

class MaintenanceOnSimulatedMac : public SimulatedSystem {
protected:
    MaintenanceOutcome run(const MaintenanceSelection& selection) {
        return QCoro::waitFor(system->runMaintenance(selection));
    }
    /// Puts a file there, with its folders, which belong to whom their places say. The sealed system comes like that.
    void put(const QString& path, const QByteArray& bytes = "bytes") const {
        if (path.startsWith(u"/System/"_s)) {
            macsim::installFile(host->mac(), path, bytes);
            return;
        }
        const macsim::Volume disk = volume(path.startsWith(kUsersHome) ? Actor::User : Actor::Root);
        disk.createFolders(path.left(path.lastIndexOf(u'/')));
        disk.write(path, bytes);
    }
    /// Puts so many files of the user's there. By the host: a volume that ignores case looks through a folder for each
    /// new name.
    void putMany(const QString& place, int count) const {
        ASSERT_TRUE(QDir().mkpath(macFolder() + place));
        for (int number = 0; number < count; ++number) {
            QFile file(macFolder() + place + u'/' + QString::number(number));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        }
    }
    QStringList names(const QString& place) const { return volume(Actor::Root).list(place); }
    bool isThere(const QString& path) const { return volume(Actor::Root).kind(path) != macsim::Volume::Kind::Missing; }

    /// A little of everything.
    void fill() const {
        put(kUserCaches + u"com.spotify.client/Data/1"_s);
        put(kUserCaches + u"com.apple.iconservices.store"_s);
        put(kUserCaches + u"Ableton/Cache/Decoding.wav"_s);
        put(u"/Library/Caches/com.maker.app/x"_s);
        put(u"/Library/Caches/com.apple.iconservices.store"_s);
        put(u"/Library/Caches/com.native-instruments.plugin"_s);
        put(kUsersHome + u"/.Trash/old song.wav"_s);
        put(kUsersHome + u"/.Trash/old set/a"_s);
        put(kUsersHome + u"/Downloads/Ableton Live.dmg"_s);
        put(kUsersHome + u"/Downloads/album/one.wav"_s);
    }
};

} // namespace

TEST_F(MaintenanceOnSimulatedMac, everythingGoesUnderOnePromptButForAudioSoftware) {
    const macsim::MacPicture fresh = picture();
    fill();
    EXPECT_EQ(
        run(kEverything),
        (MaintenanceOutcome{true, {u"System caches cleared."_s, u"Trash emptied."_s, u"Downloads folder purged."_s}}));
    EXPECT_EQ(picture().changesSince(fresh), u"+ /Library/Caches: folder\n"
                                             "+ /Library/Caches/com.apple.iconservices.store: bytes\n"
                                             "+ /Library/Caches/com.native-instruments.plugin: bytes\n"
                                             "+ /Users/alex/Library/Caches/Ableton: folder\n"
                                             "+ /Users/alex/Library/Caches/Ableton/Cache: folder\n"
                                             "+ /Users/alex/Library/Caches/Ableton/Cache/Decoding.wav: bytes\n"_s);
    EXPECT_EQ(authorization.prompts(), QStringList(kSystemChanges));
    EXPECT_EQ(log(), u"Starting cache cleanup...\n"
                     "Scanning User Caches in /Users/alex/Library/Caches...\n"
                     "Scanning System Caches in /Library/Caches...\n"
                     "Skipping /System/Library/Caches (does not exist).\n"
                     "Requesting Administrator privileges to clear system caches...\n"
                     "  [APPLIED] Successfully cleared unprotected items in system caches.\n"
                     "Emptying Trash...\n"
                     "Emptying Trash...\n"
                     "Purging Downloads folder...\n"
                     "Clearing Downloads folder...\n"
                     "  [APPLIED] Cleared 2 item(s) from Downloads.\n"
                     "\nCleanup Complete!\n"_s);
}

TEST_F(MaintenanceOnSimulatedMac, withACancelledPromptTheOtherStepsRun) {
    fill();
    authorization.setAnswer(macsim::Authorization::Cancel);
    const MaintenanceOutcome outcome = run(kEverything);
    EXPECT_EQ(outcome.alertTitle(), u"Completed with Issues"_s);
    EXPECT_EQ(outcome.alertText(), u"System cache cleanup failed or was cancelled.\n\n"
                                   "Trash emptied.\n\nDownloads folder purged."_s);
    EXPECT_TRUE(log().contains(u"  [ERROR] System cache cleanup was cancelled or failed: User canceled.\n"_s));
    EXPECT_TRUE(isThere(u"/Library/Caches/com.maker.app/x"_s));
    EXPECT_EQ(names(kUserCaches), QStringList(u"Ableton"_s));
    EXPECT_EQ(names(kUsersHome + u"/.Trash"_s), QStringList());
    EXPECT_EQ(names(kUsersHome + u"/Downloads"_s), QStringList());
}

TEST_F(MaintenanceOnSimulatedMac, withNothingInTheSystemFoldersNobodyIsAsked) {
    put(u"/Library/Caches/Serato"_s);
    EXPECT_TRUE(run({true, false, false}).succeeded);
    EXPECT_EQ(authorization.prompts(), QStringList());
}

TEST_F(MaintenanceOnSimulatedMac, theSealedSystemRefusesRootToo) {
    put(u"/Library/Caches/com.maker.app"_s);
    put(u"/System/Library/Caches/com.apple.x"_s);
    EXPECT_EQ(run({true, false, false}), (MaintenanceOutcome{false, {u"1 item(s) are protected by macOS."_s}}));
    EXPECT_TRUE(log().endsWith(u"  [APPLIED] Successfully cleared unprotected items in system caches.\n"
                               "  [ERROR] 1 item(s) are protected by macOS.\n"
                               "\nCleanup Complete!\n"_s))
        << log().toStdString();
    EXPECT_EQ(names(u"/Library/Caches"_s), QStringList()) << "one command's failure doesn't stop the others";
}

TEST_F(MaintenanceOnSimulatedMac, aDataVaultStaysWhereverItStandsInTheLine) {
    const QString vault = u"/Library/Caches/com.apple.amsengagementd.classicdatavault"_s;
    put(u"/Library/Caches/a"_s);
    macsim::installFile(host->mac(), vault + u"/kept"_s, "bytes");
    put(u"/Library/Caches/z"_s);
    EXPECT_EQ(run({true, false, false}), (MaintenanceOutcome{false, {u"1 item(s) are protected by macOS."_s}}));
    EXPECT_EQ(names(u"/Library/Caches"_s), QStringList(vault.section(u'/', -1)));
}

TEST_F(MaintenanceOnSimulatedMac, aTrashThatIsntEmptiedIsSaid) {
    put(kUsersHome + u"/.Trash/old song.wav"_s);
    host->mac().state().update("permissions", [](macsim::Json& kept) { kept["automation"]["Finder"] = false; });
    const QString refused = u"The Trash wasn’t emptied: Quorvane may not control the Finder."_s;
    const QString place = u"Grant Automation permission for Finder in System Settings → Privacy & Security."_s;
    EXPECT_EQ(run({false, true, false}), (MaintenanceOutcome{false, {refused + u' ' + place}}));
    EXPECT_EQ(log(), u"Emptying Trash...\nEmptying Trash...\n  [ERROR] "_s + refused + u"\n  [INFO] "_s + place +
                         u"\n\nCleanup Complete!\n"_s);
    EXPECT_EQ(names(kUsersHome + u"/.Trash"_s), QStringList(u"old song.wav"_s));
}

TEST_F(MaintenanceOnSimulatedMac, whatOnlyAnAdministratorMayTakeFromTheTrashStaysWhenTheyRefuse) {
    volume(Actor::Root).createFolders(kUsersHome + u"/.Trash/roots"_s);
    volume(Actor::Root).write(kUsersHome + u"/.Trash/roots/kept"_s, "bytes");
    authorization.setAnswer(macsim::Authorization::Cancel);
    EXPECT_EQ(run({false, true, false}), (MaintenanceOutcome{false, {u"The Trash wasn’t emptied: User canceled."_s}}));
    EXPECT_TRUE(isThere(kUsersHome + u"/.Trash/roots/kept"_s));
}

TEST_F(MaintenanceOnSimulatedMac, downloadsThatMayNotBeReadStay) {
    put(kUsersHome + u"/Downloads/set.zip"_s);
    macsim::setPermission(host->mac(), "downloads", false);
    const MaintenanceOutcome outcome = run({false, false, true});
    EXPECT_EQ(outcome, (MaintenanceOutcome{false, {u"The Downloads folder may not be read."_s}}));
    EXPECT_EQ(outcome.alertTitle(), u"Completed with Issues"_s);
    EXPECT_TRUE(
        log().contains(u"  [ERROR] Failed to clear Downloads: /Users/alex/Downloads: Operation not permitted\n"_s));
    macsim::setPermission(host->mac(), "downloads", true);
    EXPECT_EQ(names(kUsersHome + u"/Downloads"_s), QStringList(u"set.zip"_s));
}

TEST_F(MaintenanceOnSimulatedMac, aHostileNameInTheSystemFolderDoesNothingAsRoot) {
    const QStringList hostile{u"a'; touch \"$HOME\"'; '"_s, u"b' ; rm -rf '"_s, u"c\\"_s, u"d\"e"_s, u"f\ng"_s};
    for (const QString& name : hostile) {
        volume(Actor::Root).createFolders(u"/Library/Caches"_s);
        QFile file(macFolder() + u"/Library/Caches/"_s + QString(name).replace(u'/', u':'));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    }
    put(u"/Library/Caches/$(touch broken)"_s);
    const macsim::MacPicture before = picture();
    EXPECT_TRUE(run({true, false, false}).succeeded);
    EXPECT_EQ(picture().changesSince(before), u"- /Library/Caches/$(touch broken): bytes\n"_s);
    EXPECT_EQ(names(u"/Library/Caches"_s), hostile);
}

TEST_F(MaintenanceOnSimulatedMac, whatALinkLeadsToStays) {
    put(kUsersHome + u"/Documents/thesis"_s);
    for (const QString& place : {kUserCaches, kUserCaches + u"inner/"_s, kUsersHome + u"/Downloads/"_s}) {
        volume().createFolders(place.chopped(1));
        volume().createLink(place + u"link"_s, kUsersHome + u"/Documents"_s);
        volume().createLink(place + u"dangling"_s, u"/nowhere"_s);
    }
    EXPECT_TRUE(run({true, false, true}).succeeded);
    EXPECT_EQ(names(kUserCaches), QStringList());
    EXPECT_EQ(names(kUsersHome + u"/Downloads"_s), QStringList());
    EXPECT_EQ(names(kUsersHome + u"/Documents"_s), QStringList(u"thesis"_s));
}

TEST_F(MaintenanceOnSimulatedMac, whatCannotBeRemovedIsCountedByItself) {
    for (const QString& name : {u"a"_s, u"b"_s, u"c"_s}) {
        put(kUsersHome + u"/Downloads/"_s + name);
    }
    start(R"([{"adapter": "files", "change": 2, "error": "Operation not permitted"}])");
    system->setDebugMode(true);
    EXPECT_EQ(run({false, false, true}), (MaintenanceOutcome{false, {u"2 item(s) stayed in Downloads."_s}}));
    EXPECT_EQ(log(), u"Purging Downloads folder...\n"
                     "Clearing Downloads folder...\n"
                     "  [ERROR] Removing b from Downloads: /Users/alex/Downloads/b: Operation not permitted\n"
                     "  [ERROR] Removing c from Downloads: /Users/alex/Downloads/c: Operation not permitted\n"
                     "  [APPLIED] Cleared 1 item(s) from Downloads.\n"
                     "  [ERROR] 2 item(s) stayed in Downloads.\n"
                     "\nCleanup Complete!\n"_s);
    EXPECT_EQ(names(kUsersHome + u"/Downloads"_s), QStringList({u"b"_s, u"c"_s}));
}

TEST_F(MaintenanceOnSimulatedMac, theEventLoopTicksWhileManyEntriesAreRemoved) {
    putMany(kUserCaches.chopped(1), 2000);
    putMany(kUserCaches + u"Browser"_s, 2000);
    const Ticks ticks;
    EXPECT_TRUE(run({true, false, false}).succeeded);
    EXPECT_EQ(names(kUserCaches), QStringList());
    EXPECT_GE(ticks.count(), 5);
}

TEST_F(MaintenanceOnSimulatedMac, aQuitStopsTheRemoval) {
    putMany(kUsersHome + u"/Downloads"_s, 3000);
    QTimer::singleShot(0, [this] { host->shutDown(); });
    run({false, false, true});
    EXPECT_GT(names(kUsersHome + u"/Downloads"_s).size(), 0);
}

} // namespace quorvane
