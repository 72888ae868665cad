#pragma once

#include <QWidget>

namespace quorvane {

/// Says that there is nothing yet.
class PerformanceEmptyState : public QWidget {
    Q_OBJECT

public:
    PerformanceEmptyState(const QString& icon, const QString& message, QWidget* parent = nullptr);
};

} // namespace quorvane
