// The status item's menu as it stands on the screen, over a session on scripted ports.

#include "ui/menu/MenuBarManager.h"

#include "core/OneLine.h"
#include "fakes/StatusMenuOnScreen.h"
#include "fakes/WindowActions.h"
#include "fakes/WindowOnMac.h"
#include "ui/QuorvaneStyle.h"

#include <memory>

namespace quorvane {

namespace {

const UnifiedProfile kStudio = numberedProfile(2, u"Studio"_s);

/// Counts what changes in a menu: entries that come, go, or show something else.
class MenuChanges : public QObject {
public:
    explicit MenuChanges(QMenu& menu) { menu.installEventFilter(this); }
    int count() const { return m_count; }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        const QEvent::Type type = event->type();
        const bool isChange =
            type == QEvent::ActionAdded || type == QEvent::ActionChanged || type == QEvent::ActionRemoved;
        m_count += isChange ? 1 : 0;
        return false;
    }

private:
    int m_count = 0;
};

class MenuBarManagerTest : public WindowActions {
protected:
    MenuBarManagerTest() {
        QObject::connect(manager.get(), &MenuBarManager::windowRequested, [this] { requested.append(u"window"_s); });
        QObject::connect(manager.get(), &MenuBarManager::quitRequested, [this] { requested.append(u"quit"_s); });
    }
    void SetUp() override {
        configure();
        listProfiles();
        letMenuFollow();
        steps.clear();
    }
    void TearDown() override {
        WindowActions::TearDown();
        manager.reset();
    }
    void configure() { manager->configureManagers(*session, window); }
    /// What changes is in the menu when the event loop has come round.
    static void letMenuFollow() {
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }
    /// A scan has found the profile, and nothing was ever applied by this program.
    void findByScan(const UnifiedProfile& profile) {
        makeActive(profile);
        defaults.values.remove(kQuorvaneLastAppliedProfileName);
        session->activeProfile.update();
        letMenuFollow();
    }
    StatusMenuOnScreen menu() const { return StatusMenuOnScreen(*item.menu); }

    PlacedStatusItem item;
    std::unique_ptr<MenuBarManager> manager = std::make_unique<MenuBarManager>(item, alerts);
    QStringList requested;
};

/// Before it has been told what it speaks of.
class UnreadyMenu : public MenuBarManagerTest {
protected:
    void SetUp() override {}
};

} // namespace

TEST_F(UnreadyMenu, hasDefaultAsTheCurrentOne) {
    EXPECT_EQ(menu().titles(), (QStringList{u"Quorvane"_s, u"-"_s, u"Restore Default"_s, u"-"_s, u"Open Quorvane"_s,
                                            u"-"_s, u"Quit Quorvane"_s}));
    EXPECT_EQ(menu().ticked(), QStringList(u"Restore Default"_s));
}

TEST_F(UnreadyMenu, takesTheItemAlongWhenItGoes) {
    manager.reset();
    EXPECT_EQ(item.menu, nullptr);
}

TEST_F(UnreadyMenu, saysSoAndOffersTheWindow) {
    alerts.hold();
    menu().choose(u"Restore Default"_s);
    EXPECT_EQ(steps, QStringList(u"! Quorvane Not Ready | Open the Quorvane window first, then try again from the menu "
                                 "bar. | Open Quorvane, Cancel"_s));
    alerts.answer(1);
    letMenuFollow();
    EXPECT_EQ(requested, QStringList());

    menu().choose(u"Restore Default"_s);
    alerts.answer(0);
    letMenuFollow();
    EXPECT_EQ(requested, QStringList(u"window"_s));
}

TEST_F(UnreadyMenu, leadsToTheWindowAndOutAllTheSame) {
    menu().choose(u"Open Quorvane"_s);
    menu().choose(u"Quit Quorvane"_s);
    EXPECT_EQ(requested, (QStringList{u"window"_s, u"quit"_s}));
    EXPECT_EQ(steps, QStringList());
}

TEST_F(MenuBarManagerTest, isTheOneOfTheProcessWhileItLives) {
    EXPECT_EQ(MenuBarManager::shared(), manager.get());
    manager.reset();
    EXPECT_EQ(MenuBarManager::shared(), nullptr);
}

