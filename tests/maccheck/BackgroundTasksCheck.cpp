// The two private entry points, looked up and not called.

#include "maccheck/CheckProgram.h"
#include "platform/macos/MacBackgroundTaskPermissions.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(BackgroundTasks, itIsToldWhichEntryPointsThereAre) {
    MacBackgroundTaskPermissions permissions;
    ASSERT_TRUE(permissions.openLibrary(u"/System/Library/Frameworks/ServiceManagement.framework/ServiceManagement"_s));
    QStringList found;
    for (const QString& symbol : {u"SMLoginItemSetUserAllowed_4BTM"_s, u"SMLaunchdPlistSetUserAllowed_4BTM"_s}) {
        found.append(symbol + (permissions.entryPoint(symbol) ? u" is there"_s : u" is not there"_s));
    }
    tell(found.join(u", "_s));
}

} // namespace quorvane
