#include "fakes/ProfileCloudSystem.h"

#include <gmock/gmock.h>

namespace quorvane {

using namespace std::chrono_literals;

namespace {

const QString kUnavailable =
    u"iCloud Drive is not available. Sign in to iCloud in System Settings and enable iCloud Drive."_s;
const QString kNotCreated = u"Could not write the iCloud backup: Could not create the iCloud backup file."_s;
const QString kNotDownloaded = u"Could not read the iCloud backup: It has not been downloaded from iCloud yet."_s;
const QString kCutShort = u"Could not write the iCloud backup: The program is quitting."_s;
const QString kNoError = u"no error"_s;

class DefaultCopies : public ProfileCloudSystem {
protected:
    /// What both copies hold: "1, 0" by the versions of the Default profile.
    QString versions() const { return versionIn(current) + u", "_s + versionIn(previous); }
    QString versionIn(const QString& name) const {
        if (!files.exists(pathOf(name))) {
            return u"none"_s;
        }
        const QList<StartupItem> items = backupIn(name).profiles.first().startup.items;
        return items.isEmpty() ? u"built in"_s : items.first().name.section(u' ', 1);
    }
    /// Another one, years older or newer, of the same profile.
    static UnifiedProfile saved(const UnifiedProfile& profile, int year) {
        UnifiedProfile other = profile;
        other.dateCreated = QDateTime(QDate(year, 1, 1), QTime(0, 0), Qt::UTC);
        return other;
    }
};

class FullBackups : public ProfileCloudSystem {
protected:
    FullBackups() {
        profiles.saveProfile(numberedProfile(1, u"Live"_s, 1));
        profiles.saveProfile(numberedProfile(2, u"Gig"_s, 2));
        profiles.saveProfile(defaultNamed(u"Default"_s));
    }
    /// So many backups of earlier days, the first the oldest. @return their names in that order
    QStringList addEarlier(int count) {
        QStringList names;
        for (int day = 0; day < count; ++day) {
            names.append(timestampedBackupName(march.addDays(day)));
            addBackup(names.last(), {numberedProfile(1, u"Live"_s)});
            cloud.modified[pathOf(names.last())] = march.addDays(day);
        }
        cloud.modified[pathOf(stamped)] = clock.time;
        return names;
    }
    QStringList stampedNames() const {
        QStringList names = cloud.list(folder);
        names.removeIf([](const QString& name) { return !name.startsWith(u"backup-"_s); });
        names.sort();
        return names;
    }
};

} // namespace

// ---- The copies of the Default profile

TEST_F(DefaultCopies, thatArriveWhileTheOtherOneIsReadAreNotReplaced) {
    const QByteArray held = encodeProfileCloudBackup(backupHolding({defaultVersion(1)}, march));
    const QByteArray older = encodeProfileCloudBackup(backupHolding({defaultVersion(0)}, march));
    cloud.waiting[pathOf(current)] = {held, 3, {}};
    QTimer::singleShot(0, [&] { files.addFile(pathOf(previous), older); });
    EXPECT_EQ(backUpDefault(defaultVersion(1)), kNoError);
    EXPECT_EQ(bytesOf(previous), older);
    EXPECT_EQ(takeChanges(), QStringList());
}

TEST_F(DefaultCopies, ofAFirstBackupAreTheSameBytes) {
    EXPECT_EQ(backUpDefault(defaultVersion(1)), kNoError);
    const QString create = u"create "_s + folder + u'/';
    const QString start = u"startDownloading "_s + folder + u'/';
    const QString look = u"isCurrent "_s + folder + u'/';
    QStringList calls = cloud.calls;
    std::sort(calls.begin() + 6, calls.end()); // the looks come in no particular order
    EXPECT_EQ(calls, (QStringList{u"containerFolder"_s, create + current, create + previous, u"containerFolder"_s,
                                  start + current, start + previous, look + current, look + previous}));
    EXPECT_EQ(bytesOf(current), bytesOf(previous));
    EXPECT_EQ(bytesOf(current), encodeProfileCloudBackup(backupHolding({defaultVersion(1)}, clock.time, u"Studio"_s)));
    EXPECT_EQ(listedIds(), (QStringList{current, previous}));
}

TEST_F(DefaultCopies, rotateWithEachChange) {
    backUpDefault(defaultVersion(1));
    const QByteArray first = bytesOf(current);
    clock.time = clock.time.addDays(1);
    takeChanges();
    EXPECT_EQ(backUpDefault(defaultVersion(2)), kNoError);
    EXPECT_EQ(takeChanges(), (QStringList{u"replace "_s + previous, u"replace "_s + current}));
    EXPECT_EQ(versions(), u"2, 1"_s);
    EXPECT_EQ(bytesOf(previous), first) << "byte for byte";
    EXPECT_EQ(backupIn(current).createdAt, clock.time);
    EXPECT_EQ(backUpDefault(defaultVersion(3)), kNoError);
    EXPECT_EQ(versions(), u"3, 2"_s);
}

TEST_F(DefaultCopies, stayAsTheyAreWhenTheContentIsTheSame) {
    backUpDefault(defaultVersion(1));
    backUpDefault(defaultVersion(2));
    const QByteArray held = bytesOf(current);
    const QByteArray before = bytesOf(previous);
    takeChanges();
    clock.time = clock.time.addYears(1);
    EXPECT_EQ(backUpDefault(saved(defaultVersion(2), 2030)), kNoError);
    EXPECT_EQ(takeChanges(), QStringList());
    EXPECT_EQ(bytesOf(current), held);
    EXPECT_EQ(bytesOf(previous), before);
}

TEST_F(DefaultCopies, rotateWhenOnlyTheNameHasChanged) {
    backUpDefault(defaultNamed(u"Default"_s));
    takeChanges();
    EXPECT_EQ(backUpDefault(defaultNamed(u"DEFAULT"_s)), kNoError);
    EXPECT_EQ(takeChanges(), (QStringList{u"replace "_s + previous, u"replace "_s + current}));
    EXPECT_EQ(backupIn(current).profiles.first().name, u"DEFAULT"_s);
    EXPECT_EQ(backupIn(previous).profiles.first().name, u"Default"_s);
}

TEST_F(DefaultCopies, takeTheSavedProfileWhereNoneIsGivenAndElseTheBuiltInOne) {
    EXPECT_EQ(backUpDefault(), kNoError);
    EXPECT_EQ(versions(), u"built in, built in"_s);
    EXPECT_EQ(backupIn(current).profiles.first().id, UnifiedProfile::defaultProfile().id);
    profiles.saveProfile(defaultVersion(7));
    EXPECT_EQ(backUpDefault(), kNoError);
    EXPECT_EQ(versions(), u"7, built in"_s);
}

TEST_F(DefaultCopies, areNotTouchedWhereTheSavedProfileCannotBeRead) {
    const QString path = profiles.profilesDirectory() + u"/Default.json"_s;
    const QString unreadable = u"Could not write the iCloud backup: The saved profile \"Default\" can't be read."_s;
    profiles.saveProfile(numberedProfile(1, u"Live"_s));
    profiles.saveProfile(numberedProfile(2, u"Gig"_s));
    files.addFile(profiles.profilesDirectory() + u"/Default copy.json"_s, encodeProfile(defaultVersion(3)));
    addBackup(current, {defaultVersion(1)});
    for (const bool isDamaged : {true, false}) {
        files.addFile(path, isDamaged ? "{" : encodeProfile(defaultVersion(2)));
        if (!isDamaged) {
            files.failOn(MemoryFileManager::Operation::Read, path);
        }
        EXPECT_EQ(backUpDefault(), unreadable);
        EXPECT_EQ(backUpDefault(defaultVersion(2)), unreadable);
        EXPECT_EQ(ensureDefault(), unreadable);
        EXPECT_EQ(backUpAll(), unreadable);
        EXPECT_EQ(takeChanges(), QStringList());
        EXPECT_EQ(versions(), u"1, none"_s);
    }
}

TEST_F(DefaultCopies, withoutACurrentOneKeepThePreviousUnlessTheProfileIsAnother) {
    const UnifiedProfile other = numberedProfile(5, u"Default"_s);
    const struct {
        std::optional<UnifiedProfile> saved;
        std::optional<UnifiedProfile> given;
        QStringList changes;
    } cases[] = {
        {{}, {}, {u"create "_s + current, u"replace "_s + previous}},
        {defaultVersion(1), {}, {u"create "_s + current}},
        {{}, defaultVersion(1), {u"create "_s + current}},
        {defaultVersion(2), defaultVersion(1), {u"create "_s + current}},
        {other, defaultVersion(1), {u"create "_s + current, u"replace "_s + previous}},
    };
    for (const auto& [stored, given, changes] : cases) {
        profiles.deleteProfile(u"Default"_s);
        files.removeAsRoot(pathOf(current));
        addBackup(previous, {defaultVersion(9)});
        if (stored) {
            profiles.saveProfile(*stored);
        }
        takeChanges();
        EXPECT_EQ(backUpDefault(given), kNoError);
        EXPECT_EQ(takeChanges(), changes);
        EXPECT_EQ(versionIn(previous) == u"9"_s, changes.size() == 1);
    }
}

TEST_F(DefaultCopies, withoutAPreviousOneGetTheCurrentOnesBytes) {
    addBackup(current, {defaultVersion(1)});
    const QByteArray held = bytesOf(current);
    EXPECT_EQ(backUpDefault(defaultVersion(1)), kNoError);
    EXPECT_EQ(takeChanges(), QStringList(u"create "_s + previous));
    EXPECT_EQ(bytesOf(current), held);
    EXPECT_EQ(bytesOf(previous), held);
    files.removeAsRoot(pathOf(previous));
    EXPECT_EQ(backUpDefault(defaultVersion(2)), kNoError);
    EXPECT_EQ(takeChanges(), (QStringList{u"create "_s + previous, u"replace "_s + current}));
    EXPECT_EQ(versions(), u"2, 1"_s);
}

TEST_F(DefaultCopies, whoseCurrentOneHoldsNoProfileAreMadeAnewWithoutThePrevious) {
    addBackup(previous, {defaultVersion(1)});
    const QByteArray whole = bytesOf(previous);
    QList<QByteArray> worthless = damagedBackups(whole);
    worthless.append(encodeProfileCloudBackup(backupHolding({}, march)));
    for (const QByteArray& bytes : std::as_const(worthless)) {
        files.addFile(pathOf(current), bytes);
        takeChanges();
        EXPECT_EQ(backUpDefault(defaultVersion(2)), kNoError);
        EXPECT_EQ(takeChanges(), QStringList(u"replace "_s + current)) << bytes.left(40).toStdString();
        EXPECT_EQ(versions(), u"2, 1"_s);
        EXPECT_EQ(bytesOf(previous), whole);
    }
    files.addFile(pathOf(current), "cut o");
    files.removeAsRoot(pathOf(previous));
    EXPECT_EQ(backUpDefault(defaultVersion(3)), kNoError);
    EXPECT_EQ(takeChanges(), (QStringList{u"replace "_s + current, u"create "_s + previous}));
    EXPECT_EQ(versions(), u"3, 3"_s);
}

TEST_F(DefaultCopies, areNotTouchedWhenTheCurrentOneCannotBeRead) {
    addBackup(current, {defaultVersion(2)});
    addBackup(previous, {defaultVersion(1)});
    files.failOn(MemoryFileManager::Operation::Read, pathOf(current));
    EXPECT_EQ(backUpDefault(defaultVersion(3)),
              u"Could not read the iCloud backup: %1: Operation not permitted"_s.arg(pathOf(current)));
    EXPECT_EQ(takeChanges(), QStringList());
    EXPECT_EQ(backUpAll(), u"Could not read the iCloud backup: %1: Operation not permitted"_s.arg(pathOf(current)));
    EXPECT_EQ(takeChanges(), QStringList());
}

TEST_F(DefaultCopies, areReadFirstWhereTheCurrentOneIsOnlyInICloud) {
    addBackup(previous, {defaultVersion(1)});
    const QByteArray elsewhere = encodeProfileCloudBackup(backupHolding({defaultVersion(2)}, march));
    cloud.waiting[pathOf(current)] = {elsewhere, 3, {}};
    EXPECT_EQ(backUpDefault(defaultVersion(3)), kNoError);
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>(3, 250ms));
    EXPECT_EQ(takeChanges(), (QStringList{u"replace "_s + previous, u"replace "_s + current}));
    EXPECT_EQ(bytesOf(previous), elsewhere) << "what the other Mac saved last";
    EXPECT_EQ(versions(), u"3, 2"_s);
}

