#pragma once

#include "platform/Workspace.h"

namespace quorvane {

/// The program among the others by NSApplication. Since macOS 14 to become active is a request, which the system refuses while
/// the user is at work elsewhere: nothing may wait for it.
class MacWorkspace final : public Workspace {
public:
    bool isActive() const override;
    void activateIgnoringOtherApps() override;
    void makeWindowsKeyAndOrderFront() override;
};

} // namespace quorvane
