#include "platform/macos/MacAppearance.h"

#import <AppKit/AppKit.h>

namespace quorvane {

void MacAppearance::setAppearance(std::optional<ColorScheme> scheme) {
    if (!scheme) {
        NSApp.appearance = nil;
        return;
    }
    NSApp.appearance =
        [NSAppearance appearanceNamed:*scheme == ColorScheme::Dark ? NSAppearanceNameDarkAqua : NSAppearanceNameAqua];
}

} // namespace quorvane
