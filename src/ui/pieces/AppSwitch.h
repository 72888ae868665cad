#pragma once

#include <QCheckBox>
#include <QVariantAnimation>

class QPainter;

namespace quorvane {

class Theme;

/// A switch. It moves when its state has changed, whoever has changed it.
class AppSwitch : public QCheckBox {
    Q_OBJECT

public:
    explicit AppSwitch(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override { return rect().contains(position); }

private:
    void moveKnob();

    QVariantAnimation m_move; ///< 0 is off, 1 is on
};

/// A switch as it is drawn where it isn't a widget. @param share  0 is off, 1 is on
void paintSwitch(QPainter& painter, const Theme& theme, const QRectF& track, double share, bool isEnabled);
/// Of a switch's track.
QSize switchSize();

} // namespace quorvane
