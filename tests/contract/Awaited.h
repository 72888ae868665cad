#pragma once

#include "fakes/EventLoop.h"

#include <QFuture>

namespace quorvane {

/// What a port's future ends with, while the event loop goes round.
template <typename Value>
Value awaited(const QFuture<Value>& future) {
    processEventsUntil([&future] { return future.isFinished(); });
    EXPECT_FALSE(future.isCanceled());
    return future.isFinished() ? future.result() : Value();
}

} // namespace quorvane
