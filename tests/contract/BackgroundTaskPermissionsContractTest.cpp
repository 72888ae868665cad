// What the system library promises, whichever entry points it has.

#include "contract/BackgroundTaskPermissionsContract.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kServiceManagement = u"/System/Library/Frameworks/ServiceManagement.framework/ServiceManagement"_s;
const QString kNoEntryPoint = u"QuorvaneHasNoSuchEntryPoint"_s;

} // namespace

TEST_P(BackgroundTaskPermissionsContract, aLibraryThatIsNotThereDoesNotOpenAndHasNothing) {
    EXPECT_FALSE(permissions.openLibrary(u"/System/Library/Frameworks/Other.framework/Other"_s));
    EXPECT_FALSE(permissions.openLibrary(QString()));
    EXPECT_FALSE(permissions.entryPoint(kNoEntryPoint));
}

TEST_P(BackgroundTaskPermissionsContract, theLibraryOpensAgainAndAgainAndLacksWhatNobodyMade) {
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(permissions.openLibrary(kServiceManagement));
        EXPECT_FALSE(permissions.entryPoint(kNoEntryPoint));
        EXPECT_FALSE(permissions.entryPoint(QString()));
    }
}

} // namespace quorvane
