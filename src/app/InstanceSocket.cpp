#include "app/InstanceSocket.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace quorvane {

namespace {

constexpr char kAnswer = '!';
constexpr int kWaitingCalls = 16;

using SocketAddressCall = int (*)(int, const sockaddr*, socklen_t);

/// Binds or connects. @return 0, or the system's error
int callWithAddress(SocketAddressCall function, const LocalSocket& socket, const QString& path) {
    const QByteArray name = QFile::encodeName(path);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (name.size() >= static_cast<qsizetype>(sizeof address.sun_path)) {
        return ENAMETOOLONG;
    }
    std::memcpy(address.sun_path, name.constData(), static_cast<size_t>(name.size()));
    return function(socket.descriptor(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 ? 0 : errno;
}

} // namespace

LocalSocket::LocalSocket()
    : LocalSocket(::socket(AF_UNIX, SOCK_STREAM, 0)) {}

LocalSocket::LocalSocket(int descriptor)
    : m_descriptor(descriptor) {
    ::fcntl(m_descriptor, F_SETFD, FD_CLOEXEC);
    ::fcntl(m_descriptor, F_SETFL, O_NONBLOCK);
}

LocalSocket::~LocalSocket() {
    ::close(m_descriptor);
}

// ---- The first

InstanceSocket::~InstanceSocket() {
    close();
}

int InstanceSocket::listen(const QString& path) {
    auto socket = std::make_unique<LocalSocket>();
    if (const int error = callWithAddress(&::bind, *socket, path); error != 0) {
        return error;
    }
    m_path = path;
    m_socket = std::move(socket);
    if (::listen(m_socket->descriptor(), kWaitingCalls) != 0) {
        const int error = errno;
        close();
        return error;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_socket->descriptor(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &InstanceSocket::answerOthers);
    return 0;
}

void InstanceSocket::close() {
    if (m_socket != nullptr) {
        m_notifier.reset();
        m_socket.reset();
        QFile::remove(m_path);
    }
}

void InstanceSocket::answerOthers() {
    while (m_socket != nullptr) {
        const int descriptor = ::accept(m_socket->descriptor(), nullptr, nullptr);
        if (descriptor < 0) {
            return;
        }
        const LocalSocket other(descriptor);
        // Who has gone meanwhile has been told by nobody, but has called.
        [[maybe_unused]] const ssize_t sent = ::send(descriptor, &kAnswer, 1, MSG_NOSIGNAL);
        Q_EMIT called();
    }
}

// ---- A further one

void InstanceCall::call(const QString& path) {
    m_notifier.reset();
    m_socket = std::make_unique<LocalSocket>();
    if (callWithAddress(&::connect, *m_socket, path) == 0) {
        m_notifier = std::make_unique<QSocketNotifier>(m_socket->descriptor(), QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &InstanceCall::takeAnswer);
    }
}

/// A first one that has hung up is about to go.
void InstanceCall::takeAnswer() {
    char answer = 0;
    const ssize_t taken = ::read(m_socket->descriptor(), &answer, 1);
    m_notifier->setEnabled(false);
    if (taken == 1 && answer == kAnswer) {
        Q_EMIT answered();
    }
}

} // namespace quorvane
