#include "platform/macos/MacCloudDrive.h"

#include "platform/FileManager.h"
#include "platform/macos/CloudFileRules.h"

#import <Foundation/Foundation.h>

#include <cerrno>
#include <vector>

namespace quorvane {

/// What is done to a file in agreement with those who have it open.
struct MacCloudDrive::Change {
    NSURL* target;
    NSFileCoordinatorWritingOptions options;
    /// Makes it at the place that the coordinator gives, which may be another than the target.
    BOOL (^make)(NSURL* place, NSError** error);
};

/// Those at work, each as long as its change. -cancel may be sent from any thread (NSFileCoordinator.h).
struct MacCloudDrive::Coordinators {
    std::vector<__weak NSFileCoordinator*> atWork;
};

namespace {

/// A new one each time: what an NSURL has been asked for it doesn't look up again (NSURL.h).
NSURL* freshUrl(const QString& path) {
    return [NSURL fileURLWithPath:path.toNSString() isDirectory:NO];
}

QString wordsOf(NSError* error) {
    return QString::fromNSString(error.localizedDescription);
}

/// A folder would go with all that is in it.
BOOL isFolder(NSURL* place) {
    NSNumber* answer = nil;
    return [place getResourceValue:&answer forKey:NSURLIsDirectoryKey error:nil] && answer.boolValue;
}

BOOL removeFile(NSURL* place, NSError** error) {
    if (!isFolder(place)) {
        return [NSFileManager.defaultManager removeItemAtURL:place error:error];
    }
    if (error != nullptr) {
        *error = [NSError errorWithDomain:NSPOSIXErrorDomain code:EISDIR userInfo:nil];
    }
    return NO;
}

} // namespace

MacCloudDrive::MacCloudDrive()
    : m_coordinators(std::make_unique<Coordinators>()) {}

MacCloudDrive::~MacCloudDrive() {
    shutDown();
}

bool MacCloudDrive::hasAccount() const {
    return NSFileManager.defaultManager.ubiquityIdentityToken != nil;
}

/// The system may make the container first, or ask the network; Apple forbids the main thread for it (NSFileManager.h).
QFuture<std::optional<QString>> MacCloudDrive::containerFolder() {
    const auto question = m_folders.ask();
    dispatch_async(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), ^{
      @autoreleasepool {
          NSURL* folder = [NSFileManager.defaultManager URLForUbiquityContainerIdentifier:@(kCloudContainer)];
          question.answer(folder == nil ? std::nullopt : std::optional(QString::fromNSString(folder.path)));
      }
    });
    return question.future;
}

QStringList MacCloudDrive::list(const QString& folder) const {
    NSError* error = nil;
    NSArray<NSURL*>* items = [NSFileManager.defaultManager
          contentsOfDirectoryAtURL:[NSURL fileURLWithPath:folder.toNSString() isDirectory:YES]
        includingPropertiesForKeys:nil
                           options:0
                             error:&error];
    if (items == nil) {
        throw FileError(folder, wordsOf(error));
    }
    QStringList names;
    for (NSURL* item in items) {
        names.append(QString::fromNSString(item.lastPathComponent));
    }
    return cloudFileNames(names);
}

std::optional<QDateTime> MacCloudDrive::modificationDate(const QString& path) const {
    NSDate* date = nil;
    if (!isUbiquitous(path) || ![freshUrl(path) getResourceValue:&date
                                                          forKey:NSURLContentModificationDateKey
                                                           error:nil]) {
        return std::nullopt;
    }
    return date == nil ? std::nullopt : std::optional(QDateTime::fromNSDate(date).toUTC());
}

bool MacCloudDrive::isUbiquitous(const QString& path) const {
    return [NSFileManager.defaultManager isUbiquitousItemAtURL:freshUrl(path)];
}

/// Returns at once; a refusal shows in that the file never becomes current.
void MacCloudDrive::startDownloading(const QString& path) {
    [NSFileManager.defaultManager startDownloadingUbiquitousItemAtURL:freshUrl(path) error:nil];
}

bool MacCloudDrive::isCurrent(const QString& path) const {
    NSURLUbiquitousItemDownloadingStatus status = nil;
    return isUbiquitous(path) &&
           [freshUrl(path) getResourceValue:&status forKey:NSURLUbiquitousItemDownloadingStatusKey error:nil] &&
           [status isEqualToString:NSURLUbiquitousItemDownloadingStatusCurrent];
}

/// Not together with NSDataWritingWithoutOverwriting, which would raise an exception (NSData.h).
bool MacCloudDrive::create(const QString& path, const QByteArray& bytes) {
    return !m_changes.isClosed() && [bytes.toNSData() writeToURL:freshUrl(path) options:NSDataWritingAtomic error:nil];
}

QFuture<std::optional<QString>> MacCloudDrive::replace(const QString& path, const QByteArray& bytes) {
    NSData* data = bytes.toNSData();
    return coordinated({freshUrl(path), NSFileCoordinatorWritingForReplacing, ^BOOL(NSURL* place, NSError** error) {
                            return [data writeToURL:place options:NSDataWritingAtomic error:error];
}
});
}

QFuture<std::optional<QString>> MacCloudDrive::remove(const QString& path) {
    return coordinated({freshUrl(path), NSFileCoordinatorWritingForDeleting, ^BOOL(NSURL* place, NSError** error) {
                            return removeFile(place, error);
}
});
}

/// On a thread of the system's, which may wait for whoever has the file open until the coordinator is cancelled.
QFuture<std::optional<QString>> MacCloudDrive::coordinated(const Change& change) {
    const auto question = m_changes.ask();
    if (m_changes.isClosed()) {
        return question.future;
    }
    NSFileCoordinator* coordinator = [[NSFileCoordinator alloc] initWithFilePresenter:nil];
    std::erase(m_coordinators->atWork, nil);
    m_coordinators->atWork.push_back(coordinator);
    const Change made = change;
    dispatch_async(dispatch_get_global_queue(QOS_CLASS_USER_INITIATED, 0), ^{
      @autoreleasepool {
          NSError* refused = nil;
          __block NSError* failed = nil;
          __block BOOL isDone = NO;
          [coordinator coordinateWritingItemAtURL:made.target
                                          options:made.options
                                            error:&refused
                                       byAccessor:^(NSURL* place) {
                                         NSError* error = nil;
                                         isDone = made.make(place, &error);
                                         failed = error;
                                       }];
          question.answer(failureOf({static_cast<bool>(isDone), wordsOf(refused), wordsOf(failed)}));
      }
    });
    return question.future;
}

void MacCloudDrive::shutDown() {
    m_folders.close();
    m_changes.close();
    for (NSFileCoordinator* coordinator : m_coordinators->atWork) {
        [coordinator cancel];
    }
}

} // namespace quorvane
