// iCloud Drive as a program without the entitlement sees it passes the contract.

#include "contract/CloudDriveContract.h"
#include "platform/macos/MacCloudDrive.h"

namespace quorvane {

namespace {

class MacCloudSubject final : public CloudAccountSubject {
public:
    CloudDrive& drive() override { return m_drive; }

private:
    MacCloudDrive m_drive;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Mac, CloudDriveWithoutContainerContract,
                         ::testing::Values(&makeSubject<CloudAccountSubject, MacCloudSubject>));

} // namespace quorvane
