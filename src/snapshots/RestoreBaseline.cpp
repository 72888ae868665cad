#include "snapshots/RestoreBaseline.h"

#include "core/Json.h"
#include "core/Paths.h"
#include "startup/items/StartupItem.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// An item of which macOS didn't find the file is known by its name.
bool isCapturedItemOf(const LoginItemSnapshot& item, const QString& path) {
    return item.path.startsWith(u'/') ? comparablePath(item.path) == comparablePath(path)
                                      : item.name == nameInPath(path);
}

/// In the order of the enumerators.
const QStringList& sourceNames() {
    static const QStringList names{u"standard"_s, u"snapshot"_s, u"baseline"_s, u"first"_s, u"chosen"_s};
    return names;
}

} // namespace

Json encodeJson(const RestoreBaseline& baseline) {
    Json object = Json::object();
    appendMember(object, "snapshot", encodeJson(baseline.snapshot));
    appendMember(object, "source", encodeJson(sourceNames().at(static_cast<qsizetype>(baseline.source))));
    appendMember(object, "isNewer", encodeJson(baseline.isNewer));
    appendMember(object, "otherMac", encodeJson(baseline.otherMac));
    return object;
}

void decodeJson(const Json& json, RestoreBaseline& baseline) {
    baseline.snapshot = requiredMember<SystemSnapshot>(json, "snapshot");
    const qsizetype source = sourceNames().indexOf(requiredMember<QString>(json, "source"));
    if (source < 0) {
        throw DecodingError(u"unknown value"_s, u"source"_s);
    }
    baseline.source = static_cast<RestoreSource>(source);
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

QDateTime newestCapture(const KeptCaptures& kept) {
    QDateTime newest;
    if (kept.local) {
        newest = kept.local->dateCreated;
    }
    if (kept.master && !kept.master->isAnotherMacs) {
        const QDateTime captured = kept.master->baseline.snapshot.dateCreated;
        newest = newest.isValid() ? std::max(newest, captured) : captured;
    }
    return newest;
}

std::optional<RestoreBaseline> restoreBaselineOf(const KeptCaptures& kept, const MacIdentity& mac) {
    const QDateTime newest = newestCapture(kept);
    if (kept.chosen && !(newest.isValid() && newest > kept.chosen->chosenAt)) {
        const MasterSystemBaseline& chosen = kept.chosen->baseline;
        const bool isAnotherMacs = originOf(chosen, mac) == BaselineOrigin::AnotherMac;
        return RestoreBaseline{chosen.snapshot, RestoreSource::Chosen, false,
                               isAnotherMacs ? chosen.deviceName : QString()};
    }
    if (!newest.isValid() && kept.first) {
        return RestoreBaseline{kept.first->snapshot, RestoreSource::First};
    }
    return chosenRestoreBaseline(kept.local, kept.master);
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
