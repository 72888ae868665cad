#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

namespace quorvane {

/// Runs the event loop until a condition holds; fails the test after a time that only a hang reaches.
template <typename Condition>
void processEventsUntil(Condition condition) {
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        ASSERT_LT(timer.elapsed(), 60000) << "the condition never held";
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    }
}

/// Counts how often the event loop comes round to a timer of one millisecond.
class Ticks {
public:
    Ticks() {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { ++m_count; });
        m_timer.start(1);
    }
    int count() const { return m_count; }

private:
    QTimer m_timer;
    int m_count = 0;
};

} // namespace quorvane
