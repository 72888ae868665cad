// The window in which the manual is read.

#include "actions/WindowTexts.h"
#include "documentation/DocumentationPage.h"
#include "fakes/Pictures.h"
#include "fakes/ShownWindow.h"
#include "ui/QuorvaneStyle.h"
#include "ui/documentation/TextDocumentationView.h"

#include <QApplication>
#include <QMenuBar>
#include <QScreen>
#include <QScrollBar>
#include <QTextBrowser>
#include <QTextTable>

namespace quorvane {

namespace {

QList<QWidget*> documentationWindows() {
    QList<QWidget*> windows;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowTitle() == kDocumentationTitle) {
            windows.append(window);
        }
    }
    return windows;
}

QTextBrowser* browserIn(const QWidget* window) {
    return window->findChild<QTextBrowser*>();
}

bool isEnabledInMenuBar(const QMainWindow& bar, const QString& title, bool triggers) {
    for (QAction* const action : bar.findChildren<QAction*>()) {
        if (action->text() == title && action->isEnabled()) {
            if (triggers) {
                action->trigger();
            }
            return true;
        }
    }
    return false;
}

class Documentation : public ShownWindow {
protected:
    void TearDown() override {
        documentation.shutDown();
        ShownWindow::TearDown();
    }
    /// What it shows is converted on another thread.
    static QTextBrowser& shownManual() {
        processEventsUntil([] {
            return documentationWindows().size() == 1 &&
                   browserIn(documentationWindows().first())->toPlainText().contains(u"Copyright");
        });
        return *browserIn(documentationWindows().first());
    }
    static QuorvaneStyle& style() { return *qobject_cast<QuorvaneStyle*>(QApplication::style()); }
};

/// A page of a manual's own.
class DocumentationPageView : public ::testing::Test {
protected:
    QTextBrowser& shown(const QString& manual, const QByteArray& logo = {}) {
        view = std::make_unique<TextDocumentationView>();
        view->resize(600, 400);
        view->show();
        view->showPage({manual, u"END"_s, logo});
        processEventsUntil([this] { return browserIn(view.get())->toPlainText().contains(u"END"); });
        return *browserIn(view.get());
    }

    std::unique_ptr<TextDocumentationView> view;
};

} // namespace

// ---- The window

TEST_F(Documentation, opensFromTheSidebarAndStaysOne) {
    open();
    const Tab before = mainWindow->contentView().selectedTab();
    click(kDocumentation);
    const QTextBrowser& manual = shownManual();
    QWidget* const shown = documentationWindows().first();
    EXPECT_EQ(shown->size(), QSize(700, 550));
    EXPECT_EQ(shown->pos(), shown->screen()->availableGeometry().center() - shown->rect().center());
    EXPECT_TRUE(shown->windowFlags().testFlag(Qt::WindowCloseButtonHint));
    EXPECT_FALSE(shown->windowFlags().testFlag(Qt::WindowMinimizeButtonHint));
    EXPECT_NE(shown->minimumSize(), shown->maximumSize()) << "it can be resized";
    EXPECT_TRUE(shown->isActiveWindow());
    EXPECT_EQ(mainWindow->contentView().selectedTab(), before);
    EXPECT_TRUE(manual.toPlainText().contains(u"Quorvane for performers"));
    EXPECT_TRUE(manual.isReadOnly());

    mainWindow->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(mainWindow.get()));
    click(kDocumentation);
    EXPECT_EQ(documentationWindows(), QList<QWidget*>{shown});
    ASSERT_TRUE(QTest::qWaitForWindowActive(shown));
}

