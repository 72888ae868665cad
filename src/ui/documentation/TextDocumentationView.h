#pragma once

#include "documentation/DocumentationPage.h"

#include <QWidget>

#include <memory>

class QTextBrowser;
class QTextDocument;

namespace quorvane {

/// Shows the page of the documentation by Qt's rich text, in the colours that the program has at the moment. It fetches nothing,
/// runs no script and follows no link, whatever stands in the page, which is converted and read on another thread.
class TextDocumentationView : public QWidget {
    Q_OBJECT

public:
    explicit TextDocumentationView(QWidget* parent = nullptr);
    ~TextDocumentationView() override;

    void showPage(const DocumentationParts& parts);

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
