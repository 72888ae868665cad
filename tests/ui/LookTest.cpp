// The window in another look while it is open, and what it says aloud when something changes.

#include "actions/MasterBaselineOffer.h"
#include "app/simulated/AuthorizationDialog.h"
#include "fakes/HostileNames.h"
#include "fakes/ShownWindow.h"
#include "fakes/ViewWalk.h"
#include "platform/StatusItem.h"
#include "ui/QuorvaneStyle.h"
#include "ui/menu/MenuBarManager.h"
#include "ui/pieces/Sheet.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QImage>
#include <QLabel>
#include <QTextDocumentFragment>
#include <private/qguiapplication_p.h>
#include <qpa/qplatformaccessibility.h>
#include <qpa/qplatformintegration.h>

namespace quorvane {

namespace {

const Look kDark{ColorScheme::Dark, false, false};
const Look kStill{ColorScheme::Light, true, false};

class OpenLook : public ShownWindow {
public:
    ~OpenLook() override { style().setLook({}); }

protected:
    OpenLook() { QApplication::setCursorFlashTime(0); }

    static QuorvaneStyle& style() { return *qobject_cast<QuorvaneStyle*>(QApplication::style()); }
    static QImage pictureOf(QWidget& shown) {
        settle();
        return shown.grab().toImage();
    }
    /// What is open is painted in another look as it is when it opens in that.
    template <typename Open>
    void expectFollows(const Look& other, const Open& openView) {
        style().setLook(kStill);
        openView();
        const QImage before = pictureOf(*mainWindow);
        style().setLook(other);
        const QImage followed = pictureOf(*mainWindow);
        mainWindow.reset();
        openView();
        EXPECT_NE(before, followed);
        EXPECT_EQ(pictureOf(*mainWindow), followed);
    }
    void showReview() {
        open();
        if (!reviews.request()) {
            reviews.presentProfile(live, window, {});
            waitFor(ApplyReview::State::Reviewing);
        }
        settle();
    }
};

} // namespace

// ---- Another look while it is open

TEST_F(OpenLook, everyViewFollows) {
    for (Look other : {kDark, Look{ColorScheme::Light, true, true}, Look{ColorScheme::Dark, true, true}}) {
        other.reducesMotion = true;
        makeActive(live);
        expectFollows(other, [this] { open(); });
        expectFollows(other, [this] {
            open();
            click(u"System Tweaks"_s);
        });
        expectFollows(other, [this] {
            open();
            click(u"System Tweaks"_s);
            settle();
            click(u"Icon of Deactivate Siri Core Services"_s);
        });
        session->system.log(u"[ERROR] No network"_s);
        expectFollows(other, [this] {
            open();
            mainWindow->contentView().setSelectedTab(Tab::logs);
        });
    }
}

TEST_F(OpenLook, sheetsAndTheLockFollow) {
    Look dark = kDark;
    dark.reducesMotion = true;
    expectFollows(dark, [this] { showReview(); });
    reviews.dismiss();
    waitForTasks();
    enableLock();
    lock->lockIfEnabled();
    expectFollows(dark, [this] { open(); });
}

TEST_F(OpenLook, anAlertFollows) {
    const Alert alert{u"Success"_s, u"All is well."_s, {u"OK"_s, u"Cancel"_s}, 1};
    AlertDialog opened(alert);
    opened.show();
    pictureOf(opened);
    style().setLook(kDark);
    const QImage followed = pictureOf(opened);
    AlertDialog other(alert);
    other.show();
    EXPECT_EQ(pictureOf(other), followed);
}

// ---- Motion

TEST_F(OpenLook, nothingMovesWhereMotionIsReduced) {
    style().setLook(kStill);
    enableLock();
    open();
    lock->lockIfEnabled();
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    QCoreApplication::sendPostedEvents();
    EXPECT_FALSE(named(u"Create Custom Profile"_s)->visibleRegion().isEmpty());
    reviews.presentProfile(live, window, {});
    QWidget* sheet = nullptr;
    processEventsUntil([&] { return (sheet = mainWindow->findChild<Sheet*>()) != nullptr && sheet->isVisible(); });
    EXPECT_EQ(sheet->y(), Theme::kGap24) << "at its place at once";
}

TEST_F(OpenLook, theLockFadesAndIsGone) {
    enableLock();
    open();
    lock->lockIfEnabled();
    settle();
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    EXPECT_TRUE(named(u"Password"_s)->isVisible()) << "it fades";
    const QWidget* const field = named(u"Password"_s);
    processEventsUntil([&] { return !field->isVisible(); });
}

// ---- Said aloud

namespace {

QStringList saidAloud;

void hear(QAccessibleEvent* event) {
    if (event->type() == QAccessible::Alert || event->type() == QAccessible::DialogStart) {
        saidAloud.append(event->accessibleInterface()->text(QAccessible::Name));
    }
}

class Announcements : public ShownWindow {
public:
    ~Announcements() override {
        QAccessible::installUpdateHandler(m_before);
        setScreenReaderRuns(false);
    }

protected:
    Announcements()
        : m_before(QAccessible::installUpdateHandler(hear)) {
        setScreenReaderRuns(true);
        saidAloud.clear();
    }

