#include "ui/services/NetworkView.h"

#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "ui/ViewEnvironment.h"

#include <QPointer>

#include <QCoroTask>

namespace quorvane {

NetworkView::NetworkView(const ViewEnvironment& environment, QWidget* parent)
    : CheckPage(environment, kExecuteNetwork, parent)
    , m_environment(environment) {
    addSections<NetworkToggle>(networkSections(), m_operations);
    connect(this, &CheckPage::executed, this, &NetworkView::execute);
}

void NetworkView::execute() {
    Session& session = m_environment.session;
    const auto whenRun = [self = QPointer<NetworkView>(this)] {
        if (self != nullptr) {
            self->untick();
        }
    };
    session.tasks.start(session.networkActions.execute(m_operations, m_environment.listener, whenRun));
}

} // namespace quorvane
