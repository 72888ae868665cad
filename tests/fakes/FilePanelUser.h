#pragma once

#include <QDialog>

namespace quorvane {

// What somebody does who sits before the simulated Mac's file panels.

/// The panel that is open, the newest where there are several; null without one.
QDialog* openFilePanel();
/// Waits for a panel, types a name or a whole path into its field, and presses Return.
void enterFileName(const QString& name);

} // namespace quorvane
