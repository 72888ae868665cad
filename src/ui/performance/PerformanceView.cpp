#include "ui/performance/PerformanceView.h"

#include "actions/ProfileWizard.h"
#include "actions/Session.h"
#include "ui/ViewEnvironment.h"
#include "ui/performance/PerformanceMainPage.h"
#include "ui/performance/StartupPage.h"
#include "ui/performance/TweaksPage.h"
#include "ui/pieces/IdleGuard.h"
#include "ui/profiles/ProfileWizardView.h"

#include <utility>

namespace quorvane {

PerformanceView::PerformanceView(const ViewEnvironment& environment, QWidget* parent)
    : QStackedWidget(parent)
    , m_environment(environment) {
    setCurrentPage(PerformancePage::main);
    new IdleGuard(this, environment.session.turnstile);
}

void PerformanceView::setCurrentPage(PerformancePage page) {
    QWidget*& widget = m_visitedPages[page];
    if (widget == nullptr) {
        widget = makePage(page);
        addWidget(widget);
    }
    show(page, widget);
}

/// The focus goes along, and back to what led away.
void PerformanceView::show(PerformancePage page, QWidget* widget) {
    const bool isFirst = count() == 1;
    QWidget* const focusBefore = focusWidget();
    setCurrentWidget(widget);
    if (!isFirst) {
        QWidget* const ledAway = page == PerformancePage::main ? m_ledAway.data() : nullptr;
        (ledAway != nullptr ? ledAway : widget)->setFocus(Qt::OtherFocusReason);
    }
    m_ledAway = focusBefore;
}

QWidget* PerformanceView::makePage(PerformancePage page) {
    MasterProfileState& workingCopy = m_environment.session.workingCopy;
    SavedProfiles& saved = m_environment.session.savedProfiles;
    const auto edit = [this] { editWhenIdle(); };
    if (page == PerformancePage::tweaks) {
        auto* const tweaks = new TweaksPage(m_environment);
        connect(tweaks, &TweaksPage::backRequested, this, [this] { setCurrentPage(PerformancePage::main); });
        connect(tweaks, &TweaksPage::editorRequested, this, edit);
        return tweaks;
    }
    if (page == PerformancePage::startup) {
        auto* const startup = new StartupPage(m_environment);
        connect(startup, &StartupPage::backRequested, this, [this] { setCurrentPage(PerformancePage::main); });
        connect(startup, &StartupPage::editorRequested, this, edit);
        return startup;
    }
    auto* const main = new PerformanceMainPage(m_environment);
    connect(main, &PerformanceMainPage::startupRequested, this, [this] { setCurrentPage(PerformancePage::startup); });
    connect(main, &PerformanceMainPage::tweaksRequested, this, [this] { setCurrentPage(PerformancePage::tweaks); });
    connect(main, &PerformanceMainPage::wizardRequested, this,
            [this, &workingCopy, &saved] { openWizard(ProfileWizard::forNew(workingCopy, saved)); });
    connect(main, &PerformanceMainPage::editorRequested, this, edit);
    return main;
}

// ---- The wizard

/// The action that has loaded the profile may be coming to its end: with it the focus goes back to where it was.
void PerformanceView::editWhenIdle() {
    Session& session = m_environment.session;
    if (session.turnstile.isIdle()) {
        openWizard(ProfileWizard::forEdit(session.workingCopy, session.savedProfiles));
    } else {
        connect(&session.turnstile, &Turnstile::idleChanged, this, &PerformanceView::editWhenIdle,
                Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    }
}

void PerformanceView::openWizard(std::unique_ptr<ProfileWizard> wizard) {
    delete m_wizard;
    auto* const view = new ProfileWizardView(m_environment, std::move(wizard));
    m_wizard = view;
    addWidget(view);
    connect(view, &ProfileWizardView::left, this, &PerformanceView::leaveWizard);
    show(PerformancePage::wizard, view);
}

void PerformanceView::leaveWizard() {
    setCurrentPage(PerformancePage::main);
    m_wizard->deleteLater(); // it tells of this itself
    m_wizard.clear();
}

} // namespace quorvane
