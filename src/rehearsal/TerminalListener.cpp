#include "rehearsal/TerminalListener.h"

#include "actions/SheetModel.h"
#include "actions/SystemScans.h"
#include "rehearsal/Report.h"

#include <QCoroTask>

namespace quorvane {

QCoro::Task<bool> TerminalListener::ask(Alert) {
    co_return true;
}

QCoro::Task<void> TerminalListener::tell(ClosingAlert alert) {
    if (m_manners.tells) {
        m_told = alert;
        m_print(alertLines(alert));
    }
    co_return;
}

QCoro::Task<bool> TerminalListener::review(Review review) {
    if (review.subject == ReviewSubject::Profile) {
        const ReviewPreview preview = co_await review.prepare();
        m_print(previewLines(std::get<ProfileApplyPreview>(preview)));
    }
    co_return true;
}

/// The log has said it.
QCoro::Task<void> TerminalListener::showResult(ResultPanel) {
    co_return;
}

void TerminalListener::showSheet(std::shared_ptr<SheetModel> sheet) {
    sheet->end();
}

QCoro::Task<void> TerminalListener::readAnew(Anew what) {
    if (what.match && m_manners.scans != nullptr) {
        m_match = co_await m_manners.scans->scanned();
    }
}

} // namespace quorvane
