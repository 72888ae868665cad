#include "platform/macos/MacSystemLook.h"

#include "platform/SystemNotifications.h"
#include "platform/macos/ReturnPath.h"

#import <AppKit/AppKit.h>

#include <utility>

/// Is told by AppKit, mostly in the midst of drawing.
@interface QVLookObserver : NSObject
@property(nonatomic) std::function<void()> handler;
- (void)activated:(NSNotification*)notification;
@end

@implementation QVLookObserver
- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)application
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    self.handler();
}
- (void)activated:(NSNotification*)notification {
    self.handler();
}
@end

namespace quorvane {

namespace {

/// "effectiveAppearance" of NSApplication may be observed (NSAppearance.h, NSAppearanceCustomization).
NSString* const kAppearancePath = @"effectiveAppearance";

class MacLookObservation final : public NotificationObservation {
public:
    explicit MacLookObservation(std::function<void()> handler) {
        m_observer.handler = [this, handler = std::move(handler)] { m_path.send(handler); };
        [NSApp addObserver:m_observer forKeyPath:kAppearancePath options:NSKeyValueObservingOptionNew context:nullptr];
        [[NSNotificationCenter defaultCenter] addObserver:m_observer
                                                 selector:@selector(activated:)
                                                     name:NSApplicationDidBecomeActiveNotification
                                                   object:nil];
    }
    ~MacLookObservation() override {
        [[NSNotificationCenter defaultCenter] removeObserver:m_observer];
        [NSApp removeObserver:m_observer forKeyPath:kAppearancePath];
    }

private:
    ReturnPath m_path;
    QVLookObserver* m_observer = [[QVLookObserver alloc] init];
};

bool isDarkAppearance(NSAppearance* appearance) {
    NSAppearanceName nearest =
        [appearance bestMatchFromAppearancesWithNames:@[ NSAppearanceNameAqua, NSAppearanceNameDarkAqua ]];
    return [NSAppearanceNameDarkAqua isEqualToString:nearest];
}

bool isDarkInPreferences() {
    id style = [NSUserDefaults.standardUserDefaults objectForKey:@"AppleInterfaceStyle"];
    return [style isKindOfClass:[NSString class]] && [@"Dark" isEqualToString:static_cast<NSString*>(style)];
}

} // namespace

/// While the program has an appearance of its own (Appearance), AppKit tells that one for the effective one.
ColorScheme MacSystemLook::scheme() const {
    const bool isDark = NSApp.appearance == nil ? isDarkAppearance(NSApp.effectiveAppearance) : isDarkInPreferences();
    return isDark ? ColorScheme::Dark : ColorScheme::Light;
}

bool MacSystemLook::reducesMotion() const {
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldReduceMotion;
}

bool MacSystemLook::increasesContrast() const {
    return NSWorkspace.sharedWorkspace.accessibilityDisplayShouldIncreaseContrast;
}

std::unique_ptr<NotificationObservation> MacSystemLook::observe(std::function<void()> handler) {
    return std::make_unique<MacLookObservation>(std::move(handler));
}

} // namespace quorvane
