#pragma once

#include "platform/Appearance.h"

namespace quorvane {

/// The appearance of the program's NSApplication: of its title bars, menus, panels and the documentation.
class MacAppearance final : public Appearance {
public:
    void setAppearance(std::optional<ColorScheme> scheme) override;
};

} // namespace quorvane
