// What is looked at anew after an action of the window.

#include "fakes/WindowActions.h"

namespace quorvane {

namespace {

class WindowListenerTest : public WindowActions {
protected:
    WindowListenerTest() {
        QObject::connect(&window, &WindowListener::snapshotChanged, [this] { told.append(u"snapshot"_s); });
        QObject::connect(&window, &WindowListener::backupsChanged, [this] { told.append(u"backups"_s); });
    }
    QStringList commandsFor(Anew what) {
        trace.clear();
        QCoro::waitFor(window.readAnew(what));
        waitForTasks();
        return trace.filter(u"$> System Events: list"_s);
    }

    QStringList told;
};

} // namespace

TEST_F(WindowListenerTest, onlyWhatMayHaveChangedIsLookedAt) {
    EXPECT_EQ(commandsFor({}), QStringList());
    EXPECT_FALSE(session->system.hasVerifiedSystem());
    EXPECT_EQ(told, QStringList());
}

TEST_F(WindowListenerTest, startupItemsAreDiscoveredAfresh) {
    QCoro::waitFor(session->system.discoverStartupItems(SystemManager::StartupRefresh::UseCache));
    EXPECT_EQ(commandsFor({.startupItems = true}).size(), 1) << "although they were known";
}

TEST_F(WindowListenerTest, theMatchIsScanned) {
    commandsFor({.match = true});
    EXPECT_TRUE(session->system.hasVerifiedSystem());
}

TEST_F(WindowListenerTest, snapshotAndBackupsAreForThoseWhoShowThem) {
    commandsFor({.snapshot = true});
    EXPECT_EQ(told, QStringList(u"snapshot"_s));
    commandsFor({.backups = true});
    EXPECT_EQ(told, (QStringList{u"snapshot"_s, u"backups"_s}));
}

} // namespace quorvane
