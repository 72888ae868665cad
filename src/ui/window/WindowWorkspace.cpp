#include "ui/window/WindowWorkspace.h"

#include <QApplication>
#include <QWidget>

namespace quorvane {

namespace {

QWidgetList ordinaryWindows() {
    QWidgetList windows;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        const Qt::WindowType type = window->windowType();
        if (window->isVisible() && (type == Qt::Window || type == Qt::Dialog)) {
            windows.append(window);
        }
    }
    return windows;
}

} // namespace

bool WindowWorkspace::isActive() const {
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}

/// Qt brings a program forward by one of its windows.
void WindowWorkspace::activateIgnoringOtherApps() {
    QWidget* const modal = QApplication::activeModalWidget();
    const QWidgetList windows = ordinaryWindows();
    if (modal != nullptr) {
        modal->activateWindow();
    } else if (!windows.isEmpty()) {
        windows.first()->activateWindow();
    }
}

void WindowWorkspace::makeWindowsKeyAndOrderFront() {
    for (QWidget* const window : ordinaryWindows()) {
        window->raise();
    }
    activateIgnoringOtherApps();
}

} // namespace quorvane
