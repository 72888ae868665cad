#include "ui/window/MainContentArea.h"

#include "ui/logs/LogsView.h"
#include "ui/performance/PerformanceView.h"

namespace quorvane {

MainContentArea::MainContentArea(const ViewEnvironment& environment, QWidget* parent)
    : QStackedWidget(parent)
    , m_environment(environment) {
    setSelectedTab(Tab::performance);
}

void MainContentArea::setSelectedTab(Tab tab) {
    QWidget*& page = m_loadedTabs[tab];
    if (page == nullptr) {
        page = makePage(tab);
        addWidget(page);
    }
    setCurrentWidget(page);
}

QWidget* MainContentArea::makePage(Tab tab) {
    if (tab == Tab::logs) {
        return new LogsView(m_environment);
    }
    return new PerformanceView(m_environment);
}

} // namespace quorvane
