#pragma once

#include "platform/SystemNotifications.h"

namespace quorvane {

/// The system's distributed notification centre. Notifications are delivered also while the program isn't the active one.
class MacNotifications final : public SystemNotifications {
public:
    std::unique_ptr<NotificationObservation> observe(const QString& name, std::function<void()> handler) override;
};

} // namespace quorvane
