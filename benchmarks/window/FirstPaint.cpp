#include "FirstPaint.h"

#include <QApplication>
#include <QEvent>
#include <QMainWindow>
#include <QScreen>

#include <chrono>
#include <cstdio>
#include <utility>

namespace quorvane {

FirstPaint::FirstPaint(std::function<void()> painted)
    : m_painted(std::move(painted)) {
    qApp->installEventFilter(this);
}

/// What is painted is sent to the display before the event ends.
bool FirstPaint::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint && qobject_cast<QMainWindow*>(watched) != nullptr) {
        qApp->removeEventFilter(this);
        QMetaObject::invokeMethod(this, m_painted, Qt::QueuedConnection);
    }
    return false;
}

void printTimeOfDisplay() {
    // Before it answers it has drawn what it was sent.
    QGuiApplication::primaryScreen()->grabWindow(0, 0, 0, 1, 1);
    const std::chrono::nanoseconds now = std::chrono::steady_clock::now().time_since_epoch();
    std::printf("%lld\n", static_cast<long long>(now.count()));
    std::fflush(stdout);
}

} // namespace quorvane
