#include "profiles/MasterProfileState.h"

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// The layers of a configuration to which nobody has added anything; what this Mac has stays.
StartupLayers layersOf(const StartupConfiguration& startup, const std::optional<DiscoveredStartup>& discovered) {
    StartupLayers layers;
    layers.loaded = startup.items;
    layers.discovered = discovered;
    layers.rules.disableNetworkAtStartup = startup.disableNetworkAtStartup;
    layers.rules.disabledCloudSyncAtStartup = startup.disabledCloudSyncAtStartup;
    return layers;
}

void choose(StartupChoices& choices, const StartupItem& item) {
    choices.items.insert(comparableId(item), item);
    choices.offByService.remove(comparableId(item));
}

/// Items go off because a service does: they stay off when it is on again.
void switchOffWithService(StartupChoices& choices, const QList<StartupItem>& items, CloudSyncService service) {
    for (StartupItem item : items) {
        if (item.runsAtStartup && isHeldOff(item, {service})) {
            item.runsAtStartup = false;
            choose(choices, item);
            choices.offByService.insert(comparableId(item));
        }
    }
}

void switchAllOn(StartupChoices& choices, const QList<StartupItem>& items) {
    for (StartupItem item : items) {
        if (!item.runsAtStartup && item.kind != StartupItemKind::addedApp) {
            item.runsAtStartup = true;
            choose(choices, item);
        }
    }
}

void bringServicesAndNetworkBack(StartupRules& rules) {
    rules.disableNetworkAtStartup = false;
    rules.disabledCloudSyncAtStartup.clear();
}

/// What is shown and wasn't added.
QList<StartupItem> shownItems(const WorkingStartup& working) {
    QList<StartupItem> items;
    for (const StartupRow& row : working.shown) {
        if (!row.isAdded) {
            items.append(working.itemOf(row));
        }
    }
    return items;
}

bool isRemovable(const WorkingStartup& working, const StartupItem& item) {
    const auto isRowOf = [&](const StartupRow& row) { return &working.itemOf(row) == &item; };
    return item.kind == StartupItemKind::addedApp ||
           std::any_of(working.absent.cbegin(), working.absent.cend(), isRowOf);
}

} // namespace

MasterProfileState::MasterProfileState(PerformanceSettings settings, const StartupConfiguration& startup,
                                       QObject* parent)
    : QObject(parent)
    , m_settings(std::move(settings))
    , m_layers(layersOf(startup, std::nullopt)) {
    m_layers.rules.cleanReboot = m_settings.cleanReboot;
    m_working = quorvane::workingStartup(m_layers);
}

void MasterProfileState::setSettings(const PerformanceSettings& settings) {
    put({settings, m_layers, m_currentProfile});
}

void MasterProfileState::setStartup(const StartupConfiguration& startup) {
    putLayers(layersOf(startup, m_layers.discovered));
}

void MasterProfileState::setCurrentProfile(const std::optional<UnifiedProfile>& profile) {
    put({m_settings, m_layers, profile});
}

bool MasterProfileState::isEdited() const {
    const UnifiedProfile saved = m_currentProfile.value_or(UnifiedProfile{});
    StartupLayers asSaved = layersOf(saved.startup, m_layers.discovered);
    asSaved.rules.cleanReboot = m_settings.cleanReboot;
    return m_settings != saved.settings || m_layers != asSaved;
}

void MasterProfileState::load(const UnifiedProfile& profile) {
    put({profile.settings, layersOf(profile.startup, m_layers.discovered), profile});
}

void MasterProfileState::clear() {
    put({{}, layersOf({}, m_layers.discovered), std::nullopt});
}

/// Observers are told when everything is in its place, so that none sees one profile's tweaks beside another's startup.
void MasterProfileState::put(const Contents& contents) {
    const auto areSame = [](const UnifiedProfile& left, const UnifiedProfile& right) {
        return left == right && left.dateCreated == right.dateCreated && left.hasSameContent(right);
    };
    const std::optional<UnifiedProfile>& profile = contents.profile;
    const bool hasProfileChanged = m_currentProfile && profile ? !areSame(*m_currentProfile, *profile)
                                                               : m_currentProfile.has_value() != profile.has_value();
    const bool haveSettingsChanged = m_settings != contents.settings;
    StartupLayers layers = contents.layers;
    layers.rules.cleanReboot = contents.settings.cleanReboot;
    const bool haveLayersChanged = m_layers != layers;
    const WorkingStartup working = haveLayersChanged ? quorvane::workingStartup(layers) : m_working;
    const bool hasStartupChanged = haveLayersChanged && m_working != working;
    m_settings = contents.settings;
    m_layers = layers;
    m_working = working;
    m_currentProfile = profile;
    if (haveSettingsChanged) {
        Q_EMIT settingsChanged();
    }
    if (hasStartupChanged) {
        Q_EMIT startupChanged();
    }
    if (hasProfileChanged) {
        Q_EMIT currentProfileChanged();
    }
}

void MasterProfileState::putLayers(const StartupLayers& layers) {
    put({m_settings, layers, m_currentProfile});
}

UnifiedProfile MasterProfileState::makeProfile(const QString& name, const QDateTime& now) const {
    UnifiedProfile profile;
    profile.id = m_currentProfile ? m_currentProfile->id : QUuid::createUuid();
    profile.name = name;
    profile.dateCreated = m_currentProfile ? m_currentProfile->dateCreated : now;
    profile.settings = m_settings;
    profile.startup = startup();
    return profile;
}

// ---- What runs at login now

