#pragma once

#include <QString>

namespace quorvane {

class SystemManager;

inline const QString kListPrompt = QStringLiteral("List, please.");

/// Root's line for the background task list alone, as a batch of the program brings it.
QString backgroundListLine(const QString& dumpPath);
/// Lets the program know the list, under a prompt of its own.
void learnBackgroundItems(SystemManager& system);

} // namespace quorvane
