#include "platform/macos/MacPropertyLists.h"

#include "platform/macos/CfPropertyList.h"
#include "platform/macos/PropertyListFile.h"

#import <Foundation/Foundation.h>

namespace quorvane {

std::optional<QVariantMap> MacPropertyLists::dictionary(const QString& path) const {
    const std::optional<QByteArray> bytes = propertyListBytes(path);
    if (!bytes) {
        return std::nullopt;
    }
    @autoreleasepool { // a caller may read thousands on one thread
        NSPropertyListFormat format = NSPropertyListXMLFormat_v1_0;
        id root =
            [NSPropertyListSerialization propertyListWithData:bytes->toRawNSData() // the bytes outlive the reading
                                                      options:NSPropertyListImmutable
                                                       format:&format
                                                        error:nil];
        if (root == nil || format == NSPropertyListOpenStepFormat) {
            return std::nullopt;
        }
        return dictionaryOf((__bridge CFTypeRef)root, ForeignValues::Refused);
    }
}

} // namespace quorvane
