#pragma once

#include "platform/BackgroundTaskPermissions.h"

namespace quorvane {

/// The library that the system keeps among its shared ones: there is no file at its path, so that only opening it tells whether
/// it is there. Main thread; a call may wait for the background task manager.
class MacBackgroundTaskPermissions final : public BackgroundTaskPermissions {
public:
    bool openLibrary(const QString& path) override;
    SetUserAllowed entryPoint(const QString& symbol) override;

private:
    void* m_library = nullptr; ///< never closed
};

} // namespace quorvane
