#pragma once

#include <QPromise>

#include <deque>
#include <utility>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

/// Lets one task at a time through a stretch of code that awaits. The others come in the order in which they asked.
///
/// Main thread. It outlives the tasks that ask.
class TaskLock {
public:
    /// The right to go on; it ends with this object, also when a task ends by an exception.
    class Hold {
    public:
        Hold(Hold&& other) noexcept
            : m_lock(std::exchange(other.m_lock, nullptr)) {}
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        Hold& operator=(Hold&&) = delete;
        ~Hold() {
            if (m_lock != nullptr) {
                m_lock->release();
            }
        }

    private:
        friend class TaskLock;
        explicit Hold(TaskLock& lock)
            : m_lock(&lock) {}

        TaskLock* m_lock;
    };

    TaskLock() = default;
    TaskLock(const TaskLock&) = delete;
    TaskLock& operator=(const TaskLock&) = delete;

    /// Doesn't suspend when nobody holds it. Whoever comes next goes on when the event loop has come round, never inside
    /// the destructor of the hold before.
    QCoro::Task<Hold> acquire();

private:
    void release();

    bool m_isHeld = false; // also between a hold's end and the moment in which the next goes on
    std::deque<QPromise<void>> m_waiting;
};

} // namespace quorvane
