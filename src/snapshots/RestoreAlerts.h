#pragma once

#include "core/ClosingAlert.h"
#include "snapshots/RestoreBaseline.h"

namespace quorvane {

// What the user is told at the end of a flow that saves or restores his system.

ClosingAlert snapshotAlert(bool isSaved);
/// Of "Undo Performance Tweaks": it speaks of a snapshot where the file of one is there.
ClosingAlert undoAlert(const RestoreOutcome& outcome);
/// Of "Apply Default". Like that of a reinstatement it speaks of a baseline where one was the source.
ClosingAlert defaultAlert(const RestoreOutcome& outcome);
ClosingAlert reinstateAlert(const RestoreOutcome& outcome);

} // namespace quorvane
