#pragma once

#include "simulator/Json.h"

#include <QByteArray>
#include <QString>

#include <functional>

namespace macsim {

/// What macOS keeps in databases of its own (power, Spotlight, launchd, processes, …): one JSON file per subject
/// under /private/var/db/simulator, written atomically. Several processes of the simulated Mac share it.
class StateStore {
public:
    /// @param hostFolder  the folder of the state files on the host
    explicit StateStore(QString hostFolder);

    /// The whole state of a subject ("power"); null where there is none.
    Json read(const char* subject) const;
    /// A mark that changes with every write of a subject: what was read since a mark was taken is still true while the
    /// mark is the same. Much cheaper than reading.
    QByteArray revision(const char* subject) const;
    /// Reads, changes and writes one subject under its lock. Nothing is written when `change` leaves it as it was.
    void update(const char* subject, const std::function<void(Json&)>& change) const;

private:
    QString m_hostFolder;
};

} // namespace macsim
