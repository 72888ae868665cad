#pragma once

#include <QPointer>
#include <QWidget>

namespace quorvane {

/// Something small over the page that it belongs to. It goes with Escape, with a click beside it, and when the focus leaves it.
/// It lies inside the window, so that the lock covers it.
class Popover : public QWidget {
    Q_OBJECT

public:
    /// Shows it beside the anchor at once. It owns the contents, and is owned by the anchor's page.
    Popover(QWidget* contents, QWidget* anchor);
    ~Popover() override;

    /// Takes it away; the focus goes back to the anchor.
    void close();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();
    void focusMoved(const QWidget* now);

    QWidget* m_contents;
    QPointer<QWidget> m_anchor;
};

} // namespace quorvane
