#pragma once

#include "simulator/LaunchPlist.h"
#include "simulator/Mac.h"
#include "simulator/ProcessTable.h"

#include <QString>

#include <optional>
#include <utility>
#include <vector>

namespace macsim {

/// One of launchd's domains: the system, a user, or a user's graphical session.
struct LaunchdDomain {
    enum class Kind { System, User, Gui };
    Kind kind = Kind::System;
    int userId = 0; ///< 0 for the system

    /// As it is written in targets: "system", "user/501", "gui/501".
    QString key() const;
    /// As messages tell of it: "system", "uid: 501", "user gui: 501".
    QString words() const;
    /// Where its overrides are kept: a user and their session share one store.
    QString overridesKey() const;

    bool operator==(const LaunchdDomain&) const = default;
};

/// A job that launchd has loaded.
struct LaunchdJob {
    QString label;
    QString path;                      ///< of its property list; empty where a program has submitted it
    int pid = 0;                       ///< 0 when it doesn't run
    std::optional<int> lastExitStatus; ///< negative for a signal; none when it never ended
};

/// launchd: what is loaded in which domain, and the overrides that outlive a restart.
///
/// Subject "launchd":
///
///     {"jobs": {"gui/501": {"com.x": {"path": "/Users/alex/Library/LaunchAgents/x.plist", "pid": 412,
///                                     "lastExitStatus": 0}},
///               "system": {…}},
///      "disabled": {"user/501": {"com.x": true}, "system": {…}},
///      "guiSession": true, "appleOverrides": "ignored"}
///
/// "pid" is null, 0 or left out for a job that doesn't run; a running one has its process, with the same
/// number and the job's label, in the process table. "disabled" holds overrides: true is disabled, false
/// enabled. `guiSession` is false when the user isn't logged in, so that the domain gui/… doesn't exist.
///
/// "appleOverrides" is what becomes of an override of a job that the sealed system brings, while System Integrity Protection
/// is on; both were seen on Macs. "ignored", also where nothing is said: it isn't written. "kept": it is written, the job
/// doesn't start any more from the next start on, and the override outlives that, also on the systems that undo Apple's.
class LaunchdState {
public:
    explicit LaunchdState(const Mac& mac);

    bool exists(const LaunchdDomain& domain) const;
    std::optional<LaunchdJob> job(const LaunchdDomain& domain, const QString& label) const;
    std::vector<LaunchdJob> jobs(const LaunchdDomain& domain) const;
    /// Labels and whether they are disabled.
    std::vector<std::pair<QString, bool>> overrides(const LaunchdDomain& domain) const;

    /// Throws std::invalid_argument for an "appleOverrides" that is neither.
    bool keepsAppleOverrides() const;
    bool isDisabled(const LaunchdDomain& domain, const LaunchPlist& plist) const;
    void setDisabled(const LaunchdDomain& domain, const QString& label, bool disabled) const;
    /// Loads a job and starts it if it is to run at load. @return false when the label is loaded already
    bool load(const LaunchdDomain& domain, const LaunchPlist& plist) const;
    /// Stops a job and forgets it. @return false when the label isn't loaded
    bool unload(const LaunchdDomain& domain, const QString& label) const;
    /// Ends a process by a signal. A job that is kept alive runs again at once, under a new number.
    void endProcess(const Process& process, int signal) const;

    /// Whether System Integrity Protection keeps launchd from touching a job: one that the sealed system
    /// brings.
    bool isProtectedPath(const QString& plistPath) const;
    bool isProtectedLabel(const LaunchdDomain& domain, const QString& label) const;

private:
    void removeProcesses(const LaunchdDomain& domain, const LaunchdJob& job) const;

    const Mac& m_mac;
    ProcessTable m_processes;
};

} // namespace macsim
