// The startup page on a simulated Mac: what it lists, and what is done in it by keys and clicks.

#include "fakes/ProfileStore.h"
#include "fakes/QuickWindowOnMac.h"
#include "platform/Machine.h"
#include "ui/Theme.h"
#include "ui/startup/StartupItemsModel.h"

#include <QHelpEvent>
#include <QListWidget>
#include <QMenu>
#include <QScrollBar>
#include <QTest>
#include <QTextDocumentFragment>
#include <QToolTip>

namespace quorvane {

namespace {

class StartupByWindow : public QuickWindowOnMac {
protected:
    explicit StartupByWindow(const QString& mac = u"dj-laptop"_s)
        : QuickWindowOnMac(mac) {}

    void SetUp() override { keepBaseline(); }
    void openStartup() {
        launchAndScan();
        click(u"Startup Optimization"_s);
        waitUntilRefreshed();
    }
    void waitUntilRefreshed() {
        processEventsUntil([this] { return !session().startupEditing.isRefreshing(); });
        letEventsPass();
    }
    /// Also while it can't be used.
    static QAbstractItemView* list() {
        const QList<QAbstractItemView*> lists = mainWindow()->findChildren<QAbstractItemView*>();
        const auto found = std::find_if(lists.cbegin(), lists.cend(), [](const QAbstractItemView* each) {
            return each->isVisible() && each->accessibleName() == u"Startup Items"_s;
        });
        return found == lists.cend() ? nullptr : *found;
    }
    static QModelIndex row(const QString& name) {
        const QAbstractItemModel& model = *list()->model();
        return model.match(model.index(0, 0), Qt::DisplayRole, name, 1, Qt::MatchExactly | Qt::MatchCaseSensitive)
            .value(0);
    }
    /// As a screen reader says them.
    static QStringList rows() {
        QStringList texts;
        const QAbstractItemModel& model = *list()->model();
        for (int number = 0; number < model.rowCount(); ++number) {
            texts.append(model.index(number, 0).data(Qt::AccessibleTextRole).toString());
        }
        return texts;
    }
    static QStringList itemRows() {
        QStringList items = rows();
        items.removeIf([](const QString& text) { return !text.endsWith(u" at login"_s); });
        return items;
    }
    static QString spoken(const QString& name) { return row(name).data(Qt::AccessibleTextRole).toString(); }
    static QString description(const QString& name) { return row(name).data(Qt::AccessibleDescriptionRole).toString(); }
    static bool isOn(const QString& name) { return row(name).data(Qt::CheckStateRole) == Qt::Checked; }
    static QString currentRow() { return list()->currentIndex().data().toString(); }

    /// Clicks the row so far from its right end.
    static void clickRow(const QString& name, int fromRight = 200) {
        ASSERT_TRUE(row(name).isValid()) << name.toStdString();
        list()->scrollTo(row(name));
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, placeIn(name, fromRight));
        letEventsPass();
    }
    /// The middle of what stands so far from the row's right end.
    static QPoint placeIn(const QString& name, int fromRight) {
        const QRect place = list()->visualRect(row(name));
        const int right = place.center().x() + std::min(Theme::kColumn, place.width() - 2 * Theme::kGap24) / 2;
        return {right - fromRight, place.center().y()};
    }
    /// What is told where the mouse rests.
    static QString helpAt(const QString& name, int fromRight) {
        const QPoint place = placeIn(name, fromRight);
        QHelpEvent event(QEvent::ToolTip, place, list()->viewport()->mapToGlobal(place));
        QApplication::sendEvent(list()->viewport(), &event);
        return QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText();
    }
    static QMenu* shownMenu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    static QStringList entries(const QMenu* menu) {
        QStringList texts;
        for (const QAction* const action : menu != nullptr ? menu->actions() : QList<QAction*>()) {
            texts.append(action->text() + (action->isChecked() ? u" (checked)"_s : QString()));
        }
        return texts;
    }
    static void chooseInShownMenu(const QString& text) {
        QMenu* const menu = shownMenu();
        ASSERT_NE(menu, nullptr);
        const QList<QAction*> actions = menu->actions();
        const auto chosen = std::find_if(actions.begin(), actions.end(),
                                         [&text](const QAction* action) { return action->text() == text; });
        ASSERT_NE(chosen, actions.end()) << text.toStdString();
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(*chosen).center());
        letEventsPass();
        activateWhatIsInFront();
    }
    /// In the panel that "Add Application…" opens.
    void pick(const QString& application) {
        click(u"Add Application…"_s);
        processEventsUntil([] { return isSeen(u"Choose Application to Start at Login"_s); });
        auto* const applications = qobject_cast<QListWidget*>(control(u"Applications"_s));
        ASSERT_NE(applications, nullptr);
        applications->setCurrentItem(applications->findItems(application, Qt::MatchExactly).value(0));
        click(u"Open"_s);
        waitUntilIdle();
        letEventsPass();
        activateWhatIsInFront();
    }
    /// Saves what is edited, by the selector. @param name  another one; none keeps that of the loaded profile
    void saveAs(const QString& name = {}) {
        click(u"Profile: "_s + (isSeen(u"Profile: Club, edited"_s) ? u"Club, edited"_s : u"Club"_s));
        chooseInShownMenu(u"Save Profile"_s);
        processEventsUntil([] { return isSeen(u"Include in profile:"_s); });
        if (!name.isEmpty()) {
            control(u"Profile name"_s)->setFocus();
            press(Qt::Key_A, Qt::ControlModifier);
            type(name);
        }
        press(Qt::Key_Return);
        if (name.isEmpty()) {
            answerAlert(u"Overwrite Profile?"_s, u"Overwrite"_s);
        }
        answerAlert(u"Success"_s);
        waitUntilIdle();
        letEventsPass();
    }
    static StartupItem spotifyOff() {
        StartupItem item;
        item.name = u"Spotify"_s;
        item.path = u"/Applications/Spotify.app"_s;
        item.id = loginItemId(item.name, item.path);
        item.runsAtStartup = false;
        return item;
    }
    /// The page opens while System Events says nothing.
    void openWhileSystemEventsHangs() {
        launchAndScan();
        session().system.invalidateStartupCaches();
        commands().hold(u"/usr/bin/osascript"_s);
        click(u"Startup Optimization"_s);
        letEventsPass();
    }
    void waitInVain() {
        clock.advance(std::chrono::seconds(11));
        waitUntilRefreshed();
    }
    static void goTo(const QString& name) {
        list()->setFocus();
        list()->setCurrentIndex(row(name));
    }
    static void search(const QString& text) {
        control(u"Search startup items…"_s)->setFocus();
        auto* const field = qobject_cast<QLineEdit*>(control(u"Search startup items…"_s));
        field->selectAll();
        press(Qt::Key_Delete);
        type(text);
        letEventsPass();
    }
    UnifiedProfile profileWith(const QList<StartupItem>& items) {
        UnifiedProfile profile = numberedProfile(1, u"Club"_s);
        profile.startup.items = items;
        return profile;
    }
    static StartupItem helperOff() {
        StartupItem item;
        item.id = launchItemId(u"com.gone.helper.plist"_s);
        item.name = u"Gone Helper"_s;
        item.path = u"/Library/LaunchAgents/com.gone.helper.plist"_s;
        item.kind = StartupItemKind::launchAgent;
        item.launchIdentifier = u"com.gone.helper.plist"_s;
        item.runsAtStartup = false;
        return item;
    }
};

