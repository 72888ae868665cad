#include "ui/pieces/Popover.h"

#include "ui/Theme.h"
#include "ui/pieces/Layers.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>

#include <algorithm>

namespace quorvane {

namespace {

constexpr int kMargin = Theme::kGap12;
constexpr int kShadow = 10;

/// The innermost stack of layers that something stands in.
QWidget* layersOf(QWidget* widget) {
    QWidget* ancestor = widget->parentWidget();
    while (qobject_cast<Layers*>(ancestor) == nullptr && ancestor->parentWidget() != nullptr) {
        ancestor = ancestor->parentWidget();
    }
    return ancestor;
}

} // namespace

Popover::Popover(QWidget* contents, QWidget* anchor)
    : QWidget(layersOf(anchor))
    , m_contents(contents)
    , m_anchor(anchor) {
    setAttribute(Qt::WA_NoMousePropagation);
    setAttribute(Qt::WA_DeleteOnClose);
    contents->setParent(this);
    setGeometry(parentWidget()->rect());
    parentWidget()->installEventFilter(this);
    place();
    show();
    raise();
    contents->setFocus(Qt::OtherFocusReason);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, const QWidget* now) { focusMoved(now); });
}

/// What it holds gives up the focus while it goes.
Popover::~Popover() {
    disconnect(qApp, nullptr, this, nullptr);
}

void Popover::place() {
    if (m_anchor == nullptr) {
        return;
    }
    m_contents->adjustSize();
    const QPoint below = m_anchor->mapTo(parentWidget(), QPoint(0, m_anchor->height() + kMargin));
    const QSize room = size() - m_contents->size() - QSize(kMargin, kMargin);
    m_contents->move(std::clamp(below.x(), kMargin, std::max(kMargin, room.width())),
                     std::clamp(below.y(), kMargin, std::max(kMargin, room.height())));
}

/// To another part of the window: hidden by the lock, or in another window, it stays.
void Popover::focusMoved(const QWidget* now) {
    const bool isElsewhere = now != nullptr && now->window() == window() && now != this && !isAncestorOf(now);
    if (isElsewhere && isVisible()) {
        QWidget::close();
    }
}

void Popover::close() {
    hide();
    if (m_anchor != nullptr) {
        m_anchor->setFocus(Qt::OtherFocusReason);
    }
    QWidget::close();
    deleteLater();
}

void Popover::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
    }
}

/// The Tab key stays within it.
bool Popover::focusNextPrevChild(bool isNext) {
    QWidget* const from = focusWidget();
    const auto neighbour = [isNext](QWidget* widget) {
        return isNext ? widget->nextInFocusChain() : widget->previousInFocusChain();
    };
    const auto isStop = [this](const QWidget* widget) {
        return isAncestorOf(widget) && (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isVisible() &&
               widget->isEnabled();
    };
    for (QWidget* widget = from != nullptr ? neighbour(from) : nullptr; widget != nullptr && widget != from;
         widget = neighbour(widget)) {
        if (isStop(widget)) {
            window()->setAttribute(Qt::WA_KeyboardFocusChange);
            widget->setFocus(isNext ? Qt::TabFocusReason : Qt::BacktabFocusReason);
            break;
        }
    }
    return true;
}

void Popover::mousePressEvent(QMouseEvent*) {
    close();
}

bool Popover::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        place();
    }
    return QWidget::eventFilter(watched, event);
}

void Popover::paintEvent(QPaintEvent*) {
    const Theme& theme = themeOf(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF ground = QRectF(m_contents->geometry()).adjusted(-8.5, -8.5, 8.5, 8.5);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.shadow);
    for (int reach = kShadow; reach > 0; reach -= 2) {
        painter.drawRoundedRect(ground.adjusted(-reach, 2 - reach, reach, 2 + reach), Theme::kCardRadius + reach,
                                Theme::kCardRadius + reach);
    }
    painter.setPen(theme.fieldBorder);
    painter.setBrush(theme.card);
    painter.drawRoundedRect(ground, Theme::kCardRadius, Theme::kCardRadius);
}

} // namespace quorvane
