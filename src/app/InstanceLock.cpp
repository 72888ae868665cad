#include "app/InstanceLock.h"

#include <QFile>
#include <QList>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

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
    if (m_isHeld) {
        ::flock(m_descriptor, LOCK_UN);
        ::futimens(m_descriptor, nullptr); // its bytes may be the next holder's by now
    }
    ::close(m_descriptor);
}

bool InstanceLock::take() {
    m_isHeld = m_isHeld || ::flock(m_descriptor, LOCK_EX | LOCK_NB) == 0;
    return m_isHeld;
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
