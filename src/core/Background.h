#pragma once

#include <QtConcurrent>

#include <utility>

namespace quorvane {

/// Runs a pure function on another thread, so that the window stays live while it works through a long list. Its
/// arguments are copied. Await the future.
template <typename Function, typename... Arguments>
auto inBackground(Function&& function, Arguments&&... arguments) {
    return QtConcurrent::run(std::forward<Function>(function), std::forward<Arguments>(arguments)...);
}

} // namespace quorvane