    static QStringList heard() { return std::exchange(saidAloud, {}); }

private:
    /// Qt tells of nothing while nobody listens, and has no public way to say that somebody does.
    static void setScreenReaderRuns(bool runs) {
        QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(runs);
    }

    QAccessible::UpdateHandler m_before;
};

} // namespace

TEST_F(Announcements, thatAProfileIsVerifiedOrNot) {
    open();
    EXPECT_EQ(heard(), QStringList()) << "nothing has changed";
    makeActive(live);
    settle();
    EXPECT_EQ(heard(), QStringList(u"Profile: Live"_s));
    session->system.recordAppliedConfiguration(live, {{}, {{u"Siri"_s, u"is on"_s}}});
    settle();
    EXPECT_EQ(heard().size(), 1);
}

TEST_F(Announcements, thatTheProgramIsBusy) {
    open();
    const Turnstile::Hold busy = session->turnstile.busy(u"Applying Live…"_s);
    settle();
    EXPECT_EQ(heard(), QStringList(u"Applying Live…"_s));
}

TEST_F(Announcements, theLockAndAPasswordThatIsWrong) {
    enableLock();
    open();
    heard();
    lock->lockIfEnabled();
    settle();
    EXPECT_EQ(heard(), QStringList(u"Quorvane is Locked"_s));
    makeActive(live);
    settle();
    EXPECT_EQ(heard(), QStringList()) << "nothing of what lies beneath";
    QTest::keyClick(mainWindow->windowHandle(), Qt::Key_X);
    QTest::keyClick(mainWindow->windowHandle(), Qt::Key_Return);
    EXPECT_EQ(heard(), QStringList(u"Incorrect password."_s));
}

TEST_F(Announcements, whatCameOfAReview) {
    open();
    reviews.presentProfile(live, window, {});
    waitFor(ApplyReview::State::Reviewing);
    settle();
    heard();
    review()->apply();
    waitFor(ApplyReview::State::Finished);
    settle();
    const QString result = review()->result()->title + u". "_s + review()->result()->text;
    EXPECT_TRUE(heard().contains(result));
    EXPECT_EQ(spokenControls(mainWindow.get()).filter(u"dialog "_s).first().section(u':', 0, 0),
              u"dialog Review Profile"_s)
        << "the sheet keeps its name";
}

TEST_F(Announcements, thatABaselineCouldNotBeSaved) {
    open();
    const auto offer = std::make_shared<MasterBaselineOffer>();
    window.showSheet(offer);
    settle();
    heard();
    offer->beginSaving();
    EXPECT_EQ(heard(), QStringList(kBaselinePromptSaving));
    offer->endSaving(false);
    EXPECT_EQ(heard(), QStringList(kBaselinePromptFailed));
}

TEST_F(Announcements, alertsAndAWrongPasswordOfTheSystem) {
    AlertDialog alert({u"Success"_s, u"All is well."_s, {u"OK"_s}});
    alert.show();
    EXPECT_EQ(heard(), QStringList(u"Success"_s));
    alert.hide();
    macsim::Machine simulated;
    simulated.password = u"quorvane"_s;
    AuthorizationDialog dialog(u"Allow it?"_s, simulated);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_EQ(heard(), QStringList(u"Allow it?"_s));
    QTest::keyClick(dialog.windowHandle(), Qt::Key_X);
    QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
    EXPECT_EQ(heard(), QStringList(u"That isn’t the password. Try again."_s));
}

// ---- Names that would be more than a name

namespace {

class RecordedStatusItem final : public StatusItem {
public:
    void remove() override { menu = nullptr; }
    void setMenu(QMenu& shown) override { menu = &shown; }
    bool isShown() const override { return true; }

