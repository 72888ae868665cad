#pragma once

#include "platform/portable/SystemClock.h"

#include <QPromise>

#include <vector>

namespace quorvane {

/// A clock that goes on when the test lets it, and only then. What waits for no time goes on when the event loop comes round.
class SteppedClock final : public Clock {
public:
    QDateTime now() const override { return m_now; }
    QFuture<void> sleepFor(std::chrono::milliseconds duration) override;
    void shutDown() override;

    /// Ends the waits that are over by then. What follows them happens in the event loop.
    void advance(std::chrono::milliseconds duration);

private:
    struct Wait {
        QDateTime end;
        QPromise<void> promise;
    };
    void endWaits(const QDateTime& until);

    QDateTime m_now{QDate(2026, 3, 14), QTime(20, 30), Qt::UTC};
    std::vector<Wait> m_waits;
    SystemClock m_turns;
    bool m_isShutDown = false;
};

} // namespace quorvane
