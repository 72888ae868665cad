#pragma once

#include "startup/background/BackgroundTaskList.h"

#include <QUrl>

namespace quorvane {

class FileManager;

/// One thing to switch off inside an application.
struct BackgroundDisableTarget {
    QString label;                          ///< launchd's or the background task list's
    QUrl parentAppURL;                      ///< the application that carries the helper
    std::optional<BackgroundTaskItem> item; ///< when the target came from a record
    std::optional<QUrl> bundledResourceURL; ///< the helper inside the application, when one was found

    bool operator==(const BackgroundDisableTarget&) const = default;
};

/// The helpers inside an application: its embedded login items and launch agents. Nothing that leads out of the
/// application is among them, links resolved.
QList<QUrl> bundledStartupResources(const QUrl& appURL, const FileManager& files);

/// Everything in the folders of an application where its helpers lie, whatever its name; the same holds for it.
QStringList pathsInHelperFolders(const QString& application, const FileManager& files);

/// The applications that the records belong to, each once.
QList<QUrl> applicationsOf(const QList<BackgroundTaskItem>& records, const BackgroundTaskList& list);

/// The targets of records, each with its helper, and further launch agents in the same applications whose file is named
/// after one of the labels. A record without a parent application is no target; a resource belongs to one target.
/// @param list  where parents are looked up
QList<BackgroundDisableTarget> backgroundDisableTargets(const QList<BackgroundTaskItem>& records,
                                                        const QSet<QString>& labels, const BackgroundTaskList& list,
                                                        const FileManager& files);

/// True for audio software: by the label, the application, the helper, or anything that the record says.
bool isProtectedTarget(const BackgroundDisableTarget& target);

/// Where the program keeps the helpers that it has taken out of applications.
QString quarantineFolder(const QString& homeFolder);
/// True when the user may change anything on the way from the application down to its helper.
bool isWithinReachOfUser(const BackgroundDisableTarget& target, const FileManager& files);

} // namespace quorvane
