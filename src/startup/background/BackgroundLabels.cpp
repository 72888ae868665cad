#include "startup/background/BackgroundLabels.h"

#include "core/Paths.h"
#include "startup/items/StartupConfiguration.h"

namespace quorvane {

using namespace Qt::StringLiterals;

QSet<QString> labelsOf(const QList<BackgroundTaskItem>& records) {
    QSet<QString> labels;
    for (const BackgroundTaskItem& record : records) {
        if (const std::optional<QString> label = backgroundItemLabel(record)) {
            labels.insert(*label);
        }
    }
    return labels;
}

QList<BackgroundTaskItem> recordsWithLabels(const std::optional<BackgroundTaskList>& list,
                                            const QSet<QString>& labels) {
    QList<BackgroundTaskItem> records;
    if (list) {
        for (const QString& label : sortedTexts(labels)) {
            records += list->itemsWithLabel(label);
        }
    }
    return records;
}

QList<BackgroundTaskItem> recordsAmong(const QList<BackgroundTaskItem>& records, const QSet<QString>& labels) {
    QList<BackgroundTaskItem> kept;
    for (const BackgroundTaskItem& record : records) {
        const std::optional<QString> label = backgroundItemLabel(record);
        if (label && labels.contains(*label)) {
            kept.append(record);
        }
    }
    return kept;
}

QSet<QString> protectedLaunchPlists(const BackgroundTaskList& list) {
    QSet<QString> names;
    for (const BackgroundTaskItem& record : list.items()) {
        if (!list.isProtected(record)) {
            continue;
        }
        if (const std::optional<QString> label = backgroundItemLabel(record)) {
            names.insert(*label + u".plist"_s);
        }
        if (const std::optional<QString> path = recordedPath(record); path && path->endsWith(u".plist"_s)) {
            names.insert(lastPathComponent(*path));
        }
    }
    return names;
}

QSet<QString> protectedFiles(const BackgroundTaskList& list) {
    QSet<QString> paths;
    for (const BackgroundTaskItem& record : list.items()) {
        if (const std::optional<QString> path = list.pathOf(record); path && list.isProtected(record)) {
            paths.insert(withoutFinalSlashes(*path));
        }
    }
    return paths;
}

QSet<QString> bundledAgentLabels(const QList<BackgroundDisableTarget>& targets, const QSet<QString>& recordLabels) {
    QSet<QString> labels;
    for (const BackgroundDisableTarget& target : targets) {
        if (!target.item && !recordLabels.contains(target.label)) {
            labels.insert(target.label);
        }
    }
    return labels;
}

} // namespace quorvane
