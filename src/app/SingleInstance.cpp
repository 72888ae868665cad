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

// In a message each file is followed by a null character, which no path holds.

QByteArray messageOf(const QStringList& files) {
    QByteArray message;
    for (const QString& file : files) {
        message += QFile::encodeName(file) + '\0';
    }
    return message;
}

QStringList filesOf(const QByteArray& message) {
    QStringList files;
    const QList<QByteArray> names = message.split('\0');
    for (const QByteArray& name : names) {
        if (!name.isEmpty()) {
            files.append(QFile::decodeName(name));
        }
    }
    return files;
}

/// A start that found the lock taken. It calls the first one, anew when the lock's file names another, until it is
/// answered, or has the lock itself, or the time is over.
class SecondStart {
public:
    SecondStart(InstanceLock& lock, const QStringList& files)
        : m_lock(lock)
        , m_message(messageOf(files))
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
            m_first.call(address, m_message);
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
    QByteArray m_message;
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

SingleInstance::SingleInstance(const QString& dataFolder, const QStringList& files)
    : m_lock(lockFileIn(dataFolder))
    , m_files(files) {
    connect(&m_socket, &InstanceSocket::called, this,
            [this](const QByteArray& message) { Q_EMIT activationRequested(filesOf(message)); });
}

SingleInstance::~SingleInstance() = default;

SingleInstance::Role SingleInstance::claim(std::chrono::milliseconds patience) {
    const Role role = m_lock.take() ? Role::First : SecondStart(m_lock, m_files).role(patience);
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
