// When the lock screen asks for a finger.

#include "ui/lock/LockScreenView.h"
#include "fakes/ActionSystem.h"

#include <QGuiApplication>

namespace quorvane {

class LockScreenViewTest : public ActionSystem {
protected:
    void SetUp() override {
        biometrics.isUsable = true;
        biometrics.kind = BiometryType::TouchId;
        ASSERT_EQ(lock->enableLock(kPassword, kPassword), std::nullopt);
    }
    static void becomeActive() { Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive); }

    QWidget window;
    LockScreenView view{*lock, workspace, session->tasks, &window};
};

TEST_F(LockScreenViewTest, doesNotAskOverAnotherProgram) {
    workspace.isActiveNow = false;
    window.show();
    view.appear();
    QCoreApplication::processEvents();
    EXPECT_EQ(keychain.reasons, QStringList());
    workspace.isActiveNow = true;
    becomeActive();
    EXPECT_EQ(keychain.reasons, QStringList(u"Unlock Quorvane"_s));
    EXPECT_TRUE(lock->isUnlocked());
    becomeActive();
    EXPECT_EQ(keychain.reasons.size(), 1) << "once";
}

TEST_F(LockScreenViewTest, asksWhenItsWindowOpensInAProgramThatIsActive) {
    view.appear();
    EXPECT_EQ(keychain.reasons, QStringList()) << "nothing is seen yet";
    window.show();
    processEventsUntil([this] { return lock->isUnlocked(); });
    EXPECT_EQ(keychain.reasons, QStringList(u"Unlock Quorvane"_s));
}

} // namespace quorvane
