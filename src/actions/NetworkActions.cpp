#include "actions/NetworkActions.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "system/SystemManager.h"

#include <QCoroTask>
#include <QScopeGuard>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<ActionOutcome> NetworkActions::execute(NetworkOperations operations, ActionListener& listener,
                                                   const std::function<void()>& whenRun) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(u"change the network"_s)) {
            co_return;
        }
        if (operations.changesSettings() && !co_await action.keepsWayBack()) {
            co_return;
        }
        NetworkOutcome result;
        {
            const auto tellItHasRun = qScopeGuard([whenRun] {
                if (whenRun) {
                    whenRun();
                }
            });
            const Turnstile::Hold busy = action.carryingOut(u"Running network operations…"_s, {.match = true});
            result = co_await m_system.executeNetworkOperations(operations);
        }
        action.outcome.succeeded = result.isComplete();
        co_await action.tell(networkAlert(result));
    });
}

} // namespace quorvane
