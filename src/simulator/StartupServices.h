#pragma once

#include "simulator/LaunchdState.h"

#include <QString>

#include <vector>

namespace macsim {

/// Something that may start by itself, at the start of the Mac or at the login of its user.
struct StartupService {
    enum class Kind {
        LaunchPlist, ///< a property list in one of the launch folders
        Bundled,     ///< an agent, a daemon or a login item that an application registered from its bundle
        LoginItem,   ///< an item of the list that System Events knows
        Application, ///< one that registered itself to open at login, and isn't in that list
        Job,         ///< launchd has it, and nothing is left that would start it again: its plist was moved away
    };
    Kind kind = Kind::LaunchPlist;
    LaunchdDomain domain; ///< where its job is; the user's session for what has none
    LaunchPlist job;      ///< without a label for login items and applications, which are no jobs of launchd's
    bool runsNow = false;
    bool startsAtNextLogin = false;
};

/// Everything of its kinds on the Mac but what the sealed system brings: what a program that switches startup items off
/// has to answer for, told by the state itself and not by any tool.
///
/// A job *runs* when launchd has loaded it, whether or not it has a process: one that waits for its time or for somebody
/// who needs it starts without being asked. A login item or an application runs when a process of it does.
///
/// What *starts at the next login*:
/// - a property list that readLaunchPlist can read, whose label launchd doesn't hold disabled (by an override in the
///   list's domain, or, where there is none, by its own "Disabled"), unless its record of the background tasks is
///   disabled or disallowed. Its record is a legacy one with its path as URL or, without a URL, with its label. Two lists
///   of one label both count, though launchd takes only the first;
/// - what an application registered (a record of the user's or the machine's, of type agent, daemon or login item and not
///   legacy) that is enabled and allowed, whose file is there and whose label has no override that disables it. Its label
///   is the record's identifier without the number; a daemon belongs to the system and all else to the user's session;
/// - a login item whose file is there;
/// - an application (a record of the user's of type app) that is enabled and allowed and whose file is there.
std::vector<StartupService> startupServices(const Mac& mac);

/// Whether the user's own switch keeps a plist from running, so that launchd refuses to load it whatever its override says.
bool isDisallowed(const Mac& mac, const LaunchPlist& plist);

/// Loads what applications registered, as far as it would start and isn't loaded.
void loadBundledServices(const Mac& mac);

} // namespace macsim