    QMenu* menu = nullptr;
};

class HostileNamesInViews : public ShownWindow, public ::testing::WithParamInterface<QString> {
protected:
    static UnifiedProfile hostile() {
        UnifiedProfile profile = numberedProfile(7, GetParam());
        profile.settings.siri = true;
        return profile;
    }
    static QString shownName() { return nameOnOneLine(GetParam()); }
    /// All labels take their texts as they are, and one of them shows the name.
    static void expectPlainLabels(QWidget* shown) {
        bool isNamed = false;
        for (const QLabel* const label : shown->findChildren<QLabel*>()) {
            EXPECT_TRUE(label->textFormat() == Qt::PlainText || label->text().isEmpty()) << label->text().toStdString();
            isNamed = isNamed || (label->isVisible() && nameOf(*label).contains(shownName()));
        }
        EXPECT_TRUE(isNamed) << shownName().toStdString();
        EXPECT_EQ(clippedTexts(shown), QStringList());
    }
};

} // namespace

TEST_P(HostileNamesInViews, areNamesInRowsStatusAndTitle) {
    files.addFile(session->profileStore.profilesDirectory() + u"/hostile.json"_s, encodeProfile(hostile()));
    makeActive(hostile());
    open();
    auto* const list = qobject_cast<QAbstractItemView*>(named(kSavedProfilesTitle));
    QModelIndex row;
    for (int number = 0; number < list->model()->rowCount(); ++number) {
        const QModelIndex index = list->model()->index(number, 0);
        row = index.data() == shownName() ? index : row;
    }
    ASSERT_TRUE(row.isValid());
    const QString tip = row.data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(Qt::mightBeRichText(tip)) << "nobody has to guess";
    EXPECT_EQ(QTextDocumentFragment::fromHtml(tip).toPlainText(), u"This profile matches current system settings"_s);
    expectPlainLabels(mainWindow.get());
    EXPECT_TRUE(QAccessible::queryAccessibleInterface(mainWindow.get())->text(QAccessible::Name).contains(shownName()));
}

TEST_P(HostileNamesInViews, areNamesInReviewAlertAndLog) {
    addProfile(live);
    open();
    reviews.presentProfile(hostile(), window, {});
    waitFor(ApplyReview::State::Reviewing);
    settle();
    expectPlainLabels(mainWindow.get());
    reviews.dismiss();
    waitForTasks();

    AlertDialog alert({u"Delete “%1”?"_s.arg(shownName()), u"“%1” goes."_s.arg(shownName()), {u"OK"_s}});
    alert.show();
    settle();
    expectPlainLabels(&alert);

    session->system.log(u"[INFO] "_s + GetParam());
    mainWindow->contentView().setSelectedTab(Tab::logs);
    settle();
    const QAbstractItemModel& lines = *qobject_cast<QAbstractItemView*>(named(u"Log"_s))->model();
    EXPECT_GT(lines.rowCount(), 0);
    for (int row = 0; row < lines.rowCount(); ++row) {
        const QString line = lines.index(row, 0).data().toString();
        EXPECT_EQ(line, onOneLine(line));
    }
}

TEST_P(HostileNamesInViews, areNamesInTheMenu) {
    files.addFile(session->profileStore.profilesDirectory() + u"/hostile.json"_s, encodeProfile(hostile()));
    makeActive(hostile());
    RecordedStatusItem item;
    MenuBarManager manager(item, alerts);
    manager.configureManagers(*session, window);
    listProfiles();
    settle();
    int shown = 0;
    for (const QAction* const action : item.menu->actions()) {
        QString text = action->text();
        shown += text.replace(u"&&"_s, QChar(1)).contains(QString(shownName()).replace(u'&', QChar(1))) ? 1 : 0;
        EXPECT_FALSE(text.contains(u'&')) << "the mark of a shortcut in " << text.toStdString();
    }
    EXPECT_GE(shown, 2);
}

INSTANTIATE_TEST_SUITE_P(Names, HostileNamesInViews,
                         ::testing::ValuesIn(hostileNames() + QStringList{u"Gig [*] Live"_s}));

} // namespace quorvane