QStringList MasterProfileState::mergeDiscoveredStartup(const DiscoveredStartup& discovered) {
    putLayers(layersWith(discovered));
    return m_working.errors;
}

StartupLayers MasterProfileState::layersWith(const DiscoveredStartup& discovered) const {
    StartupLayers layers = m_layers;
    layers.discovered = discovered;
    return layers;
}

bool MasterProfileState::takeMerged(const StartupLayers& layers, const WorkingStartup& working) {
    if (!layers.discovered || layersWith(*layers.discovered) != layers) {
        return false;
    }
    m_layers = layers;
    if (std::exchange(m_working, working) != working) {
        Q_EMIT startupChanged();
    }
    return true;
}

// ---- Deciding

const StartupItem* MasterProfileState::find(const QString& id) const {
    const QList<StartupItem>& items = startup().items;
    const auto found =
        std::find_if(items.cbegin(), items.cend(), [&id](const StartupItem& item) { return item.id == id; });
    return found == items.cend() ? nullptr : &*found;
}

/// What one item's switch changes is seen without going through all the layers again: nothing else moves by it. An added
/// application may take a login item along, though, and before anybody has looked nothing is in its order.
void MasterProfileState::decide(const StartupItem& item) {
    if (!m_layers.discovered || item.kind == StartupItemKind::addedApp) {
        StartupLayers layers = m_layers;
        choose(layers.choices, item);
        putLayers(layers);
        return;
    }
    choose(m_layers.choices, item);
    const qsizetype place = find(item.id) - startup().items.constData();
    m_working.configuration.items[place] = item;
    for (StartupRow& row : m_working.shown) {
        if (row.item == place) {
            row.isNew = false;
        }
    }
    Q_EMIT startupChanged();
}

void MasterProfileState::setRunsAtStartup(const QString& id, bool runs) {
    const StartupItem* const found = find(id);
    if (found != nullptr && found->runsAtStartup != runs &&
        !isHeldOff(*found, m_layers.rules.disabledCloudSyncAtStartup)) {
        StartupItem item = *found;
        item.runsAtStartup = runs;
        decide(item);
    }
}

void MasterProfileState::toggleHidden(const QString& id) {
    if (const StartupItem* const found = find(id)) {
        StartupItem item = *found;
        item.hidden = !item.hidden.value_or(false);
        decide(item);
    }
}

void MasterProfileState::addLaunchItem(const StartupLaunchItem& launchItem) {
    const StartupItem added = StartupItem::fromLaunchItem(launchItem);
    const QList<StartupItem>& items = startup().items;
    const bool isThere = std::any_of(items.cbegin(), items.cend(), [&added](const StartupItem& item) {
        return comparableId(item) == comparableId(added);
    });
    if (!isThere) {
        StartupLayers layers = m_layers;
        choose(layers.choices, added);
        putLayers(layers);
    }
}

void MasterProfileState::removeItem(const QString& id) {
    const StartupItem* const found = find(id);
    if (found == nullptr || !isRemovable(m_working, *found)) {
        return;
    }
    const QString removed = comparableId(*found);
    StartupLayers layers = m_layers;
    layers.choices.items.remove(removed);
    layers.choices.offByService.remove(removed);
    const bool isLoaded = std::any_of(layers.loaded.cbegin(), layers.loaded.cend(),
                                      [&removed](const StartupItem& item) { return comparableId(item) == removed; });
    if (isLoaded) {
        layers.choices.removed.insert(removed);
    }
    putLayers(layers);
}

void MasterProfileState::setCloudSyncDisabled(CloudSyncService service, bool disabled) {
    StartupLayers layers = m_layers;
    if (disabled) {
        switchOffWithService(layers.choices, startup().items, service);
        layers.rules.disabledCloudSyncAtStartup.insert(service);
    } else {
        // What has appeared since the service went off has never been decided.
        layers.rules.disabledCloudSyncAtStartup.erase(service);
        switchOffWithService(layers.choices, quorvane::workingStartup(layers).configuration.items, service);
    }
    putLayers(layers);
}

CloudSyncServices MasterProfileState::servicesWithItemsLeftOff() const {
    return quorvane::servicesWithItemsLeftOff(m_layers.choices, m_layers.rules.disabledCloudSyncAtStartup);
}

/// No item goes by it.
void MasterProfileState::setNetworkDisabled(bool disabled) {
    if (std::exchange(m_layers.rules.disableNetworkAtStartup, disabled) != disabled) {
        m_working.configuration.disableNetworkAtStartup = disabled;
        Q_EMIT startupChanged();
    }
}

void MasterProfileState::enableAllStartupItems() {
    StartupLayers layers = m_layers;
    bringServicesAndNetworkBack(layers.rules);
    switchAllOn(layers.choices, startup().items);
    putLayers(layers);
}

/// What is on by default stays a default.
void MasterProfileState::resetStartup() {
    StartupLayers layers = layersOf({}, m_layers.discovered);
    layers.rules.cleanReboot = m_layers.rules.cleanReboot;
    const QList<StartupItem> remaining =
        m_layers.discovered ? shownItems(quorvane::workingStartup(layers)) : shownItems(m_working);
    switchAllOn(layers.choices, remaining);
    if (!m_layers.discovered) {
        layers.loaded = remaining;
    }
    putLayers(layers);
}

QSet<QString> MasterProfileState::permittedLoginNames() const {
    return m_settings.cleanReboot ? startup().permittedLoginNames() : QSet<QString>();
}

QString MasterProfileState::startupSummary() const {
    const QStringList lines = startup().summaryLines();
    return lines.isEmpty() ? u"None selected"_s : lines.join(u", "_s);
}

} // namespace quorvane
