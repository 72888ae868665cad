// Whether this program is launched at login, which is read and not changed.

#include "maccheck/CheckProgram.h"
#include "platform/macos/MacLoginService.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(LoginServiceOfMac, aProgramThatNobodyRegisteredIsNotEnabled) {
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(MacLoginService().state(), LoginService::State::NotEnabled);
    tell(u"%1 ms"_s.arg(timer.elapsed()));
}

} // namespace quorvane
