#include "ui/review/ReviewRows.h"

#include "core/OneLine.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/SymbolView.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kRowSymbol = 16;
constexpr int kPanelSymbol = 32;
constexpr int kLineTextLeft = 2 * Theme::kGap12 + kRowSymbol;

/// A line of a card: a symbol, a text, and beneath it a detail.
/// @param said  what the symbol means, for those who don't see it; empty where a heading says it
QWidget* lineOf(const QString& symbol, TextTone tone, const QString& text, const QString& detail,
                const QString& said = {}) {
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(Theme::kGap12, Theme::kGap8, Theme::kGap12, Theme::kGap8);
    layout->setSpacing(Theme::kGap12);
    layout->addWidget(new SymbolView(symbol, kRowSymbol, nullptr, tone));
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(2);
    TextLabel* const name = new TextLabel(TextStyle::Body, TextTone::Normal, nameOnOneLine(text));
    name->setAccessibleDescription(said);
    texts->addWidget(name);
    if (!detail.isEmpty()) {
        texts->addWidget(new TextLabel(TextStyle::Secondary, TextTone::Secondary, onOneLine(detail)));
    }
    layout->addLayout(texts, 1);
    return row;
}

TextTone toneOfSection(const QString& symbol) {
    return symbol.startsWith(u"slider"_s) || symbol.startsWith(u"plus"_s) ? TextTone::Success : TextTone::Warning;
}

} // namespace

ReviewSectionView::ReviewSectionView(const ReviewSection& section, QWidget* parent)
    : QWidget(parent) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap8);
    auto* const heading = new QHBoxLayout;
    heading->setSpacing(Theme::kGap8);
    heading->addWidget(new SymbolView(section.symbol, kRowSymbol, nullptr, toneOfSection(section.symbol)));
    heading->addWidget(new TextLabel(TextStyle::RowTitle, TextTone::Normal, section.title), 1);
    layout->addLayout(heading);
    setAccessibleName(section.title);
    if (section.rows.isEmpty()) {
        return;
    }
    auto* const card = new AppCard;
    card->setTextLeft(kLineTextLeft);
    for (const ReviewSection::Row& row : section.rows) {
        card->addRow(lineOf(section.symbol, TextTone::Secondary, row.text, row.detail));
    }
    layout->addWidget(card);
}

ResultHeading::ResultHeading(const ResultPanel& result, QWidget* parent)
    : QWidget(parent) {
    const bool isWhole = result.symbol == u"checkmark.seal.fill"_s;
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap12);
    layout->addWidget(
        new SymbolView(result.symbol, kPanelSymbol, nullptr, isWhole ? TextTone::Success : TextTone::Warning), 0,
        Qt::AlignTop);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(Theme::kGap4);
    texts->addWidget(new TextLabel(TextStyle::SectionTitle, TextTone::Normal, result.title));
    texts->addWidget(new TextLabel(TextStyle::Body, TextTone::Secondary, result.text));
    layout->addLayout(texts, 1);
    setAccessibleName(result.title);
    setAccessibleDescription(result.text);
}

VerificationView::VerificationView(const ApplyVerificationResult& verification, QWidget* parent)
    : QWidget(parent) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    if (verification.verified.isEmpty() && verification.failed.isEmpty()) {
        return;
    }
    auto* const card = new AppCard;
    card->setTextLeft(kLineTextLeft);
    for (const ApplyVerificationResult::Item& item : verification.failed) {
        card->addRow(
            lineOf(u"xmark.circle.fill"_s, TextTone::Danger, item.name, item.detail.value_or(QString()), u"Failed"_s));
    }
    for (const ApplyVerificationResult::Item& item : verification.verified) {
        card->addRow(lineOf(u"checkmark.circle.fill"_s, TextTone::Success, item.name, item.detail.value_or(QString()),
                            u"Verified"_s));
    }
    layout->addWidget(card);
}

} // namespace quorvane