class StartupOnFreshMac : public StartupByWindow {
protected:
    StartupOnFreshMac()
        : StartupByWindow(u"fresh-macbook"_s) {}
};

const QString kQuestion = u"Protected Item"_s;
const QString kUnanswered =
    u"System Events doesn’t answer.\nBackground items are listed once the administrator password was "
    "given."_s;

// From the right end of a row to the middle of its parts.
constexpr int kAtSwitch = Theme::kGap12 + 19;
constexpr int kAtFirstPart = Theme::kGap12 + 38 + Theme::kGap8 + 14; ///< beside the switch
constexpr int kAtSecondPart = kAtFirstPart + 28 + Theme::kGap8;

} // namespace

// ---- The list

TEST_F(StartupByWindow, theRowLeadsToThePageAndEscapeLeadsBack) {
    openStartup();
    EXPECT_TRUE(isSeen(u"Startup Optimization"_s));
    EXPECT_TRUE(isSeen(u"Manage login items and launch agents"_s));
    EXPECT_TRUE(
        isSeen(u"Control which apps, agents, background items, and daemons run when you log in. Turn off an item "
               "to disable it when this profile is applied."_s));
    search(u"dropbox"_s);
    press(Qt::Key_Escape);
    EXPECT_EQ(qobject_cast<QLineEdit*>(control(u"Search startup items…"_s))->text(), QString());
    EXPECT_TRUE(isSeen(u"Review Changes"_s));
    press(Qt::Key_Escape);
    EXPECT_FALSE(isSeen(u"Review Changes"_s));
    EXPECT_EQ(focused(), u"Startup Optimization"_s);
}

TEST_F(StartupByWindow, itListsWhatRunsAtLoginAndCountsIt) {
    openStartup();
    EXPECT_EQ(spoken(u"Spotify"_s), u"Spotify, App, runs at login"_s);
    EXPECT_EQ(spoken(u"Traktor Helper"_s), u"Traktor Helper, App, protected, runs at login"_s);
    EXPECT_EQ(spoken(u"Stem Sync Agent"_s), u"Stem Sync Agent, Background Agent, runs at login"_s);
    const qsizetype count = itemRows().filter(u", runs at login"_s).size();
    EXPECT_LT(count, itemRows().size()) << "launchd has one as disabled";
    EXPECT_TRUE(isSeen(u"Run at Login (%1)"_s.arg(count)));
    EXPECT_TRUE(description(u"Spotify"_s).contains(u"/Applications/Spotify.app"_s));
    clickRow(u"Spotify"_s);
    EXPECT_EQ(spoken(u"Spotify"_s), u"Spotify, App, disabled at login"_s);
    EXPECT_TRUE(description(u"Spotify"_s).contains(u"Disabled at login"_s));
    EXPECT_TRUE(isSeen(u"Run at Login (%1)"_s.arg(count - 1)));
    search(u"spotify"_s);
    EXPECT_TRUE(isSeen(u"Run at Login (%1)"_s.arg(count - 1))) << "whatever is searched";
}

