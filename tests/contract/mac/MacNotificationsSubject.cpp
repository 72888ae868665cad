// The system's distributed notifications pass the contract, while this program isn't the active one.

#include "contract/SystemNotificationsContract.h"
#include "maccheck/PostedNotification.h"
#include "platform/macos/MacNotifications.h"

#include <QCoreApplication>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class MacNotificationsSubject final : public NotificationsSubject {
public:
    SystemNotifications& notifications() override { return m_notifications; }
    QString firstName() const override { return u"com.quorvane.app.test.first.%1"_s.arg(m_process); }
    QString secondName() const override { return u"com.quorvane.app.test.second.%1"_s.arg(m_process); }
    void post(const QString& name) override { postNotification(name); }

private:
    const qint64 m_process = QCoreApplication::applicationPid();
    MacNotifications m_notifications;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Mac, SystemNotificationsContract,
                         ::testing::Values(&makeSubject<NotificationsSubject, MacNotificationsSubject>));

} // namespace quorvane
