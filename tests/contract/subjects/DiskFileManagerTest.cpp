// The disk's file manager passes the contracts.

#include "contract/subjects/DiskFileSubject.h"

namespace quorvane {

INSTANTIATE_TEST_SUITE_P(Disk, FileManagerContract, ::testing::Values(&makeSubject<FileSubject, DiskFileSubject>));
INSTANTIATE_TEST_SUITE_P(Disk, TreeRemovalContract, ::testing::Values(&makeSubject<FileSubject, DiskFileSubject>));

} // namespace quorvane
