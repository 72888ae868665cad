#include "platform/macos/CfPropertyList.h"

#include <QDateTime>

#import <Foundation/Foundation.h>

namespace quorvane {

namespace {

/// One beyond 64 bits becomes a fraction.
QVariant numberOf(CFNumberRef number) {
    long long whole = 0;
    if (!CFNumberIsFloatType(number) && CFNumberGetValue(number, kCFNumberSInt64Type, &whole)) {
        return QVariant(qlonglong(whole));
    }
    double fraction = 0;
    CFNumberGetValue(number, kCFNumberFloat64Type, &fraction);
    return QVariant(fraction);
}

PropertyListPart ofValue(const QVariant& value) {
    return {PropertyListPart::Kind::Value, value, {}, {}};
}

PropertyListPart ofDate(CFDateRef date) {
    const std::optional<QDateTime> moment = propertyListDate(CFDateGetAbsoluteTime(date));
    return moment ? ofValue(*moment) : PropertyListPart();
}

PropertyListPart ofArray(NSArray* array) {
    PropertyListPart part{PropertyListPart::Kind::Array, {}, {}, {}};
    for (id element in array) {
        part.parts.append((__bridge const void*)element);
    }
    return part;
}

/// A key of a property list is text.
PropertyListPart ofDictionary(NSDictionary* dictionary) {
    PropertyListPart part{PropertyListPart::Kind::Dictionary, {}, {}, {}};
    for (id key in dictionary) {
        if ([key isKindOfClass:NSString.class]) {
            part.keys.append(QString::fromNSString(static_cast<NSString*>(key)));
            part.parts.append((__bridge const void*)dictionary[key]);
        }
    }
    return part;
}

PropertyListPart partOf(const void* value) {
    const CFTypeRef object = static_cast<CFTypeRef>(value);
    const CFTypeID type = CFGetTypeID(object);
    if (type == CFStringGetTypeID()) {
        return ofValue(QString::fromNSString((__bridge NSString*)object));
    }
    if (type == CFBooleanGetTypeID()) {
        return ofValue(bool(CFBooleanGetValue(static_cast<CFBooleanRef>(object))));
    }
    if (type == CFNumberGetTypeID()) {
        return ofValue(numberOf(static_cast<CFNumberRef>(object)));
    }
    if (type == CFDateGetTypeID()) {
        return ofDate(static_cast<CFDateRef>(object));
    }
    if (type == CFDataGetTypeID()) {
        return ofValue(QByteArray::fromNSData((__bridge NSData*)object));
    }
    if (type == CFArrayGetTypeID()) {
        return ofArray((__bridge NSArray*)object);
    }
    if (type == CFDictionaryGetTypeID()) {
        return ofDictionary((__bridge NSDictionary*)object);
    }
    return {};
}

} // namespace

std::optional<QVariantMap> dictionaryOf(CFTypeRef root, ForeignValues foreign) {
    return propertyListDictionary(root, partOf, foreign);
}

} // namespace quorvane
