#pragma once

#include "platform/Appearance.h"

namespace quorvane {

/// The program's windows are drawn by their own style, which asks the appearance manager; here nothing else is to be told.
class WindowAppearance final : public Appearance {
public:
    void setAppearance(std::optional<ColorScheme> /*scheme*/) override {}
};

} // namespace quorvane
