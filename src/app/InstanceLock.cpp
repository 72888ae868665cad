#include "app/InstanceLock.h"

#include <QFile>
#include <QList>
#include <QPromise>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/file.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace quorvane {

namespace {

std::runtime_error failure(const QString& path) {
    return std::runtime_error(path.toStdString() + ": " + std::strerror(errno));
}

} // namespace

InstanceLock::InstanceLock(const QString& path)
    : m_path(path)
    , m_descriptor(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (m_descriptor < 0) {
        throw failure(path);
    }
}

InstanceLock::~InstanceLock() {
    ::close(m_descriptor);
}

bool InstanceLock::take() {
    return ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0;
}

// The system tells only who waits in its call, which nothing else can end. So a thread of its own waits, with a descriptor of
// its own: whoever has either of the two has the lock, and it is free again once both are closed.
QFuture<bool> InstanceLock::takeWhenFree() {
    QPromise<bool> promise;
    promise.start();
    QFuture<bool> future = promise.future();
    std::thread([descriptor = ::fcntl(m_descriptor, F_DUPFD_CLOEXEC, 0), promise = std::move(promise)]() mutable {
        int status = ::flock(descriptor, LOCK_EX);
        while (status != 0 && errno == EINTR) {
            status = ::flock(descriptor, LOCK_EX);
        }
        ::close(descriptor);
        promise.addResult(status == 0);
        promise.finish();
    }).detach();
    return future;
}

InstanceHolder InstanceLock::holder() const {
    QFile file(m_path);
    const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const QList<QByteArray> lines = text.split('\n');
    // A last line without its end is still being written.
    return lines.size() > 2 ? InstanceHolder{QFile::decodeName(lines[0]), lines[1].toLongLong()} : InstanceHolder{};
}

void InstanceLock::describe(const InstanceHolder& holder) {
    const QByteArray text = QFile::encodeName(holder.address) + '\n' + QByteArray::number(holder.processId) + '\n';
    if (::pwrite(m_descriptor, text.constData(), static_cast<size_t>(text.size()), 0) != text.size() ||
        ::ftruncate(m_descriptor, text.size()) != 0) {
        throw failure(m_path);
    }
}

} // namespace quorvane
