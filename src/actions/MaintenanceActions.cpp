#include "actions/MaintenanceActions.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "system/SystemManager.h"

#include <QCoroTask>
#include <QScopeGuard>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<ActionOutcome> MaintenanceActions::execute(MaintenanceSelection selection, ActionListener& listener,
                                                       const std::function<void()>& whenRun) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(u"run maintenance"_s)) {
            co_return;
        }
        if (!co_await action.isAgreedTo(purgeQuestion(selection))) {
            co_return;
        }
        MaintenanceOutcome result;
        {
            const auto tellItHasRun = qScopeGuard([whenRun] {
                if (whenRun) {
                    whenRun();
                }
            });
            const Turnstile::Hold busy = action.carryingOut(u"Running maintenance…"_s);
            result = co_await m_system.runMaintenance(selection);
        }
        action.outcome.succeeded = result.succeeded;
        co_await action.tell(maintenanceAlert(result));
    });
}

} // namespace quorvane
