#pragma once

#include "startup/background/BackgroundDisableTarget.h"

#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace quorvane {

// Records and the labels by which launchd knows them.

/// Of the records that have one.
QSet<QString> labelsOf(const QList<BackgroundTaskItem>& records);

/// The list's records that bear one of the labels, by label; none where there is no list.
QList<BackgroundTaskItem> recordsWithLabels(const std::optional<BackgroundTaskList>& list, const QSet<QString>& labels);

/// Those of the records that bear one of the labels.
QList<BackgroundTaskItem> recordsAmong(const QList<BackgroundTaskItem>& records, const QSet<QString>& labels);

/// The labels of launch agents inside applications that no record stands for.
QSet<QString> bundledAgentLabels(const QList<BackgroundDisableTarget>& targets, const QSet<QString>& recordLabels);

/// The file names of launch plists that records of audio software stand for: by the label, or by the place of the plist.
QSet<QString> protectedLaunchPlists(const BackgroundTaskList& list);

/// Where the files of records of audio software are, without a "/" at the end.
QSet<QString> protectedFiles(const BackgroundTaskList& list);

} // namespace quorvane
