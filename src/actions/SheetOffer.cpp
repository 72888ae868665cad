#include "actions/SheetOffer.h"

#include <utility>

namespace quorvane {

void SheetOffer::dismiss() {
    if (m_state != State::Saving) {
        end();
    }
}

QFuture<bool> SheetOffer::answer() {
    if (isOver()) {
        return QtFuture::makeReadyFuture(false);
    }
    m_answer.emplace().start();
    return m_answer->future();
}

void SheetOffer::beginSaving() {
    m_state = State::Saving;
    Q_EMIT changed();
}

void SheetOffer::endSaving(bool isSaved) {
    if (isSaved) {
        end();
    } else if (!isOver()) {
        m_state = State::Failed;
        Q_EMIT changed();
    }
}

void SheetOffer::answerWith(bool isWanted) {
    if (std::optional<QPromise<bool>> answer = std::exchange(m_answer, std::nullopt)) {
        answer->addResult(isWanted);
        answer->finish();
    }
}

} // namespace quorvane
