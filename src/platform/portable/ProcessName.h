#pragma once

#include <QString>

namespace quorvane {

/// This process, by a name that tells it from those of before the computer's last start: "5c1a9b3e-…/4711", the system's id of
/// that start and the number of the process. A number is given anew only when all others have been.
QString ownProcessName();
/// Whether the process of such a name runs, whoever's it is. False of another start's, and of what is no such name.
bool isProcessRunning(const QString& processName);

} // namespace quorvane
