#pragma once

#include <QCoroTask>
#include <QFuture>
#include <QPromise>

#include <exception>
#include <vector>

namespace quorvane {

class FlowEnvironment;

/// The tasks that nobody awaits. What one throws is a line in the log, and who ends the program waits until all have come to
/// their end. It outlives them. Main thread.
class Tasks {
public:
    explicit Tasks(FlowEnvironment& environment)
        : m_environment(environment) {}
    Tasks(const Tasks&) = delete;
    Tasks& operator=(const Tasks&) = delete;

    /// Lets a task run on by itself. What it gives is dropped.
    template <typename T>
    void start(QCoro::Task<T> task) {
        watch(std::move(task));
    }

    int count() const { return m_count; }
    /// Finishes when none is left, those included that have come meanwhile.
    QFuture<void> finished();

private:
    template <typename T>
    QCoro::Task<void> watch(QCoro::Task<T> task) {
        ++m_count;
        try {
            co_await std::move(task);
        } catch (const std::exception& error) {
            logError(error);
        }
        taskEnded();
    }
    void logError(const std::exception& error);
    void taskEnded();

    FlowEnvironment& m_environment;
    int m_count = 0;
    std::vector<QPromise<void>> m_waiting;
};

} // namespace quorvane
