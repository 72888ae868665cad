#pragma once

#include "startup/background/BackgroundTaskItem.h"
#include "startup/items/StartupConfiguration.h"
#include "verification/ApplyVerificationResult.h"

namespace quorvane {

// What a clean reboot leaves of the background task list.

/// True when a permitted name, or an item of the configuration that runs, speaks for the record.
bool isPermittedBackgroundItem(const BackgroundTaskItem& item, const QSet<QString>& permittedNames,
                               const std::optional<StartupConfiguration>& startup);

/// The active records that nothing permits: neither a name nor the configuration, for itself or for its parent
/// application. The program's own, Apple's and audio software's are never among them. Sorted by name.
/// Takes records times permitted names.
QList<BackgroundTaskItem> nonPermittedBackgroundItems(const QList<BackgroundTaskItem>& items,
                                                      const QSet<QString>& permittedNames,
                                                      const std::optional<StartupConfiguration>& startup);

/// The failed item that stands for all where the list is empty: a Mac without a single record has none that could be read.
ApplyVerificationResult::Item unavailableBackgroundItems();

} // namespace quorvane
