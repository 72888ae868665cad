#pragma once

#include "actions/Review.h"

#include <QFuture>
#include <QObject>
#include <QPromise>

#include <optional>

namespace quorvane {

/// One review, as the sheet shows it. Main thread.
class ApplyReview : public QObject {
    Q_OBJECT

public:
    enum class State {
        Loading, ///< there is no preview yet
        Reviewing,
        Applying, ///< agreed to; nothing closes it
        Finished, ///< its result is shown
    };

    explicit ApplyReview(Review review, QObject* parent = nullptr);

    const Review& review() const { return m_review; }
    State state() const { return m_state; }
    const std::optional<ReviewPreview>& preview() const { return m_preview; }
    const std::optional<ResultPanel>& result() const { return m_result; }
    bool isClosed() const { return m_isClosed; }

    // ---- What the user does

    /// True when the apply button has something to do.
    bool canApply() const;
    void apply();
    /// "Close", "Done", Escape; nothing while it applies.
    void close();

    // ---- What comes of it

    /// Finishes with true when the user agrees, and with false when it closes before that.
    QFuture<bool> agreement() const { return m_agreement.future(); }
    QFuture<void> closing() const { return m_closing.future(); }
    void setPreview(const ReviewPreview& preview);
    void finish(const ResultPanel& result);
    /// Closes it in whatever state it is.
    void end();

Q_SIGNALS:
    void changed();
    void closed();

private:
    void answer(bool isAgreed);

    Review m_review;
    State m_state = State::Loading;
    std::optional<ReviewPreview> m_preview;
    std::optional<ResultPanel> m_result;
    bool m_isClosed = false;
    QPromise<bool> m_agreement;
    QPromise<void> m_closing;
};

} // namespace quorvane
