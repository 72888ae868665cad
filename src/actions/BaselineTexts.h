#pragma once

#include "actions/RowChoice.h"
#include "platform/AlertPresenter.h"
#include "readings/CurrentSettings.h"
#include "snapshots/KeptBaselines.h"
#include "snapshots/RestoreBaseline.h"

#include <QList>
#include <QString>

#include <optional>

// What is said of the restore baselines and their choice. Texts are plain, and names stand in them on one line.
namespace quorvane {

class Machine;

inline const QString kBaselinesTitle = QStringLiteral("Restore baselines");
inline const QString kBaselinesHeader =
    QStringLiteral("Revert and Reinstate go back to the settings that were saved last, unless you choose others.");

/// The id of the row that takes a choice back.
inline const QString kLatestBaselineId = QStringLiteral("latest");

/// What is known of what there is to go back to, while somebody looks on: more and more of it.
struct LookedAtBaselines {
    QList<KeptBaseline> kept;
    std::optional<KeptCaptures> captures; ///< by which the used one is known
    std::optional<CurrentSettings> now;   ///< by which they are compared
};

/// The one that the ways back use, as far as it is known at home.
RowText usedBaselineRow(const std::optional<RestoreBaseline>& used, const Machine& machine);
RowText chooseBaselineRow();

ChoiceTexts baselineChoiceTexts();
/// The row of the latest, and one for each that there is.
QList<ChoosableRow> baselineRows(const LookedAtBaselines& looked, const Machine& machine);

/// Before another Mac's is chosen. @param deviceName  of that one
Alert anotherMacsBaselineQuestion(const QString& deviceName);

} // namespace quorvane
