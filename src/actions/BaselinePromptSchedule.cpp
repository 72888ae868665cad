#include "actions/BaselinePromptSchedule.h"

#include "actions/ActiveProfile.h"
#include "actions/SystemScans.h"
#include "actions/Tasks.h"
#include "actions/Turnstile.h"
#include "lock/LockManager.h"
#include "platform/Clock.h"
#include "snapshots/MasterSystemBaselineManager.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <utility>

namespace quorvane {

namespace {

constexpr std::chrono::milliseconds kMomentToLook(800);

} // namespace

BaselinePromptSchedule::BaselinePromptSchedule(const Parts& parts, std::function<void()> offer, QObject* parent)
    : QObject(parent)
    , m_parts(parts)
    , m_offer(std::move(offer)) {
    connect(&m_parts.turnstile, &Turnstile::idleChanged, this, &BaselinePromptSchedule::update);
    connect(&m_parts.scans, &SystemScans::ended, this, &BaselinePromptSchedule::update);
    connect(&m_parts.active, &ActiveProfile::changed, this, &BaselinePromptSchedule::update);
    connect(&m_parts.lock, &LockManager::isUnlockedChanged, this, &BaselinePromptSchedule::update);
}

void BaselinePromptSchedule::windowAppeared() {
    ++m_window;
    m_wasSeen = false;
    m_parts.tasks.start(waitForTheUser(m_window));
}

void BaselinePromptSchedule::windowClosed() {
    ++m_window;
    m_wasSeen = false;
}

QCoro::Task<void> BaselinePromptSchedule::waitForTheUser(int window) {
    co_await m_parts.clock.sleepFor(kMomentToLook);
    if (window == m_window) {
        m_wasSeen = true;
        update();
    }
}

void BaselinePromptSchedule::update() {
    if (!m_isLooking && isTheMoment()) {
        m_parts.tasks.start(offerWhereThereIsNone());
    }
}

bool BaselinePromptSchedule::isTheMoment() const {
    return !m_isSettled && m_wasSeen && m_parts.scans.isUpToDate() && m_parts.turnstile.isIdle() &&
           m_parts.lock.isUnlocked() && !isOfSavedProfile(m_parts.active.current());
}

/// The look takes seconds where there is none: nobody has to wait for it, and much may have changed by its end.
QCoro::Task<void> BaselinePromptSchedule::offerWhereThereIsNone() {
    m_isLooking = true;
    const bool exists = co_await m_parts.baselines.hasMasterBaseline();
    m_isLooking = false;
    const bool isOffered = !exists && isTheMoment();
    m_isSettled = exists || isOffered;
    if (isOffered) {
        m_offer();
    }
}

} // namespace quorvane
