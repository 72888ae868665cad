#include "ui/pieces/AppSwitch.h"

#include "ui/QuorvaneStyle.h"

#include <QPainter>

namespace quorvane {

namespace {

constexpr int kTrackWidth = 38;
constexpr int kTrackHeight = 22;
constexpr int kKnobMargin = 2;

QColor between(const QColor& off, const QColor& on, double share) {
    const auto part = [share](float from, float to) { return static_cast<float>(from + (to - from) * share); };
    return QColor::fromRgbF(part(off.redF(), on.redF()), part(off.greenF(), on.greenF()),
                            part(off.blueF(), on.blueF()));
}

} // namespace

AppSwitch::AppSwitch(QWidget* parent)
    : QCheckBox(parent) {
    setFocusPolicy(Qt::StrongFocus);
    m_move.setStartValue(0.0);
    m_move.setEndValue(0.0);
    connect(&m_move, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(this, &QCheckBox::toggled, this, &AppSwitch::moveKnob);
}

QSize AppSwitch::sizeHint() const {
    return {kTrackWidth + 2 * Theme::kRingRoom, kTrackHeight + 2 * Theme::kRingRoom};
}

void AppSwitch::moveKnob() {
    const double from =
        m_move.state() == QAbstractAnimation::Running ? m_move.currentValue().toDouble() : (isChecked() ? 0.0 : 1.0);
    m_move.stop();
    if (!isVisible()) {
        return;
    }
    m_move.setStartValue(from);
    m_move.setEndValue(isChecked() ? 1.0 : 0.0);
    m_move.setDuration(static_cast<int>(themeOf(this).moving(Theme::kSwitchMove).count()));
    m_move.start();
}

void AppSwitch::paintEvent(QPaintEvent*) {
    const Theme& theme = themeOf(this);
    const double share =
        m_move.state() == QAbstractAnimation::Running ? m_move.currentValue().toDouble() : (isChecked() ? 1.0 : 0.0);
    const QRectF track(Theme::kRingRoom, (height() - kTrackHeight) / 2.0, kTrackWidth, kTrackHeight);
    QPainter painter(this);
    paintSwitch(painter, theme, track, share, looksEnabled(this));
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        drawFocusRing(painter, theme, track, kTrackHeight / 2.0);
    }
}

void paintSwitch(QPainter& painter, const Theme& theme, const QRectF& track, double share, bool isEnabled) {
    const double knob = kTrackHeight - 2 * kKnobMargin;
    const double travel = kTrackWidth - 2 * kKnobMargin - knob;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled ? 1 : 0.4);
    painter.setPen(Qt::NoPen);
    painter.setBrush(between(theme.switchOff, theme.switchOn, share));
    painter.drawRoundedRect(track, kTrackHeight / 2.0, kTrackHeight / 2.0);
    painter.setBrush(theme.switchKnob);
    painter.drawEllipse(QRectF(track.left() + kKnobMargin + travel * share, track.top() + kKnobMargin, knob, knob));
    painter.restore();
}

QSize switchSize() {
    return {kTrackWidth, kTrackHeight};
}

} // namespace quorvane
