#include "platform/macos/MacBundles.h"

#include "platform/macos/BundleRules.h"
#include "platform/macos/CfPropertyList.h"
#include "platform/macos/CfRef.h"

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

namespace quorvane {

namespace {

bool isOnReadOnlyVolume(NSURL* place) {
    NSNumber* isReadOnly = nil;
    [place getResourceValue:&isReadOnly forKey:NSURLVolumeIsReadOnlyKey error:nil];
    return isReadOnly.boolValue;
}

bool isInstalled(NSURL* place) {
    return countsAsInstalled(QString::fromNSString(place.path), isOnReadOnlyVolume(place));
}

} // namespace

std::optional<QVariantMap> MacBundles::infoDictionary(const QString& bundlePath) const {
    @autoreleasepool {
        NSString* path = bundlePath.toNSString();
        BOOL isFolder = NO;
        if (![NSFileManager.defaultManager fileExistsAtPath:path isDirectory:&isFolder] || !isFolder) {
            return std::nullopt;
        }
        // Not NSBundle, which isn't for several threads and remembers what it has read.
        const CfRef<CFDictionaryRef> info(
            CFBundleCopyInfoDictionaryInDirectory((__bridge CFURLRef)[NSURL fileURLWithPath:path isDirectory:YES]));
        // The system puts the place of the file in, which is no value of a property list.
        return info ? dictionaryOf(info.get(), ForeignValues::LeftOut).value_or(QVariantMap()) : QVariantMap();
    }
}

std::optional<QVariantMap> MacBundles::infoDictionaryWithIdentifier(const QString& bundleIdentifier) const {
    @autoreleasepool {
        NSArray<NSURL*>* places =
            [NSWorkspace.sharedWorkspace URLsForApplicationsWithBundleIdentifier:bundleIdentifier.toNSString()];
        for (NSURL* place in places) { // the one that would be opened comes first
            if (isInstalled(place)) {
                return infoDictionary(QString::fromNSString(place.path));
            }
        }
        return std::nullopt;
    }
}

} // namespace quorvane
