#pragma once

#include "startup/background/BackgroundTaskItem.h"
#include "startup/items/StartupConfiguration.h"
#include "verification/ApplyVerificationResult.h"

namespace quorvane {

// What a clean reboot leaves of the background task list.

/// True when a permitted name, or an item of the configuration that runs, speaks for the record.
bool isPermittedBackgroundItem(const BackgroundTaskItem& item, const QSet<QString>& permittedNames,
                               const std::optional<StartupConfiguration>& startup);

/// The active records of login items and agents that nothing permits: neither a name nor the configuration, for itself or for
/// its parent application. The program's own, Apple's, audio software's and what an organization manages are never among
/// them. Sorted by name. Takes records times permitted names.
QList<BackgroundTaskItem> nonPermittedBackgroundItems(const QList<BackgroundTaskItem>& items,
                                                      const QSet<QString>& permittedNames,
                                                      const std::optional<StartupConfiguration>& startup);

/// The same of daemons. A clean reboot leaves them on: a daemon runs for the whole Mac, and its application can't repair it.
QList<BackgroundTaskItem> nonPermittedDaemons(const QList<BackgroundTaskItem>& items,
                                              const QSet<QString>& permittedNames,
                                              const std::optional<StartupConfiguration>& startup);

/// The same of applications that have registered themselves to open at login.
QList<BackgroundTaskItem> nonPermittedApplications(const QList<BackgroundTaskItem>& items,
                                                   const QSet<QString>& permittedNames,
                                                   const std::optional<StartupConfiguration>& startup);

/// The failed item that stands for all where the list is empty: a Mac without a single record has none that could be read.
ApplyVerificationResult::Item unavailableBackgroundItems();

/// The failed item of an application that opens at login by its own registration: only the user can turn it off.
/// @param name  of its login item
ApplyVerificationResult::Item opensByItsRegistration(const QString& name);

} // namespace quorvane
