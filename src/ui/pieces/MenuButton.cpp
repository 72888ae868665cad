#include "ui/pieces/MenuButton.h"

#include "ui/QuorvaneStyle.h"
#include "ui/pieces/ReturnKey.h"

#include <QMenu>
#include <QPainter>

namespace quorvane {

namespace {

constexpr int kArrowWidth = 8;
constexpr int kArrowHeight = 4;

} // namespace

/// The menu doesn't wait in a loop of its own, as one of Qt's buttons would let it.
MenuButton::MenuButton(const QString& title, QWidget* parent)
    : AppSecondaryButton(title, parent)
    , m_choices(new QMenu(this)) {
    setAccessibleDescription(QStringLiteral("Opens a menu"));
    connect(this, &QPushButton::clicked, m_choices, [this] { m_choices->popup(mapToGlobal(rect().bottomLeft())); });
}

QSize MenuButton::sizeHint() const {
    return AppSecondaryButton::sizeHint() + QSize(2 * kArrowWidth, 0);
}

void MenuButton::keyPressEvent(QKeyEvent* event) {
    if (!isPressedByReturn(*this, *event)) {
        AppSecondaryButton::keyPressEvent(event);
    }
}

void MenuButton::paintEvent(QPaintEvent* event) {
    AppSecondaryButton::paintEvent(event);
    const Theme& theme = themeOf(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(looksEnabled(this) ? theme.secondaryText : theme.disabledText, 1.5));
    const double right = width() - Theme::kRingRoom - Theme::kGap8;
    const double top = (height() - kArrowHeight) / 2.0;
    painter.drawPolyline(QPolygonF{QPointF(right - kArrowWidth, top),
                                   QPointF(right - kArrowWidth / 2.0, top + kArrowHeight), QPointF(right, top)});
}

} // namespace quorvane
