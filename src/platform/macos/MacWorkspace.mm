#include "platform/macos/MacWorkspace.h"

#import <AppKit/AppKit.h>

namespace quorvane {

namespace {

/// Windows that were closed are still there for AppKit, and would come back.
bool isOpen(NSWindow* window) {
    return window.canBecomeKeyWindow && (window.isVisible || window.isMiniaturized);
}

} // namespace

bool MacWorkspace::isActive() const {
    return NSApp.isActive;
}

void MacWorkspace::activateIgnoringOtherApps() {
    [NSApp activate];
}

void MacWorkspace::makeWindowsKeyAndOrderFront() {
    for (NSWindow* window in NSApp.windows) {
        if (isOpen(window)) {
            [window deminiaturize:nil];
            [window makeKeyAndOrderFront:nil];
        }
    }
    activateIgnoringOtherApps();
}

} // namespace quorvane
