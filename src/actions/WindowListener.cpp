#include "actions/WindowListener.h"

#include "actions/ApplyReviewCoordinator.h"
#include "actions/SheetModel.h"
#include "actions/StartupEditing.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

WindowListener::WindowListener(const Parts& parts, QObject* parent)
    : QObject(parent)
    , AlertingListener(parts.alerts, parts.scans)
    , m_parts(parts) {}

QCoro::Task<bool> WindowListener::review(Review review) {
    return m_parts.reviews.review(std::move(review));
}

QCoro::Task<void> WindowListener::showResult(ResultPanel panel) {
    return m_parts.reviews.showResult(std::move(panel));
}

void WindowListener::withdrawReview() {
    m_parts.reviews.withdrawReview();
}

void WindowListener::showSheet(std::shared_ptr<SheetModel> sheet) {
    if (m_isShutDown) {
        sheet->end();
        return;
    }
    m_sheet = std::move(sheet);
    connect(m_sheet.get(), &SheetModel::ended, this, [this] {
        m_sheet.reset();
        Q_EMIT sheetChanged();
    });
    Q_EMIT sheetChanged();
}

QCoro::Task<void> WindowListener::readAnew(Anew what) {
    co_await AlertingListener::readAnew(what);
    if (what.startupItems) {
        m_parts.startup.readAnew();
    }
    if (what.snapshot) {
        Q_EMIT snapshotChanged();
    }
    if (what.backups) {
        Q_EMIT backupsChanged();
    }
}

void WindowListener::shutDown() {
    m_isShutDown = true;
    m_parts.reviews.shutDown();
    if (const std::shared_ptr<SheetModel> sheet = m_sheet) {
        sheet->end();
    }
}

} // namespace quorvane
