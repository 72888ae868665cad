#include "ui/profiles/WizardSaveStep.h"

#include "actions/ProfileTexts.h"
#include "actions/ProfileWizard.h"
#include "profiles/MasterProfileState.h"
#include "ui/Theme.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/AppSection.h"
#include "ui/pieces/OptionRow.h"
#include "ui/pieces/RowContent.h"
#include "ui/pieces/TextLabel.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace quorvane {

namespace {

/// A line of the summary: what it is about, and what it holds.
QWidget* summaryLine(const QString& title, TextLabel* value) {
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(Theme::kGap12, Theme::kGap12, Theme::kGap12, Theme::kGap12);
    layout->setSpacing(Theme::kGap12);
    layout->addWidget(new TextLabel(TextStyle::RowTitle, TextTone::Normal, title));
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    layout->addWidget(value, 1);
    return row;
}

} // namespace

WizardSaveStep::WizardSaveStep(ProfileWizard& wizard, const MasterProfileState& workingCopy, QWidget* parent)
    : ScrollPage(parent)
    , m_wizard(wizard)
    , m_workingCopy(workingCopy) {
    addPart(makeName());
    addPart(makeSummary());
    addPart(makeOptions());
    finish();
    m_name->setText(wizard.wanted().name);
    connect(&wizard, &ProfileWizard::changed, this, &WizardSaveStep::update);
    connect(&workingCopy, &MasterProfileState::settingsChanged, this, &WizardSaveStep::update);
    connect(&workingCopy, &MasterProfileState::startupChanged, this, &WizardSaveStep::update);
    setFocusProxy(m_name);
    update();
}

QWidget* WizardSaveStep::makeName() {
    auto* const section = new PerformanceGroupedSection(kNameYourProfile);
    section->setHeader(kNameYourProfileText);
    auto* const field = new QWidget;
    auto* const column = new QVBoxLayout(field);
    column->setContentsMargins(Theme::kGap12, Theme::kGap12, Theme::kGap12, Theme::kGap12);
    column->setSpacing(Theme::kGap8);
    m_name = new QLineEdit;
    m_name->setPlaceholderText(kProfileName);
    m_name->setAccessibleName(kProfileName);
    m_note = new TextLabel(TextStyle::Secondary, TextTone::Secondary);
    column->addWidget(m_name);
    column->addWidget(m_note);
    section->card().addRow(field);
    connect(m_name, &QLineEdit::textChanged, &m_wizard, &ProfileWizard::setName);
    return section;
}

QWidget* WizardSaveStep::makeSummary() {
    auto* const section = new PerformanceGroupedSection(kProfileSummary);
    m_tweaks = new TextLabel(TextStyle::Body, TextTone::Secondary);
    m_startup = new TextLabel(TextStyle::Body, TextTone::Secondary);
    section->card().setTextLeft(rowTextLeft({}));
    section->card().addRow(summaryLine(kSystemTweaks, m_tweaks));
    section->card().addRow(summaryLine(kStartupOptimization, m_startup));
    m_cleanReboot = summaryLine(kCleanReboot, new TextLabel(TextStyle::Body, TextTone::Secondary, kOn));
    section->card().addRow(m_cleanReboot);
    return section;
}

QWidget* WizardSaveStep::makeOptions() {
    auto* const card = new AppCard;
    m_baseline = new OptionRow(kSaveBaseline, kWizardBaselineNote);
    m_applies = new OptionRow(kApplyAfterSaving, kApplyAfterSavingNote);
    card->setTextLeft(rowTextLeft({}));
    card->addRow(m_baseline);
    card->addRow(m_applies);
    connect(m_baseline, &OptionRow::switched, &m_wizard, &ProfileWizard::setSavesBaseline);
    connect(m_applies, &OptionRow::switched, &m_wizard, &ProfileWizard::setAppliesAfterwards);
    return card;
}

void WizardSaveStep::update() {
    const QString note = m_wizard.note();
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
    m_tweaks->setText(tweaksSummary(m_workingCopy.settings()));
    m_startup->setText(m_workingCopy.startupSummary());
    m_cleanReboot->setVisible(m_workingCopy.settings().cleanReboot);
    m_baseline->setChecked(m_wizard.wanted().savesBaseline);
    m_applies->setChecked(m_wizard.afterwards() == ProfileSaving::Afterwards::Apply);
}

} // namespace quorvane
