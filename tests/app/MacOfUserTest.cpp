#include "app/simulated/MacOfUser.h"

#include "app/ChildProgram.h"
#include "fakes/MacPicture.h"
#include "platform/simulated/SimulatedFileManager.h"
#include "platform/simulated/SimulatedMachine.h"
#include "profiles/ProfileManager.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kProgram = u"/nowhere/macsim"_s; // no command of the Mac is run here
const QString kState = u"/private/var/db/simulator/"_s;

/// Every path in a folder, with the bytes of those that are files.
QMap<QString, QByteArray> contentsOf(const QString& folder) {
    QMap<QString, QByteArray> contents;
    QDirIterator paths(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (paths.hasNext()) {
        QFile file(paths.next());
        const bool isFile = paths.fileInfo().isFile() && !paths.fileInfo().isSymLink();
        contents.insert(file.fileName(), isFile && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray());
    }
    return contents;
}

QStringList savedProfiles(const QString& macFolder) {
    const macsim::Mac mac(macFolder);
    SimulatedFileManager files(mac.volume(macsim::Actor::User));
    QStringList names;
    const ProfileListing listing = ProfileManager(files, profilesDirectory(SimulatedMachine(mac))).listing();
    for (const UnifiedProfile& profile : listing.profiles) {
        names.append(profile.name);
    }
    names.sort();
    return names + listing.unreadable;
}

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    file.write(bytes);
}

