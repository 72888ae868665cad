#include "ui/pieces/Announcement.h"

#include <QAccessible>
#include <QWidget>

namespace quorvane {

/// Qt has no announcement of its own yet: an alert has the reader say the name of the widget.
void announce(QWidget* where, const QString& text) {
    where->setAccessibleName(text);
    if (where->isVisible()) {
        QAccessibleEvent event(where, QAccessible::Alert);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace quorvane
