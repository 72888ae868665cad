#pragma once

#include <QWidget>

namespace quorvane {

/// Takes the focus from a widget that is about to be out of reach. It waits in the window itself: one without a focus would give
/// it to its first widget as soon as it is the active one again.
inline void parkFocus(QWidget* focused) {
    focused->clearFocus();
    focused->window()->setFocus(Qt::OtherFocusReason);
}

/// Nobody has taken it meanwhile.
inline bool isFocusParked(const QWidget* window) {
    return window->focusWidget() == nullptr || window->focusWidget() == window;
}

} // namespace quorvane