TEST_F(Documentation, opensByKeysAndClosesByKeys) {
    open();
    named(kDocumentation)->setFocus();
    press(Qt::Key_Return);
    shownManual();
    QWidget* const shown = documentationWindows().first();
    QTest::keyClick(shown->windowHandle(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_TRUE(documentationWindows().isEmpty());
    EXPECT_TRUE(mainWindow->isVisible());
    mainWindow->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(mainWindow.get()));
    QTest::keyClick(mainWindow->windowHandle(), Qt::Key_F1);
    shownManual();
    EXPECT_EQ(documentationWindows(), QList<QWidget*>{shown}) << "it was only hidden";
}

TEST_F(Documentation, isThereWhileTheProgramIsLockedOrBusy) {
    enableLock();
    open();
    lock->lockIfEnabled();
    settle();
    EXPECT_TRUE(isEnabledInMenuBar(*mainWindow, kDocumentation, true));
    EXPECT_TRUE(shownManual().isEnabled());
    documentationWindows().first()->close();
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    const Turnstile::Hold busy = session->turnstile.busy(u"Working…"_s);
    settle();
    click(kDocumentation);
    EXPECT_TRUE(shownManual().isEnabled());
}

TEST_F(Documentation, staysWhenTheLockEngages) {
    enableLock();
    open();
    click(kDocumentation);
    shownManual();
    lock->lockIfEnabled();
    settle();
    EXPECT_EQ(documentationWindows().size(), 1);
    EXPECT_TRUE(shownManual().isEnabled());
}

TEST_F(Documentation, goesWithTheProgramAndComesNoMore) {
    open();
    click(kDocumentation);
    shownManual();
    documentation.shutDown();
    EXPECT_TRUE(documentationWindows().isEmpty());
    click(kDocumentation);
    EXPECT_TRUE(documentationWindows().isEmpty());
}

TEST_F(Documentation, followsTheLookWhereItIs) {
    open();
    click(kDocumentation);
    QTextBrowser& manual = shownManual();
    QWidget* const shown = documentationWindows().first();
    processEventsUntil([&manual] { return manual.verticalScrollBar()->maximum() > 3000; });
    manual.verticalScrollBar()->setValue(2000);
    const QTextDocument* const before = manual.document();
    Look dark;
    dark.scheme = ColorScheme::Dark;
    const Look light = style().theme().look();
    style().setLook(dark);
    processEventsUntil([&manual, before] { return manual.document() != before; });
    EXPECT_EQ(manual.verticalScrollBar()->value(), 2000);
    const QImage followed = shown->grab().toImage();
    EXPECT_EQ(followed.pixel(5, 5), style().theme().window.rgb());
    const QTextCursor text(manual.document()->findBlockByNumber(10));
    EXPECT_EQ(text.charFormat().foreground().color(), style().theme().text);
    style().setLook(light);
    processEventsUntil([&manual] {
        const QTextCursor now(manual.document()->findBlockByNumber(10));
        return now.charFormat().foreground().color() == style().theme().text;
    });
}

// ---- What a page may do

TEST_F(DocumentationPageView, showsTheLogoAndRefusesEverythingElse) {
    QTemporaryDir folder;
    const QString picture = folder.path() + u"/secret.png"_s;
    const QByteArray file = pngFile(plainPicture({40, 40}, Qt::red));
    ASSERT_TRUE(plainPicture({40, 40}, Qt::red).save(picture));
    const QByteArray logo = pngFile(plainPicture({64, 64}, Qt::blue));
    const QStringList wanted{QUrl::fromLocalFile(picture).toString(),
                             picture,
                             u"http://127.0.0.1/x.png"_s,
                             u":/qt-project.org/styles/commonstyle/images/file-16.png"_s,
                             u"qrc:/documentation/COPYRIGHT.md"_s,
                             logoAddress(file)};
    QString manual;
    for (const QString& address : wanted) {
        manual += u"<img src=\""_s + address + u"\"><link rel=\"stylesheet\" href=\""_s + address + u"\"/>\n"_s;
    }
    QTextBrowser& browser = shown(manual + u"<script>document.title = 1</script>"_s, logo);
    browser.grab();
    for (const QString& address : wanted) {
        const QTextDocument& document = *browser.document();
        for (const int type :
             {QTextDocument::StyleSheetResource, QTextDocument::HtmlResource, QTextDocument::MarkdownResource}) {
            EXPECT_FALSE(document.resource(type, QUrl(address)).isValid()) << address.toStdString();
        }
        const auto refused = document.resource(QTextDocument::ImageResource, QUrl(address)).value<QImage>();
        EXPECT_EQ(refused.size(), QSize(1, 1)) << address.toStdString();
        EXPECT_EQ(refused.pixelColor(0, 0).alpha(), 0);
    }
    const QVariant shownLogo = browser.document()->resource(QTextDocument::ImageResource, QUrl(logoAddress(logo)));
    EXPECT_EQ(shownLogo.value<QImage>().deviceIndependentSize(), QSizeF(32, 32));
    EXPECT_FALSE(browser.toPlainText().contains(u"document.title"));
}

TEST_F(DocumentationPageView, followsNoLink) {
    QTextBrowser& browser = shown(u"<a href=\"file:///etc/hostname\">A link that is as wide as it can be</a>"_s);
    const QTextCursor found = browser.document()->find(u"link"_s);
    ASSERT_FALSE(found.isNull());
    const QPoint place = browser.cursorRect(found).center();
    QTest::mouseClick(browser.viewport(), Qt::LeftButton, {}, place);
    QTest::keyClick(&browser, Qt::Key_Return);
    EXPECT_EQ(browser.source(), QUrl());
    EXPECT_TRUE(browser.toPlainText().contains(u"A link"));
}

TEST_F(DocumentationPageView, opensWithoutAnything) {
    view = std::make_unique<TextDocumentationView>();
    view->show();
    view->showPage({});
    processEventsUntil([this] { return browserIn(view.get())->toPlainText().contains(kDocumentationTitle); });
}

TEST_F(DocumentationPageView, hasTablesAsWideAsThePage) {
    const QTextBrowser& browser = shown(u"a|b\n---|---\ncell|d"_s);
    const QTextTable* const table = QTextCursor(browser.document()->find(u"cell"_s)).currentTable();
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->rows(), 2);
    EXPECT_EQ(table->format().width().rawValue(), 100);
}

} // namespace quorvane
