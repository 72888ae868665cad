#pragma once

#include "actions/SheetModel.h"

#include <QFuture>
#include <QPromise>

#include <optional>

namespace quorvane {

/// Something that a sheet offers to write down: it stays until that is written or the user doesn't want it. Main thread.
class SheetOffer : public SheetModel {
    Q_OBJECT

public:
    enum class State {
        Offered,
        Saving, ///< nothing closes it
        Failed, ///< offered once more
    };

    using SheetModel::SheetModel;

    State state() const { return m_state; }

    // ---- What the user does

    /// The button that says what is offered; nothing while it is written.
    void accept() { answerWith(true); }
    void dismiss() override;

    // ---- What comes of it

    /// Finishes at the next thing that the user does: with true when they want it, with false when the offer is over.
    QFuture<bool> answer();
    void beginSaving();
    /// One that is saved is over.
    void endSaving(bool isSaved);

protected:
    void settle() override { answerWith(false); }

private:
    void answerWith(bool isWanted);

    State m_state = State::Offered;
    std::optional<QPromise<bool>> m_answer; ///< while somebody waits for it
};

} // namespace quorvane
