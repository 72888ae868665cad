#pragma once

#include "platform/Host.h"
#include "platform/portable/DiskFileManager.h"
#include "platform/portable/ProcessCommandLauncher.h"
#include "platform/portable/SystemClock.h"
#include "platform/simulated/AbsentFilePanels.h"
#include "platform/simulated/AuthorizationPrompt.h"
#include "platform/simulated/BiometricPrompt.h"
#include "platform/simulated/FaultyCommands.h"
#include "platform/simulated/FaultyFileManager.h"
#include "platform/simulated/SimulatedBackgroundTaskPermissions.h"
#include "platform/simulated/SimulatedBiometrics.h"
#include "platform/simulated/SimulatedBundles.h"
#include "platform/simulated/SimulatedCloudDrive.h"
#include "platform/simulated/SimulatedDisplays.h"
#include "platform/simulated/SimulatedFileManager.h"
#include "platform/simulated/SimulatedKeychain.h"
#include "platform/simulated/SimulatedLoginService.h"
#include "platform/simulated/SimulatedMachine.h"
#include "platform/simulated/SimulatedNotifications.h"
#include "platform/simulated/SimulatedPropertyLists.h"
#include "platform/simulated/SimulatedScriptEngine.h"
#include "platform/simulated/SimulatedSystemLook.h"
#include "platform/simulated/SimulatedUserDefaults.h"
#include "simulator/Mac.h"

namespace quorvane {

/// What a simulated host is made with, beside the Mac's folder. Paths are the host's; empty ones are left out.
struct SimulatedHostOptions {
    QString
        program; ///< the `macsim` program (macsimBesideProgram); the Mac's commands are made to lead to it where they lead elsewhere
    QString faultsFile;  ///< what goes wrong on purpose; see macsim::Faults, FileFaults and CommandCounter
    QString journalFile; ///< a further file for the journal
    BiometricPrompt* finger = nullptr; ///< who is asked for a finger; without anybody every question is cancelled
    FilePanels* filePanels = nullptr;  ///< in which files are chosen; without them nothing ever is
};

/// All ports, connected to one simulated Mac.
class SimulatedHost {
public:
    /// Throws std::exception when the folder holds no simulated Mac or the faults can't be read.
    SimulatedHost(const QString& macFolder, AuthorizationPrompt& authorization, const SimulatedHostOptions& options);

    const macsim::Mac& mac() const { return m_mac; }
    Host host();
    /// Asked for by a window alone.
    SystemLook& systemLook() { return m_systemLook; }
    /// Ends all children, scripts and waits; see CommandLauncher::shutDown.
    void shutDown();

private:
    macsim::Mac m_mac;
    QProcessEnvironment m_environment;
    SimulatedFileManager m_files;
    FaultyFileManager m_faultyFiles;
    SimulatedUserDefaults m_defaults;
    SimulatedMachine m_machine;
    SimulatedPropertyLists m_propertyLists;
    SimulatedBundles m_bundles;
    SimulatedBackgroundTaskPermissions m_permissions;
    SimulatedCloudDrive m_cloud;
    BiometricPolicy m_nobody{BiometricAnswer::Cancel};
    SimulatedKeychain m_keychain;
    SimulatedBiometrics m_biometrics;
    SimulatedDisplays m_displays;
    SimulatedNotifications m_notifications;
    DiskFileManager m_disk; ///< of the computer that the Mac is simulated on
    AbsentFilePanels m_noPanels{m_disk};
    FilePanels& m_filePanels;
    SimulatedLoginService m_loginService;
    SimulatedSystemLook m_systemLook;
    SystemClock m_clock;
    ProcessCommandLauncher m_commands;
    SimulatedScriptEngine m_scripts;
    CommandCounter m_counter;
    FaultyCommandLauncher m_faultyCommands{m_commands, m_counter};
    FaultyScriptEngine m_faultyScripts{m_scripts, m_counter};
};

/// The `macsim` program, which lies beside the one that runs.
QString macsimBesideProgram();

/// The environment of a process of the simulated Mac's user. Throws std::invalid_argument for faults that can't be
/// understood.
QProcessEnvironment simulatedEnvironment(const macsim::Mac& mac, const SimulatedHostOptions& options);

} // namespace quorvane
