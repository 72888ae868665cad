#pragma once

#include "profiles/ApplyPreviews.h"
#include "startup/apply/StartupChangePreview.h"
#include "verification/ApplyVerificationResult.h"

#include <QString>

#include <functional>
#include <variant>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

enum class ReviewSubject { Profile, Tweaks, Startup };

using ReviewPreview = std::variant<ProfileApplyPreview, TweaksApplyPreview, StartupChangePreview>;

/// What the user looks over before it is done.
struct Review {
    ReviewSubject subject = ReviewSubject::Profile;
    QString title;
    QString subtitle;
    QString button;
    QString nothingToDo; ///< said of a preview that can't be applied
    QString busyText;    ///< while it is carried out
    /// Reads the Mac as it is now, which takes its time. Main thread.
    std::function<QCoro::Task<ReviewPreview>()> prepare;
};

/// What stands in the review when it was done.
struct ResultPanel {
    QString title;
    QString symbol; ///< of the system's symbol font
    QString text;
    ApplyVerificationResult verification; ///< an item a row

    bool operator==(const ResultPanel&) const = default;
};

} // namespace quorvane
