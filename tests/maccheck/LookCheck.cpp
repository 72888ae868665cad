// How the user wants programs to look, which is read and not changed.

#include "maccheck/CheckProgram.h"
#include "maccheck/People.h"
#include "platform/SystemNotifications.h"
#include "platform/macos/MacSystemLook.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class LookAtScreen : public CheckAtScreen {};

} // namespace

TEST_F(LookAtScreen, itIsReadAndListenedTo) {
    MacSystemLook look;
    const auto observation = look.observe([] {});
    EXPECT_TRUE(observation);
    tell(u"%1, motion %2, contrast %3"_s.arg(look.scheme() == ColorScheme::Dark ? u"dark"_s : u"light"_s,
                                             look.reducesMotion() ? u"reduced"_s : u"normal"_s,
                                             look.increasesContrast() ? u"increased"_s : u"normal"_s));
}

} // namespace quorvane
