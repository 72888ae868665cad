#pragma once

#include "fakes/ManualNotifications.h"
#include "platform/SystemLook.h"

#include <utility>

namespace quorvane {

/// A system that looks as a test says, and tells of it when it is told to.
class ManualSystemLook final : public SystemLook {
public:
    ColorScheme systemScheme = ColorScheme::Light;
    bool isMotionReduced = false;
    bool isContrastIncreased = false;

    ColorScheme scheme() const override { return systemScheme; }
    bool reducesMotion() const override { return isMotionReduced; }
    bool increasesContrast() const override { return isContrastIncreased; }
    std::unique_ptr<NotificationObservation> observe(std::function<void()> handler) override {
        return m_notifications.observe({}, std::move(handler));
    }

    /// Calls those who observe now.
    void tell() { m_notifications.post({}); }
    qsizetype observerCount() const { return m_notifications.observerCount(); }

private:
    ManualNotifications m_notifications;
};

} // namespace quorvane
