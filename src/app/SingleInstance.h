#pragma once

#include "app/InstanceLock.h"
#include "app/InstanceSocket.h"

#include <QObject>
#include <QTemporaryDir>

#include <chrono>
#include <memory>

namespace quorvane {

/// One program for each user and data folder. The first one holds the folder's lock and listens on a socket in a folder of its
/// own; a further start finds the lock taken, connects, says what it was to open, and is answered by
/// one byte: the first has come forward. What a first
/// one leaves when it is killed, its socket's folder, is removed by the next.
///
/// Needs the application object, and runs its event loop for as long as a first one takes to answer.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    enum class Role {
        First,      ///< holds the data folder until this object goes
        Second,     ///< the first has been told
        Unanswered, ///< there is a first one that doesn't answer
    };

    /// @param dataFolder  made where it is missing
    /// @param files       absolute paths of what this start is to open; a first one is told them
    /// Throws std::runtime_error where nothing can be written there.
    explicit SingleInstance(const QString& dataFolder, const QStringList& files = {});
    ~SingleInstance() override;

    /// Finds out, once. A first one that is still starting, or already ending, is waited for.
    /// Throws std::runtime_error where no socket can be made.
    Role claim(std::chrono::milliseconds patience = std::chrono::seconds(5));

    /// For a first one whose end begins: who starts now waits until it has gone, and is the first then.
    void stopAnswering();

    /// Of an unanswered one, for whoever started the second: what there is, and what can be done.
    QString unansweredText() const;

Q_SIGNALS:
    /// To the first: another start wants it to come forward, and to open files, if any.
    void activationRequested(const QStringList& files);

private:
    void beFirst();

    InstanceLock m_lock;
    QStringList m_files;
    std::unique_ptr<QTemporaryDir> m_socketFolder; ///< only its owner's
    InstanceSocket m_socket;
};

} // namespace quorvane