TEST_F(StartupByWindow, whatTheRowsShow) {
    openStartup();
    const auto symbol = [](const QString& name) { return row(name).data(StartupItemsModel::SymbolRole).toString(); };
    EXPECT_EQ(symbol(u"Spotify"_s), u"app.fill"_s);
    EXPECT_EQ(symbol(u"Stem Sync Agent"_s), u"rectangle.inset.filled.and.person.filled"_s);
    EXPECT_EQ(symbol(u"Disable Network on Startup"_s), u"network.slash"_s);
    EXPECT_EQ(symbol(u"Suggested performance apps"_s), u"music.note.house.fill"_s);
    EXPECT_EQ(description(u"Disable Network on Startup"_s), u"Prevent network services from initializing at boot"_s);
    EXPECT_EQ(helpAt(u"Traktor Helper"_s, kAtFirstPart), u"Protected audio-related item"_s);
    EXPECT_TRUE(helpAt(u"Spotify"_s, kAtSwitch).contains(u"/Applications/Spotify.app"_s));
    clickRow(u"Serato DJ Pro"_s);
    EXPECT_EQ(symbol(u"Serato DJ Pro"_s), u"externaldrive.fill"_s);
    for (const auto& [kind, expected] :
         {std::pair(u"Launch Agent"_s, u"gearshape.fill"_s), std::pair(u"Daemon"_s, u"gearshape.fill"_s)}) {
        search(kind);
        ASSERT_FALSE(itemRows().isEmpty()) << kind.toStdString();
        EXPECT_EQ(list()->model()->index(0, 0).data(StartupItemsModel::SymbolRole).toString(), expected);
    }
}

TEST_F(StartupByWindow, theSearchLooksAtNamesPathsAndKinds) {
    openStartup();
    const QStringList all = itemRows();
    search(u"   "_s);
    EXPECT_EQ(itemRows(), all);
    search(u" DAEMON "_s);
    EXPECT_FALSE(itemRows().isEmpty());
    EXPECT_EQ(itemRows(), all.filter(u", Daemon,"_s));
    search(u"Launch Agent"_s);
    EXPECT_FALSE(itemRows().isEmpty());
    EXPECT_EQ(itemRows(), all.filter(u", Launch Agent,"_s));
    search(u"/applications/spotify.APP"_s);
    EXPECT_EQ(itemRows(), QStringList(u"Spotify, App, runs at login"_s));
    search(u"nobody has this"_s);
    EXPECT_EQ(itemRows(), QStringList());
    EXPECT_TRUE(rows().contains(u"No items match your search."_s));
    EXPECT_TRUE(rows().contains(u"Disable Network on Startup"_s)) << "the sections stay";
}

TEST_F(StartupByWindow, aRowThatIsSwitchedAndHiddenByTheSearchStaysSwitched) {
    openStartup();
    search(u"spotify"_s);
    goTo(u"Spotify"_s);
    press(Qt::Key_Space);
    search(u"dropbox"_s);
    EXPECT_FALSE(row(u"Spotify"_s).isValid());
    search(u""_s);
    EXPECT_FALSE(isOn(u"Spotify"_s));
}

TEST_F(StartupByWindow, theKeysOfTheList) {
    openStartup();
    click(u"Search startup items…"_s);
    press(Qt::Key_Down);
    EXPECT_EQ(focused(), u"Startup Items"_s);
    press(Qt::Key_End);
    EXPECT_EQ(currentRow(), u"Disable Network on Startup"_s);
    press(Qt::Key_Space);
    EXPECT_TRUE(isOn(u"Disable Network on Startup"_s));
    EXPECT_TRUE(session().workingCopy.startup().disableNetworkAtStartup);
    press(Qt::Key_Home);
    EXPECT_EQ(list()->currentIndex().row(), 0);
    type(u"spo"_s);
    EXPECT_TRUE(currentRow().startsWith(u"Spo"_s)) << currentRow().toStdString();
}

// ---- Protected items

TEST_F(StartupByWindow, aProtectedItemAsksBeforeItGoesOffAndNotWhenItComesBack) {
    openStartup();
    goTo(u"Traktor Helper"_s);
    press(Qt::Key_Space);
    waitUntilAlert(kQuestion);
    EXPECT_EQ(alert().text,
              u"This item is usually required for audio workflows. Disable it only if you are sure it is safe."_s);
    EXPECT_EQ(alert().onReturn, u"Keep Enabled"_s);
    EXPECT_TRUE(isOn(u"Traktor Helper"_s)) << "nothing has happened yet";
    answerAlert(kQuestion, u"Keep Enabled"_s);
    letEventsPass();
    EXPECT_TRUE(isOn(u"Traktor Helper"_s));
    EXPECT_EQ(currentRow(), u"Traktor Helper"_s);
    EXPECT_EQ(focused(), u"Startup Items"_s);

    clickRow(u"Traktor Helper"_s);
    answerAlert(kQuestion, u"Disable Anyway"_s);
    processEventsUntil([] { return !isOn(u"Traktor Helper"_s); });
    EXPECT_EQ(description(u"Traktor Helper"_s).count(u"Disabled at login"_s), 1);

    clickRow(u"Traktor Helper"_s);
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_TRUE(isOn(u"Traktor Helper"_s));
}

