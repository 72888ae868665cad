#include "ui/performance/TweaksPage.h"

#include "actions/PageTexts.h"
#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "platform/Machine.h"
#include "ui/ViewEnvironment.h"
#include "ui/performance/PerformancePageHeader.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/PinnedBar.h"
#include "ui/pieces/ScrollPage.h"
#include "ui/profiles/ProfileSelectorView.h"
#include "ui/tweaks/TweakSections.h"

#include <QVBoxLayout>

#include <QCoroTask>

namespace quorvane {

TweaksPage::TweaksPage(const ViewEnvironment& environment, QWidget* parent)
    : QWidget(parent)
    , m_environment(environment) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto* const selector = new ProfileSelectorView(environment);
    auto* const header = new PerformancePageHeader(systemTweaksRow(), selector);
    connect(selector, &ProfileSelectorView::editorRequested, this, &TweaksPage::editorRequested);
    connect(header, &PerformancePageHeader::backRequested, this, &TweaksPage::backRequested);
    auto* const page = new ScrollPage;
    Session& session = environment.session;
    page->addPart(new TweakSections(session.workingCopy, session.system.host().machine.systemVersion()));
    page->finish();
    layout->addWidget(header);
    layout->addWidget(page, 1);
    layout->addWidget(makeButtons());
    setFocusProxy(header);
}

QWidget* TweaksPage::makeButtons() {
    auto* const bar = new PinnedBar;
    auto* const revert = new AppSecondaryButton(kRevertAll);
    auto* const executeButton = new AppPrimaryButton(kExecuteTweaks);
    bar->addButton(revert);
    bar->addButton(executeButton);
    Session& session = m_environment.session;
    ActionListener& listener = m_environment.listener;
    connect(revert, &QPushButton::clicked, this,
            [&session, &listener] { session.tasks.start(session.tweakActions.revertAll(listener)); });
    connect(executeButton, &QPushButton::clicked, this, &TweaksPage::execute);
    return bar;
}

void TweaksPage::execute() {
    Session& session = m_environment.session;
    const MasterProfileState& workingCopy = session.workingCopy;
    session.tasks.start(session.tweakActions.execute(
        workingCopy.settings(), cleanRebootOf(workingCopy.settings(), workingCopy.startup()), m_environment.listener));
}

} // namespace quorvane
