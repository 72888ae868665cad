#pragma once

#include "startup/apply/StartupChangePreview.h"
#include "verification/LastFlowStanding.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// What the review of a profile shows.
struct ProfileApplyPreview {
    QString profileName;
    QStringList enabledTweaks; ///< titles, in catalogue order
    StartupChangePreview startup;
    bool hasOwnSettings =
        false; ///< what the user had before is known: that comes back where the profile leaves a tweak off
    std::optional<LastFlowStanding> standing = {}; ///< of what the last apply or way back has left

    bool operator==(const ProfileApplyPreview&) const = default;
};

/// What the review of tweaks alone shows.
struct TweaksApplyPreview {
    QStringList enabledTweaks;                     ///< titles, in catalogue order
    StartupChangePreview startup;                  ///< what their clean reboot takes
    std::optional<LastFlowStanding> standing = {}; ///< as above

    bool operator==(const TweaksApplyPreview&) const = default;
};

/// A section of a review.
struct ReviewSection {
    struct Row {
        QString text;
        QString detail; ///< beneath or beside the text; may be empty

        bool operator==(const Row&) const = default;
    };

    QString title;
    QString symbol; ///< of the system's symbol font
    QList<Row> rows;

    bool operator==(const ReviewSection&) const = default;
};

/// The sections in their order; those with nothing to show are left out.
QList<ReviewSection> reviewSections(const StartupChangePreview& preview);
/// The tweaks first, but for what couldn't be read: a profile puts back all those that it hasn't.
QList<ReviewSection> reviewSections(const ProfileApplyPreview& preview);
/// Empty when no tweak is selected.
QList<ReviewSection> reviewSections(const TweaksApplyPreview& preview);

} // namespace quorvane
