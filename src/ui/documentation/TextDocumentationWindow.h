#pragma once

#include "documentation/DocumentationPage.h"

#include <QWidget>

namespace quorvane {

/// Shows the documentation by Qt's rich text. It is hidden when it is closed.
class TextDocumentationWindow : public QWidget {
    Q_OBJECT

public:
    explicit TextDocumentationWindow(const DocumentationParts& parts);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace quorvane
