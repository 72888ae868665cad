#pragma once

#include "ui/pieces/AppButtons.h"

class QMenu;

namespace quorvane {

/// A button that opens a menu beneath it, and shows so by an arrow.
class MenuButton : public AppSecondaryButton {
    Q_OBJECT

public:
    explicit MenuButton(const QString& title, QWidget* parent = nullptr);

    QMenu& choices() { return *m_choices; }

    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QMenu* m_choices;
};

} // namespace quorvane
