#pragma once

#include "actions/PageTexts.h"

#include <QWidget>

namespace quorvane {

/// The title of a page that a row has led to, and the way back.
class PerformancePageHeader : public QWidget {
    Q_OBJECT

public:
    explicit PerformancePageHeader(const RowText& text, QWidget* parent = nullptr);

Q_SIGNALS:
    void backRequested();
};

} // namespace quorvane
