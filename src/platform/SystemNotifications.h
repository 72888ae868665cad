#pragma once

#include <QString>

#include <functional>
#include <memory>

namespace quorvane {

/// Listens until it is destroyed.
class NotificationObservation {
public:
    NotificationObservation() = default;
    NotificationObservation(const NotificationObservation&) = delete;
    NotificationObservation& operator=(const NotificationObservation&) = delete;
    virtual ~NotificationObservation() = default;
};

/// What the system's parts tell all programs: the distributed notification centre. Main thread.
class SystemNotifications {
public:
    SystemNotifications() = default;
    SystemNotifications(const SystemNotifications&) = delete;
    SystemNotifications& operator=(const SystemNotifications&) = delete;
    virtual ~SystemNotifications() = default;

    /// Calls the handler from the event loop each time that the notification comes. Several that come at once may be one
    /// call. The observation ends before the port does; the handler may end it.
    /// @param name  "com.apple.desktop"
    virtual std::unique_ptr<NotificationObservation> observe(const QString& name, std::function<void()> handler) = 0;
};

} // namespace quorvane
