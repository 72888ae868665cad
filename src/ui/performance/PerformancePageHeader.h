#pragma once

#include "actions/PageTexts.h"

#include <QWidget>

namespace quorvane {

/// The title of a page that a row has led to, and the way back.
class PerformancePageHeader : public QWidget {
    Q_OBJECT

public:
    /// @param aside  what stands at the right end, beside the way back
    PerformancePageHeader(const RowText& text, QWidget* aside, QWidget* parent = nullptr);

Q_SIGNALS:
    void backRequested();
};

} // namespace quorvane
