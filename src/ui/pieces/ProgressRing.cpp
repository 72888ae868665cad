#include "ui/pieces/ProgressRing.h"

#include "ui/Theme.h"

#include <QPainter>

namespace quorvane {

using namespace std::chrono_literals;

ProgressRing::ProgressRing(int size, QWidget* parent)
    : QProgressBar(parent) {
    setRange(0, 0);
    setFixedSize(size, size);
    setAccessibleName(QStringLiteral("Busy"));
    m_turn.setStartValue(0.0);
    m_turn.setEndValue(1.0);
    m_turn.setLoopCount(-1);
    connect(&m_turn, &QVariantAnimation::valueChanged, this, [this] { update(); });
}

void ProgressRing::showEvent(QShowEvent*) {
    turn();
}

void ProgressRing::turn() {
    m_turn.stop();
    const std::chrono::milliseconds round = themeOf(this).moving(1000ms);
    if (round > 0ms) {
        m_turn.setDuration(static_cast<int>(round.count()));
        m_turn.start();
    }
}

void ProgressRing::changeEvent(QEvent* event) {
    QProgressBar::changeEvent(event);
    if (event->type() == QEvent::StyleChange && isVisible()) {
        turn();
    }
}

void ProgressRing::hideEvent(QHideEvent*) {
    m_turn.stop();
}

void ProgressRing::paintEvent(QPaintEvent*) {
    const Theme& theme = themeOf(this);
    constexpr int kFullCircle = 16 * 360; // Qt counts sixteenths of a degree
    const double width = this->width() / 9.0;
    const QRectF circle = QRectF(rect()).adjusted(width, width, -width, -width);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.border, width));
    painter.drawEllipse(circle);
    painter.setPen(QPen(theme.accentText, width, Qt::SolidLine, Qt::RoundCap));
    const double share = m_turn.state() == QAbstractAnimation::Running ? m_turn.currentValue().toDouble() : 0;
    painter.drawArc(circle, kFullCircle / 4 - static_cast<int>(share * kFullCircle), -kFullCircle / 4);
}

} // namespace quorvane
