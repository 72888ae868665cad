#pragma once

#include "profiles/UnifiedProfile.h"
#include "startup/items/CloudSyncService.h"
#include "startup/items/StartupConfiguration.h"
#include "startup/items/StartupItem.h"
#include "startup/items/WorkingStartup.h"
#include "tweaks/PerformanceSettings.h"

#include <QDateTime>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// The working copy of a profile that the pages edit: the selected tweaks, the startup configuration, and the saved
/// profile that they came from. It lives as long as the process and is never written to a file. Main thread.
///
/// The startup configuration comes of layers, see WorkingStartup: what was loaded, what the user has decided since, what
/// this Mac has, and the rules.
class MasterProfileState : public QObject {
    Q_OBJECT

public:
    explicit MasterProfileState(PerformanceSettings settings = {}, const StartupConfiguration& startup = {},
                                QObject* parent = nullptr);

    const PerformanceSettings& settings() const { return m_settings; }
    void setSettings(const PerformanceSettings& settings);
    /// What would be saved and applied: what is on this Mac, and what isn't there now, each as it was decided.
    const StartupConfiguration& startup() const { return m_working.configuration; }
    /// As if it were loaded: nothing is left that was decided before.
    void setStartup(const StartupConfiguration& startup);
    /// The same, with what the editor's rows show of it.
    const WorkingStartup& workingStartup() const { return m_working; }
    /// Where the working copy was loaded from: an edited profile that is saved keeps this one's `id` and `dateCreated`.
    const std::optional<UnifiedProfile>& currentProfile() const { return m_currentProfile; }
    /// Leaves what is edited as it is.
    void setCurrentProfile(const std::optional<UnifiedProfile>& profile);
    /// True when something was decided that the current profile, or an empty one, doesn't hold. What was only found on this
    /// Mac isn't.
    bool isEdited() const;

    /// Also after a save, with the record as it was stored: nothing is left to decide then.
    void load(const UnifiedProfile& profile);
    void clear();

    /// What saving would write: the working copy as the current profile, or as a new one where there is none. Nothing
    /// of an older file's flat keys is left in it.
    /// @param name  as the user typed it
    /// @param now   when a new profile is made
    UnifiedProfile makeProfile(const QString& name, const QDateTime& now) const;

    // ---- What runs at login now

    /// None until somebody has looked.
    const std::optional<DiscoveredStartup>& discovered() const { return m_layers.discovered; }
    /// Brings the working copy together with it. What was decided stays, also of items that aren't there any more.
    /// @return for the log; see WorkingStartup::errors
    QStringList mergeDiscoveredStartup(const DiscoveredStartup& discovered);
    /// The same in two steps, of which the long one, workingStartup, may be done on another thread.
    StartupLayers layersWith(const DiscoveredStartup& discovered) const;
    /// @return false when something was decided meanwhile, so that they are other layers now
    bool takeMerged(const StartupLayers& layers, const WorkingStartup& working);

    // ---- Deciding. An unknown `id` is ignored; of several items with one `id` the first is meant.

    /// Ignored for what a service keeps off.
    void setRunsAtStartup(const QString& id, bool runs);
    void toggleHidden(const QString& id);
    /// Adding what was added before changes nothing.
    void addLaunchItem(const StartupLaunchItem& launchItem);
    /// Forgets an application that was added, or an item that isn't on this Mac now; ignored for any other.
    void removeItem(const QString& id);
    /// A service that goes off takes its items along. One that is on again turns none of them back on.
    void setCloudSyncDisabled(CloudSyncService service, bool disabled);
    /// Services that are on, some of whose items went off with them and are off still.
    CloudSyncServices servicesWithItemsLeftOff() const;
    void setNetworkDisabled(bool disabled);
    /// Everything runs again, and the network and cloud services stay on; added applications are left as they are.
    void enableAllStartupItems();
    /// The same, no application is added any more, and what isn't on this Mac now is forgotten.
    void resetStartup();

    /// What a clean reboot leaves in place; empty without a clean reboot.
    QSet<QString> permittedLoginNames() const;
    /// For a card: "2 app(s) at login, network off", or "None selected".
    QString startupSummary() const;

Q_SIGNALS:
    void settingsChanged();
    /// The configuration, or what its rows show.
    void startupChanged();
    /// Another profile, or the same one with other contents.
    void currentProfileChanged();

private:
    struct Contents {
        PerformanceSettings settings;
        StartupLayers layers;
        std::optional<UnifiedProfile> profile;
    };
    Contents contents() const { return {m_settings, m_layers, m_currentProfile}; }
    void put(const Contents& contents);
    void putLayers(const StartupLayers& layers);
    void show(const WorkingStartup& working);
    const StartupItem* find(const QString& id) const;
    void decide(const StartupItem& item);

    PerformanceSettings m_settings;
    StartupLayers m_layers;
    WorkingStartup m_working; ///< always that of the layers
    std::optional<UnifiedProfile> m_currentProfile;
};

} // namespace quorvane
