#pragma once

#include "documentation/DocumentationPage.h"
#include "ui/Theme.h"

#include <QColor>
#include <QFont>

#include <memory>

class QTextDocument;
class QThread;

namespace quorvane {

/// How the documentation looks in Qt's rich text, which knows neither variables nor the colours of the system.
struct RichTextLook {
    QString head; ///< of the page, with its style sheet
    QFont font;
    QColor tableBorder;
    QColor tableHeader;
};

RichTextLook richTextLook(const Theme& theme);

/// The page, read and ready to be laid out. It refuses each resource but the logo. Any thread.
/// @param home  the thread that the document will live in
std::shared_ptr<QTextDocument> richTextPage(const DocumentationParts& parts, const RichTextLook& look, QThread* home);

} // namespace quorvane
