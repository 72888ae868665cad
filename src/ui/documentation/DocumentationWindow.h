#pragma once

#include "documentation/DocumentationPage.h"

#include <QWidget>

namespace quorvane {

/// The window in which the documentation is read. It is hidden when it is closed.
class DocumentationWindow : public QWidget {
    Q_OBJECT

public:
    explicit DocumentationWindow(const DocumentationParts& parts);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvane
