#pragma once

namespace quorvane {

class BackgroundTaskPermissions;
class Biometrics;
class Bundles;
class Clock;
class CloudDrive;
class CommandLauncher;
class Displays;
class FileManager;
class FilePanels;
class Keychain;
class LoginService;
class Machine;
class PropertyLists;
class ScriptEngine;
class SystemNotifications;
class UserDefaults;

/// Everything the program asks of the operating system, but for what stands in a window of its own (AlertPresenter, Workspace,
/// Appearance, SystemLook). The ports outlive the objects that use them.
struct Host {
    CommandLauncher& commands;
    ScriptEngine& scripts;
    FileManager& files;
    UserDefaults& defaults;
    Machine& machine;
    PropertyLists& propertyLists;
    Bundles& bundles;
    BackgroundTaskPermissions& backgroundTaskPermissions;
    CloudDrive& cloud;
    Clock& clock;
    Keychain& keychain;
    Biometrics& biometrics;
    Displays& displays;
    SystemNotifications& notifications;
    FilePanels& filePanels;
    LoginService& loginService;
};

} // namespace quorvane
