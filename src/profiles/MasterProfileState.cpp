#include "profiles/MasterProfileState.h"

#include "core/Collation.h"

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// The first item with an identifier; none when there is no such item.
StartupItem* itemWithId(StartupConfiguration& startup, const QString& id) {
    const auto found = std::find_if(startup.items.begin(), startup.items.end(),
                                    [&id](const StartupItem& item) { return item.id == id; });
    return found == startup.items.end() ? nullptr : &*found;
}

StartupConfiguration withAllEnabled(StartupConfiguration startup) {
    for (StartupItem& item : startup.items) {
        if (item.kind != StartupItemKind::addedApp) {
            item.runsAtStartup = true;
        }
    }
    startup.disableNetworkAtStartup = false;
    startup.disabledCloudSyncAtStartup.clear();
    return startup;
}

} // namespace

MasterProfileState::MasterProfileState(PerformanceSettings settings, StartupConfiguration startup, QObject* parent)
    : QObject(parent)
    , m_settings(std::move(settings))
    , m_startup(std::move(startup)) {}

void MasterProfileState::setSettings(const PerformanceSettings& settings) {
    put(settings, m_startup, m_currentProfile);
}

void MasterProfileState::setStartup(const StartupConfiguration& startup) {
    put(m_settings, startup, m_currentProfile);
}

void MasterProfileState::setCurrentProfile(const std::optional<UnifiedProfile>& profile) {
    put(m_settings, m_startup, profile);
}

bool MasterProfileState::isEdited() const {
    return m_currentProfile && (m_settings != m_currentProfile->settings || m_startup != m_currentProfile->startup);
}

void MasterProfileState::load(const UnifiedProfile& profile) {
    put(profile.settings, profile.startup, profile);
}

void MasterProfileState::clear() {
    put({}, {}, std::nullopt);
}

/// Observers are told when everything is in its place, so that none sees one profile's tweaks beside another's startup.
void MasterProfileState::put(const PerformanceSettings& settings, const StartupConfiguration& startup,
                             const std::optional<UnifiedProfile>& profile) {
    const auto areSame = [](const UnifiedProfile& left, const UnifiedProfile& right) {
        return left == right && left.dateCreated == right.dateCreated && left.hasSameContent(right);
    };
    const bool hasProfileChanged = m_currentProfile && profile ? !areSame(*m_currentProfile, *profile)
                                                               : m_currentProfile.has_value() != profile.has_value();
    const bool haveSettingsChanged = m_settings != settings;
    const bool hasStartupChanged = m_startup != startup;
    m_settings = settings;
    m_startup = startup;
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

UnifiedProfile MasterProfileState::makeProfile(const QString& name, const QDateTime& now) const {
    UnifiedProfile profile;
    profile.id = m_currentProfile ? m_currentProfile->id : QUuid::createUuid();
    profile.name = name;
    profile.dateCreated = m_currentProfile ? m_currentProfile->dateCreated : now;
    profile.settings = m_settings;
    profile.startup = m_startup;
    return profile;
}

QStringList MasterProfileState::mergeDiscoveredStartup(const QList<StartupItem>& discovered) {
    StartupMerge merge = m_startup.mergedWithDiscovered(discovered, m_settings.cleanReboot);
    applyDisabledCloudSync(merge.configuration.items, merge.configuration.disabledCloudSyncAtStartup);
    setStartup(merge.configuration);
    return merge.errors;
}

void MasterProfileState::setCloudSyncDisabled(CloudSyncService service, bool disabled) {
    StartupConfiguration changed = m_startup;
    if (disabled) {
        changed.disabledCloudSyncAtStartup.insert(service);
    } else {
        changed.disabledCloudSyncAtStartup.erase(service);
    }
    applyDisabledCloudSync(changed.items, changed.disabledCloudSyncAtStartup);
    setStartup(changed);
}

void MasterProfileState::setRunsAtStartup(const QString& id, bool runs) {
    StartupConfiguration changed = m_startup;
    if (StartupItem* item = itemWithId(changed, id)) {
        item->runsAtStartup = runs;
    }
    setStartup(changed);
}

void MasterProfileState::toggleHidden(const QString& id) {
    StartupConfiguration changed = m_startup;
    if (StartupItem* item = itemWithId(changed, id)) {
        item->hidden = !item->hidden.value_or(false);
    }
    setStartup(changed);
}

void MasterProfileState::addLaunchItem(const StartupLaunchItem& launchItem) {
    const StartupItem added = StartupItem::fromLaunchItem(launchItem);
    StartupConfiguration changed = m_startup;
    changed.items.removeIf([&added](const StartupItem& item) { return comparableId(item) == added.id; });
    changed.items.append(added);
    sortLocalized(changed.items, &StartupItem::name);
    setStartup(changed);
}

void MasterProfileState::enableAllStartupItems() {
    setStartup(withAllEnabled(m_startup));
}

void MasterProfileState::resetStartup() {
    StartupConfiguration changed = withAllEnabled(m_startup);
    changed.items.removeIf([](const StartupItem& item) { return item.kind == StartupItemKind::addedApp; });
    setStartup(changed);
}

QSet<QString> MasterProfileState::permittedLoginNames() const {
    return m_settings.cleanReboot ? m_startup.permittedLoginNames() : QSet<QString>();
}

QString MasterProfileState::startupSummary() const {
    const QStringList lines = m_startup.summaryLines();
    return lines.isEmpty() ? u"None selected"_s : lines.join(u", "_s);
}

} // namespace quorvane
