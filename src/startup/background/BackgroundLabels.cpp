#include "startup/background/BackgroundLabels.h"

#include "core/Paths.h"
#include "startup/background/BackgroundState.h"
#include "startup/items/StartupConfiguration.h"

#include <algorithm>
#include <iterator>

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

QList<KnownService> unusualServices(const BackgroundTaskList& list) {
    QHash<QString, QList<LaunchdService>> byLabel;
    for (const BackgroundTaskItem& record : list.items()) {
        const std::optional<QString> label = isLoginRecord(record) ? backgroundItemLabel(record) : std::nullopt;
        const std::optional<LaunchdService> service = serviceOf(record, LaunchdReadings());
        if (label && service && !byLabel[*label].contains(*service)) {
            byLabel[*label].append(*service);
        }
    }
    QList<KnownService> unusual;
    for (const QString& label : sortedTexts({byLabel.keyBegin(), byLabel.keyEnd()})) {
        const QList<LaunchdService> services = byLabel.value(label);
        if (services != QList<LaunchdService>{{LaunchdDomain::User, label}}) {
            std::transform(services.begin(), services.end(), std::back_inserter(unusual),
                           [&label](const LaunchdService& service) {
                               return KnownService{label, service};
                           });
        }
    }
    return unusual;
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

} // namespace quorvane
