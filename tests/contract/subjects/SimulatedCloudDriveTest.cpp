// The simulated iCloud Drive: the contract, and the faults of the program's own writes.

#include "platform/simulated/SimulatedCloudDrive.h"
#include "contract/CloudDriveContract.h"
#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/FaultyFileManager.h"
#include "platform/simulated/SimulatedFileManager.h"

#include <functional>

namespace quorvane {

namespace {

class SimulatedCloudSubject final : public CloudSubject {
public:
    CloudDrive& drive() override { return m_drive; }
    FileManager& files() override { return m_files; }
    void setUp(bool hasAccount, bool hasContainer) override {
        change([&](macsim::Json& cloud) {
            cloud["account"] = hasAccount;
            cloud["container"] = hasContainer;
        });
    }
    void failWrites(const QString& error) override {
        change([&](macsim::Json& cloud) { cloud["writesFail"] = error.toStdString(); });
    }
    void addWaiting(const QString& path, const QByteArray& bytes, std::optional<int> looks,
                    const std::optional<QDateTime>& modified) override {
        change([&](macsim::Json& cloud) {
            macsim::Json file{{"text", bytes.toStdString()}};
            file["looks"] = looks ? macsim::Json(*looks) : macsim::Json();
            if (modified) {
                file["modified"] = modified->toString(Qt::ISODate).toStdString();
            }
            cloud["files"][path.toStdString()] = file;
        });
    }

private:
    void change(const std::function<void(macsim::Json&)>& change) { m_mac.mac.state().update("cloud", change); }

    macsim::SimulatedMacFolder m_mac;
    SimulatedFileManager m_files{m_mac.mac.volume(macsim::Actor::User)};
    SimulatedCloudDrive m_drive{m_mac.mac, m_files};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, CloudDriveContract,
                         ::testing::Values(&makeSubject<CloudSubject, SimulatedCloudSubject>));
INSTANTIATE_TEST_SUITE_P(Simulated, CloudDriveWithoutContainerContract,
                         ::testing::Values(&makeSubject<CloudAccountSubject, SimulatedCloudSubject>));

TEST(SimulatedCloudDrive, theProgramsWritesHaveTheFaultsOfItsFilesAndTheSystemsHaveNone) {
    macsim::SimulatedMacFolder mac;
    mac.mac.state().update("cloud", [](macsim::Json& cloud) {
        cloud = {{"account", true}, {"container", true}};
        cloud["files"][(kContainer + u"/a.json"_s).toStdString()] = {{"text", "cloud"}, {"looks", 0}};
    });
    SimulatedFileManager files(mac.mac.volume(macsim::Actor::User));
    FaultyFileManager faulty(files, {1, u"No space left on device"_s, std::nullopt});
    SimulatedCloudDrive drive(mac.mac, faulty);
    ASSERT_EQ(drive.containerFolder().result(), kContainer);
    drive.startDownloading(kContainer + u"/a.json"_s);
    EXPECT_TRUE(drive.isCurrent(kContainer + u"/a.json"_s));
    EXPECT_FALSE(drive.create(kContainer + u"/b.json"_s, "{}"));
    EXPECT_EQ(drive.replace(kContainer + u"/a.json"_s, "mine").result(),
              kContainer + u"/a.json: No space left on device"_s);
    const std::optional<QString> error = drive.remove(kContainer + u"/a.json"_s).result();
    EXPECT_EQ(error, kContainer + u"/a.json: No space left on device"_s);
    EXPECT_EQ(files.read(kContainer + u"/a.json"_s), "cloud");
}

} // namespace quorvane