TEST_F(DefaultCopies, areNotTouchedWhenTheNewestCurrentOneDoesNotArrive) {
    addBackup(previous, {defaultVersion(1)});
    for (const bool hasOlderOnDisk : {false, true}) {
        if (hasOlderOnDisk) {
            addBackup(current, {defaultVersion(2)});
        }
        cloud.waiting[pathOf(current)] = {bytesOf(previous), {}, {}};
        cloud.calls.clear();
        EXPECT_EQ(backUpDefault(defaultVersion(3)), kNotDownloaded);
        EXPECT_EQ(cloud.calls.filter(u"isCurrent"_s).size(), 20);
        EXPECT_EQ(takeChanges(), QStringList());
        EXPECT_EQ(versionIn(previous), u"1"_s);
    }
    EXPECT_EQ(clock.waits, QList<std::chrono::milliseconds>(40, 250ms));
}

TEST_F(DefaultCopies, areNotMadeAnewWhereBothAreOnlyInICloud) {
    const QByteArray elsewhere = encodeProfileCloudBackup(backupHolding({defaultVersion(2)}, march));
    cloud.waiting[pathOf(current)] = {elsewhere, {}, {}};
    cloud.waiting[pathOf(previous)] = {elsewhere, {}, {}};
    EXPECT_EQ(ensureDefault(), kNoError);
    EXPECT_EQ(cloud.calls, QStringList(u"containerFolder"_s));
    cloud.waiting[pathOf(current)].looks = 0;
    EXPECT_EQ(backUpDefault(defaultVersion(2)), kNoError);
    EXPECT_EQ(takeChanges(), QStringList()) << "the same content, and the previous one is there";
}

