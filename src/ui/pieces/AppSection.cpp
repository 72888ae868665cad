#include "ui/pieces/AppSection.h"

#include "ui/pieces/AppCard.h"
#include "ui/pieces/TextLabel.h"

#include <QVBoxLayout>

namespace quorvane {

namespace {

/// A label that isn't there while it has no text.
void setTextOrHide(TextLabel& label, const QString& text) {
    label.setText(text);
    label.setVisible(!text.isEmpty());
}

} // namespace

AppSection::AppSection(const QString& title, QWidget* parent)
    : QWidget(parent)
    , m_title(new TextLabel(TextStyle::SectionTitle))
    , m_header(new TextLabel(TextStyle::Secondary, TextTone::Secondary))
    , m_card(new AppCard)
    , m_footer(new TextLabel(TextStyle::Secondary, TextTone::Secondary)) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap8);
    for (QWidget* const widget : QList<QWidget*>{m_title, m_header, m_card, m_footer}) {
        layout->addWidget(widget);
    }
    m_title->setText(title);
    m_header->hide();
    m_footer->hide();
}

void AppSection::setHeader(const QString& header) {
    setTextOrHide(*m_header, header);
}

void AppSection::setFooter(const QString& footer) {
    setTextOrHide(*m_footer, footer);
}

} // namespace quorvane
