#pragma once

#include <QDateTime>
#include <QFuture>

#include <chrono>

namespace quorvane {

/// The time of day, and every wait of the program. Main thread.
class Clock {
public:
    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    /// In UTC. It may go back: the user sets it.
    virtual QDateTime now() const = 0;

    /// Finishes when the time is over, on the thread that called; with 0 as soon as the event loop has come round. The
    /// future is never cancelled and holds no exception.
    virtual QFuture<void> sleepFor(std::chrono::milliseconds duration) = 0;

    /// Ends all waits, and each later one at once; see CommandLauncher::shutDown.
    virtual void shutDown() = 0;
};

} // namespace quorvane
