#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>
#include <vector>

namespace quorvane {

/// A socket of this machine, open as long as this is.
class LocalSocket {
public:
    LocalSocket();
    LocalSocket(const LocalSocket&) = delete;
    LocalSocket& operator=(const LocalSocket&) = delete;
    explicit LocalSocket(int descriptor);
    ~LocalSocket();

    int descriptor() const { return m_descriptor; }
    /// @return 0, or the system's error
    int connectTo(const QString& path);

private:
    int m_descriptor;
};

/// One call, from the side of the first start. Main thread.
class InstanceCaller : public QObject {
    Q_OBJECT

public:
    explicit InstanceCaller(int descriptor);

Q_SIGNALS:
    /// All was said, and is answered.
    void answered(const QByteArray& message);
    /// It has come to its end, answered or not; the last signal.
    void ended();

private:
    void takeMore();

    LocalSocket m_socket;
    QSocketNotifier m_notifier;
    QByteArray m_message;
};

/// Where the first start is called by further ones. A call is a message, to its end, and is answered with one byte. Main thread.
class InstanceSocket : public QObject {
    Q_OBJECT

public:
    ~InstanceSocket() override;

    /// @param path  of a file that isn't there yet
    /// @return 0, or the system's error
    int listen(const QString& path);
    /// Nobody can call any more; who hasn't been answered never is. The file goes.
    void close();

Q_SIGNALS:
    /// A call has been answered.
    void called(const QByteArray& message);

private:
    void acceptCallers();
    void endCall(InstanceCaller* caller);

    QString m_path;
    std::vector<std::unique_ptr<InstanceCaller>> m_callers; ///< those who haven't said everything yet
    std::unique_ptr<LocalSocket> m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

/// A call to the first start. Main thread.
class InstanceCall : public QObject {
    Q_OBJECT

public:
    /// In place of a call that is under way. Where nobody listens, or the message is longer than what is taken (64 KiB), nothing
    /// comes of it.
    void call(const QString& path, const QByteArray& message);

Q_SIGNALS:
    void answered();

private:
    void takeAnswer();

    std::unique_ptr<LocalSocket> m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace quorvane
