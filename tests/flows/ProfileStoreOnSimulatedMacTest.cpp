#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/FaultyFileManager.h"
#include "platform/simulated/SimulatedFileManager.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileManager.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kFolder = u"/Users/alex/Library/Application Support/Quorvane/UnifiedProfiles"_s;

UnifiedProfile named(const QString& name, const QUuid& id) {
    UnifiedProfile profile;
    profile.id = id;
    profile.name = name;
    profile.dateCreated = QDateTime(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);
    return profile;
}

/// A store on a simulated Mac whose volume ignores case, or tells cases apart.
class ProfileStoreOnSimulatedMac : public ::testing::TestWithParam<bool> {
protected:
    macsim::SimulatedMacFolder folder{{}, {{"userName", "alex"}, {"caseSensitiveVolume", GetParam()}}};
    macsim::Volume volume = folder.mac.volume(macsim::Actor::User);
    SimulatedFileManager files{volume};
    ProfileManager profiles{files, kFolder};
    QUuid id = QUuid::createUuid();
};

} // namespace

TEST_P(ProfileStoreOnSimulatedMac, aRenameThatOnlyChangesCaseLeavesOneFileWithTheNewName) {
    profiles.saveProfile(named(u"live"_s, id));
    profiles.saveProfile(named(u"Live"_s, id));
    EXPECT_EQ(volume.list(kFolder), QStringList(u"Live.json"_s));
    ASSERT_EQ(profiles.listProfiles().size(), 1);
    EXPECT_EQ(profiles.listProfiles().first().name, u"Live"_s);
    ASSERT_TRUE(profiles.loadProfile(u"LIVE"_s).has_value());
}

TEST_P(ProfileStoreOnSimulatedMac, aFullDiskKeepsTheOldProfile) {
    profiles.saveProfile(named(u"Live"_s, id));
    FaultyFileManager full(files, {.failingChange = 2, .reason = u"No space left on device"_s, .killingChange = {}});
    ProfileManager onFullDisk(full, kFolder);
    EXPECT_THROW(onFullDisk.saveProfile(named(u"Renamed"_s, id)), FileError);
    EXPECT_EQ(volume.list(kFolder), QStringList(u"Live.json"_s));
    EXPECT_EQ(profiles.loadProfile(u"Live"_s)->id, id);
}

TEST_P(ProfileStoreOnSimulatedMac, aNameInsideAFileReachesNothingOutsideTheFolder) {
    const QString outside = u"/Users/alex/Library/Application Support/Quorvane/system_snapshot.json"_s;
    profiles.saveProfile(named(u"Live"_s, id));
    volume.write(outside, "precious");
    volume.write(kFolder + u"/trap.json"_s, encodeProfile(named(u"../system_snapshot"_s, id)));
    profiles.deleteProfile(u"../system_snapshot"_s);
    profiles.saveProfile(named(u"New"_s, id));
    EXPECT_EQ(volume.read(outside), "precious");
}

TEST_P(ProfileStoreOnSimulatedMac, aFolderThatCannotBeMadeListedOrWrittenGivesItsOwnOutcome) {
    ProfileManager elsewhere(files, u"/Library/Quorvane"_s);
    EXPECT_THROW(elsewhere.saveProfile(named(u"Live"_s, id)), FileError);
    EXPECT_TRUE(elsewhere.listProfiles().isEmpty());
    EXPECT_FALSE(elsewhere.loadProfile(u"Live"_s).has_value());
    elsewhere.deleteProfile(u"Live"_s);
    volume.write(u"/Users/alex/file"_s, "x");
    ProfileManager inFile(files, u"/Users/alex/file"_s);
    EXPECT_THROW(inFile.saveProfile(named(u"Live"_s, id)), FileError);
    EXPECT_TRUE(inFile.listProfiles().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(CaseIgnored, ProfileStoreOnSimulatedMac, ::testing::Values(false));
INSTANTIATE_TEST_SUITE_P(CaseSensitive, ProfileStoreOnSimulatedMac, ::testing::Values(true));

} // namespace quorvane
