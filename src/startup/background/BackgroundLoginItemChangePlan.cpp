#include "startup/background/BackgroundLoginItemChangePlan.h"

#include "startup/background/BackgroundItemPermission.h"

#include <algorithm>

namespace quorvane {

namespace {

/// What tells one record from another: two records may differ in nothing else than their place. Labels that differ in
/// case are different labels.
QString recordKey(const BackgroundTaskItem& item) {
    return backgroundItemLabel(item).value_or(QString()) + u'\n' + backgroundItemSearchText(item) + u'\n' +
           item.itemType;
}

} // namespace

QList<BackgroundTaskItem> plannedRecords(const BackgroundLoginItemChangePlan& plan, const BackgroundTaskList& list) {
    QList<BackgroundTaskItem> candidates;
    if (plan.cleanRebootPermittedNames) {
        candidates +=
            nonPermittedBackgroundItems(list.items(), *plan.cleanRebootPermittedNames, plan.cleanRebootStartup);
    }
    for (const QString& label : sortedTexts(plan.disabledBackgroundLaunchLabels)) {
        candidates += list.itemsWithLabel(label);
    }
    candidates += activeRecordsOfServices(list.items(), plan.cloudSyncServices);

    QList<BackgroundTaskItem> records;
    QSet<QString> seen;
    for (const BackgroundTaskItem& record : candidates) {
        if (!seen.contains(recordKey(record))) {
            seen.insert(recordKey(record));
            records.append(record);
        }
    }
    return records;
}

QList<BackgroundTaskItem> activeRecordsOfServices(const QList<BackgroundTaskItem>& items,
                                                  const CloudSyncServices& services) {
    QList<BackgroundTaskItem> found;
    for (const BackgroundTaskItem& item : items) {
        const auto matches = [&item](CloudSyncService service) { return matchesCloudService(item, service); };
        if (isActive(item) && std::any_of(services.begin(), services.end(), matches)) {
            found.append(item);
        }
    }
    return found;
}

bool matchesCloudService(const BackgroundTaskItem& item, CloudSyncService service) {
    return matchesCloudService(backgroundItemSearchText(item), {}, std::nullopt, service);
}

} // namespace quorvane
