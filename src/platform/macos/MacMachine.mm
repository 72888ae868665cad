#include "platform/macos/MacMachine.h"

#include "platform/macos/MachineRules.h"

#include <QDir>
#include <QSysInfo>

#import <Foundation/Foundation.h>

#include <unistd.h>

namespace quorvane {

namespace {

/// Without the "/" that some of the system's answers end in.
QString folder(NSString* path) {
    return QDir::cleanPath(QString::fromNSString(path));
}

NSString* applicationSupport() {
    NSArray<NSURL*>* folders = [NSFileManager.defaultManager URLsForDirectory:NSApplicationSupportDirectory
                                                                    inDomains:NSUserDomainMask];
    return folders.firstObject.path;
}

QString systemVersionText(NSOperatingSystemVersion version) {
    return versionText(long(version.majorVersion), long(version.minorVersion), long(version.patchVersion));
}

} // namespace

struct MacMachine::Formatter {
    NSDateFormatter* formatter = nil;
};

// NSHost's localizedName is the name in the settings; its other names would be looked up in the network. Qt's machineUniqueId is
// the platform's UUID on a Mac (qsysinfo.cpp).
MacMachine::MacMachine()
    : m_homeFolder(folder(NSHomeDirectory()))
    , m_applicationSupportFolder(folder(applicationSupport()))
    , m_temporaryFolder(folder(NSTemporaryDirectory()))
    , m_computerName(QString::fromNSString([NSHost currentHost].localizedName))
    , m_hardwareId(QString::fromLatin1(QSysInfo::machineUniqueId()))
    , m_userId(getuid())
    , m_systemVersion(systemVersionText([NSProcessInfo processInfo].operatingSystemVersion))
    , m_formatter(std::make_unique<Formatter>()) {
    m_formatter->formatter = [[NSDateFormatter alloc] init];
    m_formatter->formatter.dateStyle = NSDateFormatterMediumStyle;
    m_formatter->formatter.timeStyle = NSDateFormatterShortStyle;
}

MacMachine::~MacMachine() = default;

QString MacMachine::dateAndTimeText(const QDateTime& moment) const {
    return QString::fromNSString([m_formatter->formatter stringFromDate:moment.toNSDate()]);
}

} // namespace quorvane
