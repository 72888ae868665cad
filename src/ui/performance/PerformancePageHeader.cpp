#include "ui/performance/PerformancePageHeader.h"

#include "ui/pieces/ScrollPage.h"
#include "ui/pieces/SymbolButton.h"
#include "ui/pieces/SymbolView.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace quorvane {

using namespace Qt::StringLiterals;

PerformancePageHeader::PerformancePageHeader(const RowText& text, QWidget* aside, QWidget* parent)
    : QWidget(parent) {
    QVBoxLayout* const column = addColumn(*this, {Theme::kGap24, Theme::kGap16, Theme::kGap24, 0});
    column->setSpacing(Theme::kGap8);
    auto* const back = new SymbolButton(u"chevron.left"_s, u"Performance"_s);
    back->setAccessibleDescription(u"Back"_s);
    auto* const above = new QHBoxLayout;
    above->addWidget(back);
    above->addStretch(1);
    above->addWidget(aside);
    auto* const titleRow = new QHBoxLayout;
    titleRow->setSpacing(Theme::kGap12);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(new TextLabel(TextStyle::PageTitle, TextTone::Normal, text.title));
    texts->addWidget(new TextLabel(TextStyle::Secondary, TextTone::Secondary, text.subtitle));
    titleRow->addWidget(new PerformanceSymbolBadge(text.symbol, BadgeColor::Grey));
    titleRow->addLayout(texts, 1);
    column->addLayout(above);
    column->addLayout(titleRow);
    setFocusProxy(back);
    connect(back, &QPushButton::clicked, this, &PerformancePageHeader::backRequested);
}

} // namespace quorvane
