#include "ui/services/MaintenanceView.h"

#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "ui/ViewEnvironment.h"

#include <QPointer>

#include <QCoroTask>

namespace quorvane {

MaintenanceView::MaintenanceView(const ViewEnvironment& environment, QWidget* parent)
    : CheckPage(environment, kExecuteMaintenance, parent)
    , m_environment(environment) {
    addSections<MaintenanceToggle>(maintenanceSections(), m_selection);
    connect(this, &CheckPage::executed, this, &MaintenanceView::execute);
}

void MaintenanceView::execute() {
    Session& session = m_environment.session;
    const auto whenRun = [self = QPointer<MaintenanceView>(this)] {
        if (self != nullptr) {
            self->untick();
        }
    };
    session.tasks.start(session.maintenanceActions.execute(m_selection, m_environment.listener, whenRun));
}

} // namespace quorvane
