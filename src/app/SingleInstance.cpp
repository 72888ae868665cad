#include "app/SingleInstance.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QFutureWatcher>
#include <QTimer>

#include <cstring>
#include <stdexcept>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Role = SingleInstance::Role;

/// A start that found the lock taken. It calls the first one, anew when the lock's file names another, until it is
/// answered, or has the lock itself, or the time is over.
class SecondStart {
public:
    explicit SecondStart(InstanceLock& lock)
        : m_lock(lock)
        , m_watcher({lock.path()}) {
        QObject::connect(&m_taken, &QFutureWatcherBase::finished, &m_loop, [this] { endIfTaken(); });
        QObject::connect(&m_watcher, &QFileSystemWatcher::fileChanged, &m_loop, [this] { callTheFirst(); });
        QObject::connect(&m_first, &InstanceCall::answered, &m_loop, [this] { end(Role::Second); });
    }

    Role role(std::chrono::milliseconds patience) {
        QTimer::singleShot(patience, &m_loop, [this] { end(Role::Unanswered); });
        m_taken.setFuture(m_lock.takeWhenFree());
        callTheFirst();
        m_loop.exec();
        return m_role;
    }

private:
    /// One call for each address: a first one that hangs up is about to go, and who follows it has another.
    void callTheFirst() {
        const QString address = m_lock.holder().address;
        if (!address.isEmpty() && address != m_called) {
            m_called = address;
            m_first.call(address);
        }
    }

    void endIfTaken() {
        if (m_taken.result()) {
            end(Role::First);
        }
    }

    void end(Role role) {
        if (m_loop.isRunning()) {
            m_role = role;
            m_loop.quit();
        }
    }

    InstanceLock& m_lock;
    Role m_role = Role::Unanswered;
    QString m_called; ///< the address that was called last
    QEventLoop m_loop;
    QFutureWatcher<bool> m_taken;
    QFileSystemWatcher m_watcher;
    InstanceCall m_first;
};

/// A folder that can't be made is told of by the lock, whose file can't be made then either.
QString lockFileIn(const QString& dataFolder) {
    QDir().mkpath(dataFolder);
    return dataFolder + u"/quorvane.lock"_s;
}

} // namespace

SingleInstance::SingleInstance(const QString& dataFolder)
    : m_lock(lockFileIn(dataFolder)) {
    connect(&m_socket, &InstanceSocket::called, this, &SingleInstance::activationRequested);
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
        QFile::remove(left);
        QDir().rmdir(QFileInfo(left).path());
    }
    m_socketFolder = std::make_unique<QTemporaryDir>(QDir::tempPath() + u"/quorvane-XXXXXX"_s);
    const QString address = m_socketFolder->filePath(u"socket"_s);
    if (!m_socketFolder->isValid()) {
        throw std::runtime_error(address.toStdString() + ": " + m_socketFolder->errorString().toStdString());
    }
    if (const int error = m_socket.listen(address); error != 0) {
        throw std::runtime_error(address.toStdString() + ": " + std::strerror(error));
    }
    m_lock.describe({address, QCoreApplication::applicationPid()});
}

void SingleInstance::stopAnswering() {
    m_socket.close();
}

QString SingleInstance::unansweredText() const {
    return u"Quorvane is already running (process %1) and doesn’t answer. Wait until it does, or end it, and start again."_s
        .arg(m_lock.holder().processId);
}

} // namespace quorvane