class MacOfUserTest : public ::testing::Test {
protected:
    QString mac() const { return dataFolder + u"/Mac"_s; }
    QStringList dataFolderNames() const {
        return QDir(dataFolder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    QString refusal() const {
        try {
            macOfUser(dataFolder, kProgram);
        } catch (const std::runtime_error& error) {
            return QString::fromUtf8(error.what());
        }
        return {};
    }
    void expectWholeMac() const {
        EXPECT_EQ(dataFolderNames(), QStringList(u"Mac"_s));
        EXPECT_EQ(macsim::Mac(mac()).machine().computerName, u"Booth"_s);
        EXPECT_EQ(savedProfiles(mac()),
                  QStringList({u"Club Night 2023"_s, u"Festival"_s, u"Live Set"_s, u"Rehearsal"_s, u"Studio Day"_s}));
    }

    QTemporaryDir folder;
    QString dataFolder = folder.path() + u"/share/Quorvane"_s;
};

} // namespace

TEST_F(MacOfUserTest, theFirstStartMakesTheLaptopWithTheExamplesSaved) {
    EXPECT_EQ(macOfUser(dataFolder, kProgram), mac());
    expectWholeMac();
    EXPECT_EQ(QFile::symLinkTarget(mac() + u"/usr/bin/defaults"_s), kProgram);
}

TEST_F(MacOfUserTest, aMacThatIsThereIsUsedAsItIs) {
    macOfUser(dataFolder, kProgram);
    const macsim::Volume disk = macsim::Mac(mac()).volume(macsim::Actor::User);
    disk.write(u"/Users/mika/Music/Sets/tonight.txt"_s, "intro");
    disk.remove(u"/Users/mika/Library/Application Support/Quorvane/UnifiedProfiles/Festival.json"_s);
    const QMap<QString, QByteArray> before = contentsOf(dataFolder);
    EXPECT_EQ(macOfUser(dataFolder, kProgram), mac());
    EXPECT_EQ(contentsOf(dataFolder), before);
}

TEST_F(MacOfUserTest, whatAStartLeftThatWasKilledIsNoMacAndGoes) {
    QDir().mkpath(mac() + u".new/private/var/db/simulator"_s);
    write(mac() + u".new"_s + kState + u"machine.json"_s, R"({"computerName": "Half"})");
    macOfUser(dataFolder, kProgram);
    expectWholeMac();
}

TEST_F(MacOfUserTest, aStartThatIsKilledLeavesNothingThatALaterOneTakesForAMac) {
    const QString half = mac() + u".new"_s;
    const QString profiles = half + u"/Users/mika/Library/Application Support/Quorvane/UnifiedProfiles"_s;
    for (const QString& sign : {half, half + kState + u"machine.json"_s, half + u"/Users/mika/Music/Sets"_s, profiles,
                                profiles + u"/Festival.json"_s, mac()}) {
        ChildProgram child({u"mac"_s, dataFolder});
        while (!QFileInfo::exists(sign) && child.isRunning()) {
            QCoreApplication::processEvents();
        }
        child.signal(SIGKILL);
        child.waitForEnd();
        macOfUser(dataFolder, kProgram);
        expectWholeMac();
        QDir(dataFolder).removeRecursively();
    }
}

TEST_F(MacOfUserTest, aDamagedMacIsSaidAndLeftAsItIs) {
    const struct {
        const char* damage;
        std::function<void()> inflict;
        QString said;
    } cases[] = {
        {"no machine", [this] { QFile::remove(mac() + kState + u"machine.json"_s); },
         u": there is no machine.json in it. "_s},
        {"half a machine", [this] { write(mac() + kState + u"machine.json"_s, R"({"userName": "mi)"); },
         u": machine.json is damaged. "_s},
        {"another machine", [this] { write(mac() + kState + u"machine.json"_s, R"({"userId": "x"})"); },
         u": machine.json is damaged. "_s},
        {"an empty subject", [this] { write(mac() + kState + u"displays.json"_s, {}); },
         u": displays.json is damaged. "_s},
        {"no home", [this] { QDir(mac() + u"/Users/mika"_s).removeRecursively(); },
         u": its user has no home folder. "_s},
        {"a file",
         [this] {
             QDir(mac()).removeRecursively();
             write(mac(), "x");
         },
         u": there is no machine.json in it. "_s},
        {"a link to nowhere",
         [this] {
             QDir(mac()).removeRecursively();
             QFile::link(u"/nowhere"_s, mac());
         },
         u": there is no machine.json in it. "_s},
    };
    for (const auto& row : cases) {
        macOfUser(dataFolder, kProgram);
        row.inflict();
        const QMap<QString, QByteArray> before = contentsOf(dataFolder);
        const QString said = refusal();
        EXPECT_TRUE(said.startsWith(u"The simulated Mac “%1” can’t be used: "_s.arg(mac()))) << said.toStdString();
        EXPECT_TRUE(said.contains(row.said)) << row.damage << ": " << said.toStdString();
        EXPECT_TRUE(said.endsWith(u". It is left as it is. Move it away or remove it, and start again: a new one is "
                                  "made then."_s))
            << said.toStdString();
        EXPECT_EQ(contentsOf(dataFolder), before) << row.damage;
        QDir(dataFolder).removeRecursively();
    }
}

TEST_F(MacOfUserTest, whereNothingCanBeMadeTheFolderIsNamed) {
    write(folder.path() + u"/share"_s, "a file where the folder should be");
    const QString said = refusal();
    EXPECT_TRUE(said.startsWith(u"The simulated Mac “%1” can’t be made: "_s.arg(mac()))) << said.toStdString();
    EXPECT_TRUE(said.endsWith(u". See that its folder can be written and the disk has room, and start again."_s));
}

TEST_F(MacOfUserTest, onAFullDiskNothingIsLeft) {
    ChildProgram child({u"mac"_s, dataFolder}, ChildProgram::DiskIs::Full);
    EXPECT_EQ(child.status(), 1);
    const QString said = QString::fromUtf8(child.errors());
    EXPECT_TRUE(said.startsWith(u"The simulated Mac “%1” can’t be made: "_s.arg(mac()))) << said.toStdString();
    EXPECT_EQ(dataFolderNames(), QStringList());
}

TEST_F(MacOfUserTest, aFolderThatNobodyMayWriteInIsRefused) {
#ifdef Q_OS_MACOS
    dataFolder = u"/System"_s; // sealed, for root too
#else
    dataFolder = u"/proc/self"_s; // the kernel's, for root too
#endif
    EXPECT_TRUE(refusal().startsWith(u"The simulated Mac “%1” can’t be made: "_s.arg(mac())));
    EXPECT_FALSE(QFileInfo::exists(mac()));
}

} // namespace quorvane
