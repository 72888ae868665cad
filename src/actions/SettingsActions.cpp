#include "actions/SettingsActions.h"

#include "actions/ActionStage.h"
#include "actions/ActiveProfile.h"
#include "profiles/ProfileLabel.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kActivity = u"change the wallpaper label"_s;

} // namespace

QCoro::Task<ActionOutcome> SettingsActions::showLabel(const QString& name, ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(kActivity)) {
            co_return;
        }
        action.carryOutAtOnce();
        const QString shown = name.isEmpty() ? m_active.current().name : name;
        co_await m_label.setOverlayEnabled(true, shown);
        action.outcome.succeeded = m_label.isOverlayInPlace();
    });
}

QCoro::Task<ActionOutcome> SettingsActions::removeLabel(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(kActivity)) {
            co_return;
        }
        action.carryOutAtOnce();
        co_await m_label.setOverlayEnabled(false, {});
        action.outcome.succeeded = true;
    });
}

} // namespace quorvane
