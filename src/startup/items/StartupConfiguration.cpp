#include "startup/items/StartupConfiguration.h"

#include "core/Collation.h"
#include "core/Json.h"
#include "core/Paths.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

using Kind = StartupItemKind;

/// The saved items by identifier, the first of several counting.
class SavedItems {
public:
    explicit SavedItems(const QList<StartupItem>& items) {
        QSet<QString> reported;
        for (const StartupItem& item : items) {
            const QString id = comparableId(item);
            if (!m_byId.contains(id)) {
                m_byId.insert(id, &item);
                m_unique.append(&item);
            } else if (!reported.contains(id)) {
                reported.insert(id);
                m_errors.append(duplicateIdError(item));
            }
        }
    }

    const StartupItem* find(const StartupItem& found) const { return m_byId.value(comparableId(found), nullptr); }
    const QList<const StartupItem*>& all() const { return m_unique; }
    QSet<QString> addedIds() const {
        QSet<QString> ids;
        for (const StartupItem* const item : m_unique) {
            if (item->kind == Kind::addedApp) {
                ids.insert(comparableId(*item));
            }
        }
        return ids;
    }
    const QStringList& errors() const { return m_errors; }

private:
    QHash<QString, const StartupItem*> m_byId;
    QList<const StartupItem*> m_unique;
    QStringList m_errors;
};

StartupItem withSavedChoice(const StartupItem& discovered, const StartupItem& saved) {
    StartupItem item = discovered;
    item.runsAtStartup = saved.runsAtStartup;
    if (saved.hidden) {
        item.hidden = saved.hidden;
    }
    return item;
}

StartupItem newlyAppeared(const StartupItem& discovered, bool cleanReboot) {
    StartupItem item = discovered;
    if (cleanReboot && item.kind != Kind::addedApp && !item.isProtected) {
        item.runsAtStartup = false;
    }
    return item;
}

QString joinedDisplayNames(const CloudSyncServices& services) {
    QStringList names;
    for (const CloudSyncService service : services) {
        names.append(displayName(service));
    }
    names.sort();
    return names.join(u", "_s);
}

} // namespace

QSet<QString> StartupConfiguration::permittedLoginNames() const {
    QSet<QString> names;
    for (const StartupItem& item : items) {
        const bool isLogin =
            item.kind == Kind::loginApp || item.kind == Kind::backgroundAgent || item.kind == Kind::backgroundLoginItem;
        if (isLogin && item.runsAtStartup) {
            names.insert(item.name);
        }
    }
    return names;
}

QSet<QString> StartupConfiguration::disabledLoginNames() const {
    const QSet<QString> added = addedPaths();
    QSet<QString> names;
    for (const StartupItem& item : items) {
        const bool isLogin = item.kind == Kind::loginApp || item.kind == Kind::backgroundAgent;
        if (isLogin && !item.runsAtStartup && !added.contains(knownPath(item))) {
            names.insert(item.name);
        }
    }
    return names;
}

QSet<QString> StartupConfiguration::disabledLaunchLabels() const {
    QSet<QString> labels;
    for (const StartupItem& item : items) {
        const bool isLaunch = item.kind == Kind::launchAgent || item.kind == Kind::launchDaemon;
        if (isLaunch && !item.runsAtStartup) {
            labels.insert(item.launchIdentifier.value_or(item.name));
        }
    }
    return labels;
}

QSet<QString> StartupConfiguration::disabledBackgroundLabels() const {
    QSet<QString> labels;
    for (const StartupItem& item : items) {
        if (item.kind == Kind::backgroundLoginItem && !item.runsAtStartup && item.launchIdentifier) {
            labels.insert(*item.launchIdentifier);
        }
    }
    return labels;
}

QList<StartupLaunchItem> StartupConfiguration::startupLaunchItems() const {
    QList<StartupLaunchItem> launchItems;
    for (const StartupItem& item : items) {
        if (item.kind == Kind::addedApp && item.runsAtStartup) {
            launchItems.append({item.name, item.path, item.hidden.value_or(false)});
        }
    }
    return launchItems;
}

QSet<QString> StartupConfiguration::addedPaths() const {
    QSet<QString> paths;
    for (const StartupLaunchItem& item : startupLaunchItems()) {
        paths.insert(comparablePath(item.path));
    }
    paths.remove(QString()); // no path is nobody's
    return paths;
}

