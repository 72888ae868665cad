#include "ui/performance/TweaksPage.h"

#include "actions/PageTexts.h"
#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "tweaks/TweakCatalogue.h"
#include "ui/ViewEnvironment.h"
#include "ui/performance/PerformancePageHeader.h"
#include "ui/performance/TweakToggle.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/AppSection.h"
#include "ui/pieces/PinnedBar.h"
#include "ui/pieces/ScrollPage.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <QCoroTask>

namespace quorvane {

TweaksPage::TweaksPage(const ViewEnvironment& environment, QWidget* parent)
    : QWidget(parent)
    , m_environment(environment) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* const header = new PerformancePageHeader(systemTweaksRow());
    connect(header, &PerformancePageHeader::backRequested, this, &TweaksPage::backRequested);
    auto* const page = new ScrollPage;
    for (const TweakSection& section : tweakSections()) {
        page->addPart(makeSection(section));
    }
    page->finish();
    layout->addWidget(header);
    layout->addWidget(page, 1);
    layout->addWidget(makeButtons());
    setFocusProxy(header);
    connect(&environment.session.workingCopy, &MasterProfileState::settingsChanged, this, &TweaksPage::takeSettings);
    takeSettings();
}

QWidget* TweaksPage::makeSection(const TweakSection& section) {
    auto* const view = new PerformanceGroupedSection(section.title);
    MasterProfileState& workingCopy = m_environment.session.workingCopy;
    for (const TweakDescription& described : section.tweaks) {
        const Tweak& tweak = *findTweak(described.key);
        auto* const toggle = new TweakToggle(tweak.key, tweak.title, described.text);
        connect(toggle, &TweakToggle::isSelectedChanged, this, [&workingCopy, &tweak](bool isSelected) {
            PerformanceSettings settings = workingCopy.settings();
            settings.*tweak.isSelected = isSelected;
            workingCopy.setSettings(settings);
        });
        connect(toggle, &TweakToggle::iconSelected, this, [&workingCopy, &tweak](const QString& icon) {
            PerformanceSettings settings = workingCopy.settings();
            settings.customIcons.insert(tweak.key, icon);
            workingCopy.setSettings(settings);
        });
        m_toggles.insert(tweak.key, toggle);
        view->card().addRow(toggle);
    }
    return view;
}

QWidget* TweaksPage::makeButtons() {
    auto* const bar = new PinnedBar;
    auto* const layout = new QHBoxLayout;
    addColumn(*bar, {Theme::kGap24, Theme::kGap12, Theme::kGap24, Theme::kGap12})->addLayout(layout);
    layout->setSpacing(Theme::kGap8);
    auto* const revert = new AppSecondaryButton(kRevertAll);
    auto* const executeButton = new AppPrimaryButton(kExecuteTweaks);
    layout->addStretch(1);
    layout->addWidget(revert);
    layout->addWidget(executeButton);
    Session& session = m_environment.session;
    ActionListener& listener = m_environment.listener;
    connect(revert, &QPushButton::clicked, this,
            [&session, &listener] { session.tasks.start(session.tweakActions.revertAll(listener)); });
    connect(executeButton, &QPushButton::clicked, this, &TweaksPage::execute);
    return bar;
}

void TweaksPage::takeSettings() {
    const PerformanceSettings& settings = m_environment.session.workingCopy.settings();
    for (const Tweak& tweak : tweakCatalogue()) {
        m_toggles.value(tweak.key)->setState(settings.*tweak.isSelected, tweakIcon(settings, tweak));
    }
}

void TweaksPage::execute() {
    Session& session = m_environment.session;
    const MasterProfileState& workingCopy = session.workingCopy;
    session.tasks.start(session.tweakActions.execute(
        workingCopy.settings(), cleanRebootOf(workingCopy.settings(), workingCopy.startup()), m_environment.listener));
}

} // namespace quorvane
