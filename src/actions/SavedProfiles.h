#pragma once

#include "profiles/ProfileManager.h"

#include <QFuture>
#include <QObject>
#include <QPromise>

#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

class Clock;
class NotificationCenter;
class Tasks;

/// The saved profiles as they are on the disk, for everybody who shows them. They are read in turns, once for each change,
/// from the first time on that somebody asks for them. Main thread.
class SavedProfiles : public QObject {
    Q_OBJECT

public:
    SavedProfiles(ProfileManager& store, Clock& clock, NotificationCenter& notifications, Tasks& tasks,
                  QObject* parent = nullptr);

    /// As they are after the last change that was told. Those who ask meanwhile share one reading.
    QFuture<ProfileListing> list();
    /// As they were read last; empty before that.
    const ProfileListing& known() const { return m_known; }
    /// False as long as an empty list only means that nothing was read yet.
    bool wasRead() const { return m_wasRead; }
    /// None when it isn't among the known ones.
    std::optional<UnifiedProfile> find(const QUuid& id) const;

    /// To be called when the files may be others than those that were read.
    void readAnew();
    /// To be called when the program itself has changed them: posts QuorvaneProfilesChanged as well.
    void tellChanged();

    /// The saved profile of that name, removed from the disk and from here.
    /// @return false when one of that name is still there
    QCoro::Task<bool> remove(QString name);

Q_SIGNALS:
    /// The known ones have been read anew.
    void changed();

private:
    void beginReading();
    QCoro::Task<void> read();

    ProfileManager& m_store;
    Clock& m_clock;
    NotificationCenter& m_notifications;
    Tasks& m_tasks;
    ProfileListing m_known;
    bool m_isAskedFor = false;
    bool m_isCurrent = false;
    bool m_wasRead = false;
    std::optional<QPromise<ProfileListing>> m_reading; ///< while one is under way
};

} // namespace quorvane
