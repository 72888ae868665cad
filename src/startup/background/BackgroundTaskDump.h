#pragma once

#include "startup/background/BackgroundTaskItem.h"

namespace quorvane {

/// Reads the text that `sfltool dumpbtm` prints: numbered blocks ("#1:") of lines "Label: value". Labels that the
/// program doesn't use are passed over, as is a block without a name. Lines may end in LF, CR LF or CR.
/// Each account has a section of its own ("Records for UID 501 : …"): only those of the user, of the whole Mac (-2) and of
/// root count, and blocks that stand before any section.
QList<BackgroundTaskItem> parseBackgroundTaskDump(const QString& text, quint32 userId);

} // namespace quorvane
