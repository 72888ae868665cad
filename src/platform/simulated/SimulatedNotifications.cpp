#include "platform/simulated/SimulatedNotifications.h"

#include <QFileSystemWatcher>
#include <QObject>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// The state subject whose changes a notification tells of; null when it is another notification.
const char* subjectOf(const QString& name) {
    if (name == u"com.apple.desktop"_s) {
        return "displays";
    }
    return name == u"AppleInterfaceThemeChangedNotification"_s ? "appearance" : nullptr;
}

/// A state file is replaced by each change, so it is the folder that is watched.
class StateObservation final : public NotificationObservation {
public:
    StateObservation(const macsim::Mac& mac, const char* subject, std::function<void()> handler)
        : m_mac(mac)
        , m_subject(subject)
        , m_handler(std::move(handler)) {
        m_watcher.addPath(mac.hostFolder() + macsim::kStateFolder.toString());
        m_revision = mac.state().revision(subject); // once it is watched, so that no change falls in between
        // Queued, so that a handler may end its observation: the watcher is busy while it tells of a change itself.
        QObject::connect(
            &m_watcher, &QFileSystemWatcher::directoryChanged, &m_watcher, [this] { tellOfChange(); },
            Qt::QueuedConnection);
    }

private:
    void tellOfChange() {
        const QByteArray revision = m_mac.state().revision(m_subject);
        if (std::exchange(m_revision, revision) != revision) {
            const std::function<void()> handler = m_handler;
            handler(); // this may be gone by the end of it
        }
    }

    const macsim::Mac& m_mac;
    const char* m_subject;
    std::function<void()> m_handler;
    QByteArray m_revision;
    QFileSystemWatcher m_watcher;
};

} // namespace

std::unique_ptr<NotificationObservation> SimulatedNotifications::observe(const QString& name,
                                                                         std::function<void()> handler) {
    if (const char* subject = subjectOf(name)) {
        return std::make_unique<StateObservation>(m_mac, subject, std::move(handler));
    }
    return std::make_unique<NotificationObservation>();
}

} // namespace quorvane
