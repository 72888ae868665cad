#pragma once

#include <QFuture>
#include <QFutureWatcher>

#include <utility>

namespace quorvane {

/// Calls the handler with a future that has finished; not when the context has gone by then. (QFuture::then with a context
/// insists that it is still there.)
template <typename T, typename Handler>
void whenFinished(const QFuture<T>& future, QObject* context, Handler handler) {
    auto* const watcher = new QFutureWatcher<T>(context);
    QObject::connect(watcher, &QFutureWatcherBase::finished, context, [watcher, handler = std::move(handler)] {
        watcher->deleteLater();
        handler(watcher->future());
    });
    watcher->setFuture(future);
}

} // namespace quorvane
