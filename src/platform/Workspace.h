#pragma once

namespace quorvane {

/// The program among the others on the screen. Main thread.
class Workspace {
public:
    Workspace() = default;
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;
    virtual ~Workspace() = default;

    /// True while this is the active application: the one that the user types into.
    virtual bool isActive() const = 0;
    /// Makes this the active application, whichever is active now.
    virtual void activateIgnoringOtherApps() = 0;
    /// Makes each window of the program key and orders it to the front.
    virtual void makeWindowsKeyAndOrderFront() = 0;
};

} // namespace quorvane
