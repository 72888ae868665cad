#pragma once

#include "core/Flow.h"
#include "readings/TypedValue.h"

#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

/// The Focus preferences once Do Not Disturb is marked as on in them, which leaves everything else in them as it was.
/// @param before  none where there were none
/// @return none for what isn't a dictionary: nothing can be marked in it
std::optional<TypedValue> withFocusMark(const std::optional<TypedValue>& before);

/// The mark that tweaks which are applied by themselves set in the preferences of Focus, beside Do Not Disturb. What was there before is
/// kept in a file of the user's. Main thread.
class FocusMark : private Flow {
public:
    explicit FocusMark(FlowEnvironment& environment);

    /// Called before the mark is set: writes down what is there, unless that stands there since an earlier time. Where it can't be
    /// read, or nothing can be marked in it, nothing is written down, and nothing comes back.
    QCoro::Task<void> record();
    /// Brings back what was there, where it still is what the mark has made of it: what the user has changed since stays.
    QCoro::Task<void> restore();

private:
    struct Read;
    QCoro::Task<Read> read();
    void save(const std::optional<TypedValue>& before);
    void forget();
    QString file() const;
};

} // namespace quorvane
