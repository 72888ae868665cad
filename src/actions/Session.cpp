#include "actions/Session.h"

#include "platform/Clock.h"

#include <QCoroFuture>

#include <utility>

namespace quorvane {

Session::Session(const Host& host, SessionParts parts)
    : m_parts(std::move(parts))
    , m_host(host)
    , system(m_host, notifications)
    , runLogs(m_host.files, m_host.machine)
    , runLogWriter(system, runLogs, m_host.clock)
    , tasks(system)
    , mode(m_host.defaults)
    , gate(m_parts.makeGate())
    , profileStore(m_host.files, profilesDirectory(m_host.machine))
    , savedProfiles(profileStore, m_host.clock, notifications, tasks)
    , cloudBackups(m_host.files, m_host.cloud, m_host.clock, m_host.machine)
    , label(m_parts.makeLabel(system))
    , turnstile(system)
    , activeProfile(system, savedProfiles, m_host.defaults)
    , snapshotStatus(m_host.files, m_host.machine, notifications)
    , settingsStatus(m_host.defaults, *label, m_host.loginService, m_host.files, m_host.machine)
    , scans(system, savedProfiles, turnstile, tasks)
    , stage(system, turnstile, *gate)
    , profileActions(stage, {system, m_host.defaults, notifications, profileStore, savedProfiles, cloudBackups,
                             workingCopy, mode, activeProfile, *label, tasks})
    , profileChanges({system, m_host.defaults, savedProfiles, workingCopy, activeProfile, *label})
    , profileSaving(stage, {system, m_host.clock, profileStore, savedProfiles, cloudBackups, workingCopy, activeProfile,
                            profileActions, profileChanges})
    , profileExchange(stage,
                      {m_host.clock, m_host.filePanels, profileStore, savedProfiles, workingCopy, profileChanges})
    , tweakActions(stage, system)
    , systemActions(stage, system, scans, activeProfile)
    , interruptionActions(stage, {system, profileActions})
    , backupActions(stage, {cloudBackups, profileStore, savedProfiles, profileChanges, tasks, system, m_host.machine})
    , baselineActions(stage, {system, settingsStatus, tasks})
    , maintenanceActions(stage, system)
    , networkActions(stage, system)
    , settingsActions(stage, {system, m_host.defaults, m_host.loginService, *label, activeProfile, settingsStatus})
    , logActions(stage, {system, m_host.filePanels, m_host.machine, runLogs, runLogWriter})
    , startupEditing({stage, turnstile, system, workingCopy, tasks}) {}

/// Signals that are queued lead to work of their own.
QCoro::Task<void> Session::finished() {
    co_await m_host.clock.sleepFor(std::chrono::milliseconds(0));
    co_await label->finished();
    co_await tasks.finished();
    runLogWriter.flush();
}

QCoro::Task<void> Session::shutDown() {
    endPorts();
    co_await finished();
}

} // namespace quorvane
