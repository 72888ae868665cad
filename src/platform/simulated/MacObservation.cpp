#include "platform/simulated/MacObservation.h"

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

MacObservation::MacObservation(const QString& hostFolder, std::function<QByteArray()> state,
                               std::function<void()> handler)
    : m_state(std::move(state))
    , m_handler(std::move(handler)) {
    m_watcher.addPath(hostFolder);
    m_last = m_state(); // once it is watched, so that no change falls in between
    // Queued, so that a handler may end its observation: the watcher is busy while it tells of a change itself.
    QObject::connect(
        &m_watcher, &QFileSystemWatcher::directoryChanged, &m_watcher, [this] { tellOfChange(); },
        Qt::QueuedConnection);
}

void MacObservation::tellOfChange() {
    const QByteArray state = m_state();
    if (std::exchange(m_last, state) != state) {
        const std::function<void()> handler = m_handler;
        handler(); // this may be gone by the end of it
    }
}

QString usersPreferencesFolder(const macsim::Mac& mac) {
    const QString folder = mac.homeFolder(macsim::Actor::User) + u"/Library/Preferences"_s;
    return mac.hostFolder() + mac.volume(macsim::Actor::User).canonicalPath(folder);
}

} // namespace quorvane
