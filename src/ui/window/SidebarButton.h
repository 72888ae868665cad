#pragma once

#include <QPushButton>

namespace quorvane {

/// A button that stands in the sidebar among the tabs and looks like one of them.
class SidebarButton : public QPushButton {
    Q_OBJECT

public:
    SidebarButton(const QString& symbol, const QString& title, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_symbol;
};

} // namespace quorvane
