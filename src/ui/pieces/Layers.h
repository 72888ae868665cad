#pragma once

#include <QWidget>

namespace quorvane {

/// Its children lie over each other, each as large as itself; those made later lie above.
class Layers : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void childEvent(QChildEvent* event) override;
};

} // namespace quorvane
