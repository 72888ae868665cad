#include "ui/performance/StatusRows.h"

#include "ui/pieces/Announcement.h"
#include "ui/pieces/SymbolView.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace quorvane {

namespace {

constexpr int kStatusSymbol = 28;

TextTone toneOf(StatusRow::Tone tone) {
    switch (tone) {
    case StatusRow::Tone::Verified:
        return TextTone::Success;
    case StatusRow::Tone::Warning:
        return TextTone::Warning;
    case StatusRow::Tone::Unknown:
        break;
    }
    return TextTone::Secondary;
}

} // namespace

PerformanceSystemMatchStatusRow::PerformanceSystemMatchStatusRow(QWidget* parent)
    : QWidget(parent)
    , m_symbol(new SymbolView({}, kStatusSymbol))
    , m_text(new TextLabel(TextStyle::SectionTitle))
    , m_detail(new TextLabel(TextStyle::Secondary, TextTone::Secondary)) {
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(Theme::kGap12, Theme::kGap12, Theme::kGap12, Theme::kGap12);
    layout->setSpacing(Theme::kGap12);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(Theme::kGap4 / 2);
    texts->addWidget(m_text);
    texts->addWidget(m_detail);
    layout->addWidget(m_symbol);
    layout->addLayout(texts, 1);
}

void PerformanceSystemMatchStatusRow::setStatus(const StatusRow& status) {
    if (status == m_status) {
        return;
    }
    m_status = status;
    m_symbol->setSymbol(status.symbol, toneOf(status.tone));
    m_text->setText(status.text);
    m_detail->setText(status.detail);
    m_detail->setVisible(!status.detail.isEmpty());
    setAccessibleDescription(status.detail);
    announce(this, status.text);
    update();
}

void PerformanceSystemMatchStatusRow::paintEvent(QPaintEvent*) {
    if (m_status.tone == StatusRow::Tone::Verified) {
        QPainter(this).fillRect(rect(), themeOf(this).matchTint);
    }
}

PerformanceStatusNoteRow::PerformanceStatusNoteRow(const QString& symbol, QWidget* parent)
    : QWidget(parent)
    , m_text(new TextLabel(TextStyle::Body))
    , m_button(new QPushButton) {
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(Theme::kGap12, Theme::kGap8, Theme::kGap12, Theme::kGap8);
    layout->setSpacing(Theme::kGap12);
    auto* const sign = new SymbolView({}, kStatusSymbol);
    sign->setSymbol(symbol, TextTone::Warning);
    layout->addWidget(sign);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_button);
    m_button->setAutoDefault(false);
    connect(m_button, &QPushButton::clicked, this, &PerformanceStatusNoteRow::pressed);
}

void PerformanceStatusNoteRow::setNote(const StatusNote& note) {
    if (note.text == m_text->text() && note.button == m_button->text()) {
        return;
    }
    m_text->setText(note.text);
    m_button->setText(note.button);
    m_button->setAccessibleDescription(note.text);
    announce(this, note.text);
}

void PerformanceSnapshotStatusRow::setText(const RowText& text) {
    setContent({.symbol = text.symbol, .tint = BadgeColor::Green, .title = text.title, .description = text.subtitle});
}

} // namespace quorvane
