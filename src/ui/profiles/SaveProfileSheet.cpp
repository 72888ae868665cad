#include "ui/profiles/SaveProfileSheet.h"

#include "actions/ProfileSaveOffer.h"
#include "actions/ProfileTexts.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/OptionRow.h"
#include "ui/pieces/ProgressRing.h"
#include "ui/pieces/RowContent.h"
#include "ui/pieces/TextLabel.h"

#include <QLineEdit>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kSaveRing = 20;

} // namespace

SaveProfileSheet::SaveProfileSheet(std::shared_ptr<ProfileSaveOffer> offer, QWidget* parent)
    : Sheet(parent)
    , m_offer(std::move(offer)) {
    setTitle(kSaveProfile, {});
    setContents(makeFields());
    makeButtons();
    m_name->setText(m_offer->wanted().name);
    m_name->selectAll();
    connect(this, &Sheet::closeRequested, m_offer.get(), &SheetModel::dismiss);
    connect(m_offer.get(), &SheetOffer::changed, this, &SaveProfileSheet::update);
    update();
}

QWidget* SaveProfileSheet::makeFields() {
    m_fields = new QWidget;
    auto* const column = new QVBoxLayout(m_fields);
    column->setContentsMargins(Theme::kRingRoom, Theme::kRingRoom, Theme::kRingRoom, 0);
    column->setSpacing(Theme::kGap8);
    m_name = new QLineEdit;
    m_name->setPlaceholderText(kProfileName);
    m_name->setAccessibleName(kProfileName);
    m_note = new TextLabel(TextStyle::Secondary, TextTone::Secondary);
    m_tweaks = new OptionRow(kSystemTweaks, m_offer->tweaksText());
    m_startup = new OptionRow(kStartupOptimization, m_offer->startupText());
    m_baseline = new OptionRow(kSaveBaseline, kSaveBaselineNote);
    auto* const halves = new AppCard;
    halves->setTextLeft(rowTextLeft({}));
    halves->addRow(m_tweaks);
    halves->addRow(m_startup);
    auto* const baseline = new AppCard;
    baseline->addRow(m_baseline);
    column->addWidget(new TextLabel(TextStyle::Body, TextTone::Normal, kProfileName));
    column->addWidget(m_name);
    column->addWidget(m_note);
    column->addWidget(new TextLabel(TextStyle::Body, TextTone::Normal, kIncludeInProfile));
    column->addWidget(halves);
    column->addWidget(baseline);
    column->addStretch(1);
    connect(m_name, &QLineEdit::textChanged, m_offer.get(), &ProfileSaveOffer::setName);
    connect(m_tweaks, &OptionRow::switched, m_offer.get(), &ProfileSaveOffer::setIncludesTweaks);
    connect(m_startup, &OptionRow::switched, m_offer.get(), &ProfileSaveOffer::setIncludesStartup);
    connect(m_baseline, &OptionRow::switched, m_offer.get(), &ProfileSaveOffer::setSavesBaseline);
    return m_fields;
}

void SaveProfileSheet::makeButtons() {
    m_ring = new ProgressRing(kSaveRing);
    m_waiting = new TextLabel(TextStyle::Body, TextTone::Secondary, kSavingProfile);
    m_waiting->setWordWrap(false);
    m_cancel = new AppSecondaryButton(u"Cancel"_s);
    m_save = new AppPrimaryButton(kSave);
    m_save->setDefault(true);
    addButtonAside(m_waiting);
    addButtonAside(m_ring);
    addButton(m_cancel);
    addButton(m_save);
    connect(m_cancel, &QPushButton::clicked, m_offer.get(), &SheetModel::dismiss);
    connect(m_save, &QPushButton::clicked, m_offer.get(), &SheetOffer::accept);
}

void SaveProfileSheet::showEvent(QShowEvent* event) {
    Sheet::showEvent(event);
    if (focusWidget() == nullptr) {
        m_name->setFocus(Qt::OtherFocusReason);
    }
}

void SaveProfileSheet::update() {
    const ProfileToSave& wanted = m_offer->wanted();
    const bool isSaving = m_offer->state() == SheetOffer::State::Saving;
    m_note->setText(m_offer->note());
    m_note->setVisible(!m_offer->note().isEmpty());
    m_tweaks->setChecked(wanted.includesTweaks);
    m_startup->setChecked(wanted.includesStartup);
    m_baseline->setChecked(wanted.savesBaseline);
    m_fields->setEnabled(!isSaving);
    m_ring->setVisible(isSaving);
    m_waiting->setVisible(isSaving);
    m_cancel->setEnabled(!isSaving);
    m_save->setText(m_offer->button());
    m_save->setEnabled(m_offer->canSave());
    Q_EMIT contentsChanged();
}

} // namespace quorvane