TEST_F(DefaultCopies, areMadeOnceWhereOneIsMissing) {
    profiles.saveProfile(defaultVersion(1));
    EXPECT_EQ(ensureDefault(), kNoError);
    EXPECT_EQ(takeChanges(), (QStringList{u"create "_s + current, u"create "_s + previous}));
    profiles.saveProfile(defaultVersion(2));
    EXPECT_EQ(ensureDefault(), kNoError);
    EXPECT_EQ(takeChanges(), QStringList()) << "both are there";
    EXPECT_EQ(versions(), u"1, 1"_s);
    files.removeAsRoot(pathOf(previous));
    EXPECT_EQ(ensureDefault(), kNoError);
    EXPECT_EQ(versions(), u"2, 1"_s);
}

TEST_F(DefaultCopies, areLeftAloneWithoutAnAccount) {
    cloud.account = false;
    EXPECT_EQ(ensureDefault(), kNoError);
    EXPECT_EQ(backUpDefault(), kUnavailable);
    EXPECT_TRUE(cloud.calls.isEmpty());
    EXPECT_FALSE(manager.isICloudAvailable());
    cloud.account = true;
    cloud.container.reset();
    EXPECT_EQ(ensureDefault(), kUnavailable) << "an account without a container";
    EXPECT_EQ(backUpDefault(), kUnavailable);
    EXPECT_TRUE(manager.isICloudAvailable());
    EXPECT_EQ(takeChanges(), QStringList());
}

