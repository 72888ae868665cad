#include "actions/MasterBaselineOffer.h"

#include "actions/ActionTexts.h"

#include <utility>

namespace quorvane {

MasterBaselineOffer::MasterBaselineOffer(QObject* parent)
    : QObject(parent) {}

QString MasterBaselineOffer::text() const {
    switch (m_state) {
    case State::Offered:
        break;
    case State::Saving:
        return kCapturingBaseline;
    case State::Failed:
        return kBaselineNotSaved;
    }
    return {};
}

void MasterBaselineOffer::create() {
    settle(true);
}

void MasterBaselineOffer::decline() {
    if (m_state != State::Saving) {
        end();
    }
}

QFuture<bool> MasterBaselineOffer::answer() {
    if (m_isOver) {
        return QtFuture::makeReadyFuture(false);
    }
    m_answer.emplace().start();
    return m_answer->future();
}

void MasterBaselineOffer::beginSaving() {
    m_state = State::Saving;
    Q_EMIT changed();
}

void MasterBaselineOffer::endSaving(bool isSaved) {
    if (isSaved) {
        end();
    } else if (!m_isOver) {
        m_state = State::Failed;
        Q_EMIT changed();
    }
}

void MasterBaselineOffer::end() {
    if (!std::exchange(m_isOver, true)) {
        settle(false);
        Q_EMIT ended();
    }
}

void MasterBaselineOffer::settle(bool isWanted) {
    if (std::optional<QPromise<bool>> answer = std::exchange(m_answer, std::nullopt)) {
        answer->addResult(isWanted);
        answer->finish();
    }
}

} // namespace quorvane
