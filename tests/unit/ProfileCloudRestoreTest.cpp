// The list of backups, restoring from it, and operations that come while others are under way.

#include "fakes/EventLoop.h"
#include "fakes/ProfileCloudSystem.h"

#include <functional>

namespace quorvane {

using namespace std::chrono_literals;

namespace {

const QString kNoCloud =
    u"iCloud Drive is not available. Sign in to iCloud in System Settings and enable iCloud Drive."_s;
const QString kNothingThrown = u"no error"_s;
const QString kLive = u"Live"_s;
const QString kGig = u"Gig"_s;

class BackupList : public ProfileCloudSystem {
protected:
    BackupList() {
        QObject::connect(&manager, &ProfileCloudManager::backupsChanged, [this] { ++changes; });
        QObject::connect(&manager, &ProfileCloudManager::isICloudAvailableChanged, [this] { ++availabilityChanges; });
    }
    int changes = 0;
    int availabilityChanges = 0;
};

class RestoredBackups : public ProfileCloudSystem {
protected:
    struct Restored {
        ProfileImportResult result;
        QString error = kNothingThrown;
    };
    QCoro::Task<Restored> restoring(ProfileCloudBackupInfo info) {
        Restored restored;
        try {
            restored.result = co_await manager.restore(info, profiles);
        } catch (const ProfileCloudError& error) {
            restored.error = error.message();
        }
        co_return std::as_const(restored);
    }
    ProfileCloudBackupInfo infoOf(const QString& name) const {
        return {name, pathOf(name), march, 1, u"Booth"_s, backupKindOf(name)};
    }
    Restored restore(const QString& name) { return QCoro::waitFor(restoring(infoOf(name))); }
    QString summaryOf(const QString& name) {
        const Restored restored = restore(name);
        const auto& [imported, updated, renamed] = restored.result;
        return restored.error == kNothingThrown ? summary(imported, updated, renamed) : restored.error;
    }
    QStringList savedNames() const {
        QStringList names = namesOf(profiles.listProfiles());
        names.sort();
        return names;
    }
};

class BackupTurns : public ProfileCloudSystem {
protected:
    BackupTurns() {
        profiles.saveProfile(numberedProfile(1, kLive));
        QObject::connect(&manager, &ProfileCloudManager::isBusyChanged, [this] { busy.append(manager.isBusy()); });
    }
    QString currentVersion() const {
        return backupIn(current).profiles.first().startup.items.first().name.section(u' ', 1);
    }
    QString previousVersion() const {
        return backupIn(previous).profiles.first().startup.items.first().name.section(u' ', 1);
    }
    /// The current copy is one that another Mac has just written and that takes its time.
    void letCurrentCopyWait() {
        cloud.waiting[pathOf(current)] = {encodeProfileCloudBackup(backupHolding({defaultVersion(1)}, march)), 4, {}};
    }

    QList<bool> busy;
};

} // namespace

// ---- The list

TEST_F(BackupList, isSortedByKindAndThenByDate) {
    addBackup(u"mine.json"_s, {numberedProfile(1, kLive)}, 2);
    addBackup(u"backup-1.json"_s, {numberedProfile(1, kLive), numberedProfile(2, kGig)}, 9);
    addBackup(previous, {defaultVersion(1)}, 99);
    addBackup(u"backup-2.json"_s, {}, 2);
    addBackup(latest, {numberedProfile(1, kLive)}, -99);
    addBackup(current, {defaultVersion(1)}, 5);
    EXPECT_EQ(refresh(), kNothingThrown);
    EXPECT_EQ(listedIds(),
              (QStringList{latest, current, previous, u"backup-1.json"_s, u"mine.json"_s, u"backup-2.json"_s}));
    EXPECT_EQ(manager.backups().at(3),
              (ProfileCloudBackupInfo{u"backup-1.json"_s, pathOf(u"backup-1.json"_s), march.addSecs(9), 2, u"Booth"_s,
                                      ProfileCloudBackupKind::fullTimestamped}));
    EXPECT_EQ(manager.backups().at(3).title(machine), u"Mar 14, 2026 at 8:30 PM"_s);
    EXPECT_EQ(changes, 1);
}

TEST_F(BackupList, leavesOutWhatCannotBeRead) {
    addBackup(latest, {numberedProfile(1, kLive)});
    const QList<QByteArray> damaged = damagedBackups(bytesOf(latest));
    for (qsizetype number = 0; number < damaged.size(); ++number) {
        files.addFile(pathOf(u"backup-%1.json"_s.arg(number)), damaged.at(number));
    }
    addBackup(previous, {defaultVersion(1)});
    files.failOn(MemoryFileManager::Operation::Read, pathOf(previous));
    files.addFolders(pathOf(u"folder.json"_s));
    files.addLink(pathOf(u"link.json"_s), u"/nowhere"_s);
    files.addFile(pathOf(u"notes.txt"_s), bytesOf(latest));
    files.addFile(pathOf(u".json"_s), bytesOf(latest));
    EXPECT_EQ(refresh(), kNothingThrown);
    EXPECT_EQ(listedIds(), QStringList(latest));
}

TEST_F(BackupList, downloadsWhatIsOnlyInICloudAndLeavesOutWhatDoesNotArrive) {
    const QByteArray bytes = encodeProfileCloudBackup(backupHolding({numberedProfile(1, kLive)}, march));
    cloud.waiting[pathOf(latest)] = {bytes, 19, {}};
    cloud.waiting[pathOf(stamped)] = {bytes, {}, {}};
    addBackup(current, {defaultVersion(1)});
    EXPECT_EQ(refresh(), kNothingThrown);
    EXPECT_EQ(listedIds(), (QStringList{latest, current}));
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>(20, 250ms));
    cloud.waiting[pathOf(stamped)].looks = 0;
    EXPECT_EQ(refresh(), kNothingThrown);
    EXPECT_EQ(listedIds(), (QStringList{latest, current, stamped}));
}

