#pragma once

#include "platform/SystemLook.h"

namespace quorvane {

/// What the user has chosen in the system's settings for the appearance and for display accessibility. AppKit tells of another
/// appearance at once; the accessibility settings are looked at when the program becomes the active one, which it isn't while
/// they are changed.
class MacSystemLook final : public SystemLook {
public:
    ColorScheme scheme() const override;
    bool reducesMotion() const override;
    bool increasesContrast() const override;
    std::unique_ptr<NotificationObservation> observe(std::function<void()> handler) override;
};

} // namespace quorvane
