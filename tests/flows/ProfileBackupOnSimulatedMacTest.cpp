// Profiles saved in iCloud Drive and brought to another Mac, and backups that the disk or the program's end cuts short.

#include "fakes/InProcessMac.h"
#include "fakes/ManualClock.h"
#include "fakes/ProfileCloudSystem.h"
#include "fakes/ProfileStore.h"
#include "fakes/RehearsalProgram.h"
#include "profiles/ProfileCloudManager.h"

namespace quorvane {

namespace {

const QString kCloudFolder =
    u"/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app/Documents/Quorvane/ProfileBackups"_s;
const QString kAlexsBackups = u"/Users/alex"_s + kCloudFolder;
const QString kFirstStamped = u"backup-2026-03-14T20:30:00Z.json"_s;

UnifiedProfile defaultVersion(int number) {
    UnifiedProfile profile = UnifiedProfile::defaultProfile();
    profile.startup.items = {
        StartupItem::fromLaunchItem({u"Live %1"_s.arg(number), u"/Applications/Live.app"_s, false})};
    return profile;
}

UnifiedProfile live(bool hasCleanReboot = false) {
    UnifiedProfile profile = numberedProfile(1, u"Live"_s);
    profile.settings.cleanReboot = hasCleanReboot;
    return profile;
}

void signIn(const QString& macFolder) {
    macsim::Mac(macFolder).state().update("cloud", [](macsim::Json& cloud) {
        cloud = {{"account", true}, {"container", true}};
    });
}

/// The program on a Mac whose clock stands still.
struct Station {
    explicit Station(const QString& macFolder)
        : host(macFolder, QStringLiteral(MACSIM_PROGRAM), &clock)
        , profiles(host.host().files, profilesDirectory(host.host().machine))
        , manager(host.host().files, host.host().cloud, clock, host.host().machine) {}

    QStringList listed() {
        QCoro::waitFor(manager.refreshBackups());
        QStringList rows;
        for (const ProfileCloudBackupInfo& info : manager.backups()) {
            rows.append(info.id + u": "_s + info.detail());
        }
        return rows;
    }
    ProfileImportResult restore(const QString& id) {
        for (const ProfileCloudBackupInfo& info : manager.backups()) {
            if (info.id == id) {
                return QCoro::waitFor(manager.restore(info, profiles));
            }
        }
        ADD_FAILURE() << id.toStdString() << " isn't listed";
        return {};
    }
    /// What hinders it to restore the latest backup; "no error" where nothing does.
    QString latestRestoreError() {
        for (const ProfileCloudBackupInfo& info : manager.backups()) {
            if (info.id == kLatestBackupName) {
                return QCoro::waitFor(backupErrorOf(manager.restore(info, profiles)));
            }
        }
        return u"not listed"_s;
    }
    QStringList savedNames() const {
        QStringList names = namesOf(profiles.listProfiles());
        names.sort();
        return names;
    }

    ManualClock clock;
    InProcessHost host;
    ProfileManager profiles;
    ProfileCloudManager manager;
};

class TwoMacs : public RehearsalTest {
protected:
    TwoMacs() {
        signIn(macFolder());
        const QString file = QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/dj-laptop.json");
        macsim::createMac(otherFolder(), macsim::macDescriptionFromFile(file), macsim::simulatorTools().keys(),
                          QStringLiteral(MACSIM_PROGRAM));
    }
    QString otherFolder() const { return folder.path() + u"/Other"_s; }

