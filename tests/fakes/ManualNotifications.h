#pragma once

#include "platform/SystemNotifications.h"

#include <QList>

#include <utility>

namespace quorvane {

/// Notifications that come when a test posts them.
class ManualNotifications final : public SystemNotifications {
public:
    std::unique_ptr<NotificationObservation> observe(const QString& name, std::function<void()> handler) override {
        return std::make_unique<Observation>(*this, name, std::move(handler));
    }

    /// Calls those who observe now.
    void post(const QString& name) {
        const QList<Observation*> observers = m_observers;
        for (Observation* observer : observers) {
            if (observer->name == name && m_observers.contains(observer))
                observer->handler();
        }
    }
    qsizetype observerCount() const { return m_observers.size(); }

private:
    struct Observation final : NotificationObservation {
        Observation(ManualNotifications& center, QString observedName, std::function<void()> called)
            : name(std::move(observedName))
            , handler(std::move(called))
            , m_center(center) {
            m_center.m_observers.append(this);
        }
        ~Observation() override { m_center.m_observers.removeOne(this); }

        QString name;
        std::function<void()> handler;

    private:
        ManualNotifications& m_center;
    };

    QList<Observation*> m_observers;
};

} // namespace quorvane
