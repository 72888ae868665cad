#pragma once

#include "ui/documentation/DocumentationView.h"

#include <memory>

class QTextBrowser;
class QTextDocument;

namespace quorvane {

/// Shows the documentation by Qt's rich text, where the platform has no web view. The page is converted and read on another
/// thread.
class TextDocumentationView final : public DocumentationView {
    Q_OBJECT

public:
    explicit TextDocumentationView(QWidget* parent = nullptr);
    ~TextDocumentationView() override;

    void showPage(const DocumentationParts& parts) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    using Document = std::shared_ptr<QTextDocument>;
    void compose();
    void take(const Document& document);

    DocumentationParts m_parts;
    QTextBrowser* m_browser;
    Document m_document;
    int m_composition = 0; ///< the number of the latest; what an earlier one has made is too late
};

} // namespace quorvane
