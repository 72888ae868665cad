#include "app/SingleInstance.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QLocalSocket>
#include <QTimer>

#include <optional>
#include <stdexcept>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Role = SingleInstance::Role;

constexpr char kAnswer = '!';

/// A start that found the lock taken. Whenever something happens that could have changed who is first it looks again: when
/// the lock's file is changed, when the first hangs up, when the time is over.
class SecondStart {
public:
    explicit SecondStart(InstanceLock& lock)
        : m_lock(lock)
        , m_watcher({lock.path()}) {
        QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_loop, [this] { look(); });
        QObject::connect(&m_socket, &QLocalSocket::readyRead, &m_loop, [this] { end(Role::Second); });
        QObject::connect(&m_socket, &QLocalSocket::errorOccurred, &m_loop, [this] { takeOver(); });
        QObject::connect(&m_socket, &QLocalSocket::disconnected, &m_loop, [this] { takeOver(); });
    }

    Role role(std::chrono::milliseconds patience) {
        QTimer::singleShot(patience, &m_loop, [this] { end(m_lock.take() ? Role::First : Role::Unanswered); });
        look();
        if (!m_role) {
            m_loop.exec();
        }
        return *m_role;
    }

private:
    void look() {
        takeOver();
        const QString address = m_lock.holder().address;
        if (!m_role && !address.isEmpty() && address != m_called) {
            m_called = address;
            m_socket.abort();
            m_socket.connectToServer(address);
        }
    }

    void takeOver() {
        if (!m_role && m_lock.take()) {
            end(Role::First);
        }
    }

    void end(Role role) {
        m_role = m_role.value_or(role);
        m_loop.quit();
    }

    InstanceLock& m_lock;
    std::optional<Role> m_role;
    QString m_called; ///< the address that was tried last
    QEventLoop m_loop;
    QFileSystemWatcher m_watcher;
    QLocalSocket m_socket;
};

/// A folder that can't be made is told of by the lock, whose file can't be made then either.
QString lockFileIn(const QString& dataFolder) {
    QDir().mkpath(dataFolder);
    return dataFolder + u"/quorvane.lock"_s;
}

} // namespace

SingleInstance::SingleInstance(const QString& dataFolder)
    : m_lock(lockFileIn(dataFolder)) {
    connect(&m_server, &QLocalServer::newConnection, this, &SingleInstance::answerOthers);
}

SingleInstance::~SingleInstance() = default;

SingleInstance::Role SingleInstance::claim(std::chrono::milliseconds patience) {
    const Role role = m_lock.take() ? Role::First : SecondStart(m_lock).role(patience);
    if (role == Role::First) {
        beFirst();
    }
    return role;
}

void SingleInstance::beFirst() {
    const QString left = m_lock.holder().address;
    if (!left.isEmpty()) {
        QLocalServer::removeServer(left);
        QDir().rmdir(QFileInfo(left).path());
    }
    m_socketFolder = std::make_unique<QTemporaryDir>(QDir::tempPath() + u"/quorvane-XXXXXX"_s);
    const QString address = m_socketFolder->filePath(u"socket"_s);
    if (!m_socketFolder->isValid() || !m_server.listen(address)) {
        throw std::runtime_error(address.toStdString() + ": " + m_server.errorString().toStdString());
    }
    m_lock.describe({address, QCoreApplication::applicationPid()});
}

void SingleInstance::answerOthers() {
    while (QLocalSocket* other = m_server.nextPendingConnection()) {
        connect(other, &QLocalSocket::disconnected, other, &QObject::deleteLater);
        other->write(&kAnswer, 1);
        other->disconnectFromServer();
        Q_EMIT activationRequested();
    }
}

void SingleInstance::stopAnswering() {
    m_server.close();
}

QString SingleInstance::unansweredText() const {
    return u"Quorvane is already running (process %1) and doesn’t answer. Wait until it does, or end it, and start again."_s
        .arg(m_lock.holder().processId);
}

} // namespace quorvane
