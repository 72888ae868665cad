#include "actions/ApplyReview.h"

#include "actions/ActionTexts.h"

#include <utility>

namespace quorvane {

ApplyReview::ApplyReview(Review review, QObject* parent)
    : QObject(parent)
    , m_review(std::move(review)) {
    m_agreement.start();
    m_closing.start();
}

bool ApplyReview::canApply() const {
    return m_state == State::Reviewing && !m_isClosed && quorvane::canApply(*m_preview);
}

void ApplyReview::apply() {
    if (canApply()) {
        m_state = State::Applying;
        answer(true);
        Q_EMIT changed();
    }
}

void ApplyReview::close() {
    if (m_state != State::Applying) {
        end();
    }
}

void ApplyReview::setPreview(const ReviewPreview& preview) {
    if (m_isClosed) {
        return; // the user didn't wait for it
    }
    m_preview = preview;
    m_state = State::Reviewing;
    Q_EMIT changed();
}

void ApplyReview::finish(const ResultPanel& result) {
    m_result = result;
    m_state = State::Finished;
    Q_EMIT changed();
}

void ApplyReview::end() {
    if (!std::exchange(m_isClosed, true)) {
        answer(false);
        m_closing.finish();
        Q_EMIT closed();
    }
}

void ApplyReview::answer(bool isAgreed) {
    if (!m_agreement.future().isFinished()) {
        m_agreement.addResult(isAgreed);
        m_agreement.finish();
    }
}

} // namespace quorvane
