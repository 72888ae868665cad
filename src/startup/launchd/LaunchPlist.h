#pragma once

#include "startup/launchd/DisabledServices.h"
#include "startup/launchd/LaunchFolders.h"

namespace quorvane {

class PropertyLists;

/// A plist that lies in a launch folder, and what it says of its job. One that can't be read says nothing.
struct LaunchPlist {
    QString fileName;
    LaunchFolder folder;
    QString label;              ///< as it is named to launchctl; empty where it tells none that can be
    bool isDisabled = false;    ///< by itself; an override goes before it
    bool startsByItself = true; ///< false for a job that waits until somebody asks it for something

    QString path() const { return folder.path + u'/' + fileName; }
    LaunchdService service() const { return {folder.isDaemons ? LaunchdDomain::System : LaunchdDomain::User, label}; }
    /// A daemon that does nothing unless its application asks for it. Switched off, the application couldn't repair it.
    bool runsOnDemand() const { return folder.isDaemons && !startsByItself; }
};

LaunchPlist readLaunchPlist(const LaunchFolder& folder, const QString& fileName, const PropertyLists& propertyLists);

/// Whether launchd starts the job of a plist that is in its place; none when nobody can tell.
std::optional<bool> isOn(const LaunchPlist& plist, const LaunchdOverrides& overrides);

/// True for a label whose override the program may write: it can be named to launchctl, and is neither the system's, nor the
/// program's own, nor audio software's. Profiles and plists come from other people.
bool mayOverride(const QString& label);

} // namespace quorvane
