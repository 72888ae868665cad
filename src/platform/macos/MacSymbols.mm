#include "platform/SystemSymbols.h"

#include "platform/macos/SymbolPlace.h"

#include <QString>

#import <AppKit/AppKit.h>

namespace quorvane {

namespace {

constexpr CGFloat kRegularWeight = 0; // NSFontWeightRegular, which is a variable of AppKit's

/// Null for a name that this macOS doesn't have.
NSImage* symbolNamed(const QString& name) {
    return [NSImage imageWithSystemSymbolName:name.toNSString() accessibilityDescription:nil];
}

/// Of the strokes that suit the size.
NSImage* configured(NSImage* symbol, int side) {
    return [symbol
        imageWithSymbolConfiguration:[NSImageSymbolConfiguration configurationWithPointSize:side
                                                                                     weight:kRegularWeight
                                                                                      scale:NSImageSymbolScaleMedium]];
}

void draw(NSImage* symbol, const QRectF& place, CGContextRef context) {
    [NSGraphicsContext saveGraphicsState];
    [NSGraphicsContext setCurrentContext:[NSGraphicsContext graphicsContextWithCGContext:context flipped:NO]];
    [symbol drawInRect:NSMakeRect(place.x(), place.y(), place.width(), place.height())];
    [NSGraphicsContext restoreGraphicsState];
}

} // namespace

bool hasSystemSymbol(const QString& name) {
    return symbolNamed(name) != nil;
}

QImage systemSymbolPicture(const QString& name, int side) {
    NSImage* known = symbolNamed(name);
    NSImage* symbol = known == nil ? nil : configured(known, side);
    if (symbol == nil) {
        return {};
    }
    QImage picture(side, side, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    id space = CFBridgingRelease(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    id context = CFBridgingRelease(
        CGBitmapContextCreate(picture.bits(), static_cast<size_t>(side), static_cast<size_t>(side), 8,
                              static_cast<size_t>(picture.bytesPerLine()), (__bridge CGColorSpaceRef)space,
                              uint32_t(kCGImageAlphaPremultipliedFirst) | uint32_t(kCGBitmapByteOrder32Little)));
    if (context == nil) {
        return {};
    }
    draw(symbol, symbolPlace({symbol.size.width, symbol.size.height}, side), (__bridge CGContextRef)context);
    return picture;
}

} // namespace quorvane
