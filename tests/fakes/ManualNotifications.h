#pragma once

#include "platform/SystemNotifications.h"

#include <QList>

#include <utility>

namespace quorvane {

/// Notifications that come when a test posts them.
class ManualNotifications final : public SystemNotifications {
public:
    std::unique_ptr<NotificationObservation> observe(const QString& name, std::function<void()> handler) override;

    /// Calls those who observe now.
    void post(const QString& name);
    qsizetype observerCount() const { return m_observers.size(); }

private:
    struct Observation final : NotificationObservation {
        Observation(ManualNotifications& center, QString observedName, std::function<void()> called);
        ~Observation() override;

        QString name;
        std::function<void()> handler;

    private:
        ManualNotifications& m_center;
    };

    QList<Observation*> m_observers;
};

} // namespace quorvane
