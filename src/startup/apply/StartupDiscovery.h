#pragma once

#include "startup/background/BackgroundTaskItem.h"
#include "startup/background/StartupMemory.h"
#include "startup/items/LoginItem.h"
#include "startup/items/StartupItem.h"
#include "startup/launchd/LaunchdReadings.h"

#include <QStringList>

namespace quorvane {

class Bundles;
class PropertyLists;

// What is found of each source, as startup items.

/// Each file name once. What nobody can tell counts as running. Any thread: reads every plist.
/// @param records  of the background task list, as far as it is known
QList<StartupItem> launchStartupItems(const LaunchdReadings& launchd, const QList<BackgroundTaskItem>& records,
                                      const PropertyLists& propertyLists, const Bundles& bundles);

/// Items are protected that records of audio software stand for.
void protectByRecords(QList<StartupItem>& launchItems, const QList<BackgroundTaskItem>& records);

/// None for a record without a label.
std::optional<StartupItem> backgroundTaskStartupItem(const BackgroundTaskItem& record);
/// Of the login items, agents and daemons; protected records and the program's own are left out.
QList<StartupItem> backgroundStartupItems(const QList<BackgroundTaskItem>& records, const LaunchdReadings& launchd);

/// What waits for the next apply.
StartupItem waitingStartupItem(const WaitingService& waiting);

/// Login items that System Events doesn't list: of the applications that have registered themselves.
QList<StartupItem> registeredStartupItems(const QStringList& paths, const QSet<QString>& protectedPaths);

/// The items of all sources, each `id` once: the earlier source wins. Sorted by name.
QList<StartupItem> mergedSources(const QList<QList<StartupItem>>& sources);

} // namespace quorvane
