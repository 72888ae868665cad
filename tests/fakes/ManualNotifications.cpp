#include "fakes/ManualNotifications.h"

namespace quorvane {

std::unique_ptr<NotificationObservation> ManualNotifications::observe(const QString& name,
                                                                      std::function<void()> handler) {
    return std::make_unique<Observation>(*this, name, std::move(handler));
}

void ManualNotifications::post(const QString& name) {
    const QList<Observation*> observers = m_observers;
    for (Observation* observer : observers) {
        if (observer->name == name && m_observers.contains(observer)) {
            const std::function<void()> handler = observer->handler;
            handler(); // the observer may be gone by the end of it
        }
    }
}

ManualNotifications::Observation::Observation(ManualNotifications& center, QString observedName,
                                              std::function<void()> called)
    : name(std::move(observedName))
    , handler(std::move(called))
    , m_center(center) {
    m_center.m_observers.append(this);
}

ManualNotifications::Observation::~Observation() {
    m_center.m_observers.removeOne(this);
}

} // namespace quorvane
