#pragma once

#include "documentation/DocumentationPage.h"

#include <QWidget>

namespace quorvane {

/// Shows the page of the documentation, in the colours that the program has at the moment. It fetches nothing, runs no script
/// and follows no link, whatever stands in the page.
class DocumentationView : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

    virtual void showPage(const DocumentationParts& parts) = 0;
};

/// The one of this platform.
DocumentationView* makeDocumentationView();

} // namespace quorvane
