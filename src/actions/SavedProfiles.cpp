#include "actions/SavedProfiles.h"

#include "actions/Tasks.h"
#include "core/NotificationCenter.h"
#include "core/Turns.h"
#include "profiles/ProfileNames.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <utility>

namespace quorvane {

SavedProfiles::SavedProfiles(ProfileManager& store, Clock& clock, NotificationCenter& notifications, Tasks& tasks,
                             QObject* parent)
    : QObject(parent)
    , m_store(store)
    , m_clock(clock)
    , m_notifications(notifications)
    , m_tasks(tasks) {}

QFuture<ProfileListing> SavedProfiles::list() {
    m_isAskedFor = true;
    if (!m_reading && m_isCurrent) {
        return QtFuture::makeReadyFuture(m_known);
    }
    if (!m_reading) {
        m_reading.emplace().start();
        const QFuture<ProfileListing> coming = m_reading->future();
        beginReading();
        return coming;
    }
    return m_reading->future();
}

std::optional<UnifiedProfile> SavedProfiles::find(const QUuid& id) const {
    const auto found = std::find_if(m_known.profiles.cbegin(), m_known.profiles.cend(),
                                    [&id](const UnifiedProfile& profile) { return profile.id == id; });
    return found == m_known.profiles.cend() ? std::nullopt : std::optional(*found);
}

void SavedProfiles::readAnew() {
    m_isCurrent = false;
    if (m_isAskedFor) {
        list();
    }
}

void SavedProfiles::tellChanged() {
    readAnew();
    m_notifications.post(kQuorvaneProfilesChanged, {});
}

QCoro::Task<bool> SavedProfiles::remove(QString name) {
    m_store.deleteProfile(name);
    tellChanged();
    const ProfileListing left = co_await list();
    const QString key = profileNameKey(name);
    co_return std::none_of(left.profiles.cbegin(), left.profiles.cend(),
                           [&key](const UnifiedProfile& profile) { return profileNameKey(profile.name) == key; });
}

void SavedProfiles::beginReading() {
    m_tasks.start(read());
}

/// A change that comes meanwhile makes it begin anew, so that nobody gets what is stale already. When the program quits the
/// reading stops half-way, and what it has is all that anybody gets.
QCoro::Task<void> SavedProfiles::read() {
    ProfileListing listing;
    bool isWhole = false;
    do {
        m_isCurrent = true;
        isWhole = false;
        ProfileManager::Reading reading = m_store.reading();
        co_await inTurns(m_clock, [&reading, &isWhole] {
            const bool hasMore = reading.step();
            isWhole = !hasMore;
            return hasMore;
        });
        listing = reading.listing();
    } while (isWhole && !m_isCurrent);
    m_isCurrent = m_isCurrent && isWhole;
    m_known = listing;
    m_wasRead = m_wasRead || isWhole;
    QPromise<ProfileListing> promise = std::move(*std::exchange(m_reading, std::nullopt));
    promise.addResult(listing);
    promise.finish();
    Q_EMIT changed();
}

} // namespace quorvane
