#pragma once

#include "actions/ActionListener.h"

namespace quorvane {

class SystemScans;

/// Asks and tells by alerts, and has a scan follow what changed the system. What else is to be shown its heirs do.
class AlertingListener : public ActionListener {
public:
    AlertingListener(AlertPresenter& alerts, SystemScans& scans)
        : m_alerts(alerts)
        , m_scans(scans) {}

    bool asks() const override { return true; }
    QCoro::Task<bool> ask(Alert question) override;
    QCoro::Task<int> choose(Alert question) override;
    QCoro::Task<void> tell(ClosingAlert alert) override;
    QCoro::Task<void> readAnew(Anew what) override;

private:
    AlertPresenter& m_alerts;
    SystemScans& m_scans;
};

} // namespace quorvane
