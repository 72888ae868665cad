#pragma once

#include "startup/BackgroundTaskItem.h"
#include "startup/LaunchFolders.h"
#include "startup/LoginItem.h"
#include "startup/StartupItem.h"

#include <QStringList>

namespace quorvane {

class Bundles;
class PropertyLists;

// What is found of each source, as startup items.

/// True for a name or path that looks like an application's helper: one of its embedded launch agents, or something
/// that calls itself an agent.
bool looksLikeBackgroundAgent(const QString& text);
bool looksLikeBackgroundAgent(const LoginItem& item);
/// True for a login item whose name or path is that of audio software.
bool isProtectedLoginItem(const LoginItem& item);

StartupItem startupItemOf(const LoginItem& item);

/// A folder of launch plists and the names in it.
struct LaunchFolderListing {
    LaunchFolder folder;
    QStringList fileNames;
};
/// Any thread: reads every plist.
QList<StartupItem> launchStartupItems(const QList<LaunchFolderListing>& listings, const PropertyLists& propertyLists,
                                      const Bundles& bundles);

/// None for a record without a label.
std::optional<StartupItem> backgroundTaskStartupItem(const BackgroundTaskItem& record);
/// Of the login items, agents and daemons; protected records are left out.
QList<StartupItem> backgroundStartupItems(const QList<BackgroundTaskItem>& records);

/// The items of all sources, each `id` once: the earlier source wins. Sorted by name.
QList<StartupItem> mergedSources(const QList<QList<StartupItem>>& sources);

} // namespace quorvane