TEST_F(BackupList, asksForAllDownloadsFirstAndWaitsForThemTogether) {
    const QByteArray bytes = encodeProfileCloudBackup(backupHolding({numberedProfile(1, kLive)}, march));
    QStringList names;
    for (int number = 0; number < 12; ++number) {
        names.append(u"backup-%1.json"_s.arg(number, 2, 10, QChar(u'0')));
        const bool comes = number % 3 == 0;
        cloud.waiting[pathOf(names.last())] = {bytes, comes ? std::optional(number) : std::nullopt, {}};
    }
    EXPECT_EQ(refresh(), kNothingThrown);
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>(20, 250ms)) << "five seconds for all";
    EXPECT_EQ(listedIds(), (QStringList{names.at(9), names.at(6), names.at(3), names.at(0)}));
    const qsizetype firstLook = cloud.calls.indexOf(cloud.calls.filter(u"isCurrent"_s).first());
    EXPECT_EQ(cloud.calls.mid(0, firstLook).filter(u"startDownloading"_s).size(), 12);
    EXPECT_EQ(cloud.calls.filter(u"startDownloading"_s).size(), 12);
}

TEST_F(BackupList, isEmptyWithoutAnAccountOrAContainerAndTellsOnlyChanges) {
    addBackup(latest, {numberedProfile(1, kLive)});
    EXPECT_FALSE(manager.isICloudAvailable());
    EXPECT_EQ(refresh(), kNothingThrown);
    EXPECT_EQ(refresh(), kNothingThrown);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(availabilityChanges, 1);
    cloud.container.reset();
    EXPECT_EQ(refresh(), kNothingThrown);
    EXPECT_EQ(listedIds(), QStringList());
    EXPECT_TRUE(manager.isICloudAvailable()) << "the account is there";
    cloud.account = false;
    EXPECT_EQ(refresh(), kNothingThrown);
    EXPECT_EQ(refresh(), kNothingThrown);
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(availabilityChanges, 2);
}

TEST_F(BackupList, isKeptWhereTheFolderCannotBeListed) {
    addBackup(latest, {numberedProfile(1, kLive)});
    refresh();
    files.failOn(MemoryFileManager::Operation::List, folder);
    EXPECT_EQ(refresh(), u"Could not read the iCloud backup: %1: Operation not permitted"_s.arg(folder));
    EXPECT_EQ(listedIds(), QStringList(latest));
}

TEST_F(BackupList, knowsAtTheStartWhetherThereIsAnAccount) {
    EXPECT_TRUE(ProfileCloudManager(files, cloud, clock, machine).isICloudAvailable());
    cloud.account = false;
    EXPECT_FALSE(ProfileCloudManager(files, cloud, clock, machine).isICloudAvailable());
}

// ---- Restoring

