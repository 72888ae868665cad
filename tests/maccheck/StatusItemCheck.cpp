// The item in the menu bar, for a moment.

#include "maccheck/CheckProgram.h"
#include "maccheck/People.h"
#include "platform/macos/MacStatusItem.h"

#include <QMenu>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class StatusItemAtScreen : public CheckAtScreen {};

} // namespace

TEST_F(StatusItemAtScreen, itComesAndGoesWithItsMenu) {
    QMenu menu;
    menu.addAction(u"Quorvane’s check"_s);
    MacStatusItem item;
    item.setMenu(menu);
    EXPECT_TRUE(item.isShown());
    item.remove();
    item.remove();
}

} // namespace quorvane
