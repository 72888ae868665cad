#pragma once

#include "snapshots/SnapshotManager.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <optional>

namespace quorvane {

class NotificationCenter;

/// What is shown of the snapshot.
struct SavedSnapshot {
    std::optional<QString> label;
    QDateTime dateCreated;

    bool operator==(const SavedSnapshot&) const = default;
};

/// The snapshot that lies on the disk, for everybody who shows it. It is read at the first use, and anew whenever a restore
/// baseline was saved. Main thread.
class SnapshotStatus : public QObject {
    Q_OBJECT

public:
    SnapshotStatus(FileManager& files, const Machine& machine, const NotificationCenter& notifications,
                   QObject* parent = nullptr);

    /// None where there is none, or none that can be read.
    const std::optional<SavedSnapshot>& current();
    /// To be called when the file may be another one. Nothing is read before the first use.
    void readAnew();

Q_SIGNALS:
    void changed();

private:
    std::optional<SavedSnapshot> read() const;

    SnapshotManager m_snapshots;
    std::optional<SavedSnapshot> m_current;
    bool m_wasRead = false;
};

} // namespace quorvane
