#include "ui/documentation/TextDocumentationView.h"

#include "core/Background.h"
#include "ui/QuorvaneStyle.h"
#include "ui/documentation/RichTextPage.h"
#include "ui/pieces/WhenFinished.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTextBrowser>
#include <QThread>
#include <QVBoxLayout>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kRoom = 2 * Theme::kFocusRing; ///< for the ring around the page

} // namespace

TextDocumentationView::TextDocumentationView(QWidget* parent)
    : QWidget(parent)
    , m_browser(new QTextBrowser) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(kRoom, kRoom, kRoom, kRoom);
    layout->addWidget(m_browser);
    setFocusProxy(m_browser);
    m_browser->setFrameShape(QFrame::NoFrame);
    m_browser->viewport()->setAutoFillBackground(false); // the window's ground shows through
    m_browser->setOpenLinks(false);
    m_browser->setTextInteractionFlags(Qt::TextSelectableByMouse); // by keys a caret would move, and not the page
    m_browser->setTabChangesFocus(true);
    m_browser->setAccessibleName(kDocumentationTitle);
    m_browser->installEventFilter(this);
}

/// The browser goes before its document.
TextDocumentationView::~TextDocumentationView() {
    delete m_browser;
}

void TextDocumentationView::showPage(const DocumentationParts& parts) {
    m_parts = parts;
    compose();
}

void TextDocumentationView::compose() {
    const int composition = ++m_composition;
    const QFuture<Document> document = inBackground(richTextPage, m_parts, richTextLook(themeOf(this)), thread());
    whenFinished(document, this, [this, composition](const QFuture<Document>& made) {
        if (composition == m_composition) {
            take(made.result());
        }
    });
}

/// Shows the place that was shown before. What is further down is laid out when there is time for it.
void TextDocumentationView::take(const Document& document) {
    QScrollBar* const bar = m_browser->verticalScrollBar();
    const int place = bar->value();
    m_browser->setDocument(document.get());
    m_document = document;
    if (place > 0) {
        const QPointF lowest(0, place + 2.0 * m_browser->viewport()->height());
        document->documentLayout()->hitTest(lowest, Qt::FuzzyHit); // lays out everything above
        bar->setValue(place);
    }
}

bool TextDocumentationView::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update();
    }
    return QWidget::eventFilter(watched, event);
}

void TextDocumentationView::paintEvent(QPaintEvent*) {
    if (m_browser->hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        QPainter painter(this);
        drawFocusRing(painter, themeOf(this), m_browser->geometry(), 0);
    }
}

void TextDocumentationView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange && m_composition > 0) {
        compose();
    }
}

} // namespace quorvane
