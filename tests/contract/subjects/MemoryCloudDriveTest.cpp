// The iCloud Drive in memory passes the contract.

#include "fakes/MemoryCloudDrive.h"
#include "contract/CloudDriveContract.h"
#include "fakes/MemoryFileManager.h"

namespace quorvane {

namespace {

class MemoryCloudSubject final : public CloudSubject {
public:
    CloudDrive& drive() override { return m_drive; }
    FileManager& files() override { return m_files; }
    void setUp(bool hasAccount, bool hasContainer) override {
        m_drive.account = hasAccount;
        m_drive.container = hasContainer ? std::optional(kContainer) : std::nullopt;
    }
    void failWrites(const QString& error) override { m_drive.writeError = error; }
    void addWaiting(const QString& path, const QByteArray& bytes, std::optional<int> looks,
                    const std::optional<QDateTime>& modified) override {
        m_drive.waiting.insert(path, {bytes, looks, modified});
    }

private:
    MemoryFileManager m_files;
    MemoryCloudDrive m_drive{m_files};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Memory, CloudDriveContract, ::testing::Values(&makeSubject<CloudSubject, MemoryCloudSubject>));
INSTANTIATE_TEST_SUITE_P(Memory, CloudDriveWithoutContainerContract,
                         ::testing::Values(&makeSubject<CloudAccountSubject, MemoryCloudSubject>));

} // namespace quorvane
