#include "ui/documentation/DocumentationWindow.h"

#include "ui/Theme.h"
#include "ui/documentation/DocumentationView.h"

#include <QPainter>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

namespace quorvane {

namespace {

constexpr QSize kDocumentationSize(700, 550);

} // namespace

DocumentationWindow::DocumentationWindow(const DocumentationParts& parts) {
    setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                   Qt::WindowCloseButtonHint);
    setWindowTitle(kDocumentationTitle);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    DocumentationView* const view = makeDocumentationView();
    layout->addWidget(view);
    setFocusProxy(view);
    new QShortcut(QKeySequence::Close, this, [this] { close(); });
    resize(kDocumentationSize.boundedTo(screen()->availableSize()));
    move(screen()->availableGeometry().center() - rect().center());
    view->showPage(parts);
}

void DocumentationWindow::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), themeOf(this).window);
}

} // namespace quorvane
