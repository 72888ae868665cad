#pragma once

#include "contract/Subject.h"
#include "fakes/EventLoop.h"
#include "platform/SystemNotifications.h"

#include <QString>

namespace quorvane {

/// A system in which two things can happen that everybody is told of.
class NotificationsSubject {
public:
    virtual ~NotificationsSubject() = default;
    virtual SystemNotifications& notifications() = 0;
    virtual QString firstName() const = 0;
    virtual QString secondName() const = 0;
    /// Lets happen what the notification tells of, as another process does it.
    virtual void post(const QString& name) = 0;
};

class SystemNotificationsContract : public ContractTest<NotificationsSubject> {
protected:
    std::unique_ptr<NotificationObservation> count(const QString& name, int& heard) {
        return notifications.observe(name, [&heard] { ++heard; });
    }
    void waitFor(const int& heard, int wanted) {
        processEventsUntil([&] { return heard >= wanted; });
    }

    SystemNotifications& notifications = subject->notifications();
    const QString firstName = subject->firstName();
    const QString secondName = subject->secondName();
};

} // namespace quorvane