TEST_F(MenuBarManagerTest, standsOnceHoweverOftenItIsConfigured) {
    const QMenu* const first = item.menu;
    const QStringList titles = menu().titles();
    configure();
    configure();
    EXPECT_EQ(item.menu, first);
    EXPECT_EQ(item.placements, 1);
    EXPECT_EQ(menu().titles(), titles);

    alerts.press(1);
    menu().choose(u"Restore Default"_s);
    waitForTasks();
    EXPECT_EQ(steps.filter(u"! Apply Default Profile?"_s).size(), 1);
}

TEST_F(MenuBarManagerTest, showsTheSavedProfilesAndLeavesTheirHeaderOutWithoutAny) {
    EXPECT_EQ(menu().titles(), (QStringList{u"Quorvane"_s, u"-"_s, u"Restore Default"_s, u"-"_s, u"Saved Profiles"_s,
                                            u"Live"_s, u"-"_s, u"Open Quorvane"_s, u"-"_s, u"Quit Quorvane"_s}));
    EXPECT_EQ(menu().usable(), (QStringList{u"Restore Default"_s, u"Live"_s, u"Open Quorvane"_s, u"Quit Quorvane"_s}));

    session->savedProfiles.remove(u"Live"_s);
    listProfiles();
    letMenuFollow();
    EXPECT_EQ(menu().titles(), (QStringList{u"Quorvane"_s, u"-"_s, u"Restore Default"_s, u"-"_s, u"Open Quorvane"_s,
                                            u"-"_s, u"Quit Quorvane"_s}));
}

TEST_F(MenuBarManagerTest, showsWhatAnotherProgramHasSavedOnceThatIsLookedFor) {
    addProfile(kStudio);
    session->savedProfiles.readAnew();
    processEventsUntil([this] { return menu().titles().contains(u"Studio"_s); });
}

TEST_F(MenuBarManagerTest, isChangedOnceForWhatHappensInOneTurn) {
    const MenuChanges changes(*item.menu);
    {
        const Turnstile::Hold passing = session->turnstile.open();
        makeActive(live);
    }
    EXPECT_EQ(changes.count(), 0);
    letMenuFollow();
    EXPECT_EQ(menu().ticked(), QStringList(u"Live"_s));
    const int ofTheTick = changes.count();
    { const Turnstile::Hold passing = session->turnstile.open(); }
    letMenuFollow();
    EXPECT_EQ(changes.count(), ofTheTick) << "what was over before the event loop came round";
}

TEST_F(MenuBarManagerTest, isLeftAloneByWhatChangesNothingInIt) {
    const MenuChanges changes(*item.menu);
    const QPointer<QAction> first = item.menu->actions().first();
    session->savedProfiles.tellChanged();
    listProfiles();
    letMenuFollow();
    EXPECT_EQ(changes.count(), 0);
    EXPECT_FALSE(first.isNull());
}

TEST_F(MenuBarManagerTest, readsTheListOnceForEachChange) {
    const int before = files.listings();
    addProfile(kStudio);
    session->savedProfiles.tellChanged();
    processEventsUntil([this] { return menu().titles().contains(u"Studio"_s); });
    EXPECT_EQ(files.listings(), before + 1);

    makeActive(live);
    letMenuFollow();
    item.menu->popup({});
    item.menu->close();
    letMenuFollow();
    EXPECT_EQ(files.listings(), before + 1) << "neither a tick nor opening it reads anything";
}

TEST_F(MenuBarManagerTest, staysAsItIsWhileItIsOpen) {
    item.menu->popup({});
    ASSERT_TRUE(item.menu->isVisible());
    const MenuChanges changes(*item.menu);
    addProfile(kStudio);
    session->savedProfiles.tellChanged();
    makeActive(live);
    listProfiles();
    letMenuFollow();
    EXPECT_EQ(changes.count(), 0);
    EXPECT_FALSE(menu().titles().contains(u"Studio"_s));

    item.menu->close();
    letMenuFollow();
    EXPECT_GT(changes.count(), 0);
    EXPECT_TRUE(menu().titles().contains(u"Studio"_s));
    EXPECT_EQ(menu().ticked(), QStringList(u"Live"_s));
}

