#pragma once

namespace quorvane {

class Displays;
class FileManager;
class Machine;
class PropertyLists;
class SystemNotifications;
class UserDefaults;

/// What the label on the wallpaper needs of the system.
struct WallpaperPorts {
    FileManager& files;
    const Machine& machine;
    const PropertyLists& propertyLists;
    Displays& displays;
    UserDefaults& defaults;
    SystemNotifications& notifications;
};

} // namespace quorvane
