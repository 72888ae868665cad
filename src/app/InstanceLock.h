#pragma once

#include <QString>

namespace quorvane {

/// Who holds a data folder.
struct InstanceHolder {
    QString address; ///< of the socket on which it is told of further starts, or was
    qint64 processId = 0;
};

/// One holder at a time for a data folder, by a lock on a file in it. The system ends the lock with the process, however that
/// ends, so none is ever left over; what the file says is only a hint at who holds it. The file is changed when the lock is
/// let go, so that those who watch it need not ask again and again.
class InstanceLock {
public:
    /// Throws std::runtime_error that names the file, where it can't be opened.
    explicit InstanceLock(const QString& path);
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;
    /// Lets go.
    ~InstanceLock();

    const QString& path() const { return m_path; }
    /// True when this is the holder from now on, or has been.
    bool take();
    /// Who holds the file, or held it last, as far as a holder has said so.
    InstanceHolder holder() const;
    /// For the holder: what `holder` says of it.
    void describe(const InstanceHolder& holder);

private:
    QString m_path;
    int m_descriptor;
    bool m_isHeld = false;
};

} // namespace quorvane
