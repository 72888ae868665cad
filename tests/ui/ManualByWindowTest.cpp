// What the manual tells people to do, done with the real window.

#include "fakes/WindowOnMac.h"
#include "ui/documentation/ShippedDocumentation.h"

#include <QRegularExpression>

namespace quorvane {

namespace {

class ManualByWindow : public WindowOnMac {
protected:
    /// What is to be typed into Terminal below a heading of the manual.
    static QString lineForTerminal(const QString& heading) {
        const QString manual = shippedDocumentation().manual;
        static const QRegularExpression code(u"`([^`]+)`"_s);
        return code.match(manual, manual.indexOf(heading)).captured(1);
    }
    void setPassword(const QString& password) {
        chooseTab(u"Settings"_s);
        waitUntilIdle();
        click(u"Set App Password…"_s);
        waitUntilSeen(u"Confirm Password"_s);
        type(password);
        press(Qt::Key_Tab);
        type(password);
        press(Qt::Key_Return);
        waitUntilSeen(u"Quorvane is Locked"_s);
    }
};

} // namespace

TEST_F(ManualByWindow, anOwnerWhoForgotThePasswordGetsInAndSetsANewOne) {
    enableLock();
    keepBaseline();
    launch();
    EXPECT_TRUE(isSeen(u"Quorvane is Locked"_s));
    quit();
    hasTerminated = false;
    startHost();
    shell(lineForTerminal(u"### When you forgot the password"_s));
    launchAndScan();
    EXPECT_FALSE(isSeen(u"Quorvane is Locked"_s));
    mainWindow()->resize(1000, 1600);
    setPassword(u"encore"_s);
    unlock(kLockPassword);
    waitUntilSeen(u"Incorrect password."_s);
    unlock(u"encore"_s);
    processEventsUntil([] { return isUsable(u"Lock Now"_s); });
}

} // namespace quorvane
