#pragma once

#include "startup/background/BackgroundTaskList.h"
#include "startup/launchd/LaunchdReadings.h"

namespace quorvane {

struct StartupMemory;

// Whether what a record, a plist or a label stands for starts at login, and whether an apply switches it off. The list alone doesn't
// tell: launchd's overrides don't show in it, and the record of a plist that is gone stays.

/// The job or login item of a record; none where nothing names it to launchd. The plist in its launch folder tells, where that
/// can be read, else the record.
std::optional<LaunchdService> serviceOf(const BackgroundTaskItem& record, const LaunchdReadings& launchd);

/// None when nobody can tell.
std::optional<bool> isOn(const BackgroundTaskItem& record, const LaunchdReadings& launchd);
/// The same of a plist in a launch folder: the user may have disallowed it in System Settings.
/// @param list  none when it was never read
std::optional<bool> isOn(const LaunchPlist& plist, const std::optional<BackgroundTaskList>& list,
                         const LaunchdReadings& launchd);
/// The same of every plist of a file name.
std::optional<bool> isFileOn(const QString& fileName, const std::optional<BackgroundTaskList>& list,
                             const LaunchdReadings& launchd);

/// True for a daemon that only runs when its application needs it: switched off, the application couldn't repair it.
bool runsOnDemand(const BackgroundTaskItem& record, const BackgroundTaskList& list, const LaunchdReadings& launchd);
/// True for what no apply switches off: such a daemon, and what an organization manages.
bool isLeftAlone(const BackgroundTaskItem& record, const BackgroundTaskList& list, const LaunchdReadings& launchd);
bool isLeftAlone(const LaunchPlist& plist, const std::optional<BackgroundTaskList>& list);

/// How something stands that a profile knows by a name.
struct Standing {
    /// Whether something of it is on that an apply would switch off; none when nobody can tell.
    std::optional<bool> isActive;
    bool isLeftAlone = false; ///< there is something of it, and an apply leaves all of that alone
};
/// Of every plist of a file name.
Standing fileStanding(const QString& fileName, const std::optional<BackgroundTaskList>& list,
                      const LaunchdReadings& launchd);
/// Of a label, whatever bears it.
/// @param memory  tells what a label may stand for while no list was read
Standing labelStanding(const QString& label, const std::optional<BackgroundTaskList>& list,
                       const LaunchdReadings& launchd, const StartupMemory& memory);

} // namespace quorvane