TEST_F(DefaultCopies, loseNothingWhicheverWriteFails) {
    addBackup(current, {defaultVersion(2)});
    addBackup(previous, {defaultVersion(1)});
    files.failAtChange(1);
    EXPECT_EQ(backUpDefault(defaultVersion(3)),
              u"Could not write the iCloud backup: %1: No space left on device"_s.arg(pathOf(previous)));
    EXPECT_EQ(versions(), u"2, 1"_s);
    files.failAtChange(2);
    EXPECT_EQ(backUpDefault(defaultVersion(3)),
              u"Could not write the iCloud backup: %1: No space left on device"_s.arg(pathOf(current)));
    EXPECT_EQ(versions(), u"2, 2"_s);
    EXPECT_EQ(backUpDefault(defaultVersion(3)), kNoError) << "and the next time it is made good";
    EXPECT_EQ(versions(), u"3, 2"_s);
}

TEST_F(DefaultCopies, thatCannotBeCreatedAreTold) {
    files.addFolders(folder);
    files.failAtChange(1);
    EXPECT_EQ(backUpDefault(defaultVersion(1)), kNotCreated);
    EXPECT_EQ(versions(), u"none, none"_s);
    files.failAtChange(2);
    EXPECT_EQ(backUpDefault(defaultVersion(1)), kNotCreated);
    EXPECT_EQ(versions(), u"1, none"_s);
    cloud.writeError = u"The file is locked."_s;
    EXPECT_EQ(backUpDefault(defaultVersion(2)), kNotCreated);
    EXPECT_EQ(versions(), u"1, none"_s);
}

