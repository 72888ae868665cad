#pragma once

#include "platform/Host.h"
#include "platform/macos/MacBackgroundTaskPermissions.h"
#include "platform/macos/MacBiometrics.h"
#include "platform/macos/MacBundles.h"
#include "platform/macos/MacCloudDrive.h"
#include "platform/macos/MacDisplays.h"
#include "platform/macos/MacKeychain.h"
#include "platform/macos/MacLoginService.h"
#include "platform/macos/MacMachine.h"
#include "platform/macos/MacNotifications.h"
#include "platform/macos/MacPropertyLists.h"
#include "platform/macos/MacScriptEngine.h"
#include "platform/macos/MacUserDefaults.h"
#include "platform/portable/DiskFileManager.h"
#include "platform/portable/ProcessCommandLauncher.h"
#include "platform/portable/SystemClock.h"

namespace quorvane {

/// All ports, connected to the Mac that the program runs on. Made on the main thread, after the application object.
class MacHost {
public:
    /// @param environment  of the children; see prepareProcess
    explicit MacHost(const QProcessEnvironment& environment);

    /// @param filePanels  belong to whoever has the windows
    Host host(FilePanels& filePanels);
    FileManager& files() { return m_files; }
    UserDefaults& defaults() { return m_defaults; }
    /// Ends all children, scripts and waits; see CommandLauncher::shutDown.
    void shutDown();

private:
    DiskFileManager m_files;
    MacUserDefaults m_defaults;
    MacMachine m_machine;
    MacPropertyLists m_propertyLists;
    MacBundles m_bundles;
    MacBackgroundTaskPermissions m_permissions;
    MacCloudDrive m_cloud;
    MacKeychain m_keychain;
    MacBiometrics m_biometrics;
    MacDisplays m_displays;
    MacNotifications m_notifications;
    MacLoginService m_loginService;
    SystemClock m_clock;
    ProcessCommandLauncher m_commands;
    MacScriptEngine m_scripts;
};

} // namespace quorvane
