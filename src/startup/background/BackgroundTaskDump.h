#pragma once

#include "startup/background/BackgroundTaskItem.h"

namespace quorvane {

/// Reads the text that `sfltool dumpbtm` prints: numbered blocks ("#1:") of lines "Label: value". Labels that the
/// program doesn't use are passed over, as is a block without a name. Lines may end in LF, CR LF or CR.
QList<BackgroundTaskItem> parseBackgroundTaskDump(const QString& text);

} // namespace quorvane
