#pragma once

namespace quorvane {

/// What the system is told of what the program does. Main thread.
class Activity {
public:
    Activity() = default;
    Activity(const Activity&) = delete;
    Activity& operator=(const Activity&) = delete;
    virtual ~Activity() = default;

    /// @param isWorking  true while something runs that its user waits for: a system that slows down programs that nobody
    ///                   sees lets this one be. The same again changes nothing.
    virtual void setWorking(bool isWorking) = 0;
};

} // namespace quorvane
