#pragma once

#include <QString>

class QWidget;

namespace quorvane {

/// Has a screen reader say what a sighted user sees change. The widget is called by it from then on, and should be one that
/// shows it. Nothing is said of what can't be seen.
void announce(QWidget* where, const QString& text);

} // namespace quorvane
