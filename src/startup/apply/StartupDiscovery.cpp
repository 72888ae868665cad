#include "startup/apply/StartupDiscovery.h"

#include "core/Collation.h"
#include "core/ExcludedNames.h"
#include "startup/background/BackgroundLabels.h"
#include "startup/launchd/LaunchItemNames.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = StartupItemKind;

StartupItem launchStartupItem(const LaunchFolder& folder, const QString& fileName, const PropertyLists& propertyLists,
                              const Bundles& bundles) {
    StartupItem item;
    item.id = launchItemId(fileName);
    item.path = folder.path + u'/' + fileName;
    item.name = launchItemDisplayName(item.path, fileName, propertyLists, bundles);
    item.kind = looksLikeBackgroundAgent(fileName) ? Kind::backgroundAgent
                                                   : (folder.isDaemons ? Kind::launchDaemon : Kind::launchAgent);
    item.isProtected = isExcludedName(fileName);
    item.launchIdentifier = fileName;
    return item;
}

} // namespace

QList<StartupItem> launchStartupItems(const QList<LaunchFolderListing>& listings, const PropertyLists& propertyLists,
                                      const Bundles& bundles) {
    QList<StartupItem> items;
    QSet<QString> seen;
    for (const LaunchFolderListing& listing : listings) {
        for (const QString& fileName : listing.fileNames) {
            if (fileName.endsWith(u".plist"_s) && !seen.contains(fileName)) {
                seen.insert(fileName); // the first folder wins
                items.append(launchStartupItem(listing.folder, fileName, propertyLists, bundles));
            }
        }
    }
    return items;
}

void protectByRecords(QList<StartupItem>& launchItems, const QList<BackgroundTaskItem>& records) {
    const QSet<QString> names = protectedLaunchPlists(BackgroundTaskList(records));
    for (StartupItem& item : launchItems) {
        item.isProtected = item.isProtected || (item.launchIdentifier && names.contains(*item.launchIdentifier));
    }
}

std::optional<StartupItem> backgroundTaskStartupItem(const BackgroundTaskItem& record) {
    const std::optional<QString> label = backgroundItemLabel(record);
    if (!label) {
        return std::nullopt;
    }
    StartupItem item;
    item.id = backgroundItemId(*label);
    item.name = record.name.isEmpty() || record.name == u"(null)"_s ? *label : record.name;
    item.path = record.url.value_or(record.executablePath.value_or(record.bundleIdentifier.value_or(*label)));
    item.kind = Kind::backgroundLoginItem;
    item.runsAtStartup = isActive(record);
    item.launchIdentifier = label;
    return item;
}

QList<StartupItem> backgroundStartupItems(const QList<BackgroundTaskItem>& records) {
    const BackgroundTaskList list(records);
    QList<StartupItem> items;
    for (const BackgroundTaskItem& record : records) {
        if (!isLoginRecord(record) || list.isProtected(record)) {
            continue;
        }
        std::optional<StartupItem> item = backgroundTaskStartupItem(record);
        if (item && !isOwnLabel(*item->launchIdentifier)) {
            items.append(*std::move(item));
        }
    }
    return items;
}

QList<StartupItem> mergedSources(const QList<QList<StartupItem>>& sources) {
    QList<StartupItem> items;
    QSet<QString> seen;
    for (const QList<StartupItem>& source : sources) {
        for (const StartupItem& item : source) {
            if (!seen.contains(item.id)) {
                seen.insert(item.id);
                items.append(item);
            }
        }
    }
    sortLocalized(items, &StartupItem::name);
    return items;
}

} // namespace quorvane
