#pragma once

#include "profiles/UnifiedProfile.h"
#include "startup/items/CloudSyncService.h"
#include "startup/items/StartupConfiguration.h"
#include "startup/items/StartupItem.h"
#include "tweaks/PerformanceSettings.h"

#include <QDateTime>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// The working copy of a profile that the pages edit: the selected tweaks, the startup configuration, and the saved
/// profile that they came from. It lives as long as the process and is never written to a file. Main thread.
class MasterProfileState : public QObject {
    Q_OBJECT

public:
    explicit MasterProfileState(PerformanceSettings settings = {}, StartupConfiguration startup = {},
                                QObject* parent = nullptr);

    const PerformanceSettings& settings() const { return m_settings; }
    void setSettings(const PerformanceSettings& settings);
    const StartupConfiguration& startup() const { return m_startup; }
    void setStartup(const StartupConfiguration& startup);
    /// Where the working copy was loaded from: an edited profile that is saved keeps this one's `id` and `dateCreated`.
    const std::optional<UnifiedProfile>& currentProfile() const { return m_currentProfile; }
    void setCurrentProfile(const std::optional<UnifiedProfile>& profile);

    /// The working copy is another one than the profile that it was loaded from. False where it comes from none.
    bool isEdited() const;

    void load(const UnifiedProfile& profile);
    void clear();

    /// What saving would write: the working copy as the current profile, or as a new one where there is none. Nothing
    /// of an older file's flat keys is left in it.
    /// @param name  as the user typed it
    /// @param now   when a new profile is made
    UnifiedProfile makeProfile(const QString& name, const QDateTime& now) const;

    /// Brings the working copy together with what runs at login now. Items of a service that is switched off are
    /// switched off even when they have just appeared.
    /// @return for the log; see StartupMerge::errors
    QStringList mergeDiscoveredStartup(const QList<StartupItem>& discovered);
    /// A service that is on again turns none of its items back on.
    void setCloudSyncDisabled(CloudSyncService service, bool disabled);

    // An unknown `id` is ignored; of several items with one `id` the first is meant.
    void setRunsAtStartup(const QString& id, bool runs);
    void toggleHidden(const QString& id);

    /// Replaces an application that was added before, and keeps the items sorted by name.
    void addLaunchItem(const StartupLaunchItem& launchItem);
    /// Everything runs again, and the network and cloud services stay on; added applications are left as they are.
    void enableAllStartupItems();
    /// The same, and no application is added any more.
    void resetStartup();

    /// What a clean reboot leaves in place; empty without a clean reboot.
    QSet<QString> permittedLoginNames() const;
    /// For a card: "2 app(s) at login, network off", or "None selected".
    QString startupSummary() const;

Q_SIGNALS:
    void settingsChanged();
    void startupChanged();
    /// Another profile, or the same one with other contents.
    void currentProfileChanged();

private:
    void put(const PerformanceSettings& settings, const StartupConfiguration& startup,
             const std::optional<UnifiedProfile>& profile);

    PerformanceSettings m_settings;
    StartupConfiguration m_startup;
    std::optional<UnifiedProfile> m_currentProfile;
};

} // namespace quorvane
