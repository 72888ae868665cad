#pragma once

#include "platform/Clock.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QPromise>

#include <unordered_map>

namespace quorvane {

/// The computer's clock, and waits by the event loop's timers.
class SystemClock final : public Clock, private QObject {
public:
    ~SystemClock() override;

    QDateTime now() const override;
    QFuture<void> sleepFor(std::chrono::milliseconds duration) override;
    void shutDown() override;

private:
    struct Wait {
        QDeadlineTimer end;
        QPromise<void> promise;
    };

    void timerEvent(QTimerEvent* event) override;
    void startTimerFor(Wait wait);

    std::unordered_map<int, Wait> m_waits; ///< by the numbers of their timers
    bool m_isShutDown = false;
};

} // namespace quorvane