TEST_F(RestoredBackups, areMergedIntoTheSavedProfiles) {
    profiles.saveProfile(numberedProfile(1, u"Old Live"_s, 9));
    profiles.saveProfile(numberedProfile(7, kGig));
    addBackup(latest, {numberedProfile(1, kLive), numberedProfile(2, kGig), numberedProfile(3, u"Set"_s)});
    const Restored restored = restore(latest);
    EXPECT_EQ(restored.error, kNothingThrown);
    EXPECT_EQ(restored.result, (ProfileImportResult{2, 1, {u"Gig → Gig 2"_s}}));
    EXPECT_EQ(savedNames(), (QStringList{kGig, u"Gig 2"_s, kLive, u"Set"_s}));
    EXPECT_EQ(takeChanges(), QStringList()) << "iCloud stays as it is";
}

TEST_F(RestoredBackups, ofTheDefaultProfileReplaceIt) {
    profiles.saveProfile(defaultVersion(2));
    addBackup(previous, {defaultVersion(1)});
    EXPECT_EQ(summaryOf(previous), u"1 updated"_s);
    EXPECT_TRUE(profiles.loadProfile(u"Default"_s)->hasSameContent(defaultVersion(1)));
    EXPECT_EQ(savedNames(), QStringList(u"Default"_s));
}

TEST_F(RestoredBackups, thatWereDeletedElsewhereAreNotFound) {
    addBackup(latest, {numberedProfile(1, kLive)});
    refresh();
    files.removeAsRoot(pathOf(latest));
    EXPECT_EQ(summaryOf(latest), u"The selected iCloud backup could not be found."_s);
    EXPECT_EQ(savedNames(), QStringList());
}

TEST_F(RestoredBackups, withoutProfilesAreRefused) {
    addBackup(latest, {});
    EXPECT_EQ(summaryOf(latest), u"The selected backup does not contain any profiles."_s);
}

TEST_F(RestoredBackups, thatAreDamagedChangeNothingAndSayWhy) {
    profiles.saveProfile(numberedProfile(1, kLive));
    addBackup(latest, {numberedProfile(1, u"Restored"_s)});
    const QList<QByteArray> damaged = damagedBackups(bytesOf(latest));
    for (const QByteArray& bytes : damaged) {
        files.addFile(pathOf(latest), bytes);
        const QString error = summaryOf(latest);
        EXPECT_TRUE(error.startsWith(u"Could not read the iCloud backup: "_s)) << error.toStdString();
        EXPECT_FALSE(error.contains(u'\n')) << error.toStdString();
        EXPECT_EQ(savedNames(), QStringList(kLive));
    }
    files.addFile(pathOf(latest), "[]");
    EXPECT_EQ(summaryOf(latest), u"Could not read the iCloud backup: not an object"_s);
    files.failOn(MemoryFileManager::Operation::Read, pathOf(latest));
    EXPECT_EQ(summaryOf(latest),
              u"Could not read the iCloud backup: %1: Operation not permitted"_s.arg(pathOf(latest)));
}

TEST_F(RestoredBackups, areDownloadedFirst) {
    const QByteArray bytes = encodeProfileCloudBackup(backupHolding({numberedProfile(1, kLive)}, march));
    cloud.waiting[pathOf(latest)] = {bytes, 2, {}};
    EXPECT_EQ(summaryOf(latest), u"1 imported"_s);
    EXPECT_EQ(clock.waits.count(250ms), 2); // an import that takes its time lets the event loop come round as well
    cloud.waiting[pathOf(stamped)] = {bytes, {}, {}};
    EXPECT_EQ(summaryOf(stamped), u"Could not read the iCloud backup: It has not been downloaded from iCloud yet."_s);
}

TEST_F(RestoredBackups, needAnAccount) {
    addBackup(latest, {numberedProfile(1, kLive)});
    cloud.account = false;
    EXPECT_EQ(summaryOf(latest), kNoCloud);
    EXPECT_EQ(savedNames(), QStringList());
}

TEST_F(RestoredBackups, withTwoProfilesOfOneNameKeepBoth) {
    addBackup(latest, {numberedProfile(1, kLive), numberedProfile(2, u"LIVE"_s)});
    EXPECT_EQ(summaryOf(latest), u"2 imported\nRenamed: LIVE → LIVE 2"_s);
    EXPECT_EQ(savedNames(), (QStringList{u"LIVE 2"_s, kLive}));
}

TEST_F(RestoredBackups, withTwoProfilesOfOneIdentityKeepBoth) {
    addBackup(latest, {numberedProfile(1, kLive), numberedProfile(1, kLive, 5)});
    EXPECT_EQ(summaryOf(latest), u"2 imported\nRenamed: Live → Live 2"_s);
    EXPECT_EQ(savedNames(), (QStringList{kLive, u"Live 2"_s}));
    EXPECT_EQ(profiles.loadProfile(kLive), numberedProfile(1, {}));
    EXPECT_NE(profiles.loadProfile(u"Live 2"_s), numberedProfile(1, {}));
}