QSet<QString> StartupConfiguration::openedPaths() const {
    QSet<QString> paths = addedPaths();
    for (const StartupItem& item : items) {
        if (isLoginItem(item) && item.runsAtStartup) {
            paths.insert(knownPath(item));
        }
    }
    paths.remove(QString());
    return paths;
}

QSet<QString> StartupConfiguration::notOpenedOf(const QSet<QString>& paths) const {
    QSet<QString> openedNames;
    for (const StartupItem& item : items) {
        if (isLoginItem(item) && item.runsAtStartup && knownPath(item).isEmpty()) {
            openedNames.insert(item.name);
        }
    }
    QSet<QString> notOpened = paths - openedPaths();
    notOpened.removeIf([&openedNames](const QString& path) { return openedNames.contains(nameInPath(path)); });
    return notOpened;
}

QStringList StartupConfiguration::summaryLines() const {
    const auto added = std::count_if(items.begin(), items.end(), [](const StartupItem& item) {
        return item.kind == Kind::addedApp && item.runsAtStartup;
    });
    const auto disabled = std::count_if(items.begin(), items.end(), [](const StartupItem& item) {
        return item.kind != Kind::addedApp && !item.runsAtStartup;
    });
    QStringList lines;
    if (added > 0) {
        lines.append(u"%1 app(s) at login"_s.arg(added));
    }
    if (disabled > 0) {
        lines.append(u"%1 disabled"_s.arg(disabled));
    }
    if (disableNetworkAtStartup) {
        lines.append(u"network off"_s);
    }
    if (!disabledCloudSyncAtStartup.empty()) {
        lines.append(u"cloud sync off: "_s + joinedDisplayNames(disabledCloudSyncAtStartup));
    }
    return lines;
}

StartupMerge StartupConfiguration::mergedWithDiscovered(const QList<StartupItem>& discovered, bool cleanReboot) const {
    const SavedItems saved(items);
    StartupMerge merge{{{}, disableNetworkAtStartup, disabledCloudSyncAtStartup}, saved.errors()};
    QList<StartupItem>& merged = merge.configuration.items;

    const QSet<QString> added = addedPaths();
    QSet<QString> addedIds = saved.addedIds();
    merged.reserve(discovered.size() + addedIds.size());
    for (const StartupItem& item : discovered) {
        if (isLoginItem(item) && added.contains(knownPath(item))) {
            continue;
        }
        addedIds.remove(comparableId(item));
        const StartupItem* twin = saved.find(item);
        merged.append(twin != nullptr ? withSavedChoice(item, *twin) : newlyAppeared(item, cleanReboot));
    }
    for (const StartupItem* item : saved.all()) {
        if (addedIds.contains(comparableId(*item))) {
            merged.append(*item);
        }
    }
    sortLocalized(merged, &StartupItem::name);
    return merge;
}

QString duplicateIdError(const StartupItem& item) {
    return u"Duplicate values for key: '%1'"_s.arg(item.id);
}

QStringList sortedTexts(const QSet<QString>& texts) {
    QStringList sorted(texts.begin(), texts.end());
    sorted.sort();
    return sorted;
}

Json encodeJson(const StartupConfiguration& configuration) {
    Json object = Json::object();
    appendMember(object, "items", encodeJson(configuration.items));
    appendMember(object, "disableNetworkAtStartup", encodeJson(configuration.disableNetworkAtStartup));
    if (!configuration.disabledCloudSyncAtStartup.empty()) {
        appendMember(object, "disabledCloudSyncAtStartup", encodeJson(configuration.disabledCloudSyncAtStartup));
    }
    return object;
}

void decodeJson(const Json& json, StartupConfiguration& configuration) {
    configuration.items = requiredMember<QList<StartupItem>>(json, "items");
    configuration.disableNetworkAtStartup = optionalMember<bool>(json, "disableNetworkAtStartup").value_or(false);
    configuration.disabledCloudSyncAtStartup =
        optionalMember<CloudSyncServices>(json, "disabledCloudSyncAtStartup").value_or(CloudSyncServices());
}

} // namespace quorvane
