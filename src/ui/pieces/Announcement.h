#pragma once

#include <QString>

class QWidget;

namespace quorvane {

/// Has a screen reader say what a sighted user sees change.
void announce(QWidget* where, const QString& text);

} // namespace quorvane
