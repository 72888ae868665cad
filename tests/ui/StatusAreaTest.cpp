// The status item in a real status area, by mouse and keys.

#include "fakes/StatusMenuOnScreen.h"
#include "fakes/WindowOnMac.h"
#include "fakes/XDisplay.h"
#include "ui/menu/MenuBarManager.h"
#include "ui/menu/TrayStatusItem.h"

#include <QElapsedTimer>
#include <QScreen>

namespace quorvane {

namespace {

/// Of the item's window, which Qt makes for the status area to take in.
class ItemWindow {
public:
    /// Null where no status area has it.
    static QWidget* widget() {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (window->inherits("QSystemTrayIconSys") && window->isVisible()) {
                return window;
            }
        }
        return nullptr;
    }
    static QString id() { return QString::number(widget()->winId()); }
};

class StatusAreaTest : public WindowOnMac {
protected:
    void SetUp() override {
        isTall = false;
        keepBaseline();
        saveProfile(u"live-set"_s);
    }
    void TearDown() override {
        WindowOnMac::TearDown();
        display().closeStatusArea();
    }
    StatusItem& placeOfStatusItem() override { return tray; }

    static XDisplay& display() { return XDisplay::used(); }
    void launchInStatusArea() {
        display().openStatusArea();
        processEventsUntil([this] { return tray.isShown(); });
        launchAndScan();
        processEventsUntil([] { return isInPlace(); });
    }
    /// It is there, as large as an icon, and painted.
    static bool isInPlace() { return ItemWindow::widget() != nullptr && picture().width() >= 16 && darkPixels() > 0; }
    /// Of the screen, where the item is.
    static QImage picture() {
        const QRect place = display().placeOf(ItemWindow::id());
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, place.x(), place.y(), place.width(), place.height())
            .toImage();
    }
    static int pixelsBetween(int darkest, int lightest) {
        const QImage seen = picture();
        int count = 0;
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x) {
                const int lightness = seen.pixelColor(x, y).lightness();
                count += lightness >= darkest && lightness <= lightest ? 1 : 0;
            }
        }
        return count;
    }
    static int darkPixels() { return pixelsBetween(0, 80); }
    static int lightPixels() { return pixelsBetween(235, 255); }

    static void clickItem(int button) {
        display().act(
            {u"mousemove"_s, u"--window"_s, ItemWindow::id(), u"8"_s, u"8"_s, u"click"_s, QString::number(button)});
    }
    static constexpr int kAttempts = 5;
    static constexpr int kPatience = 10000; // milliseconds
    static QMenu* openMenu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }
    static void openMenuByClick(int button = 1) {
        // A click may come just as the area moves its items; then a user clicks again.
        const auto isOpen = [] { return openMenu() != nullptr && openMenu()->isVisible(); };
        for (int attempt = 0; attempt < kAttempts && !isOpen(); ++attempt) {
            clickItem(button);
            QElapsedTimer patience;
            patience.start();
            processEventsUntil([&] { return isOpen() || patience.hasExpired(kPatience); });
        }
        ASSERT_TRUE(isOpen());
    }
    static void closeMenu() {
        display().act({u"key"_s, u"Escape"_s});
        processEventsUntil([] { return openMenu() == nullptr; });
    }
    static void clickInMenu(const QString& title) {
        QMenu* const menu = openMenu();
        for (QAction* const action : menu->actions()) {
            if (action->text() == title) {
                const QPoint place = menu->mapToGlobal(menu->actionGeometry(action).center());
                display().act(
                    {u"mousemove"_s, QString::number(place.x()), QString::number(place.y()), u"click"_s, u"1"_s});
                return;
            }
        }
        FAIL() << "the menu has no " << title.toStdString();
    }

    TrayStatusItem tray;
};

} // namespace

TEST_F(StatusAreaTest, showsTheLettersAndItsMenuByEitherButton) {
    launchInStatusArea();
    EXPECT_GT(darkPixels(), 10) << "letters";
    EXPECT_GT(lightPixels(), 40) << "on a ground of their own";
    for (const int button : {1, 3}) {
        openMenuByClick(button);
        const StatusMenuOnScreen menu(*openMenu());
        EXPECT_TRUE(menu.usable().contains(u"Live Set"_s));
        EXPECT_TRUE(menu.usable().contains(u"Quit Quorvane"_s));
        closeMenu();
    }
}

TEST_F(StatusAreaTest, theMenuOpensTheClosedWindowAndIsRightAtEachChange) {
    launchInStatusArea();
    mainWindow()->close();
    processEventsUntil([] { return mainWindow() == nullptr; });
    saveProfile(u"rehearsal"_s);
    session().savedProfiles.tellChanged();
    processEventsUntil([this] { return session().savedProfiles.known().profiles.size() == 2; });

    openMenuByClick();
    EXPECT_TRUE(StatusMenuOnScreen(*openMenu()).titles().contains(exampleProfile(u"rehearsal"_s).name));
    clickInMenu(u"Open Quorvane"_s);
    processEventsUntil([] { return mainWindow() != nullptr && mainWindow()->isActiveWindow(); });
}

TEST_F(StatusAreaTest, theMenuLeadsOut) {
    launchInStatusArea();
    openMenuByClick();
    clickInMenu(u"Quit Quorvane"_s);
    processEventsUntil([this] { return hasTerminated; });
}

TEST_F(StatusAreaTest, takesItsPlaceWheneverThereIsOne) {
    launchAndScan();
    EXPECT_FALSE(tray.isShown());
    EXPECT_TRUE(app().applicationShouldTerminateAfterLastWindowClosed());
    for (int round = 0; round < 2; ++round) {
        display().openStatusArea();
        processEventsUntil([this] { return tray.isShown() && isInPlace(); });
        EXPECT_FALSE(app().applicationShouldTerminateAfterLastWindowClosed());
        openMenuByClick(round == 0 ? 1 : 3); // the same one again could be a double click
        closeMenu();

        display().closeStatusArea();
        processEventsUntil([this] { return !tray.isShown(); });
        EXPECT_TRUE(app().applicationShouldTerminateAfterLastWindowClosed());
    }
}

} // namespace quorvane
