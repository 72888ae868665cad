#pragma once

#include "simulator/StateStore.h"

#include <QString>

#include <optional>
#include <vector>

namespace macsim {

/// One running process of the simulated Mac.
struct Process {
    int pid = 0;
    QString name;             ///< the base name of what was executed: "Dock"
    QString path;             ///< the executable; empty where nobody needs it
    int userId = 0;           ///< whose process it is; 0 is root
    QString label;            ///< of the launchd job that it belongs to; empty for none
    bool keepAlive = false;   ///< launchd starts it again at once when it ends
    bool isProtected = false; ///< no signal reaches it, not even root's
};

/// The processes that run on the simulated Mac.
///
/// Subject "processes": an array, in the order of the starts, of
///
///     {"pid": 412, "name": "Dock", "path": "/System/…/Dock", "uid": 501, "label": "com.apple.Dock.agent",
///      "keepAlive": true, "protected": false}
///
/// of which "pid", "name" and "uid" are required.
class ProcessTable {
public:
    explicit ProcessTable(const StateStore& state);

    std::vector<Process> list() const;
    std::optional<Process> find(int pid) const;
    /// Starts a process under a number above all that run; its own `pid` doesn't count.
    /// @return the number
    int start(const Process& process) const;
    void remove(int pid) const;
    /// Ends a process and starts it anew in one step, so that the new number is never the old one.
    /// @return the new number, or 0 when no such process runs
    int replace(int pid) const;

private:
    const StateStore& m_state;
};

} // namespace macsim
