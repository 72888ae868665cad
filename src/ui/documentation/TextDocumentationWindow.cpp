#include "ui/documentation/TextDocumentationWindow.h"

#include "ui/Theme.h"
#include "ui/documentation/TextDocumentationView.h"

#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

namespace quorvane {

namespace {

constexpr QSize kDocumentationSize(700, 550);

} // namespace

TextDocumentationWindow::TextDocumentationWindow(const DocumentationParts& parts) {
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowCloseButtonHint);
    setWindowTitle(kDocumentationTitle);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const view = new TextDocumentationView;
    layout->addWidget(view);
    setFocusProxy(view);
    new QShortcut(QKeySequence::Close, this, [this] { close(); });
    resize(kDocumentationSize.boundedTo(screen()->availableSize()));
    move(screen()->availableGeometry().center() - rect().center());
    view->showPage(parts);
}

void TextDocumentationWindow::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), themeOf(this).window);
}

} // namespace quorvane