TEST_F(DefaultCopies, cannotBeWrittenWhereTheirFolderCannotBeMade) {
    files.addFile(container + u"/Documents/Quorvane"_s, "in the way");
    EXPECT_EQ(backUpDefault(), kNotCreated);
    EXPECT_EQ(files.read(container + u"/Documents/Quorvane"_s), "in the way");
}

// ---- Full backups

TEST_F(FullBackups, writeTheDefaultCopiesThenTheTimestampedFileThenTheLatest) {
    const ProfileCloudBackupResult result = QCoro::waitFor(manager.backupAllProfiles(profiles));
    const ProfileCloudBackup& written = result.backup;
    EXPECT_EQ(result.unreadable, QStringList());
    EXPECT_EQ(takeChanges(), (QStringList{u"create "_s + current, u"create "_s + previous, u"create "_s + stamped,
                                          u"create "_s + latest}));
    EXPECT_EQ(namesOf(written.profiles), (QStringList{u"Gig"_s, u"Live"_s}));
    EXPECT_EQ(written.formatVersion, 1);
    EXPECT_EQ(written.createdAt, clock.time);
    EXPECT_EQ(written.deviceName, u"Studio"_s);
    EXPECT_EQ(bytesOf(stamped), encodeProfileCloudBackup(written));
    EXPECT_EQ(bytesOf(latest), bytesOf(stamped));
    EXPECT_EQ(listedIds(), (QStringList{latest, current, previous, stamped}));
}

TEST_F(FullBackups, replaceTheLatestAndKeepTheEarlierOnes) {
    EXPECT_EQ(backUpAll(), kNoError);
    const QByteArray first = bytesOf(latest);
    clock.time = clock.time.addSecs(1);
    profiles.deleteProfile(u"Gig"_s);
    takeChanges();
    EXPECT_EQ(backUpAll(), kNoError);
    const QString second = u"backup-2026-11-15T21:05:38Z.json"_s;
    EXPECT_EQ(takeChanges(), (QStringList{u"create "_s + second, u"replace "_s + latest}));
    EXPECT_EQ(bytesOf(stamped), first);
    EXPECT_EQ(namesOf(backupIn(second).profiles), QStringList(u"Live"_s));
    EXPECT_EQ(backUpAll(), kNoError);
    EXPECT_EQ(takeChanges(), (QStringList{u"replace "_s + second, u"replace "_s + latest})) << "of the same second";
}

TEST_F(FullBackups, leaveOutOnlyTheProfileThatHasCopiesOfItsOwn) {
    UnifiedProfile byIdentity = defaultVersion(1);
    byIdentity.name = u"Mine"_s;
    profiles.saveProfile(byIdentity);
    profiles.saveProfile(numberedProfile(9, u"DEFAULT"_s));
    EXPECT_EQ(backUpAll(), kNoError);
    EXPECT_EQ(namesOf(backupIn(current).profiles), QStringList(u"DEFAULT"_s));
    QStringList names = namesOf(backupIn(latest).profiles);
    names.sort();
    EXPECT_EQ(names, (QStringList{u"Gig"_s, u"Live"_s, u"Mine"_s}));
}

TEST_F(FullBackups, holdACopyOfTheDefaultProfileThatHasANameOfItsOwn) {
    UnifiedProfile mine = defaultVersion(4);
    mine.name = u"Mine"_s;
    files.addFile(profiles.profilesDirectory() + u"/Mine.json"_s, encodeProfile(mine));
    EXPECT_EQ(backUpAll(), kNoError);
    EXPECT_EQ(namesOf(backupIn(current).profiles), QStringList(u"Default"_s));
    EXPECT_TRUE(namesOf(backupIn(latest).profiles).contains(u"Mine"_s));
}

