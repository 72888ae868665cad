#pragma once

#include <QWidget>

class QHBoxLayout;

namespace quorvane {

/// The buttons of a page, at its lower end. What scrolls vanishes behind its upper edge.
class PinnedBar : public QWidget {
    Q_OBJECT

public:
    explicit PinnedBar(QWidget* parent = nullptr);

    /// From left to right; the default comes last.
    void addButton(QWidget* button);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QHBoxLayout* m_buttons;
};

} // namespace quorvane
