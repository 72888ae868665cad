#pragma once

#include "actions/ActionStage.h"
#include "actions/ActiveProfile.h"
#include "actions/BackupActions.h"
#include "actions/BaselineActions.h"
#include "actions/InterruptionActions.h"
#include "actions/LogActions.h"
#include "actions/MaintenanceActions.h"
#include "actions/NetworkActions.h"
#include "actions/ProfileActions.h"
#include "actions/ProfileChanges.h"
#include "actions/ProfileExchange.h"
#include "actions/ProfileSaving.h"
#include "actions/SavedProfiles.h"
#include "actions/SettingsActions.h"
#include "actions/SettingsStatus.h"
#include "actions/SnapshotStatus.h"
#include "actions/StartupEditing.h"
#include "actions/SystemActions.h"
#include "actions/SystemScans.h"
#include "actions/Tasks.h"
#include "actions/Turnstile.h"
#include "actions/TweakActions.h"
#include "core/NotificationCenter.h"
#include "lock/UnlockGate.h"
#include "platform/Host.h"
#include "profiles/MasterProfileState.h"
#include "profiles/ProfileCloudManager.h"
#include "profiles/ProfileLabel.h"
#include "profiles/ProfileManager.h"
#include "runlogs/RunLogWriter.h"
#include "runlogs/RunLogs.h"
#include "system/SystemManager.h"
#include "tweaks/ModeManager.h"

#include <functional>
#include <memory>

namespace quorvane {

/// What a session is made with, beside the operating system: by the window, or by a terminal.
struct SessionParts {
    std::function<std::unique_ptr<UnlockGate>()> makeGate;
    std::function<std::unique_ptr<ProfileLabel>(SystemManager& system)> makeLabel;
    std::function<void()> shutDownPorts; ///< those of the operating system, and those of the window
};

/// What lives as long as the program, made in this order and taken down in the other. Main thread.
class Session {
private:
    SessionParts m_parts;
    Host m_host;

public:
    /// @param host  outlives the session
    Session(const Host& host, SessionParts parts);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    NotificationCenter notifications;
    SystemManager system;
    RunLogs runLogs;
    RunLogWriter runLogWriter; ///< goes behind all that log
    Tasks tasks;
    ModeManager mode;
    std::unique_ptr<UnlockGate> gate;

    ProfileManager profileStore;
    SavedProfiles savedProfiles;
    ProfileCloudManager cloudBackups;
    MasterProfileState workingCopy;
    std::unique_ptr<ProfileLabel> label;

    Turnstile turnstile;
    ActiveProfile activeProfile;
    SnapshotStatus snapshotStatus;
    SettingsStatus settingsStatus;
    SystemScans scans;

    ActionStage stage;
    ProfileActions profileActions;
    ProfileChanges profileChanges;
    ProfileSaving profileSaving;
    ProfileExchange profileExchange;
    TweakActions tweakActions;
    SystemActions systemActions;
    InterruptionActions interruptionActions;
    BackupActions backupActions;
    BaselineActions baselineActions;
    MaintenanceActions maintenanceActions;
    NetworkActions networkActions;
    SettingsActions settingsActions;
    LogActions logActions;
    StartupEditing startupEditing;

    /// Ends every wait on the operating system and on the user, so that whatever runs comes to its end by itself.
    void endPorts() { m_parts.shutDownPorts(); }
    /// Ends when nothing runs on that an action has led to.
    QCoro::Task<void> finished();
    /// The program may go when this has ended.
    QCoro::Task<void> shutDown();
};

} // namespace quorvane
