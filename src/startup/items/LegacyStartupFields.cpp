#include "startup/items/LegacyStartupFields.h"

#include "core/Collation.h"
#include "core/Paths.h"
#include "startup/items/StartupConfiguration.h"

#include <QHash>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

using Kind = StartupItemKind;

/// The items gathered so far, each identifier once.
class ItemTable {
public:
    /// @param id  comparable
    bool contains(const QString& id) const { return m_places.contains(id); }

    /// Adds the item, or puts it in the place of the one with its identifier.
    void store(const StartupItem& item) {
        const auto place = m_places.constFind(comparableId(item));
        if (place != m_places.cend()) {
            m_items[*place] = item;
        } else {
            m_places.insert(comparableId(item), m_items.size());
            m_items.append(item);
        }
    }

    void setRunning(const QString& id) { m_items[m_places.value(id)].runsAtStartup = true; }

    QList<StartupItem> items() const { return m_items; }

private:
    QList<StartupItem> m_items;
    QHash<QString, qsizetype> m_places;
};

StartupItem makeItem(const QString& id, const QString& name, Kind kind, bool runs) {
    StartupItem item;
    item.id = id;
    item.name = name;
    item.kind = kind;
    item.runsAtStartup = runs;
    return item;
}

/// The last component of what may be a path; "/" is its own.
QString nameOfSubject(const QString& subject) {
    const QString plain = withoutFinalSlashes(subject);
    return plain == u"/"_s ? plain : lastPathComponent(plain);
}

/// Such an item is known only by its identifier.
StartupItem backgroundAgentFor(const QString& id) {
    if (isLaunchItemId(id)) {
        const QString fileName = id.mid(launchItemId(QString()).size());
        StartupItem item = makeItem(id, fileName, Kind::backgroundAgent, true);
        item.launchIdentifier = fileName;
        return item;
    }
    const QString loginPrefix = u"login:"_s;
    const QString subject = id.startsWith(loginPrefix) ? id.mid(loginPrefix.size()) : id;
    StartupItem item = makeItem(id, nameOfSubject(subject), Kind::backgroundAgent, true);
    if (subject.startsWith(u'/')) {
        item.path = subject;
    }
    return item;
}

void addDisabledLoginItems(ItemTable& table, const QStringList& values) {
    for (const QString& value : values) {
        table.store(makeItem(loginItemId(value, value), value, Kind::loginApp, false));
    }
}

void addDisabledLaunchItems(ItemTable& table, const QStringList& fileNames) {
    for (const QString& fileName : fileNames) {
        StartupItem item = makeItem(launchItemId(fileName), fileName, Kind::launchAgent, false);
        item.launchIdentifier = fileName;
        table.store(item);
    }
}

void addExcludedItems(ItemTable& table, const QStringList& ids) {
    for (const QString& id : ids) {
        const StartupItem agent = backgroundAgentFor(id);
        if (table.contains(comparableId(agent))) {
            table.setRunning(comparableId(agent));
        } else {
            table.store(agent);
        }
    }
}

void addPermittedApps(ItemTable& table, const QStringList& values) {
    for (const QString& value : values) {
        const QString id = loginItemId(value, value);
        if (table.contains(id)) {
            table.setRunning(id);
        } else {
            table.store(makeItem(id, value, Kind::loginApp, true));
        }
    }
}

void addLaunchItems(ItemTable& table, const QList<StartupLaunchItem>& launchItems) {
    for (const StartupLaunchItem& launchItem : launchItems) {
        table.store(StartupItem::fromLaunchItem(launchItem));
    }
}

} // namespace

StartupConfiguration StartupConfiguration::fromLegacyFields(const LegacyStartupFields& fields) {
    ItemTable table;
    addDisabledLoginItems(table, fields.disabledLoginItems);
    addDisabledLaunchItems(table, fields.disabledLaunchItems);
    addExcludedItems(table, fields.excludedBackgroundActivityItems);
    if (fields.cleanReboot) {
        addPermittedApps(table, fields.permittedStartupApps);
    }
    addLaunchItems(table, fields.startupLaunchItems);

    StartupConfiguration configuration;
    configuration.items = table.items();
    configuration.disableNetworkAtStartup = fields.disableNetwork;
    sortLocalized(configuration.items, &StartupItem::name);
    return configuration;
}

} // namespace quorvane
