#include "ui/performance/PerformanceEmptyState.h"

#include "ui/pieces/SymbolView.h"

#include <QVBoxLayout>

namespace quorvane {

namespace {

constexpr int kEmptySymbol = 28;

} // namespace

PerformanceEmptyState::PerformanceEmptyState(const QString& icon, const QString& message, const QString& hint,
                                             QWidget* parent)
    : QWidget(parent) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(Theme::kGap24, Theme::kGap16, Theme::kGap24, Theme::kGap16);
    layout->setSpacing(Theme::kGap8);
    layout->addWidget(new SymbolView(icon, kEmptySymbol, nullptr, TextTone::Secondary), 0, Qt::AlignHCenter);
    layout->addWidget(TextLabel::centred(TextStyle::Body, TextTone::Secondary, message));
    layout->addWidget(TextLabel::centred(TextStyle::Secondary, TextTone::Secondary, hint));
}

} // namespace quorvane
