#pragma once

#include "snapshots/OwnSettings.h"
#include "tweaks/TweakCommands.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace quorvane {

/// What puts a Mac's tweaks where a profile wants them. One that the profile leaves off goes back to what the user had. Where that
/// isn't known only what the program has changed itself goes back, to what a fresh macOS has: the rest is the user's. What is there
/// already gets no command.
struct SyncPlan {
    QList<TweakStep> steps;     ///< as the user, in the order of the groups
    QStringList systemLines;    ///< of what gets no command of root's
    QStringList systemCommands; ///< of root's
    TweakStep appRestoration;   ///< the clean reboot's, where the profile leaves it off
};

/// @param notificationCenter      the path of Notification Center's per-host preferences
/// @param isNotificationCenterOff  the program has switched it off in launchd
SyncPlan syncPlan(const PerformanceSettings& settings, const OwnSettings& own, const CurrentSettings& current,
                  const QString& notificationCenter, bool isNotificationCenterOff);

/// The keys of the selected tweaks that aren't in force yet: these the program is about to change. Of automatic backups that is noted
/// apart, when they are really switched.
QSet<QString> tweaksToChange(const PerformanceSettings& settings, const CurrentSettings& current);
/// Of the tweaks that the program has changed those that read now as the user had them.
QSet<QString> tweaksThatAreBack(const OwnSettings& own, const CurrentSettings& current);

} // namespace quorvane