TEST_F(MenuBarManagerTest, isRightWhenItOpensAtOnceAfterAChange) {
    makeActive(live);
    item.menu->popup({});
    EXPECT_EQ(menu().ticked(), QStringList(u"Live"_s));
    item.menu->close();
}

TEST_F(MenuBarManagerTest, ticksTheActiveProfileInTheSymbolsPlace) {
    EXPECT_EQ(menu().ticked(), QStringList(u"Restore Default"_s));
    EXPECT_FALSE(menu().hasSymbol(u"Restore Default"_s));
    EXPECT_TRUE(menu().hasSymbol(u"Live"_s));

    makeActive(live);
    letMenuFollow();
    EXPECT_EQ(menu().ticked(), QStringList(u"Live"_s));
    EXPECT_FALSE(menu().hasSymbol(u"Live"_s));
    EXPECT_TRUE(menu().hasSymbol(u"Restore Default"_s));
    EXPECT_TRUE(menu().titles().contains(u"On system: Live"_s));
    EXPECT_TRUE(menu().hasSymbol(u"On system: Live"_s));
    EXPECT_FALSE(menu().usable().contains(u"On system: Live"_s));
}

TEST_F(MenuBarManagerTest, ticksBothOfTwoNamesThatDifferInCase) {
    UnifiedProfile other = numberedProfile(3, u"live"_s);
    addProfile(other);
    session->savedProfiles.tellChanged();
    makeActive(live);
    listProfiles();
    letMenuFollow();
    EXPECT_EQ(menu().ticked().size(), 2);
}

TEST_F(MenuBarManagerTest, aMatchIsTheCurrentOneWhereNothingWasApplied) {
    findByScan(live);
    EXPECT_EQ(menu().ticked(), QStringList(u"Live"_s));
}

TEST_F(MenuBarManagerTest, listsTheTweaksOfTheActiveProfile) {
    UnifiedProfile club = numberedProfile(4, u"Club"_s);
    club.settings.appNap = true;
    club.settings.siri = true;
    addProfile(club);
    session->savedProfiles.tellChanged();
    listProfiles();
    makeActive(club);
    letMenuFollow();
    const QStringList titles = menu().titles();
    const qsizetype header = titles.indexOf(u"Active Tweaks"_s);
    EXPECT_EQ(titles.mid(header), (QStringList{u"Active Tweaks"_s, u"App Nap Bypass"_s, u"Siri"_s, u"-"_s,
                                               u"Open Quorvane"_s, u"-"_s, u"Quit Quorvane"_s}));
    EXPECT_TRUE(menu().hasSymbol(u"Siri"_s));
    EXPECT_FALSE(menu().usable().contains(u"Siri"_s));
}

TEST_F(MenuBarManagerTest, withNoTweakSelectedTheirHeaderStandsAlone) {
    makeActive(live);
    letMenuFollow();
    const QStringList titles = menu().titles();
    EXPECT_EQ(titles.mid(titles.indexOf(u"Active Tweaks"_s), 3),
              (QStringList{u"Active Tweaks"_s, u"-"_s, u"Open Quorvane"_s}));
}

TEST_F(MenuBarManagerTest, leavesOnlyWindowAndQuittingWhileSomethingRunsOrIsOpen) {
    const QStringList nothingElse{u"Open Quorvane"_s, u"Quit Quorvane"_s};
    const QStringList all = menu().usable();
    {
        const Turnstile::Hold busy = session->turnstile.busy(u"Working…"_s);
        letMenuFollow();
        EXPECT_EQ(menu().usable(), nothingElse);
    }
    letMenuFollow();
    EXPECT_EQ(menu().usable(), all);
    {
        const Turnstile::Hold sheet = session->turnstile.open();
        letMenuFollow();
        EXPECT_EQ(menu().usable(), nothingElse);
    }
    letMenuFollow();
    EXPECT_EQ(menu().usable(), all);
}

TEST_F(MenuBarManagerTest, forgetsWhatWasDeleted) {
    makeActive(live);
    session->tasks.start(session->profileActions.remove(live.name, live.id, window));
    waitForTasks();
    letMenuFollow();
    EXPECT_FALSE(menu().titles().contains(u"Live"_s));
    EXPECT_FALSE(menu().titles().contains(u"Saved Profiles"_s));
    EXPECT_EQ(menu().ticked(), QStringList(u"Restore Default"_s));
}

