#pragma once

namespace quorvane {

class BackgroundTaskPermissions;
class Bundles;
class Clock;
class CloudDrive;
class CommandLauncher;
class FileManager;
class Machine;
class PropertyLists;
class ScriptEngine;
class UserDefaults;

/// Everything the program asks of the operating system. The ports outlive the objects that use them.
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
};

} // namespace quorvane
