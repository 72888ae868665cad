#include "platform/macos/MacUserDefaults.h"

#import <Foundation/Foundation.h>

namespace quorvane {

// Values are read as objects, and their types told by what they are: the typed readers of NSUserDefaults make text of numbers,
// and true of "YES".

struct MacUserDefaults::Store {
    NSUserDefaults* defaults = nil; // none where the system refuses the domain: everything is missing then
    NSString* domain = nil;         // of checks

    id value(const QString& key) const { return [defaults objectForKey:key.toNSString()]; }
    void set(id value, const QString& key) { [defaults setObject:value forKey:key.toNSString()]; }
};

MacUserDefaults::MacUserDefaults()
    : m_store(std::make_unique<Store>()) {
    m_store->defaults = NSUserDefaults.standardUserDefaults;
}

MacUserDefaults::MacUserDefaults(const QString& domain)
    : m_store(std::make_unique<Store>()) {
    m_store->domain = domain.toNSString();
    m_store->defaults = [[NSUserDefaults alloc] initWithSuiteName:m_store->domain];
}

MacUserDefaults::~MacUserDefaults() = default;

std::optional<QString> MacUserDefaults::string(const QString& key) const {
    id value = m_store->value(key);
    if (![value isKindOfClass:NSString.class]) {
        return std::nullopt;
    }
    return QString::fromNSString(static_cast<NSString*>(value));
}

QStringList MacUserDefaults::stringArray(const QString& key) const {
    id value = m_store->value(key);
    QStringList texts;
    if ([value isKindOfClass:NSArray.class]) {
        for (id element in static_cast<NSArray*>(value)) {
            if (![element isKindOfClass:NSString.class]) {
                return {};
            }
            texts.append(QString::fromNSString(static_cast<NSString*>(element)));
        }
    }
    return texts;
}

bool MacUserDefaults::boolean(const QString& key) const {
    id value = m_store->value(key);
    const bool isBoolean = value != nil && CFGetTypeID((__bridge CFTypeRef)value) == CFBooleanGetTypeID();
    return isBoolean && static_cast<NSNumber*>(value).boolValue;
}

void MacUserDefaults::setString(const QString& key, const QString& value) {
    m_store->set(value.toNSString(), key);
}

void MacUserDefaults::setStringArray(const QString& key, const QStringList& value) {
    NSMutableArray<NSString*>* texts = [NSMutableArray arrayWithCapacity:NSUInteger(value.size())];
    for (const QString& text : value) {
        [texts addObject:text.toNSString()];
    }
    m_store->set(texts, key);
}

void MacUserDefaults::setBoolean(const QString& key, bool value) {
    m_store->set(value ? @YES : @NO, key);
}

void MacUserDefaults::remove(const QString& key) {
    [m_store->defaults removeObjectForKey:key.toNSString()];
}

void MacUserDefaults::synchronize() {
    CFPreferencesAppSynchronize(m_store->domain != nil ? (__bridge CFStringRef)m_store->domain
                                                       : kCFPreferencesCurrentApplication);
}

} // namespace quorvane
