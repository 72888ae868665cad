// The system's library passes the contract. Its private entry points are looked up and never called.

#include "contract/BackgroundTaskPermissionsContract.h"
#include "platform/macos/MacBackgroundTaskPermissions.h"

namespace quorvane {

namespace {

class MacTaskPermissionsSubject final : public TaskPermissionsSubject {
public:
    BackgroundTaskPermissions& permissions() override { return m_permissions; }

private:
    MacBackgroundTaskPermissions m_permissions;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Mac, BackgroundTaskPermissionsContract,
                         ::testing::Values(&makeSubject<TaskPermissionsSubject, MacTaskPermissionsSubject>));

} // namespace quorvane
