#include "maccheck/PostedNotification.h"

#include <QString>

#import <Foundation/Foundation.h>

namespace quorvane {

void postNotification(const QString& name) {
    [[NSDistributedNotificationCenter defaultCenter] postNotificationName:name.toNSString()
                                                                   object:nil
                                                                 userInfo:nil
                                                       deliverImmediately:YES];
}

} // namespace quorvane
