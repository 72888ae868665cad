#include "snapshots/RestoreBaseline.h"

#include "core/Json.h"
#include "core/Paths.h"
#include "startup/items/StartupItem.h"

#include <algorithm>

namespace quorvane {

namespace {

/// An item of which macOS didn't find the file is known by its name.
bool isCapturedItemOf(const LoginItemSnapshot& item, const QString& path) {
    return item.path.startsWith(u'/') ? comparablePath(item.path) == comparablePath(path)
                                      : item.name == nameInPath(path);
}

} // namespace

Json encodeJson(const RestoreBaseline& baseline) {
    Json object = Json::object();
    appendMember(object, "snapshot", encodeJson(baseline.snapshot));
    appendMember(object, "source", encodeJson(static_cast<int>(baseline.source)));
    appendMember(object, "isNewer", encodeJson(baseline.isNewer));
    appendMember(object, "otherMac", encodeJson(baseline.otherMac));
    return object;
}

void decodeJson(const Json& json, RestoreBaseline& baseline) {
    baseline.snapshot = requiredMember<SystemSnapshot>(json, "snapshot");
    const int source = requiredMember<int>(json, "source");
    baseline.source = source == static_cast<int>(RestoreSource::Baseline) ? RestoreSource::Baseline : RestoreSource::Snapshot;
    baseline.isNewer = requiredMember<bool>(json, "isNewer");
    baseline.otherMac = requiredMember<QString>(json, "otherMac");
}

std::optional<RestoreBaseline> chosenRestoreBaseline(const std::optional<SystemSnapshot>& local,
                                                     const std::optional<LatestBaseline>& master) {
    const bool servesBesideSnapshot =
        master && local && !master->isAnotherMacs && master->baseline.snapshot.dateCreated > local->dateCreated;
    if (master && (!local || servesBesideSnapshot)) {
        const QString otherMac = master->isAnotherMacs ? master->baseline.deviceName : QString();
        return RestoreBaseline{master->baseline.snapshot, RestoreSource::Baseline, local.has_value(), otherMac};
    }
    if (local) {
        return RestoreBaseline{*local};
    }
    return std::nullopt;
}

QSet<QString> startupAppsThatGo(const QSet<QString>& managed, const QSet<QString>& ofProfiles,
                                const std::optional<RestoreBaseline>& baseline) {
    if (!baseline || !baseline->snapshot.loginItems) {
        return managed;
    }
    const QList<LoginItemSnapshot>& usersOwn = *baseline->snapshot.loginItems;
    QSet<QString> going = managed + ofProfiles;
    going.removeIf([&usersOwn](const QString& path) {
        return std::any_of(usersOwn.begin(), usersOwn.end(),
                           [&path](const LoginItemSnapshot& item) { return isCapturedItemOf(item, path); });
    });
    return going;
}

} // namespace quorvane
