#pragma once

#include "actions/Review.h"
#include "profiles/ApplyPreviews.h"

#include <QWidget>

namespace quorvane {

/// A section of a preview: its symbol and title over its rows.
class ReviewSectionView : public QWidget {
    Q_OBJECT

public:
    explicit ReviewSectionView(const ReviewSection& section, QWidget* parent = nullptr);
};

/// What came of an apply, in one line and a note.
class ResultHeading : public QWidget {
    Q_OBJECT

public:
    explicit ResultHeading(const ResultPanel& result, QWidget* parent = nullptr);
};

/// Each verified and each failed setting.
class VerificationView : public QWidget {
    Q_OBJECT

public:
    explicit VerificationView(const ApplyVerificationResult& verification, QWidget* parent = nullptr);
};

} // namespace quorvane
