#pragma once

namespace quorvane {

class AppearanceManager;
class ApplyReviewCoordinator;
class Clock;
class DocumentationOpener;
class LockActions;
class LockManager;
class WindowListener;
class Workspace;
class Session;

/// What every view of the window sees. All of it outlives the windows.
struct ViewEnvironment {
    Session& session;
    LockManager& lock;
    LockActions& lockActions;
    AppearanceManager& appearance;
    ApplyReviewCoordinator& reviews;
    WindowListener& listener; ///< of everything that is started from a window or the menu
    Workspace& workspace;
    Clock& clock;
    DocumentationOpener& documentation;
};

} // namespace quorvane