TEST_F(StartupByWindow, theLockKeepsAProtectedItemEnabled) {
    enableLock();
    launch();
    unlock();
    processEventsUntil([this] { return session().scans.isUpToDate() && session().turnstile.isIdle(); });
    click(u"Startup Optimization"_s);
    waitUntilRefreshed();
    clickRow(u"Traktor Helper"_s);
    waitUntilAlert(kQuestion);
    resignActive();
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    becomeActive();
    unlock();
    waitUntilIdle();
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_TRUE(isOn(u"Traktor Helper"_s));
    EXPECT_TRUE(session().workingCopy.startup().disabledLoginNames().isEmpty());
}

// ---- Services

TEST_F(StartupByWindow, aServiceTakesItsItemsAlongAndLeavesThemOff) {
    openStartup();
    EXPECT_TRUE(rows().contains(u"Cloud Services"_s));
    EXPECT_TRUE(
        description(u"Cloud Services"_s)
            .contains(
                u"Cloud storage detected on this Mac. Turn off a service to prevent it from starting at login."_s));
    const auto dropbox = [] {
        QModelIndex last;
        for (int number = 0; number < list()->model()->rowCount(); ++number) {
            const QModelIndex index = list()->model()->index(number, 0);
            last = index.data().toString() == u"Dropbox"_s ? index : last;
        }
        return last; // the item of that name stands above
    };
    EXPECT_TRUE(
        dropbox().data(Qt::AccessibleDescriptionRole).toString().contains(u"Prevent Dropbox from starting at login"_s));
    ASSERT_TRUE(isOn(u"Dropbox"_s));
    list()->setFocus();
    list()->setCurrentIndex(dropbox());
    press(Qt::Key_Space);
    EXPECT_FALSE(isOn(u"Dropbox"_s));
    EXPECT_EQ(dropbox().data(Qt::CheckStateRole), Qt::Unchecked);
    clickRow(u"Dropbox"_s);
    EXPECT_FALSE(isOn(u"Dropbox"_s)) << "its service keeps it off";
    list()->setCurrentIndex(dropbox());
    press(Qt::Key_Space);
    EXPECT_FALSE(isOn(u"Dropbox"_s)) << "it stays off";
    EXPECT_TRUE(dropbox().data(Qt::AccessibleDescriptionRole).toString().contains(u"Turn its items back on above."_s));
    clickRow(u"Dropbox"_s);
    EXPECT_TRUE(isOn(u"Dropbox"_s));
}

TEST_F(StartupOnFreshMac, withoutACloudProductThereIsNoSuchSection) {
    openStartup();
    EXPECT_FALSE(rows().contains(u"Cloud Services"_s));
    UnifiedProfile profile = profileWith({});
    profile.startup.disabledCloudSyncAtStartup = {CloudSyncService::mega};
    session().workingCopy.load(profile);
    letEventsPass();
    EXPECT_TRUE(rows().contains(u"Cloud Services"_s));
    EXPECT_TRUE(description(u"MEGA"_s).contains(u"Not on this Mac"_s));
    EXPECT_FALSE(isOn(u"MEGA"_s));
}

// ---- Applications

TEST_F(StartupByWindow, aSuggestionIsAddedHiddenAndTakenOffAgain) {
    openStartup();
    ASSERT_TRUE(rows().contains(u"Suggested performance apps"_s));
    clickRow(u"Serato DJ Pro"_s);
    EXPECT_EQ(spoken(u"Serato DJ Pro"_s), u"Serato DJ Pro, Added App, runs at login"_s);
    EXPECT_EQ(rows().count(u"Serato DJ Pro"_s), 0) << "no suggestion any more";
    EXPECT_EQ(currentRow(), u"Serato DJ Pro"_s);
    EXPECT_TRUE(list()->viewport()->rect().intersects(list()->visualRect(row(u"Serato DJ Pro"_s))));
    EXPECT_TRUE(description(u"Serato DJ Pro"_s).contains(u"Opens visibly at login"_s));

    EXPECT_EQ(helpAt(u"Serato DJ Pro"_s, kAtSecondPart), u"Opens visibly at login"_s);
    clickRow(u"Serato DJ Pro"_s, kAtSecondPart);
    EXPECT_TRUE(description(u"Serato DJ Pro"_s).contains(u"Opens hidden at login"_s));
    EXPECT_EQ(session().workingCopy.startup().startupLaunchItems(),
              QList<StartupLaunchItem>({{u"Serato DJ Pro"_s, u"/Applications/Serato DJ Pro.app"_s, true}}));

    EXPECT_EQ(helpAt(u"Serato DJ Pro"_s, kAtSecondPart), u"Opens hidden at login"_s);

    goTo(u"Serato DJ Pro"_s);
    press(Qt::Key_Delete);
    EXPECT_EQ(spoken(u"Serato DJ Pro"_s), u"Serato DJ Pro"_s) << "suggested again";
    EXPECT_TRUE(session().workingCopy.startup().startupLaunchItems().isEmpty());
    EXPECT_EQ(focused(), u"Startup Items"_s);

    goTo(u"Serato DJ Pro"_s);
    press(Qt::Key_Space);
    EXPECT_EQ(helpAt(u"Serato DJ Pro"_s, kAtFirstPart), u"Remove from startup"_s);
    clickRow(u"Serato DJ Pro"_s, kAtFirstPart);
    EXPECT_EQ(spoken(u"Serato DJ Pro"_s), u"Serato DJ Pro"_s) << "by its button, too";
}

