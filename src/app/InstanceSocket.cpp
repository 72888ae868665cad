#include "app/InstanceSocket.h"

#include <QFile>

#include <algorithm>
#include <array>
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
constexpr qsizetype kLongestMessage = 65536;

// Whoever has gone meanwhile is an error here, and no signal that would end the program. Not every Mac's send knows of it, so there it
// is the socket's.
#ifdef MSG_NOSIGNAL
constexpr int kSendFlags = MSG_NOSIGNAL;
#else
constexpr int kSendFlags = 0;
#endif

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

/// True when the whole message is on its way, with its end.
bool isSaid(const LocalSocket& socket, const QByteArray& message) {
    return message.size() <= kLongestMessage &&
           ::send(socket.descriptor(), message.constData(), static_cast<size_t>(message.size()), kSendFlags) ==
               message.size() &&
           ::shutdown(socket.descriptor(), SHUT_WR) == 0;
}

} // namespace

LocalSocket::LocalSocket()
    : LocalSocket(::socket(AF_UNIX, SOCK_STREAM, 0)) {}

LocalSocket::LocalSocket(int descriptor)
    : m_descriptor(descriptor) {
    ::fcntl(m_descriptor, F_SETFD, FD_CLOEXEC);
    ::fcntl(m_descriptor, F_SETFL, O_NONBLOCK);
#ifdef SO_NOSIGPIPE
    const int isQuiet = 1;
    ::setsockopt(m_descriptor, SOL_SOCKET, SO_NOSIGPIPE, &isQuiet, sizeof isQuiet);
#endif
}

int LocalSocket::connectTo(const QString& path) {
    return callWithAddress(&::connect, *this, path);
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
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &InstanceSocket::acceptCallers);
    return 0;
}

void InstanceSocket::close() {
    m_callers.clear();
    if (m_socket != nullptr) {
        m_notifier.reset();
        m_socket.reset();
        QFile::remove(m_path);
    }
}

void InstanceSocket::acceptCallers() {
    while (m_socket != nullptr) {
        const int descriptor = ::accept(m_socket->descriptor(), nullptr, nullptr);
        if (descriptor < 0) {
            return;
        }
        m_callers.push_back(std::make_unique<InstanceCaller>(descriptor));
        InstanceCaller* const caller = m_callers.back().get();
        connect(caller, &InstanceCaller::answered, this, &InstanceSocket::called);
        connect(
            caller, &InstanceCaller::ended, this, [this, caller] { endCall(caller); }, Qt::QueuedConnection);
    }
}

void InstanceSocket::endCall(InstanceCaller* caller) {
    m_callers.erase(
        std::remove_if(m_callers.begin(), m_callers.end(), [caller](const auto& each) { return each.get() == caller; }),
        m_callers.end());
}

InstanceCaller::InstanceCaller(int descriptor)
    : m_socket(descriptor)
    , m_notifier(descriptor, QSocketNotifier::Read) {
    connect(&m_notifier, &QSocketNotifier::activated, this, &InstanceCaller::takeMore);
}

/// Until the end of the message; what is too long, or breaks off, is no call.
void InstanceCaller::takeMore() {
    std::array<char, 4096> piece{};
    ssize_t taken = 0;
    while ((taken = ::read(m_socket.descriptor(), piece.data(), piece.size())) > 0 &&
           m_message.size() <= kLongestMessage) {
        m_message.append(piece.data(), taken);
    }
    if (taken < 0 && (errno == EAGAIN || errno == EINTR)) {
        return;
    }
    m_notifier.setEnabled(false);
    if (taken == 0) {
        // Who has gone meanwhile has been told by nobody, but has called.
        [[maybe_unused]] const ssize_t sent = ::send(m_socket.descriptor(), &kAnswer, 1, kSendFlags);
        Q_EMIT answered(m_message);
    }
    Q_EMIT ended();
}

// ---- A further one

void InstanceCall::call(const QString& path, const QByteArray& message) {
    m_notifier.reset();
    m_socket = std::make_unique<LocalSocket>();
    if (m_socket->connectTo(path) == 0 && isSaid(*m_socket, message)) {
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
