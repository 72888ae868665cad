#pragma once

#include "actions/Review.h"
#include "core/ClosingAlert.h"
#include "platform/AlertPresenter.h"

#include <memory>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class SheetModel;

/// What may not be any more as it was shown. Saved profiles tell of their changes themselves.
struct Anew {
    bool match = false; ///< which configuration this Mac is in
    bool startupItems = false;
    bool snapshot = false;
    bool backups = false;

    bool operator==(const Anew&) const = default;
};

/// Who has started an action: what it asks on its way, tells at its end and has looked at anew goes through here. It outlives
/// the action. Main thread.
class ActionListener {
public:
    ActionListener() = default;
    ActionListener(const ActionListener&) = delete;
    ActionListener& operator=(const ActionListener&) = delete;
    virtual ~ActionListener() = default;

    /// False: nobody is there to be asked. Every question counts as agreed to then, and nothing is read for its sake.
    virtual bool asks() const = 0;
    /// @return false for the cancel button
    virtual QCoro::Task<bool> ask(Alert question) = 0;
    /// @return the button that was pressed; whoever only agrees presses the cancel button
    virtual QCoro::Task<int> choose(Alert question);
    /// Ends when the user has seen it.
    virtual QCoro::Task<void> tell(ClosingAlert alert) = 0;

    /// Ends when the user agrees or closes it. Once agreed to, a review stays until its result was shown, and nothing closes
    /// it. @return whether the user agrees
    virtual QCoro::Task<bool> review(Review review) = 0;
    /// Shows what came of a review at once. Ends when the user has closed it.
    virtual QCoro::Task<void> showResult(ResultPanel panel) = 0;
    /// Nothing was done of the review that was agreed to, and nothing will be: it goes.
    virtual void withdrawReview() = 0;

    /// Shows the sheet until it is over. Whoever has none ends it at once.
    virtual void showSheet(std::shared_ptr<SheetModel> sheet) = 0;

    /// Comes last, when the next action may begin.
    virtual QCoro::Task<void> readAnew(Anew what) = 0;
};

} // namespace quorvane
