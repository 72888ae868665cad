#include "ui/window/MainContentArea.h"

#include "ui/logs/LogsView.h"
#include "ui/performance/PerformanceView.h"
#include "ui/services/MaintenanceView.h"
#include "ui/services/NetworkView.h"
#include "ui/settings/SettingsView.h"

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
    switch (tab) {
    case Tab::performance:
        break;
    case Tab::maintenance:
        return new MaintenanceView(m_environment);
    case Tab::network:
        return new NetworkView(m_environment);
    case Tab::logs:
        return new LogsView(m_environment);
    case Tab::settings:
        return new SettingsView(m_environment);
    }
    return new PerformanceView(m_environment);
}

} // namespace quorvane
