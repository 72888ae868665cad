#include "actions/AlertingListener.h"

#include "actions/SystemScans.h"

#include <QCoroFuture>
#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

QCoro::Task<bool> AlertingListener::ask(Alert question) {
    const int pressed = co_await m_alerts.present(question);
    co_return pressed != question.cancelButton;
}

QCoro::Task<int> AlertingListener::choose(Alert question) {
    co_return co_await m_alerts.present(question);
}

QCoro::Task<void> AlertingListener::tell(ClosingAlert alert) {
    const Alert shown{alert.title, alert.text, {u"OK"_s}, 0, {}, alert.style};
    co_await m_alerts.present(shown);
}

QCoro::Task<void> AlertingListener::readAnew(Anew what) {
    if (what.match) {
        m_scans.request();
    }
    co_return;
}

} // namespace quorvane
