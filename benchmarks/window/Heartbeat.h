#pragma once

#include <QBasicTimer>
#include <QFile>
#include <QObject>

#include <chrono>

namespace quorvane {

/// Feels how long the event loop keeps somebody waiting: it beats every millisecond as long as the loop comes round. What
/// this thread has waited for a processor that others had doesn't count. Main thread.
class Heartbeat : public QObject {
public:
    Heartbeat();

    using Clock = std::chrono::steady_clock;

    struct Stall {
        double milliseconds = 0;
        double worked = 0; ///< of it, with the processor
        QByteArray during; ///< the event after whose beginning the most of it has passed
    };

    void begin();
    /// The longest stall since the beginning.
    Stall end();

protected:
    void timerEvent(QTimerEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Moment {
        std::chrono::duration<double, std::milli> time{};
        std::chrono::duration<double, std::milli> worked{};
        std::chrono::duration<double, std::milli> ready{}; ///< and without a processor
    };

    void beat();
    Moment now();
    void endEvent(Clock::time_point now);

    QBasicTimer m_timer;
    QFile m_schedule{QStringLiteral("/proc/thread-self/schedstat")};
    Moment m_lastBeat;
    Clock::time_point m_eventBegan;
    const char* m_receiver = "no event";
    int m_type = 0;
    Clock::duration m_longestEvent{};
    QByteArray m_longestName;
    Stall m_longest;
};

} // namespace quorvane
