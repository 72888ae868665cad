#include "ui/performance/PerformanceView.h"

#include "actions/Session.h"
#include "ui/ViewEnvironment.h"
#include "ui/performance/PerformanceMainPage.h"
#include "ui/performance/StartupPage.h"
#include "ui/performance/TweaksPage.h"
#include "ui/pieces/IdleGuard.h"

namespace quorvane {

PerformanceView::PerformanceView(const ViewEnvironment& environment, QWidget* parent)
    : QStackedWidget(parent)
    , m_environment(environment) {
    setCurrentPage(PerformancePage::main);
    new IdleGuard(this, environment.session.turnstile);
}

void PerformanceView::setCurrentPage(PerformancePage page) {
    QWidget*& widget = m_visitedPages[page];
    const bool isFirst = count() == 0;
    if (widget == nullptr) {
        widget = makePage(page);
        addWidget(widget);
    }
    QWidget* const focusBefore = focusWidget();
    setCurrentWidget(widget);
    if (!isFirst) {
        QWidget* const ledAway = page == PerformancePage::main ? m_ledAway.data() : nullptr;
        (ledAway != nullptr ? ledAway : widget)->setFocus(Qt::OtherFocusReason);
    }
    m_ledAway = focusBefore;
}

QWidget* PerformanceView::makePage(PerformancePage page) {
    if (page == PerformancePage::tweaks) {
        auto* const tweaks = new TweaksPage(m_environment);
        connect(tweaks, &TweaksPage::backRequested, this, [this] { setCurrentPage(PerformancePage::main); });
        return tweaks;
    }
    if (page == PerformancePage::startup) {
        auto* const startup = new StartupPage(m_environment);
        connect(startup, &StartupPage::backRequested, this, [this] { setCurrentPage(PerformancePage::main); });
        return startup;
    }
    auto* const main = new PerformanceMainPage(m_environment);
    connect(main, &PerformanceMainPage::startupRequested, this, [this] { setCurrentPage(PerformancePage::startup); });
    connect(main, &PerformanceMainPage::tweaksRequested, this, [this] { setCurrentPage(PerformancePage::tweaks); });
    return main;
}

} // namespace quorvane
