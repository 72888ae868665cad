#pragma once

#include <QByteArray>
#include <QString>

namespace quorvane {

/// What the documentation is made of. What couldn't be read is empty.
struct DocumentationParts {
    QString manual;    ///< Markdown
    QString copyright; ///< Markdown
    QByteArray logo;   ///< a PNG file
};

inline const QString kDocumentationTitle = QStringLiteral("Quorvane Documentation");

/// The logo as it stands in the page.
QString logoAddress(const QByteArray& logo);

/// The head for a web view: it follows the colours of the system, and forbids what the page has no use for: scripts, and
/// everything that would have to be fetched.
QString webViewHead();

/// The whole page: a head, a header with the logo, the manual, and below a rule the copyright.
/// @param head  what stands between "<head>" and "</head>"
QString documentationPage(const DocumentationParts& parts, const QString& head);

} // namespace quorvane