TEST_F(FullBackups, tellWhichFilesAreNotInThem) {
    files.addFile(profiles.profilesDirectory() + u"/Club.json"_s, "{");
    const ProfileCloudBackupResult result = QCoro::waitFor(manager.backupAllProfiles(profiles));
    EXPECT_EQ(namesOf(result.backup.profiles), (QStringList{u"Gig"_s, u"Live"_s}));
    EXPECT_EQ(result.unreadable, QStringList(u"Club"_s));
}

TEST_F(FullBackups, ofNothingButTheDefaultProfileAreRefusedAfterItsCopies) {
    profiles.deleteProfile(u"Live"_s);
    profiles.deleteProfile(u"Gig"_s);
    EXPECT_EQ(backUpAll(), u"There are no custom profiles to back up."_s);
    EXPECT_EQ(takeChanges(), (QStringList{u"create "_s + current, u"create "_s + previous}));
    EXPECT_EQ(listedIds(), (QStringList{current, previous}));
}

TEST_F(FullBackups, needICloud) {
    cloud.container.reset();
    EXPECT_EQ(backUpAll(), kUnavailable);
    cloud.account = false;
    EXPECT_EQ(backUpAll(), kUnavailable);
    EXPECT_EQ(takeChanges(), QStringList());
}

TEST_F(FullBackups, endWhereTheContainerGoesBetweenTwoWrites) {
    for (qsizetype writes = 1; writes <= 3; ++writes) {
        for (const QString& name : files.exists(folder) ? files.list(folder) : QStringList()) {
            files.removeAsRoot(pathOf(name));
        }
        takeChanges();
        qsizetype written = 0;
        cloud.whenWritten = [&] {
            if (++written == writes) {
                cloud.container.reset();
            }
        };
        const QString error = backUpAll();
        EXPECT_NE(error, kNoError) << writes;
        EXPECT_EQ(files.list(folder).size(), writes) << "what was written stays";
        for (const QString& name : files.list(folder)) {
            EXPECT_FALSE(backupIn(name).profiles.isEmpty()) << name.toStdString();
        }
        cloud.container = container;
    }
}

TEST_F(FullBackups, stopAtTheWriteThatFailsAndKeepWhatWasThere) {
    EXPECT_EQ(backUpAll(), kNoError);
    const QByteArray before = bytesOf(latest);
    const QByteArray defaultBefore = bytesOf(current);
    for (int failing = 1; failing <= 4; ++failing) {
        clock.time = clock.time.addSecs(1);
        profiles.saveProfile(defaultVersion(failing));
        files.addFile(pathOf(current), defaultBefore);
        takeChanges();
        files.failAtChange(failing);
        EXPECT_TRUE(backUpAll().startsWith(u"Could not write the iCloud backup: "_s));
        EXPECT_EQ(takeChanges().size(), failing);
        EXPECT_EQ(bytesOf(latest), before);
        EXPECT_EQ(bytesOf(previous), defaultBefore);
        for (const QString& name : files.list(folder)) {
            EXPECT_FALSE(backupIn(name).profiles.isEmpty()) << name.toStdString();
        }
    }
}

TEST_F(FullBackups, ofAClockThatNoFileCanHoldAreNotWritten) {
    clock.time = QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC);
    EXPECT_EQ(backUpAll(), u"Could not write the iCloud backup: The date can't be written."_s);
    EXPECT_EQ(takeChanges(), QStringList());
}

TEST_F(FullBackups, endSoonWhenTheProgramQuits) {
    addBackup(current, {defaultVersion(1)});
    cloud.waiting[pathOf(current)] = {"{}", {}, {}};
    clock.shutDown();
    // On a busy machine already the backup's own text takes more than one turn.
    EXPECT_THAT(backUpAll(), ::testing::AnyOf(kNotDownloaded, kCutShort));
    cloud.shutDown();
    EXPECT_THAT(backUpAll(), ::testing::AnyOf(kUnavailable, kCutShort));
    EXPECT_EQ(takeChanges(), QStringList());
}

// ---- Pruning

