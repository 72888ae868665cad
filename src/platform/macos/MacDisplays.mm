#include "platform/macos/MacDisplays.h"

#include "platform/macos/DisplayRules.h"

#include <QColorSpace>

#import <AppKit/AppKit.h>
#import <ImageIO/ImageIO.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

// ---- Screens

QRectF rectOf(NSRect rect) {
    return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

Display displayOf(NSScreen* screen, double firstScreenHeight) {
    id number = screen.deviceDescription[@"NSScreenNumber"]; // NSScreen.h, deviceDescription
    Display display;
    if ([number isKindOfClass:[NSNumber class]]) {
        display.number = static_cast<NSNumber*>(number).unsignedIntValue;
    }
    display.localizedName = QString::fromNSString(screen.localizedName);
    display.frame = frameFromAbove(rectOf(screen.frame), firstScreenHeight);
    display.backingScaleFactor = screen.backingScaleFactor;
    return display;
}

QList<Display> displaysOf(NSArray<NSScreen*>* screens) {
    QList<Display> displays;
    for (NSScreen* screen in screens) {
        displays.append(displayOf(screen, screens.firstObject.frame.size.height));
    }
    return displays;
}

/// Looked up anew each time: AppKit makes other objects when a display is plugged or unplugged (NSScreen.h). Null for one that
/// has gone.
NSScreen* screenOf(const Display& display) {
    NSArray<NSScreen*>* screens = NSScreen.screens;
    const std::optional<qsizetype> place = placeOf(display, displaysOf(screens));
    return place ? screens[static_cast<NSUInteger>(*place)] : nil;
}

// ---- Pictures

std::optional<int> sideOf(CGImageSourceRef source) {
    NSDictionary* properties = CFBridgingRelease(CGImageSourceCopyPropertiesAtIndex(source, 0, nullptr));
    id width = properties[(__bridge id)kCGImagePropertyPixelWidth];
    id height = properties[(__bridge id)kCGImagePropertyPixelHeight];
    const bool isKnown = [width isKindOfClass:[NSNumber class]] && [height isKindOfClass:[NSNumber class]];
    return isKnown ? decodedSide(static_cast<NSNumber*>(width).doubleValue, static_cast<NSNumber*>(height).doubleValue)
                   : std::nullopt;
}

/// A "thumbnail" as large as the picture itself: that way ImageIO turns it upright.
id decodedImage(CGImageSourceRef source, int side) {
    NSDictionary* options = @{
        (__bridge id)kCGImageSourceCreateThumbnailFromImageAlways : @YES,
        (__bridge id)kCGImageSourceCreateThumbnailWithTransform : @YES,
        (__bridge id)kCGImageSourceThumbnailMaxPixelSize : @(side),
    };
    return CFBridgingRelease(CGImageSourceCreateThumbnailAtIndex(source, 0, (__bridge CFDictionaryRef)options));
}

/// Its own where it is one of red, green and blue, into which it can be drawn without a change of its colours.
id colorSpaceFor(CGImageRef image) {
    CGColorSpaceRef own = CGImageGetColorSpace(image);
    if (own != nullptr && CGColorSpaceGetModel(own) == kCGColorSpaceModelRGB) {
        return (__bridge id)own;
    }
    return CFBridgingRelease(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
}

QColorSpace qtColorSpace(CGColorSpaceRef space) {
    NSData* profile = CFBridgingRelease(CGColorSpaceCopyICCData(space));
    return profile == nil ? QColorSpace() : QColorSpace::fromIccProfile(QByteArray::fromNSData(profile));
}

/// Null where the system has no context for such pixels.
QImage drawn(CGImageRef image, CGColorSpaceRef space) {
    QImage picture(static_cast<int>(CGImageGetWidth(image)), static_cast<int>(CGImageGetHeight(image)),
                   QImage::Format_ARGB32_Premultiplied);
    if (picture.isNull()) {
        return {};
    }
    picture.fill(Qt::transparent);
    id context = CFBridgingRelease(CGBitmapContextCreate(
        picture.bits(), static_cast<size_t>(picture.width()), static_cast<size_t>(picture.height()), 8,
        static_cast<size_t>(picture.bytesPerLine()), space,
        uint32_t(kCGImageAlphaPremultipliedFirst) | uint32_t(kCGBitmapByteOrder32Little)));
    if (context == nil) {
        return {};
    }
    CGContextDrawImage((__bridge CGContextRef)context, CGRectMake(0, 0, picture.width(), picture.height()), image);
    picture.setColorSpace(qtColorSpace(space));
    return picture;
}

/// The first picture of the file, whichever it calls its primary one. Null for what can't be read.
QImage pictureOf(NSURL* file) {
    id source = CFBridgingRelease(CGImageSourceCreateWithURL((__bridge CFURLRef)file, nullptr));
    const std::optional<int> side = source == nil ? std::nullopt : sideOf((__bridge CGImageSourceRef)source);
    id image = side ? decodedImage((__bridge CGImageSourceRef)source, *side) : nil;
    if (image == nil) {
        return {};
    }
    id space = colorSpaceFor((__bridge CGImageRef)image);
    return space == nil ? QImage() : drawn((__bridge CGImageRef)image, (__bridge CGColorSpaceRef)space);
}

} // namespace

QList<Display> MacDisplays::screens() const {
    return displaysOf(NSScreen.screens);
}

std::optional<QString> MacDisplays::desktopPicture(const Display& display) const {
    NSScreen* screen = screenOf(display);
    NSURL* picture = screen == nil ? nil : [NSWorkspace.sharedWorkspace desktopImageURLForScreen:screen];
    return picture == nil ? std::nullopt : std::optional(QString::fromNSString(picture.path));
}

std::optional<QString> MacDisplays::setDesktopPicture(const Display& display, const QString& path) {
    NSScreen* screen = screenOf(display);
    if (screen == nil) {
        return u"The display isn’t connected."_s;
    }
    NSDictionary<NSWorkspaceDesktopImageOptionKey, id>* options = @{
        NSWorkspaceDesktopImageScalingKey : @(NSImageScaleProportionallyUpOrDown),
        NSWorkspaceDesktopImageAllowClippingKey : @YES,
    };
    NSError* error = nil;
    const bool isSet = [NSWorkspace.sharedWorkspace setDesktopImageURL:[NSURL fileURLWithPath:path.toNSString() isDirectory:NO]
                                                             forScreen:screen
                                                               options:options
                                                                 error:&error];
    return isSet ? std::nullopt : std::optional(QString::fromNSString(error.localizedDescription));
}

QFuture<QImage> MacDisplays::loadPicture(const QString& path) {
    NSURL* file = [NSURL fileURLWithPath:path.toNSString() isDirectory:NO];
    const auto question = m_pictures.ask();
    dispatch_async(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), ^{
        @autoreleasepool {
            question.answer(pictureOf(file));
        }
    });
    return question.future;
}

} // namespace quorvane