TEST_F(RestoredBackups, ofManyProfilesLetTheEventLoopComeRound) {
    QList<UnifiedProfile> many;
    for (int number = 1; number <= 1000; ++number) {
        many.append(numberedProfile(number, u"Live %1"_s.arg(number)));
    }
    addBackup(latest, many);
    const int listings = files.listings();
    EXPECT_EQ(summaryOf(latest), u"1000 imported"_s);
    EXPECT_GE(clock.waits.count(0ms), 1);
    EXPECT_EQ(files.listings() - listings, 1);
}

TEST_F(RestoredBackups, areToldToBeUnfinishedWhenTheProgramQuits) {
    QList<UnifiedProfile> many;
    for (int number = 1; number <= 1000; ++number) {
        many.append(numberedProfile(number, u"Live %1"_s.arg(number)));
    }
    addBackup(latest, many);
    clock.shutDown();
    EXPECT_EQ(summaryOf(latest), u"Could not write the iCloud backup: The program is quitting."_s);
    EXPECT_LT(savedNames().size(), 1000);
}

TEST_F(RestoredBackups, withANameThatIsAPathStayInTheFolderOfTheProfiles) {
    const QString outside = u"/Users/alex/Library/Application Support/Quorvane/system_snapshot.json"_s;
    files.addFile(outside, "precious");
    addBackup(latest, {numberedProfile(1, u"../system_snapshot"_s), numberedProfile(2, u"/etc/x"_s)});
    EXPECT_EQ(summaryOf(latest), u"2 imported"_s);
    EXPECT_EQ(savedNames(), (QStringList{u"-etc-x"_s, u"..-system_snapshot"_s}));
    EXPECT_EQ(files.read(outside), "precious");
    EXPECT_FALSE(files.exists(u"/etc"_s));
}

TEST_F(RestoredBackups, tellWhatTheStoreRefuses) {
    addBackup(latest, {numberedProfile(1, kLive), numberedProfile(2, u" "_s), numberedProfile(3, kGig)});
    EXPECT_EQ(summaryOf(latest), u"Could not write the iCloud backup: Profile name is invalid."_s);
    EXPECT_EQ(savedNames(), QStringList(kLive)) << "what was saved until then stays";
    files.failAtChange(1);
    addBackup(stamped, {numberedProfile(4, u"Set"_s)});
    EXPECT_EQ(summaryOf(stamped), u"Could not write the iCloud backup: %1/Set.json: No space left on device"_s.arg(
                                      profiles.profilesDirectory()));
    files.addFile(profiles.profilesDirectory() + u"/copy.json"_s, encodeProfile(numberedProfile(1, kLive)));
    EXPECT_EQ(summaryOf(stamped), u"Could not write the iCloud backup: Duplicate values for key: "
                                  "'00000000-0000-4000-8000-000000000001'"_s);
}

// ---- One at a time

TEST_F(BackupTurns, areBusyDuringBackupsAndRestores) {
    letCurrentCopyWait();
    auto backup = backupErrorOf(manager.backupAllProfiles(profiles));
    EXPECT_TRUE(manager.isBusy());
    EXPECT_EQ(QCoro::waitFor(std::move(backup)), kNothingThrown);
    EXPECT_FALSE(manager.isBusy());
    EXPECT_EQ(busy, (QList<bool>{true, false}));
    const ProfileCloudBackupInfo info = manager.backups().first();
    EXPECT_EQ(QCoro::waitFor(backupErrorOf(manager.restore(info, profiles))), kNothingThrown);
    EXPECT_EQ(busy.size(), 4);
}

TEST_F(BackupTurns, areBusyOnceWhileSeveralRun) {
    letCurrentCopyWait();
    auto first = backupErrorOf(manager.backupAllProfiles(profiles));
    auto second = backupErrorOf(manager.ensureDefaultBackups(profiles));
    auto third = backupErrorOf(manager.backupDefaultProfile(profiles, std::nullopt));
    EXPECT_EQ(busy, QList<bool>{true});
    EXPECT_EQ(QCoro::waitFor(std::move(first)), kNothingThrown);
    EXPECT_TRUE(manager.isBusy()) << "the others have yet to come";
    EXPECT_EQ(QCoro::waitFor(std::move(second)), kNothingThrown);
    EXPECT_EQ(QCoro::waitFor(std::move(third)), kNothingThrown);
    EXPECT_EQ(busy, (QList<bool>{true, false}));
}