TEST_F(MenuBarManagerTest, keysAndTextsOfNamesMeanNothing) {
    session->savedProfiles.remove(u"Live"_s);
    UnifiedProfile hostile = numberedProfile(5, u"gig"_s);
    for (const QString& name : {u"<h1>Live</h1>\n&gig\tCtrl+Q"_s, u"Rock && Roll"_s, QString(500, u'x')}) {
        hostile.name = name;
        files.addFile(session->profileStore.profilesDirectory() + u"/gig.json"_s, encodeProfile(hostile));
        session->savedProfiles.tellChanged();
        listProfiles();
        letMenuFollow();
        const QString seen = menu().titles().at(5);
        EXPECT_FALSE(seen.contains(u'\n') || seen.contains(u'\t')) << seen.toStdString();
        EXPECT_LE(seen.size(), 80);
        EXPECT_EQ(seen, nameOnOneLine(name));
        EXPECT_EQ(item.menu->actions().at(5)->shortcut(), QKeySequence());
    }
}

TEST_F(MenuBarManagerTest, aProfileThatHasVanishedSaysNothing) {
    files.removeAsRoot(session->profileStore.profilesDirectory() + u"/Live.json"_s);
    menu().choose(u"Live"_s);
    waitForTasks();
    letMenuFollow();
    EXPECT_EQ(steps.filter(u"!"_s), QStringList());
    EXPECT_EQ(workspace.activations, 0);
    EXPECT_FALSE(menu().titles().contains(u"Live"_s)) << "it shows the truth from then on";
}

TEST_F(MenuBarManagerTest, anotherProfileThatHasTakenTheNameIsNotApplied) {
    UnifiedProfile other = numberedProfile(6, u"Live"_s);
    files.removeAsRoot(session->profileStore.profilesDirectory() + u"/Live.json"_s);
    addProfile(other);
    menu().choose(u"Live"_s);
    waitForTasks();
    EXPECT_EQ(review(), nullptr);
    EXPECT_EQ(steps.filter(u"!"_s), QStringList());
}

TEST_F(MenuBarManagerTest, restoreDefaultAsksAndEndsWithItsAlert) {
    keepWhatIsWritten();
    makeActive(live);
    menu().choose(u"Restore Default"_s);
    waitForTasks();
    letMenuFollow();
    const QStringList told = steps.filter(u"! "_s);
    ASSERT_EQ(told.size(), 2);
    EXPECT_EQ(told.first(),
              u"! Apply Default Profile? | This will restore standard macOS performance settings.\n\nYour "
              "Mac will need to restart for all changes to take full effect. | Apply, Cancel"_s);
    EXPECT_EQ(told.last(), u"! Defaults Restored | Standard macOS settings restored.\n\nPlease restart your Mac for "
                           "changes to take full effect. | OK"_s);
    EXPECT_EQ(menu().ticked(), QStringList(u"Restore Default"_s));
    EXPECT_TRUE(menu().titles().contains(u"Active Tweaks"_s));
}

TEST_F(MenuBarManagerTest, restoreDefaultWhileLockedTellsSoAndAsksNothing) {
    enableLock();
    lock->lockIfEnabled();
    steps.clear();
    menu().choose(u"Restore Default"_s);
    waitForTasks();
    EXPECT_EQ(steps.filter(u"! "_s),
              QStringList(u"! Quorvane is Locked | Enter your app password in the Quorvane window to restore default "
                          "settings. | OK"_s));
    menu().choose(u"Live"_s);
    waitForTasks();
    EXPECT_EQ(steps.filter(u"! "_s).last(),
              u"! Quorvane is Locked | Enter your app password in the Quorvane window to switch profiles. | OK"_s);
    EXPECT_EQ(review(), nullptr);
}

TEST_F(MenuBarManagerTest, symbolsFollowTheLook) {
    auto* const style = qobject_cast<QuorvaneStyle*>(QApplication::style());
    const QImage light = menu().symbol(u"Live"_s);
    style->setLook({.scheme = ColorScheme::Dark});
    item.menu->popup({});
    const QImage dark = menu().symbol(u"Live"_s);
    item.menu->close();
    style->setLook({});
    EXPECT_NE(dark, light);
}

} // namespace quorvane
