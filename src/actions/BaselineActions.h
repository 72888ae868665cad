#pragma once

#include "actions/ActionListener.h"
#include "actions/ActionOutcome.h"
#include "actions/RowChoice.h"
#include "snapshots/KeptBaselines.h"

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <optional>

namespace quorvane {

class Action;
class ActionStage;
class SettingsStatus;
class SystemManager;
class Tasks;
struct KeptCaptures;
struct LookedAtBaselines;

/// What a user does with the restore baselines.
class BaselineActions {
public:
    struct Parts {
        SystemManager& system;
        SettingsStatus& status;
        Tasks& tasks;
    };
    BaselineActions(ActionStage& stage, const Parts& parts);

    /// "Choose a Restore Baseline…": ends with its sheet. Succeeded when one was chosen.
    QCoro::Task<ActionOutcome> choose(ActionListener& listener);
    /// Looks what there is, and how it differs from this Mac.
    QCoro::Task<ActionOutcome> list(ActionListener& listener);
    /// As they were listed last.
    const QList<ChoosableRow>& rows() const { return m_rows; }
    /// Has the ways back use one. A failure is told by an alert.
    /// @param id  of a row
    QCoro::Task<ActionOutcome> use(const QString& id, ActionListener& listener);

private:
    using Looked = std::shared_ptr<LookedAtBaselines>;
    QCoro::Task<void> look(Looked looked, std::function<void()> showIt);
    QCoro::Task<void> carryOutChoice(Action& action);
    QCoro::Task<void> load(std::shared_ptr<RowChoice> choice, Looked looked);
    QCoro::Task<void> useFromSheet(Action& action, std::shared_ptr<RowChoice> choice, QString id);
    QCoro::Task<std::optional<QString>> carryOutUse(Action& action, QString id, std::function<void(bool)> showUnderWay);
    QCoro::Task<KeptCaptures> readCaptures();
    std::optional<QString> chosen(const MasterSystemBaseline& baseline, const KeptCaptures& captures);
    std::optional<QString> chosenLatest();

    ActionStage& m_stage;
    Parts m_parts;
    KeptBaselines m_kept;
    QList<ChoosableRow> m_rows;
};

} // namespace quorvane