TEST_F(StartupByWindow, theMenuOfARowHasWhatElseItCanDo) {
    openStartup();
    clickRow(u"Serato DJ Pro"_s);
    press(Qt::Key_Menu);
    EXPECT_EQ(entries(shownMenu()), (QStringList{u"Opens hidden at login"_s, u"Remove from startup"_s}));
    chooseInShownMenu(u"Opens hidden at login"_s);
    EXPECT_TRUE(description(u"Serato DJ Pro"_s).contains(u"Opens hidden at login"_s));
    EXPECT_EQ(focused(), u"Startup Items"_s);

    const QPoint place = placeIn(u"Serato DJ Pro"_s, 200);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, list()->viewport()->mapToGlobal(place));
    QApplication::sendEvent(list()->viewport(), &event);
    EXPECT_EQ(entries(shownMenu()), (QStringList{u"Opens hidden at login (checked)"_s, u"Remove from startup"_s}));
    session().workingCopy.load(profileWith({helperOff()}));
    chooseInShownMenu(u"Opens hidden at login"_s);
    EXPECT_TRUE(session().workingCopy.startup().items.contains(helperOff())) << "the row has gone beneath the menu";

    goTo(u"Gone Helper"_s);
    press(Qt::Key_Menu);
    EXPECT_EQ(entries(shownMenu()), QStringList(u"Remove from startup"_s));
    chooseInShownMenu(u"Remove from startup"_s);
    EXPECT_FALSE(row(u"Gone Helper"_s).isValid());
    for (const QString& name : {u"Spotify"_s, u"Disable Network on Startup"_s}) {
        goTo(name);
        press(Qt::Key_Menu);
        EXPECT_EQ(shownMenu(), nullptr) << name.toStdString();
    }
}

TEST_F(StartupByWindow, aPanelThatIsCancelledChangesNothing) {
    openStartup();
    const StartupConfiguration before = session().workingCopy.startup();
    click(u"Add Application…"_s);
    processEventsUntil([] { return isSeen(u"Choose Application to Start at Login"_s); });
    click(u"Cancel"_s);
    waitUntilIdle();
    letEventsPass();
    EXPECT_EQ(session().workingCopy.startup(), before);
    EXPECT_FALSE(session().workingCopy.isEdited());
}

TEST_F(StartupByWindow, anApplicationThatOpensAtLoginAlreadyIsOneRow) {
    openStartup();
    EXPECT_EQ(spoken(u"Spotify"_s), u"Spotify, App, runs at login"_s);
    search(u"dropbox"_s);
    pick(u"Spotify"_s);
    EXPECT_EQ(spoken(u"Spotify"_s), u"Spotify, Added App, runs at login"_s) << "also where the search would hide it";
    EXPECT_EQ(itemRows().filter(u"Spotify,"_s).size(), 1);
    EXPECT_EQ(currentRow(), u"Spotify"_s);
    const StartupConfiguration before = session().workingCopy.startup();
    pick(u"Spotify"_s);
    EXPECT_EQ(session().workingCopy.startup(), before) << "it is there already";
    EXPECT_EQ(currentRow(), u"Spotify"_s);
    goTo(u"Spotify"_s);
    press(Qt::Key_Delete);
    EXPECT_EQ(spoken(u"Spotify"_s), u"Spotify, App, runs at login"_s) << "its login item shows again";
}

TEST_F(StartupByWindow, clearingAsksWhereAddedApplicationsWouldGo) {
    openStartup();
    clickRow(u"Spotify"_s);
    click(u"Clear Selection"_s);
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString());
    EXPECT_TRUE(isOn(u"Spotify"_s));

    clickRow(u"Serato DJ Pro"_s);
    click(u"Clear Selection"_s);
    waitUntilAlert(u"Clear Selection?"_s);
    EXPECT_EQ(alert().text, u"Added applications will be taken off the list."_s);
    EXPECT_EQ(alert().onReturn, u"Cancel"_s);
    answerAlert(u"Clear Selection?"_s, u"Cancel"_s);
    EXPECT_EQ(session().workingCopy.startup().startupLaunchItems().size(), 1);
    processEventsUntil([this] { return session().turnstile.isIdle(); });
    click(u"Clear Selection"_s);
    answerAlert(u"Clear Selection?"_s, u"Clear"_s);
    processEventsUntil([this] { return session().workingCopy.startup().startupLaunchItems().isEmpty(); });
    EXPECT_TRUE(rows().contains(u"Serato DJ Pro"_s)) << "suggested again";
}

