#pragma once

#include <QObject>
#include <QSocketNotifier>

#include <memory>

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

private:
    int m_descriptor;
};

/// Where the first start is called by further ones. It answers each call with one byte. Main thread.
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
    void called();

private:
    void answerOthers();

    QString m_path;
    std::unique_ptr<LocalSocket> m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

/// A call to the first start. Main thread.
class InstanceCall : public QObject {
    Q_OBJECT

public:
    /// In place of a call that is under way. Where nobody listens nothing comes of it.
    void call(const QString& path);

Q_SIGNALS:
    void answered();

private:
    void takeAnswer();

    std::unique_ptr<LocalSocket> m_socket;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace quorvane
