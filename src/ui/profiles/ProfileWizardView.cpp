#include "ui/profiles/ProfileWizardView.h"

#include "actions/ProfileTexts.h"
#include "actions/ProfileWizard.h"
#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "platform/Machine.h"
#include "ui/ViewEnvironment.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/PinnedBar.h"
#include "ui/pieces/ScrollPage.h"
#include "ui/pieces/SymbolButton.h"
#include "ui/pieces/TextLabel.h"
#include "ui/profiles/WizardSaveStep.h"
#include "ui/startup/StartupItemsEditor.h"
#include "ui/tweaks/TweakSections.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPointer>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <QCoroTask>

#include <iterator>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr WizardStep kSteps[] = {WizardStep::tweaks, WizardStep::startup, WizardStep::save};
static_assert(std::size(kSteps) == kWizardSteps);

QWidget* makeHeading(const QString& title, const QString& text) {
    auto* const heading = new QWidget;
    auto* const column = new QVBoxLayout(heading);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Theme::kGap4);
    column->addWidget(new TextLabel(TextStyle::SectionTitle, TextTone::Normal, title));
    column->addWidget(new TextLabel(TextStyle::Secondary, TextTone::Secondary, text));
    return heading;
}

} // namespace

ProfileWizardView::ProfileWizardView(const ViewEnvironment& environment, std::unique_ptr<ProfileWizard> wizard,
                                     QWidget* parent)
    : QWidget(parent)
    , m_environment(environment)
    , m_wizard(std::move(wizard)) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(makeHeader());
    layout->addWidget(makeSteps(), 1);
    layout->addWidget(makeButtons());
    connect(m_wizard.get(), &ProfileWizard::stepChanged, this, &ProfileWizardView::showStep);
    connect(m_wizard.get(), &ProfileWizard::changed, this, &ProfileWizardView::update);
    showStep();
    update();
}

ProfileWizardView::~ProfileWizardView() = default;

/// Back, the title, where in the steps one is, and the steps themselves.
QWidget* ProfileWizardView::makeHeader() {
    auto* const header = new QWidget;
    QVBoxLayout* const column = addColumn(*header, {Theme::kGap24, Theme::kGap16, Theme::kGap24, 0});
    column->setSpacing(Theme::kGap8);
    auto* const back = new SymbolButton(u"chevron.left"_s, u"Back"_s);
    connect(back, &QPushButton::clicked, this, &ProfileWizardView::goBack);
    auto* const whereRow = new QHBoxLayout;
    m_count = new TextLabel(TextStyle::Secondary, TextTone::Secondary);
    m_count->setWordWrap(false);
    whereRow->setSpacing(Theme::kGap12);
    m_stepTitle = new TextLabel(TextStyle::Secondary, TextTone::Secondary);
    m_stepTitle->setWordWrap(false);
    whereRow->addWidget(m_count);
    whereRow->addWidget(m_stepTitle);
    whereRow->addStretch(1);
    auto* const stepRow = new QHBoxLayout;
    stepRow->setSpacing(Theme::kGap8);
    for (const WizardStep step : kSteps) {
        auto* const button = new QPushButton(ProfileWizard::titleOf(step));
        button->setAutoDefault(false);
        button->setCheckable(true);
        button->setAccessibleName(u"Step: "_s + ProfileWizard::titleOf(step)); // the default button may bear its title
        connect(button, &QPushButton::clicked, this, [this, step] {
            m_wizard->goTo(step);
            update();
        });
        m_stepButtons.append(button);
        stepRow->addWidget(button);
    }
    stepRow->addStretch(1);
    column->addWidget(back, 0, Qt::AlignLeft);
    column->addWidget(new TextLabel(TextStyle::PageTitle, TextTone::Normal, m_wizard->title()));
    column->addLayout(whereRow);
    column->addLayout(stepRow);
    return header;
}

QWidget* ProfileWizardView::makeSteps() {
    m_steps = new QStackedWidget;
    m_steps->addWidget(makeTweaksStep());
    m_steps->addWidget(makeStartupStep());
    m_steps->addWidget(new WizardSaveStep(*m_wizard, m_environment.session.workingCopy));
    return m_steps;
}

QWidget* ProfileWizardView::makeTweaksStep() {
    auto* const page = new ScrollPage;
    page->addPart(makeHeading(kConfigureTweaks, kConfigureTweaksText));
    Session& session = m_environment.session;
    page->addPart(new TweakSections(session.workingCopy, session.system.host().machine.systemVersion()));
    page->finish();
    return page;
}

QWidget* ProfileWizardView::makeStartupStep() {
    auto* const editor = new StartupItemsEditor(m_environment, {.showActions = false});
    connect(editor, &StartupItemsEditor::backRequested, this, &ProfileWizardView::goBack);
    return editor;
}

QWidget* ProfileWizardView::makeButtons() {
    auto* const bar = new PinnedBar;
    m_continue = new AppPrimaryButton(kContinue);
    bar->addButton(m_continue);
    connect(m_continue, &QPushButton::clicked, this, &ProfileWizardView::goOn);
    return bar;
}

void ProfileWizardView::showStep() {
    m_steps->setCurrentIndex(static_cast<int>(m_wizard->step()));
    m_steps->currentWidget()->setFocus(Qt::OtherFocusReason);
}

void ProfileWizardView::update() {
    const WizardStep step = m_wizard->step();
    m_count->setText(stepCountText(static_cast<int>(step) + 1, kWizardSteps));
    m_stepTitle->setText(m_wizard->stepTitle());
    for (int index = 0; index < kWizardSteps; ++index) {
        m_stepButtons[index]->setChecked(kSteps[index] == step);
        m_stepButtons[index]->setEnabled(kSteps[index] == step || m_wizard->canGoTo(kSteps[index]));
    }
    m_continue->setText(step == WizardStep::save ? kSaveProfile : kContinue);
    m_continue->setEnabled(step != WizardStep::save || m_wizard->canSave());
}

/// A page has no default button of its own.
void ProfileWizardView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        m_continue->click();
        return;
    case Qt::Key_Escape:
        goBack();
        return;
    default:
        QWidget::keyPressEvent(event);
    }
}

void ProfileWizardView::goBack() {
    if (!m_wizard->goBack()) {
        Q_EMIT left();
    }
}

void ProfileWizardView::goOn() {
    if (m_wizard->step() == WizardStep::save) {
        save();
    } else {
        m_wizard->goOn();
    }
}

void ProfileWizardView::save() {
    const QPointer<ProfileWizardView> view(this);
    const std::shared_ptr<ProfileWizard> wizard = m_wizard;
    Session& session = m_environment.session;
    const auto whenSaved = [view, wizard](const UnifiedProfile&) {
        wizard->saved();
        if (view != nullptr) {
            Q_EMIT view->left();
        }
    };
    const auto whenFailed = [wizard] { wizard->notSaved(); };
    session.tasks.start(session.profileSaving.saveInWizard(wizard->wanted(), wizard->afterwards(),
                                                           {whenSaved, whenFailed}, m_environment.listener));
}

} // namespace quorvane