TEST_F(StartupByWindow, clearingTurnsAllOnAndForgetsWhatIsNotThere) {
    openStartup();
    UnifiedProfile profile = profileWith({helperOff(), spotifyOff()});
    profile.startup.disableNetworkAtStartup = true;
    profile.startup.disabledCloudSyncAtStartup = {CloudSyncService::dropbox, CloudSyncService::mega};
    session().workingCopy.load(profile);
    letEventsPass();
    EXPECT_FALSE(isOn(u"Dropbox"_s));
    EXPECT_TRUE(rows().contains(u"MEGA"_s));
    click(u"Clear Selection"_s);
    waitUntilIdle();
    letEventsPass();
    EXPECT_EQ(alertTitle(), QString()) << "no application was added";
    EXPECT_TRUE(isOn(u"Spotify"_s));
    EXPECT_TRUE(isOn(u"Dropbox"_s));
    EXPECT_FALSE(isOn(u"Disable Network on Startup"_s));
    EXPECT_FALSE(rows().contains(u"MEGA"_s));
    EXPECT_FALSE(row(u"Gone Helper"_s).isValid());
    EXPECT_FALSE(isUsable(u"Review Changes"_s));
}

// ---- What isn't there, and what couldn't be read

TEST_F(StartupByWindow, whatIsNotOnThisMacNowIsListedAndRemovedByItself) {
    openStartup();
    session().workingCopy.load(profileWith({helperOff()}));
    letEventsPass();
    EXPECT_TRUE(rows().contains(u"Not on this Mac now (1)"_s));
    EXPECT_EQ(spoken(u"Gone Helper"_s), u"Gone Helper, Launch Agent, disabled at login"_s);
    EXPECT_TRUE(session().workingCopy.startup().items.contains(helperOff()));
    search(u"gone"_s);
    EXPECT_EQ(itemRows().size(), 1) << "the search looks there, too";
    search(u""_s);
    goTo(u"Gone Helper"_s);
    press(Qt::Key_Delete);
    EXPECT_FALSE(row(u"Gone Helper"_s).isValid());
    EXPECT_FALSE(rows().contains(u"Not on this Mac now (1)"_s));
    EXPECT_FALSE(session().workingCopy.startup().items.contains(helperOff()));
    goTo(u"Spotify"_s);
    press(Qt::Key_Delete);
    EXPECT_TRUE(row(u"Spotify"_s).isValid()) << "what is there can't be removed";
}

TEST_F(StartupByWindow, itemsThatAreNewSinceTheSaveAreMarkedUntilTheyAreTouched) {
    openStartup();
    session().workingCopy.load(profileWith({helperOff()}));
    letEventsPass();
    EXPECT_TRUE(description(u"Spotify"_s).startsWith(u"New. "_s));
    clickRow(u"Spotify"_s);
    EXPECT_FALSE(description(u"Spotify"_s).contains(u"New"_s));
    EXPECT_TRUE(description(u"Rectangle"_s).startsWith(u"New. "_s));
}

TEST_F(StartupByWindow, sourcesThatWereNotReadAreSaid) {
    startHost(R"([{"tool": "osascript", "status": 1, "error": "not allowed"}])");
    openStartup();
    EXPECT_TRUE(isSeen(u"Login items can’t be read. Grant Automation permission for System Events.\n"
                       "Background items are listed once the administrator password was given."_s));
    EXPECT_FALSE(row(u"Spotify"_s).isValid());
    EXPECT_FALSE(itemRows().isEmpty()) << "the other sources count";
}

