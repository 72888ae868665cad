#pragma once

#include <QProgressBar>
#include <QVariantAnimation>

namespace quorvane {

/// Turns while something runs whose end nobody knows. It turns only while it is seen, and not at all where motion is reduced.
class ProgressRing : public QProgressBar {
    Q_OBJECT

public:
    explicit ProgressRing(int size, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void turn();

    QVariantAnimation m_turn;
};

} // namespace quorvane