    /// What iCloud does: the other Mac gets to know of the files, and their content comes when it is asked for.
    void sync() {
        const macsim::Volume volume = macsim::Mac(macFolder()).volume(macsim::Actor::User);
        macsim::Json files = macsim::Json::object();
        for (const QString& name : volume.list(kAlexsBackups)) {
            const QByteArray bytes = volume.read(kAlexsBackups + u'/' + name);
            const QString path = u"/Users/mika"_s + kCloudFolder + u'/' + name;
            files[path.toStdString()] = {{"text", bytes.toStdString()}, {"looks", 2}};
        }
        macsim::Mac(otherFolder()).state().update("cloud", [&](macsim::Json& cloud) { cloud["files"] = files; });
    }
    static QStringList keysOf(const QList<macsim::MacDifference>& differences) {
        QStringList keys;
        for (const macsim::MacDifference& difference : differences) {
            keys.append(difference.key);
        }
        return keys;
    }
};

/// A Mac on which two backups were made, and the Default profile and another one were changed since. Each test works on
/// copies of it.
class BackupCutShort : public RehearsalTest {
protected:
    BackupCutShort() {
        signIn(macFolder());
        Station station(macFolder());
        station.profiles.saveProfile(live());
        station.profiles.saveProfile(numberedProfile(2, u"Gig"_s));
        for (const int version : {1, 2}) {
            station.profiles.saveProfile(defaultVersion(version));
            QCoro::waitFor(station.manager.backupAllProfiles(station.profiles));
        }
        station.profiles.saveProfile(defaultVersion(3));
        station.profiles.saveProfile(live(true));
        m_first = contentOn(macFolder(), kFirstStamped);
    }

    QString copyOfMac() {
        const QString copy = folder.path() + u"/copy-%1"_s.arg(++m_copies);
        EXPECT_EQ(QProcess::execute(u"cp"_s, {u"-a"_s, macFolder(), copy}), 0);
        return copy;
    }
    Ending backUp(const QString& mac, const QByteArray& faults = "[]") {
        return start({u"--mac"_s, mac, u"--faults"_s, file(u"faults.json"_s, faults), u"backup"_s});
    }
    static QByteArray contentOn(const QString& mac, const QString& name) {
        return macsim::Mac(mac).volume(macsim::Actor::User).read(kAlexsBackups + u'/' + name);
    }
    static QStringList backupsOn(const QString& mac) {
        QStringList names = macsim::Mac(mac).volume(macsim::Actor::User).list(kAlexsBackups);
        names.removeIf([](const QString& name) { return !isBackupName(name); });
        names.sort();
        return names;
    }
    /// "3, 2" by the versions in the two copies.
    static QString versionsOn(const QString& mac) {
        QStringList versions;
        for (const QString& name : {kDefaultCurrentName, kDefaultPreviousName}) {
            const UnifiedProfile profile = decodeProfileCloudBackup(contentOn(mac, name)).profiles.first();
            versions.append(profile.startup.items.first().name.section(u' ', 1));
        }
        return versions.join(u", "_s);
    }

    /// Every file can be read; the last state of the Default profile, the earlier backup and a latest one are there.
    void expectNothingLost(const QString& mac) const {
        QList<QByteArray> stamped;
        for (const QString& name : backupsOn(mac)) {
            const QByteArray bytes = contentOn(mac, name);
            EXPECT_FALSE(decodeProfileCloudBackup(bytes).profiles.isEmpty()) << name.toStdString();
            if (backupKindOf(name) == ProfileCloudBackupKind::fullTimestamped) {
                stamped.append(bytes);
            }
        }
        EXPECT_TRUE((QStringList{u"2, 1"_s, u"2, 2"_s, u"3, 2"_s}).contains(versionsOn(mac)))
            << versionsOn(mac).toStdString();
        EXPECT_EQ(contentOn(mac, kFirstStamped), m_first);
        EXPECT_TRUE(stamped.contains(contentOn(mac, kLatestBackupName)));
    }
    /// And the next backup has all that this one should have had.
    void expectMadeGood(const QString& mac) {
        EXPECT_EQ(backUp(mac).status, 0);
        expectNothingLost(mac);
        EXPECT_EQ(versionsOn(mac), u"3, 2"_s);
        for (const UnifiedProfile& profile : decodeProfileCloudBackup(contentOn(mac, kLatestBackupName)).profiles) {
            EXPECT_EQ(profile.settings.cleanReboot, profile.name == u"Live"_s);
        }
    }

