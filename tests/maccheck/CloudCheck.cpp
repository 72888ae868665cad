// iCloud as this program, which has no entitlement, finds it.

#include "contract/Awaited.h"
#include "maccheck/CheckProgram.h"
#include "platform/macos/MacCloudDrive.h"

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(CloudOfMac, theAnswerIsNoContainerAndTheTimeItTook) {
    MacCloudDrive drive;
    const bool hasAccount = drive.hasAccount();
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(awaited(drive.containerFolder()), std::nullopt);
    tell(u"%1, no container after %2 ms"_s.arg(hasAccount ? u"an account"_s : u"no account"_s).arg(timer.elapsed()));
}

} // namespace quorvane
