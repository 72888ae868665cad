#include "actions/SnapshotStatus.h"

#include "core/NotificationCenter.h"

#include <utility>

namespace quorvane {

SnapshotStatus::SnapshotStatus(FileManager& files, const Machine& machine, const NotificationCenter& notifications,
                               QObject* parent)
    : QObject(parent)
    , m_snapshots(files, machine) {
    connect(&notifications, &NotificationCenter::posted, this, [this](const QString& name) {
        if (name == kQuorvaneRestoreBaselineSaved) {
            readAnew();
        }
    });
}

const std::optional<SavedSnapshot>& SnapshotStatus::current() {
    if (!std::exchange(m_wasRead, true)) {
        m_current = read();
    }
    return m_current;
}

void SnapshotStatus::readAnew() {
    if (!m_wasRead) {
        return;
    }
    std::optional<SavedSnapshot> now = read();
    if (now != m_current) {
        m_current = std::move(now);
        Q_EMIT changed();
    }
}

std::optional<SavedSnapshot> SnapshotStatus::read() const {
    const std::optional<SystemSnapshot> snapshot = m_snapshots.load();
    return snapshot ? std::optional(SavedSnapshot{snapshot->label, snapshot->dateCreated}) : std::nullopt;
}

} // namespace quorvane
