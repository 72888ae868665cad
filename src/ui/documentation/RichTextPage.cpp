#include "ui/documentation/RichTextPage.h"

#include <QImage>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextTable>
#include <QUrl>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr double kPageSide = 32;
constexpr double kPageTop = 24;
constexpr double kCellPadding = 6;
constexpr double kListIndent = 20;
constexpr double kLogoSide = 32;

// Of the page's own sizes: what a text of 14 is the program's body text for.
constexpr double kBody = 14;
constexpr double kPageToTheme = 13.0 / kBody;

QImage emptyPicture() {
    QImage picture(1, 1, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    return picture;
}

/// A document that nothing comes into from outside.
class SealedDocument final : public QTextDocument {
public:
    explicit SealedDocument(const QByteArray& logo)
        : m_logoAddress(logoAddress(logo))
        , m_logo(QImage::fromData(logo)) {
        m_logo.setDevicePixelRatio(m_logo.width() / kLogoSide);
    }

protected:
    /// A picture that is refused is an empty one: Qt would look for the file itself where it were given none.
    QVariant loadResource(int type, const QUrl& address) override {
        if (type != ImageResource) {
            return {};
        }
        return address == m_logoAddress && !m_logo.isNull() ? m_logo : emptyPicture();
    }

private:
    QUrl m_logoAddress;
    QImage m_logo;
};

QString rule(const QString& selector, const QString& declarations) {
    return selector + u" { "_s + declarations + u" }\n"_s;
}

QString colorIs(const QColor& color) {
    return u"color: "_s + color.name() + u';';
}

/// Of what is half transparent, what is seen of it on the page.
QColor onPage(const Theme& theme, const QColor& color) {
    return laidOver(color, theme.window);
}

QString styleSheet(const Theme& theme) {
    const double body = theme.font(TextStyle::Body).pointSizeF() / kPageToTheme;
    const auto sized = [body](double size) {
        return u"font-size: "_s + QString::number(body * size / kBody, 'f', 2) + u"pt; "_s;
    };
    const QString heading = u"font-weight: 600; "_s + colorIs(theme.text);
    const QString code = u"font-family: '"_s + theme.font(TextStyle::Fixed).family() + u"'; background-color: "_s +
                         onPage(theme, theme.card).name() + u"; "_s;
    return rule(u"body"_s, sized(kBody) + u"line-height: 150%; "_s + colorIs(theme.text)) +
           rule(u"p"_s, u"margin-top: 0; margin-bottom: 8px;"_s) +
           rule(u"li"_s, u"margin-top: 0; margin-bottom: 4px;"_s) +
           rule(u"h1"_s, sized(28) + heading + u" margin-top: 16px; margin-bottom: 12px;"_s) +
           rule(u"h2"_s, sized(22) + heading + u" margin-top: 28px; margin-bottom: 8px;"_s) +
           rule(u"h3"_s, sized(16) + heading + u" margin-top: 20px; margin-bottom: 4px;"_s) +
           rule(u"code"_s, code + sized(13)) + rule(u"a"_s, colorIs(theme.accentText)) +
           rule(u"th"_s, u"font-weight: 600; text-align: left;"_s);
}

void styleTables(const QTextDocument& document, const RichTextLook& look) {
    for (QTextFrame* const frame : document.rootFrame()->childFrames()) {
        auto* const table = qobject_cast<QTextTable*>(frame);
        if (table == nullptr) {
            continue;
        }
        QTextTableFormat format = table->format();
        format.setBorder(1);
        format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
        format.setBorderBrush(look.tableBorder);
        format.setBorderCollapse(true);
        format.setCellSpacing(0);
        format.setCellPadding(kCellPadding);
        format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
        format.setTopMargin(kPageTop / 3);
        format.setBottomMargin(kPageTop / 2);
        table->setFormat(format);
        for (int column = 0; column < table->columns(); ++column) {
            QTextCharFormat header = table->cellAt(0, column).format();
            header.setBackground(look.tableHeader);
            table->cellAt(0, column).setFormat(header);
        }
    }
}

} // namespace

RichTextLook richTextLook(const Theme& theme) {
    return {u"<style>\n"_s + styleSheet(theme) + u"</style>"_s, theme.font(TextStyle::Body),
            onPage(theme, theme.border), onPage(theme, theme.card)};
}

std::shared_ptr<QTextDocument> richTextPage(const DocumentationParts& parts, const RichTextLook& look, QThread* home) {
    const auto document = std::make_shared<SealedDocument>(parts.logo);
    document->setUndoRedoEnabled(false);
    document->setDefaultFont(look.font);
    document->setIndentWidth(kListIndent);
    document->setHtml(documentationPage(parts, look.head));
    QTextFrameFormat page = document->rootFrame()->frameFormat();
    page.setLeftMargin(kPageSide);
    page.setRightMargin(kPageSide);
    page.setTopMargin(kPageTop);
    page.setBottomMargin(kPageTop);
    document->rootFrame()->setFrameFormat(page);
    styleTables(*document, look);
    document->moveToThread(home);
    return document;
}

} // namespace quorvane
