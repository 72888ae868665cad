#pragma once

#include "platform/NotificationObservation.h"

#include <QString>

#include <functional>
#include <memory>

namespace quorvane {

/// What the system's parts tell all programs: the distributed notification centre. Main thread.
class SystemNotifications {
public:
    SystemNotifications() = default;
    SystemNotifications(const SystemNotifications&) = delete;
    SystemNotifications& operator=(const SystemNotifications&) = delete;
    virtual ~SystemNotifications() = default;

    /// Calls the handler from the event loop each time that the notification comes. Several that come at once may be one
    /// call, and any may be missed: the system doesn't tell of every change. What must be known is looked at in other moments
    /// as well. The observation ends before the port does; the handler may end it.
    /// @param name  "com.apple.desktop"
    virtual std::unique_ptr<NotificationObservation> observe(const QString& name, std::function<void()> handler) = 0;
};

} // namespace quorvane
