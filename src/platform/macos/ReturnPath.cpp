#include "platform/macos/ReturnPath.h"

#include <utility>

namespace quorvane {

void ReturnPath::send(std::function<void()> function) {
    const std::lock_guard lock(m_mutex);
    if (m_home) {
        QMetaObject::invokeMethod(m_home.get(), std::move(function), Qt::QueuedConnection);
    }
}

void ReturnPath::close() {
    const std::lock_guard lock(m_mutex);
    m_home.reset();
}

} // namespace quorvane
