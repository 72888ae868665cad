#pragma once

#include "platform/SystemNotifications.h"
#include "simulator/Mac.h"

#include <QByteArray>
#include <QFileSystemWatcher>

namespace quorvane {

/// Tells of changes of what a simulated Mac keeps in the files of one folder, whoever makes them. A file is replaced by each
/// change, so it is the folder that is watched.
class MacObservation final : public NotificationObservation {
public:
    /// @param hostFolder  where the files lie, on the host
    /// @param state       what is told of: the handler is called from the event loop when it is another than before
    MacObservation(const QString& hostFolder, std::function<QByteArray()> state, std::function<void()> handler);

private:
    void tellOfChange();

    std::function<QByteArray()> m_state;
    std::function<void()> m_handler;
    QFileSystemWatcher m_watcher;
    QByteArray m_last;
};

/// Where a simulated Mac's user has their preferences, on the host.
QString usersPreferencesFolder(const macsim::Mac& mac);

} // namespace quorvane
