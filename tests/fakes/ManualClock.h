#pragma once

#include "platform/portable/SystemClock.h"

#include <QList>

#include <functional>

namespace quorvane {

/// A clock whose waits are over when the event loop next comes round, and have then taken their time.
class ManualClock final : public Clock {
public:
    QDateTime now() const override { return time; }
    QFuture<void> sleepFor(std::chrono::milliseconds duration) override;
    void shutDown() override { m_turns.shutDown(); }

    QDateTime time{QDate(2026, 3, 14), QTime(20, 30), Qt::UTC};
    QList<std::chrono::milliseconds> waits;                               ///< all that were asked for, in order
    std::function<void(std::chrono::milliseconds duration)> whenAskedFor; ///< called as soon as a wait is asked for

private:
    SystemClock m_turns;
};

} // namespace quorvane
