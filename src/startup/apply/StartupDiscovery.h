#pragma once

#include "startup/background/BackgroundTaskItem.h"
#include "startup/items/LoginItem.h"
#include "startup/items/StartupItem.h"
#include "startup/launchd/LaunchFolders.h"

#include <QStringList>

namespace quorvane {

class Bundles;
class PropertyLists;

// What is found of each source, as startup items.

/// A folder of launch plists and the names in it.
struct LaunchFolderListing {
    LaunchFolder folder;
    QStringList fileNames;
};
/// Any thread: reads every plist.
QList<StartupItem> launchStartupItems(const QList<LaunchFolderListing>& listings, const PropertyLists& propertyLists,
                                      const Bundles& bundles);

/// Items are protected that records of audio software stand for.
void protectByRecords(QList<StartupItem>& launchItems, const QList<BackgroundTaskItem>& records);

/// None for a record without a label.
std::optional<StartupItem> backgroundTaskStartupItem(const BackgroundTaskItem& record);
/// Of the login items, agents and daemons; protected records and the program's own are left out.
QList<StartupItem> backgroundStartupItems(const QList<BackgroundTaskItem>& records);

/// The items of all sources, each `id` once: the earlier source wins. Sorted by name.
QList<StartupItem> mergedSources(const QList<QList<StartupItem>>& sources);

} // namespace quorvane
