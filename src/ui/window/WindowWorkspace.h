#pragma once

#include "platform/Workspace.h"

namespace quorvane {

/// The program's windows among the others on the screen, by Qt's means.
class WindowWorkspace final : public Workspace {
public:
    bool isActive() const override;
    void activateIgnoringOtherApps() override;
    void makeWindowsKeyAndOrderFront() override;
};

} // namespace quorvane
