#include "platform/macos/MacNotifications.h"

#include "platform/macos/ReturnPath.h"

#import <Foundation/Foundation.h>

#include <utility>

/// What the notification centre tells. Known to it without being kept alive.
@interface QVNotificationObserver : NSObject
@property(nonatomic) std::function<void()> handler;
- (void)told:(NSNotification*)notification;
@end

@implementation QVNotificationObserver
- (void)told:(NSNotification*)notification {
    self.handler();
}
@end

namespace quorvane {

namespace {

/// The centre tells on the main thread's run loop. The handler is called from the event loop thereafter, and may end this.
class MacNotificationObservation final : public NotificationObservation {
public:
    MacNotificationObservation(const QString& name, std::function<void()> handler) {
        m_observer.handler = [this, handler = std::move(handler)] { m_path.send(handler); };
        // AppKit suspends the centre while another program is active, and notifications wait until then unless they are to be
        // delivered at once (NSDistributedNotificationCenter.h).
        [[NSDistributedNotificationCenter defaultCenter]
                   addObserver:m_observer
                      selector:@selector(told:)
                          name:name.toNSString()
                        object:nil
            suspensionBehavior:NSNotificationSuspensionBehaviorDeliverImmediately];
    }
    ~MacNotificationObservation() override {
        [[NSDistributedNotificationCenter defaultCenter] removeObserver:m_observer];
    }

private:
    ReturnPath m_path;
    QVNotificationObserver* m_observer = [[QVNotificationObserver alloc] init];
};

} // namespace

std::unique_ptr<NotificationObservation> MacNotifications::observe(const QString& name, std::function<void()> handler) {
    return std::make_unique<MacNotificationObservation>(name, std::move(handler));
}

} // namespace quorvane
