#include "ui/review/MasterSystemBaselinePrompt.h"

#include "actions/MasterBaselineOffer.h"
#include "actions/WindowTexts.h"
#include "ui/pieces/Announcement.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/ProgressRing.h"
#include "ui/pieces/SymbolView.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kPointSymbol = 16;
constexpr int kSavingRing = 20;

QWidget* pointView(const QString& text) {
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap12);
    layout->addWidget(new SymbolView(u"checkmark.circle.fill"_s, kPointSymbol, nullptr, TextTone::Success), 0,
                      Qt::AlignTop);
    layout->addWidget(new TextLabel(TextStyle::Body, TextTone::Normal, text), 1);
    return row;
}

} // namespace

MasterSystemBaselinePrompt::MasterSystemBaselinePrompt(std::shared_ptr<MasterBaselineOffer> offer, QWidget* parent)
    : Sheet(parent)
    , m_offer(std::move(offer)) {
    setTitle(kBaselinePromptTitle, kBaselinePromptText);
    setContents(makePoints());
    makeButtons();
    connect(this, &Sheet::closeRequested, m_offer.get(), &SheetModel::dismiss);
    connect(m_offer.get(), &MasterBaselineOffer::changed, this, &MasterSystemBaselinePrompt::update);
    update();
    m_create->setFocus(Qt::OtherFocusReason);
}

QWidget* MasterSystemBaselinePrompt::makePoints() {
    auto* const points = new QWidget;
    auto* const layout = new QVBoxLayout(points);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap8);
    for (const QString& text : baselinePromptPoints()) {
        layout->addWidget(pointView(text));
    }
    auto* const state = new QWidget;
    auto* const line = new QHBoxLayout(state);
    line->setContentsMargins(0, Theme::kGap8, 0, 0);
    line->setSpacing(Theme::kGap8);
    m_ring = new ProgressRing(kSavingRing);
    m_text = new TextLabel(TextStyle::Body);
    line->addWidget(m_ring);
    line->addWidget(m_text, 1);
    layout->addWidget(state);
    layout->addStretch(1);
    return points;
}

void MasterSystemBaselinePrompt::makeButtons() {
    m_notNow = new AppSecondaryButton(kNotNow);
    m_create = new AppPrimaryButton(kCreateMasterBaseline);
    addButton(m_notNow);
    addButton(m_create);
    connect(m_notNow, &QPushButton::clicked, m_offer.get(), &SheetModel::dismiss);
    connect(m_create, &QPushButton::clicked, m_offer.get(), &MasterBaselineOffer::accept);
}

void MasterSystemBaselinePrompt::showEvent(QShowEvent* event) {
    Sheet::showEvent(event);
    if (focusWidget() == nullptr) {
        m_create->setFocus(Qt::OtherFocusReason);
    }
}

void MasterSystemBaselinePrompt::update() {
    const bool isSaving = m_offer->state() == MasterBaselineOffer::State::Saving;
    const bool hasFailed = m_offer->state() == MasterBaselineOffer::State::Failed;
    m_ring->setVisible(isSaving);
    m_text->setTone(hasFailed ? TextTone::Danger : TextTone::Secondary);
    m_text->setText(m_offer->text());
    m_text->setVisible(!m_offer->text().isEmpty());
    m_notNow->setEnabled(!isSaving);
    m_create->setEnabled(!isSaving);
    if (!m_offer->text().isEmpty()) {
        announce(m_text, m_offer->text());
    }
    if (hasFailed) {
        m_create->setFocus(Qt::OtherFocusReason);
    }
    Q_EMIT contentsChanged();
}

} // namespace quorvane