TEST_F(StartupByWindow, aSystemEventsThatHangsIsSaidAfterTenSeconds) {
    openWhileSystemEventsHangs();
    EXPECT_TRUE(rows().contains(u"Loading startup items…"_s));
    EXPECT_FALSE(isUsable(u"Refresh"_s));
    search(u"spotify"_s);
    EXPECT_TRUE(rows().contains(u"Loading startup items…"_s)) << "whatever is searched";
    search(u""_s);
    clock.advance(std::chrono::milliseconds(9'900));
    letEventsPass();
    EXPECT_TRUE(rows().contains(u"Loading startup items…"_s));
    clock.advance(std::chrono::milliseconds(200));
    waitUntilRefreshed();
    EXPECT_TRUE(isSeen(kUnanswered));
    EXPECT_FALSE(itemRows().isEmpty()) << "the page works on";
    EXPECT_FALSE(row(u"Spotify"_s).isValid());
}

TEST_F(StartupByWindow, anAnswerThatComesLateIsTakenUpAndLosesNothing) {
    openWhileSystemEventsHangs();
    waitInVain();
    clickRow(u"Serato DJ Pro"_s);
    clickRow(u"Disable Network on Startup"_s);
    commands().release();
    processEventsUntil([] { return row(u"Spotify"_s).isValid(); });
    EXPECT_FALSE(isSeen(kUnanswered));
    EXPECT_EQ(spoken(u"Serato DJ Pro"_s), u"Serato DJ Pro, Added App, runs at login"_s);
    EXPECT_TRUE(isOn(u"Disable Network on Startup"_s));
    EXPECT_TRUE(isUsable(u"Refresh"_s));
}

TEST_F(StartupByWindow, askedAnewSystemEventsIsWaitedForOnceMore) {
    openWhileSystemEventsHangs();
    waitInVain();
    const qsizetype asked = commands().heldLines().filter(u"osascript"_s).size();
    click(u"Refresh"_s);
    letEventsPass();
    EXPECT_EQ(commands().heldLines().filter(u"osascript"_s).size(), asked + 1);
    EXPECT_FALSE(isUsable(u"Refresh"_s));
    waitInVain();
    EXPECT_TRUE(isSeen(kUnanswered));
    commands().release();
    processEventsUntil([] { return row(u"Spotify"_s).isValid(); });
    EXPECT_FALSE(isSeen(kUnanswered));
    click(u"Refresh"_s);
    waitUntilRefreshed();
    EXPECT_TRUE(row(u"Spotify"_s).isValid());
}

TEST_F(StartupByWindow, whatIsDecidedWhileTheListIsMadeIsInIt) {
    constexpr int kDecisions = 21; // some of them while another thread works
    openWhileSystemEventsHangs();
    goTo(u"Disable Network on Startup"_s);
    commands().release();
    int decisions = 0;
    processEventsUntil([&decisions, this] {
        if (decisions < kDecisions) {
            press(Qt::Key_Space);
            ++decisions;
        }
        return !session().startupEditing.isRefreshing() && decisions == kDecisions;
    });
    EXPECT_TRUE(row(u"Spotify"_s).isValid());
    EXPECT_TRUE(isOn(u"Disable Network on Startup"_s));
}

TEST_F(StartupByWindow, quittingWhileSystemEventsSaysNothingEndsAtOnce) {
    openWhileSystemEventsHangs();
    waitInVain();
    quit();
    EXPECT_TRUE(hasTerminated);
}

/// Nothing of it is lost, whatever the list becomes beneath it.
TEST_F(StartupByWindow, whatIsSavedWhileItIsLookedForIsWhole) {
    saveProfile(profileWith({helperOff(), spotifyOff()}));
    openWhileSystemEventsHangs();
    session().workingCopy.load(*session().profileStore.loadProfile(u"Club"_s));
    letEventsPass();
    EXPECT_FALSE(rows().contains(u"Not on this Mac now (1)"_s)) << "nobody has looked yet";
    clickRow(u"Serato DJ Pro"_s);
    saveAs();
    const UnifiedProfile saved = *session().profileStore.loadProfile(u"Club"_s);
    EXPECT_TRUE(saved.startup.items.contains(helperOff()));
    EXPECT_TRUE(saved.startup.items.contains(spotifyOff()));
    EXPECT_EQ(saved.startup.startupLaunchItems().size(), 1);
    ASSERT_TRUE(session().startupEditing.isRefreshing());

    commands().release();
    waitUntilRefreshed();
    EXPECT_EQ(session().workingCopy.currentProfile(), saved);
    EXPECT_FALSE(session().workingCopy.isEdited());
    EXPECT_FALSE(isOn(u"Spotify"_s));
    EXPECT_TRUE(rows().contains(u"Not on this Mac now (1)"_s));
    EXPECT_EQ(spoken(u"Gone Helper"_s), u"Gone Helper, Launch Agent, disabled at login"_s);
    EXPECT_EQ(spoken(u"Serato DJ Pro"_s), u"Serato DJ Pro, Added App, runs at login"_s);
    EXPECT_TRUE(description(u"Rectangle"_s).startsWith(u"New. "_s));

    commands().hold();
    click(u"Refresh"_s);
    clickRow(u"Rectangle"_s);
    saveAs(u"Tonight"_s);
    commands().release();
    waitUntilRefreshed();
    EXPECT_EQ(session().workingCopy.currentProfile()->name, u"Tonight"_s);
    EXPECT_FALSE(isOn(u"Rectangle"_s));
    EXPECT_FALSE(isOn(u"Spotify"_s));
    EXPECT_FALSE(description(u"Dropbox"_s).contains(u"New"_s)) << "it is in what was saved";
    EXPECT_FALSE(session().workingCopy.isEdited());
    EXPECT_TRUE(session().profileStore.loadProfile(u"Tonight"_s)->startup.items.contains(helperOff()));
}

TEST_F(StartupByWindow, whatIsFoundAgainComesBackWithItsChoice) {
    openStartup();
    session().workingCopy.load(profileWith({helperOff()}));
    letEventsPass();
    const QString agents = host->host().machine.homeFolder() + u"/Library/LaunchAgents"_s;
    const macsim::Volume volume = host->mac().volume(macsim::Actor::User);
    volume.createFolders(agents);
    volume.write(agents + u"/com.gone.helper.plist"_s,
                 "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>Label</key><string>com.gone.helper</string>"
                 "</dict></plist>");
    click(u"Refresh"_s);
    waitUntilRefreshed();
    EXPECT_FALSE(rows().contains(u"Not on this Mac now (1)"_s));
    EXPECT_EQ(itemRows().filter(u"Gone Helper,"_s), QStringList(u"Gone Helper, Launch Agent, disabled at login"_s));
}

TEST_F(StartupByWindow, aDefaultFollowsTheCleanReboot) {
    openStartup();
    clickRow(u"Rectangle"_s);
    clickRow(u"Rectangle"_s);
    PerformanceSettings settings = session().workingCopy.settings();
    settings.cleanReboot = true;
    session().workingCopy.setSettings(settings);
    letEventsPass();
    EXPECT_FALSE(isOn(u"Spotify"_s));
    EXPECT_TRUE(isOn(u"Rectangle"_s)) << "decided";
    EXPECT_TRUE(isOn(u"Traktor Helper"_s)) << "protected";
    settings.cleanReboot = false;
    session().workingCopy.setSettings(settings);
    letEventsPass();
    EXPECT_TRUE(isOn(u"Spotify"_s));
}

TEST_F(StartupByWindow, whatIsDecidedWhileItIsRefreshedStaysAndTheRowStaysCurrent) {
    openStartup();
    goTo(u"Spotify"_s);
    const int before = list()->visualRect(row(u"Spotify"_s)).top();
    commands().hold();
    click(u"Refresh"_s);
    goTo(u"Spotify"_s);
    press(Qt::Key_Space);
    shell(u"osascript -e 'tell application \"System Events\" to make login item at end with properties "
          "{path:\"/Applications/Docker.app\", hidden:false}'"_s);
    commands().release();
    waitUntilRefreshed();
    EXPECT_FALSE(isOn(u"Spotify"_s));
    EXPECT_EQ(currentRow(), u"Spotify"_s);
    EXPECT_EQ(focused(), u"Startup Items"_s);
    EXPECT_LE(std::abs(list()->visualRect(row(u"Spotify"_s)).top() - before), Theme::kRow * 2);
}

// ---- The review

TEST_F(StartupByWindow, theReviewPromisesOnlyWhatWillHappenAndTheListIsReadAnewAfterIt) {
    openStartup();
    EXPECT_FALSE(isUsable(u"Review Changes"_s));
    clickRow(u"Traktor Helper"_s);
    answerAlert(kQuestion, u"Disable Anyway"_s);
    processEventsUntil([] { return isUsable(u"Review Changes"_s); });
    click(u"Review Changes"_s);
    waitUntilSeen(u"Review Startup Changes"_s);
    waitUntilSeen(u"App, protected: stays on"_s);
    EXPECT_FALSE(isUsable(u"Apply Changes"_s)) << "nothing would happen";
    press(Qt::Key_Escape);
    processEventsUntil([this] { return session().turnstile.isIdle(); });

    clickRow(u"Spotify"_s);
    processEventsUntil([] { return isUsable(u"Review Changes"_s); });
    click(u"Review Changes"_s);
    processEventsUntil([] { return isUsable(u"Apply Changes"_s); });
    click(u"Apply Changes"_s);
    processEventsUntil([] { return !alertTitle().isEmpty(); });
    answerAlert(alertTitle());
    processEventsUntil([] { return isUsable(u"Done"_s); });
    click(u"Done"_s);
    processEventsUntil([] { return rows().contains(u"Not on this Mac now (1)"_s); });
    EXPECT_EQ(spoken(u"Spotify"_s), u"Spotify, App, disabled at login"_s) << "not forgotten";
}

TEST_F(StartupByWindow, theListIsReadAnewAlsoAfterAReviewThatFailed) {
    startHost(R"([{"tool": "osascript", "arguments": "delete", "status": 1, "error": "no"}])");
    openStartup();
    clickRow(u"Spotify"_s);
    shell(u"osascript -e 'tell application \"System Events\" to make login item at end with properties "
          "{path:\"/Applications/Docker.app\", hidden:false}'"_s);
    EXPECT_FALSE(row(u"Docker"_s).isValid());
    click(u"Review Changes"_s);
    processEventsUntil([] { return isUsable(u"Apply Changes"_s); });
    click(u"Apply Changes"_s);
    answerAlert(u"Startup Partially Applied"_s);
    processEventsUntil([] { return isUsable(u"Done"_s); });
    click(u"Done"_s);
    processEventsUntil([] { return row(u"Docker"_s).isValid(); });
    EXPECT_FALSE(isOn(u"Spotify"_s)) << "what was decided stays";
    EXPECT_TRUE(isUsable(u"Review Changes"_s));
}

TEST_F(StartupByWindow, anApplicationOfTheProgramsThatNobodyOpensAnyMoreIsAChange) {
    const QString old = u"/Applications/Old.app"_s;
    launchAndScan();
    session().system.recordManagedStartupAppPath(old);
    click(u"Startup Optimization"_s);
    waitUntilRefreshed();
    EXPECT_TRUE(isUsable(u"Review Changes"_s));
    session().system.forgetManagedStartupAppPath(old);
    click(u"Refresh"_s);
    waitUntilRefreshed();
    EXPECT_FALSE(isUsable(u"Review Changes"_s));
}

} // namespace quorvane
