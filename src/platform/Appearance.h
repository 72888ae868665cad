#pragma once

#include "platform/ColorScheme.h"

#include <optional>

namespace quorvane {

/// How the program's windows look. Main thread.
class Appearance {
public:
    Appearance() = default;
    Appearance(const Appearance&) = delete;
    Appearance& operator=(const Appearance&) = delete;
    virtual ~Appearance() = default;

    /// @param scheme  none follows the system
    virtual void setAppearance(std::optional<ColorScheme> scheme) = 0;
};

} // namespace quorvane
