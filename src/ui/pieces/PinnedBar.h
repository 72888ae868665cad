#pragma once

#include <QWidget>

class QHBoxLayout;

namespace quorvane {

/// Stands at the foot of a page with its buttons: what scrolls vanishes behind its upper edge.
class PinnedBar : public QWidget {
    Q_OBJECT

public:
    explicit PinnedBar(QWidget* parent = nullptr);

    /// Of the buttons, from left to right; they begin behind a stretch.
    QHBoxLayout* buttons() const { return m_buttons; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QHBoxLayout* m_buttons;
};

} // namespace quorvane
