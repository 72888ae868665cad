#pragma once

#include <QWidget>

namespace quorvane {

/// Says that there is nothing yet.
class PerformanceEmptyState : public QWidget {
    Q_OBJECT

public:
    /// @param hint  what to do about it
    PerformanceEmptyState(const QString& icon, const QString& message, const QString& hint, QWidget* parent = nullptr);
};

} // namespace quorvane
