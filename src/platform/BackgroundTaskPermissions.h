#pragma once

#include <QString>

#include <functional>

namespace quorvane {

/// The system library that may hold two private entry points, by which the background task manager learns what the user
/// doesn't allow. Main thread.
class BackgroundTaskPermissions {
public:
    BackgroundTaskPermissions() = default;
    BackgroundTaskPermissions(const BackgroundTaskPermissions&) = delete;
    BackgroundTaskPermissions& operator=(const BackgroundTaskPermissions&) = delete;
    virtual ~BackgroundTaskPermissions() = default;

    /// Sets whether the user allows a background item; true when the system took it.
    /// @param parentApplication  the path of the application bundle that carries the item
    /// @param label              of the item
    using SetUserAllowed = std::function<bool(const QString& parentApplication, const QString& label, bool isAllowed)>;

    /// Opens the library and keeps it open for the life of the process; false when it can't be opened.
    virtual bool openLibrary(const QString& path) = 0;
    /// The entry point of an open library by its symbol's name; an empty function when the library lacks it.
    virtual SetUserAllowed entryPoint(const QString& symbol) = 0;
};

} // namespace quorvane
