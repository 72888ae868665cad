#pragma once

namespace quorvane {

class CommandLauncher;
class FileManager;
class Machine;
class ScriptEngine;
class UserDefaults;

/// Everything the program asks of the operating system. The ports outlive the objects that use them.
struct Host {
    CommandLauncher& commands;
    ScriptEngine& scripts;
    FileManager& files;
    UserDefaults& defaults;
    Machine& machine;
};

} // namespace quorvane