TEST_F(FullBackups, areTwentyWithTheirDateAndTheOldestGoes) {
    const QStringList earlier = addEarlier(20);
    for (const QString& name : {latest, current, previous}) {
        addBackup(name, {defaultVersion(1)});
        cloud.modified[pathOf(name)] = march.addYears(-5);
    }
    takeChanges();
    EXPECT_EQ(backUpAll(), kNoError);
    EXPECT_EQ(takeChanges().filter(u"remove"_s), QStringList(u"remove "_s + earlier.first()));
    EXPECT_EQ(stampedNames(), earlier.mid(1) + QStringList(stamped));
    EXPECT_EQ(listedIds().size(), 3 + 20);
}

TEST_F(FullBackups, haveTheOldestOnesGoneBeforeTheOperationEnds) {
    const QStringList earlier = addEarlier(22);
    cloud.isWritingLater = true;
    EXPECT_EQ(backUpAll(), kNoError);
    EXPECT_EQ(stampedNames(), earlier.mid(3) + QStringList(stamped));
}

TEST_F(FullBackups, areNotPrunedAtTwenty) {
    addEarlier(19);
    EXPECT_EQ(backUpAll(), kNoError);
    EXPECT_EQ(takeChanges().filter(u"remove"_s), QStringList());
    EXPECT_EQ(stampedNames().size(), 20);
}

TEST_F(FullBackups, goByTheDateOfTheirFileWithTheUnknownFirst) {
    const QStringList earlier = addEarlier(21);
    cloud.modified[pathOf(earlier.at(0))] = march.addYears(9);
    cloud.modified[pathOf(earlier.at(7))] = march.addDays(-1);
    files.removeAsRoot(pathOf(earlier.at(12)));
    cloud.waiting[pathOf(earlier.at(12))] = {"{}", {}, {}}; // only in iCloud, which doesn't say of when
    cloud.modified[pathOf(u"backup-2026-11-15T21:05:42Z.json"_s)] = clock.time; // after five seconds in vain
    takeChanges();
    EXPECT_EQ(backUpAll(), kNoError);
    EXPECT_EQ(takeChanges().filter(u"remove"_s),
              (QStringList{u"remove "_s + earlier.at(7), u"remove "_s + earlier.at(12)}));
    EXPECT_FALSE(cloud.waiting.contains(pathOf(earlier.at(12))));
}

TEST_F(FullBackups, ofOneMomentGoByTheirNames) {
    const QStringList earlier = addEarlier(22);
    for (const QString& name : earlier) {
        cloud.modified[pathOf(name)] = march;
    }
    takeChanges();
    EXPECT_EQ(backUpAll(), kNoError);
    EXPECT_EQ(takeChanges().filter(u"remove"_s),
              (QStringList{u"remove "_s + earlier.at(2), u"remove "_s + earlier.at(1), u"remove "_s + earlier.at(0)}));
}

TEST_F(FullBackups, takeNothingElseAlongWhenTheOldestGoes) {
    addEarlier(19);
    files.addFile(pathOf(u"notes.txt"_s), "mine");
    files.addFile(pathOf(u".json"_s), "mine");
    files.addFolders(pathOf(u"archive.json"_s));
    for (const QString& name : {u"notes.txt"_s, u".json"_s, u"archive.json"_s}) {
        cloud.modified[pathOf(name)] = march.addYears(-5);
    }
    takeChanges();
    EXPECT_EQ(backUpAll(), kNoError);
    EXPECT_EQ(takeChanges().filter(u"remove"_s), QStringList());
}

TEST_F(FullBackups, thatCannotBeRemovedEndTheOperation) {
    const QStringList earlier = addEarlier(22);
    files.failOn(MemoryFileManager::Operation::Remove, pathOf(earlier.at(1)));
    takeChanges();
    EXPECT_EQ(backUpAll(),
              u"Could not write the iCloud backup: %1: Operation not permitted"_s.arg(pathOf(earlier.at(1))));
    EXPECT_EQ(takeChanges().filter(u"remove"_s),
              (QStringList{u"remove "_s + earlier.at(2), u"remove "_s + earlier.at(1)}));
    EXPECT_TRUE(files.exists(pathOf(earlier.at(0))));
    EXPECT_EQ(namesOf(backupIn(latest).profiles), (QStringList{u"Gig"_s, u"Live"_s})) << "what was written stays";
    EXPECT_FALSE(listedIds().contains(latest)) << "the later steps don't run";
}

} // namespace quorvane
