#include "platform/macos/MacActivity.h"

#import <Foundation/Foundation.h>

namespace quorvane {

struct MacActivity::Token {
    Token() = default;
    ~Token() { [NSProcessInfo.processInfo endActivity:activity]; }
    Token(const Token&) = delete;
    Token& operator=(const Token&) = delete;

    id<NSObject> activity =
        [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep
                                                     reason:@"Quorvane carries out what its user has started."];
};

MacActivity::MacActivity() = default;

MacActivity::~MacActivity() = default;

void MacActivity::setWorking(bool isWorking) {
    if (!isWorking) {
        m_token.reset();
    } else if (m_token == nullptr) {
        m_token = std::make_unique<Token>();
    }
}

} // namespace quorvane
