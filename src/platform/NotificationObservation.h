#pragma once

namespace quorvane {

/// Listens until it is destroyed.
class NotificationObservation {
public:
    NotificationObservation() = default;
    NotificationObservation(const NotificationObservation&) = delete;
    NotificationObservation& operator=(const NotificationObservation&) = delete;
    virtual ~NotificationObservation() = default;
};

} // namespace quorvane
