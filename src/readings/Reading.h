#pragma once

#include <optional>
#include <utility>

namespace quorvane {

/// What a tool said when it was asked for something: a value, or that there is none ("not set", "unknown"), or nothing at
/// all, because it couldn't be started, was ended by a signal or was cut off. The last proves nothing: who needs such a
/// reading has failed, whatever a missing value would mean.
template <typename T>
struct Reading {
    std::optional<T> value; ///< none unless answered
    bool isAnswered = false;

    static Reading answered(std::optional<T> value) { return {std::move(value), true}; }
    static Reading unanswered() { return {}; }

    bool operator==(const Reading&) const = default;
};

} // namespace quorvane