    QByteArray m_first;

private:
    int m_copies = 0;
};

QByteArray changeFault(int change, const QByteArray& what) {
    return R"([{"adapter": "files", "change": )" + QByteArray::number(change) + ", " + what + "}]";
}

} // namespace

TEST_F(TwoMacs, whatOneSavesTheOtherRestores) {
    Station first(macFolder());
    first.profiles.saveProfile(live());
    first.profiles.saveProfile(numberedProfile(2, u"Gig"_s));
    first.profiles.saveProfile(defaultVersion(1));
    const macsim::MacPicture before(macFolder());
    QCoro::waitFor(first.manager.backupAllProfiles(first.profiles));
    const QString container = kAlexsBackups.section(u'/', 0, -4);
    EXPECT_EQ(keysOf(macsim::MacPicture(macFolder()).differencesSince(before)),
              (QStringList{container.section(u'/', 0, -2), container, container + u"/Documents"_s,
                           container + u"/Documents/Quorvane"_s, kAlexsBackups, kAlexsBackups + u'/' + kFirstStamped,
                           kAlexsBackups + u"/default-current.json"_s, kAlexsBackups + u"/default-previous.json"_s,
                           kAlexsBackups + u"/latest.json"_s}))
        << "and nothing else";

    first.clock.time = first.clock.time.addDays(1);
    first.profiles.saveProfile(live(true));
    first.profiles.deleteProfile(u"Gig"_s);
    first.profiles.saveProfile(defaultVersion(2));
    QCoro::waitFor(first.manager.backupAllProfiles(first.profiles));
    const QString from = u" profile(s) from "_s + first.host.host().machine.computerName();
    const QString copyFrom = u"Default profile backup from "_s + first.host.host().machine.computerName();
    const QStringList rows{u"latest.json: 1"_s + from, u"default-current.json: "_s + copyFrom,
                           u"default-previous.json: "_s + copyFrom, u"backup-2026-03-15T20:30:00Z.json: 1"_s + from,
                           kFirstStamped + u": 2"_s + from};
    EXPECT_EQ(first.listed(), rows);

    sync();
    Station second(otherFolder());
    second.profiles.saveProfile(numberedProfile(8, u"live"_s));
    EXPECT_EQ(second.listed(), rows);
    EXPECT_EQ(second.restore(kFirstStamped), (ProfileImportResult{2, 0, {u"Live → Live 2"_s}}));
    EXPECT_EQ(second.savedNames(), (QStringList{u"Gig"_s, u"Live 2"_s, u"live"_s}));
    EXPECT_EQ(second.restore(kLatestBackupName), (ProfileImportResult{0, 1, {u"Live → Live 2"_s}}));
    EXPECT_TRUE(second.profiles.loadProfile(u"Live 2"_s)->settings.cleanReboot);
    EXPECT_EQ(second.restore(kDefaultPreviousName), (ProfileImportResult{1, 0, {}}));
    EXPECT_TRUE(second.profiles.loadProfile(u"Default"_s)->hasSameContent(defaultVersion(1)));
}

TEST_F(TwoMacs, whatIsNotOnTheDiskIsToldAndNeverWaitedForInTheKernel) {
    Station first(macFolder());
    first.profiles.saveProfile(live());
    QCoro::waitFor(first.manager.backupAllProfiles(first.profiles));
    ASSERT_TRUE(
        first.listed().contains(u"latest.json: 1 profile(s) from "_s + first.host.host().machine.computerName()));
    const QString latest = kAlexsBackups + u'/' + kLatestBackupName;
    const macsim::Mac mac(macFolder());
    const QByteArray bytes = mac.volume(macsim::Actor::User).read(latest);

    mac.volume(macsim::Actor::User).evict(latest); // after iCloud has said that it is there
    EXPECT_EQ(first.latestRestoreError(),
              u"Could not read the iCloud backup: It has not been downloaded from iCloud yet."_s);

    mac.state().update("cloud", [&](macsim::Json& cloud) {
        cloud["files"][latest.toStdString()] = {{"text", bytes.toStdString()},
                                                {"looks", macsim::Json()}}; // without a network
    });
    EXPECT_EQ(first.latestRestoreError(),
              u"Could not read the iCloud backup: It has not been downloaded from iCloud yet."_s);

    mac.state().update("cloud", [&](macsim::Json& cloud) { cloud["files"][latest.toStdString()]["looks"] = 1; });
    EXPECT_EQ(first.restore(kLatestBackupName), (ProfileImportResult{0, 1, {}}));
    EXPECT_EQ(mac.volume(macsim::Actor::User).read(latest), bytes);
}

TEST_F(TwoMacs, aBackupOfTheOtherRotatesWhatTheFirstHasSaved) {
    Station first(macFolder());
    first.profiles.saveProfile(defaultVersion(1));
    QCoro::waitFor(first.manager.backupDefaultProfile(first.profiles, std::nullopt));
    const QByteArray saved =
        macsim::Mac(macFolder()).volume(macsim::Actor::User).read(kAlexsBackups + u"/default-current.json"_s);
    sync();
    Station second(otherFolder());
    second.profiles.saveProfile(defaultVersion(2));
    QCoro::waitFor(second.manager.backupDefaultProfile(second.profiles, std::nullopt));
    const macsim::Volume volume = macsim::Mac(otherFolder()).volume(macsim::Actor::User);
    EXPECT_EQ(volume.read(u"/Users/mika"_s + kCloudFolder + u"/default-previous.json"_s), saved);
    EXPECT_NE(volume.read(u"/Users/mika"_s + kCloudFolder + u"/default-current.json"_s), saved);
}

TEST_F(BackupCutShort, aDiskThatIsFullFromAnyChangeOnCostsNothing) {
    int change = 1;
    for (Ending ending{1, {}, {}}; ending.status != 0; ++change) {
        SCOPED_TRACE(change);
        ASSERT_LT(change, 20);
        const QString mac = copyOfMac();
        ending = backUp(mac, changeFault(change, R"("error": "No space left on device")"));
        EXPECT_EQ(ending.error, QByteArray());
        EXPECT_EQ(ending.output.startsWith("\nError\n  Could not write the iCloud backup: "), ending.status == 1)
            << ending.output.toStdString();
        expectNothingLost(mac);
    }
    EXPECT_EQ(change, 10) << "four writes and five folders, of which the last may fail";
}

TEST_F(BackupCutShort, filesThatTheSystemLetsNobodyWriteCostNothing) {
    const auto copySize = static_cast<rlim_t>(contentOn(macFolder(), kDefaultCurrentName).size());
    const auto fullSize = static_cast<rlim_t>(m_first.size());
    ASSERT_GT(fullSize, copySize + 100);
    const struct {
        rlim_t limit;
        QByteArray reason;
        QString versions;
    } cases[] = {{512, (kAlexsBackups + u"/default-previous.json: No space left on device"_s).toUtf8(), u"2, 1"_s},
                 {copySize + 50, "Could not create the iCloud backup file.", u"3, 2"_s}};
    for (const auto& [limit, reason, versions] : cases) {
        const QString mac = copyOfMac();
        const Ending full = start({u"--mac"_s, mac, u"backup"_s}, limit);
        EXPECT_EQ(full.status, 1);
        EXPECT_EQ(full.output, "\nError\n  Could not write the iCloud backup: " + reason + '\n');
        EXPECT_EQ(versionsOn(mac), versions);
        EXPECT_EQ(backupsOn(mac), backupsOn(macFolder()));
        expectNothingLost(mac);
        expectMadeGood(mac);
    }
}

TEST_F(BackupCutShort, aProgramKilledAtAnyStepOfItsFilesLosesNothing) {
    int kills = 0;
    bool isLast = false;
    for (int change = 1; !isLast; ++change) {
        for (const QByteArray& step :
             {QByteArray(), QByteArray("write"), QByteArray("flush"), QByteArray("rename"), QByteArray("end")}) {
            SCOPED_TRACE("killed at change " + std::to_string(change) + ' ' + step.toStdString());
            const QString mac = copyOfMac();
            const QByteArray at = step.isEmpty() ? QByteArray() : R"(, "at": ")" + step + '"';
            const Ending ending = backUp(mac, changeFault(change, R"("kill": true)" + at));
            expectNothingLost(mac);
            if (ending.status == 0) { // there is no such step, or no such change any more
                isLast = step.isEmpty();
                break;
            }
            EXPECT_EQ(ending.status, -1);
            ++kills;
            if (step == "rename") {
                expectMadeGood(mac);
            }
            QDir(mac).removeRecursively();
        }
    }
    EXPECT_EQ(kills, 4 * 5 + 5) << "four writes and five folders";
}

} // namespace quorvane