TEST_F(BackupTurns, areNotBusyWhereNoCopyIsMissing) {
    EXPECT_EQ(QCoro::waitFor(backupErrorOf(manager.ensureDefaultBackups(profiles))), kNothingThrown);
    busy.clear();
    EXPECT_EQ(QCoro::waitFor(backupErrorOf(manager.ensureDefaultBackups(profiles))), kNothingThrown);
    EXPECT_TRUE(busy.isEmpty());
}

TEST_F(BackupTurns, areOverWhenTheirResultIsKnownThoughTheListHasYetToCome) {
    cloud.waiting[pathOf(u"backup-of-another-mac.json"_s)] = {"{}", {}, {}};
    const auto isOverBeforeTheList = [this](const std::function<QCoro::Task<QString>()>& begin) {
        clock.waits.clear();
        busy.clear();
        QCoro::Task<QString> operation = begin();
        processEventsUntil([this] { return !manager.isBusy(); });
        const bool hasYetToList = !operation.isReady();
        EXPECT_EQ(QCoro::waitFor(std::move(operation)), kNothingThrown);
        EXPECT_EQ(clock.waits.count(std::chrono::milliseconds(250)), 20); // long work may have given way besides
        EXPECT_EQ(busy, (QList<bool>{true, false}));
        return hasYetToList;
    };
    EXPECT_TRUE(isOverBeforeTheList([this] { return backupErrorOf(manager.ensureDefaultBackups(profiles)); }));
    EXPECT_TRUE(isOverBeforeTheList([this] { return backupErrorOf(manager.backupAllProfiles(profiles)); }));
    EXPECT_TRUE(isOverBeforeTheList(
        [this] { return backupErrorOf(manager.backupDefaultProfile(profiles, defaultVersion(3))); }));
    EXPECT_EQ(listedIds().mid(0, 3), (QStringList{latest, current, previous}));
}

TEST_F(BackupTurns, areOverAfterAFailure) {
    cloud.account = false;
    EXPECT_EQ(backUpAll(), kNoCloud);
    EXPECT_FALSE(manager.isBusy());
    cloud.account = true;
    EXPECT_EQ(backUpAll(), kNothingThrown) << "and the next can go on";
    EXPECT_EQ(busy, (QList<bool>{true, false, true, false}));
}

TEST_F(BackupTurns, areNotBusyWhileTheListIsRead) {
    letCurrentCopyWait();
    auto list = backupErrorOf(manager.refreshBackups());
    EXPECT_FALSE(manager.isBusy());
    EXPECT_EQ(QCoro::waitFor(std::move(list)), kNothingThrown);
    EXPECT_TRUE(busy.isEmpty());
}

TEST_F(BackupTurns, loseNoStateWhenTwoRotationsMeet) {
    addBackup(current, {defaultVersion(1)});
    addBackup(previous, {defaultVersion(0)});
    cloud.isWritingLater = true;
    auto first = backupErrorOf(manager.backupDefaultProfile(profiles, defaultVersion(2)));
    auto second = backupErrorOf(manager.backupDefaultProfile(profiles, defaultVersion(3)));
    EXPECT_EQ(QCoro::waitFor(std::move(second)), kNothingThrown);
    EXPECT_EQ(QCoro::waitFor(std::move(first)), kNothingThrown);
    EXPECT_EQ(currentVersion(), u"3"_s);
    EXPECT_EQ(previousVersion(), u"2"_s) << "the state right before the last change";
}

TEST_F(BackupTurns, keepTheirOrderOverAFailure) {
    letCurrentCopyWait();
    cloud.writeError = u"The file is locked."_s;
    auto first = backupErrorOf(manager.backupDefaultProfile(profiles, defaultVersion(2)));
    auto list = backupErrorOf(manager.refreshBackups());
    auto last = backupErrorOf(manager.backupDefaultProfile(profiles, defaultVersion(3)));
    EXPECT_EQ(QCoro::waitFor(std::move(first)),
              u"Could not write the iCloud backup: Could not create the iCloud backup file."_s);
    cloud.writeError.reset();
    EXPECT_EQ(QCoro::waitFor(std::move(last)), kNothingThrown);
    EXPECT_EQ(QCoro::waitFor(std::move(list)), kNothingThrown);
    EXPECT_EQ(currentVersion(), u"3"_s);
    EXPECT_EQ(previousVersion(), u"1"_s);
}

} // namespace quorvane
