#include "startup/apply/StartupDiscovery.h"

#include "core/Collation.h"
#include "core/ExcludedNames.h"
#include "core/Paths.h"
#include "startup/background/BackgroundLabels.h"
#include "startup/background/BackgroundState.h"
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

QList<StartupItem> launchStartupItems(const LaunchdReadings& launchd, const QList<BackgroundTaskItem>& records,
                                      const PropertyLists& propertyLists, const Bundles& bundles) {
    const BackgroundTaskList list(records);
    QList<StartupItem> items;
    QSet<QString> seen;
    for (const LaunchPlist& plist : launchd.plists()) {
        if (!seen.contains(plist.fileName)) {
            seen.insert(plist.fileName); // the first folder wins
            items.append(launchStartupItem(plist.folder, plist.fileName, propertyLists, bundles));
            items.last().runsAtStartup = isFileOn(plist.fileName, list, launchd).value_or(true);
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

QList<StartupItem> backgroundStartupItems(const QList<BackgroundTaskItem>& records, const LaunchdReadings& launchd) {
    const BackgroundTaskList list(records);
    QList<StartupItem> items;
    for (const BackgroundTaskItem& record : records) {
        if (!isLoginRecord(record) || list.isProtected(record)) {
            continue;
        }
        std::optional<StartupItem> item = backgroundTaskStartupItem(record);
        if (item && !isOwnLabel(*item->launchIdentifier)) {
            item->runsAtStartup = isOn(record, launchd).value_or(item->runsAtStartup);
            items.append(*std::move(item));
        }
    }
    return items;
}

StartupItem waitingStartupItem(const WaitingService& waiting) {
    const QString fileName = lastPathComponent(waiting.path);
    const bool isPlist = waiting.path.startsWith(u"/Library/LaunchDaemons/"_s) && isLaunchPlistName(fileName);
    const QString label = waiting.knownAs.isEmpty() ? waiting.service.label : waiting.knownAs;
    StartupItem item;
    item.id = isPlist ? launchItemId(fileName) : backgroundItemId(label);
    item.name = waiting.shownName();
    item.path = waiting.path;
    item.kind = isPlist ? Kind::launchDaemon : Kind::backgroundLoginItem;
    item.launchIdentifier = isPlist ? fileName : label;
    return item;
}

QList<StartupItem> registeredStartupItems(const QStringList& paths, const QSet<QString>& protectedPaths) {
    QList<StartupItem> items;
    for (const QString& path : paths) {
        const bool isProtected = protectedPaths.contains(withoutFinalSlashes(path));
        items.append(startupItemOf(LoginItem{nameInPath(path), path, false, isProtected}));
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
