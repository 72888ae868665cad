#pragma once

#include "startup/background/BackgroundTaskList.h"
#include "startup/background/StartupMemory.h"

#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace quorvane {

// Records and the labels by which launchd knows them.

/// Of the records that have one.
QSet<QString> labelsOf(const QList<BackgroundTaskItem>& records);

/// The file names of launch plists that records of audio software stand for: by the label, or by the place of the plist.
QSet<QString> protectedLaunchPlists(const BackgroundTaskList& list);

/// The services of the list, as far as launchd doesn't simply know the label of profiles as a service of the user's.
QList<KnownService> unusualServices(const BackgroundTaskList& list);

/// Where the files of records of audio software are, without a "/" at the end.
QSet<QString> protectedFiles(const BackgroundTaskList& list);

} // namespace quorvane
