#include "actions/Launch.h"

#include "actions/Session.h"
#include "appearance/AppearanceManager.h"
#include "lock/LockManager.h"
#include "platform/Clock.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

Launch::Launch(const Parts& parts)
    : m_parts(parts)
    , m_baselinePrompt(
          {parts.clock, parts.session.tasks, parts.session.turnstile, parts.session.scans, parts.session.activeProfile,
           parts.lock, parts.session.system.masterBaselines()},
          [parts] { parts.session.tasks.start(parts.session.systemActions.offerMasterBaseline(parts.listener)); })
    , m_interruption(
          {parts.session.system, parts.session.tasks, parts.session.turnstile, parts.lock},
          [parts] { return parts.session.interruptionActions.offer(parts.listener); },
          [this] { m_parts.session.tasks.start(lookAround()); }) {}

void Launch::windowAppeared() {
    m_parts.appearance.applyAppearance();
    m_parts.lock.lockIfEnabled();
    m_parts.session.system.log(u"Ready."_s);
    m_parts.session.system.log(u"Excluded keywords: ableton, logic, vst, plugin, traktor, serato, rekordbox"_s);
    m_baselinePrompt.windowAppeared();
}

void Launch::windowPainted() {
    m_parts.session.savedProfiles.readAnew();
    m_parts.session.savedProfiles.list();
    m_interruption.windowPainted();
}

void Launch::windowClosed() {
    m_baselinePrompt.windowClosed();
}

/// Each begins in a turn of its own, so that the window answers in between. What runs at login isn't looked for: with the first
/// question to System Events the system asks its user, who is to see by what page or step that is caused.
QCoro::Task<void> Launch::lookAround() {
    Session& session = m_parts.session;
    constexpr std::chrono::milliseconds oneTurn(0);
    session.scans.request();
    co_await m_parts.clock.sleepFor(oneTurn);
    session.tasks.start(session.label->updateAtStart({}));
    co_await m_parts.clock.sleepFor(oneTurn);
    session.system.performanceApplications();
}

} // namespace quorvane
