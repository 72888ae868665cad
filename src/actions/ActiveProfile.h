#pragma once

#include "matching/SystemConfigurationMatch.h"
#include "profiles/UnifiedProfile.h"
#include "verification/LastFlowStanding.h"

#include <QObject>

#include <optional>

namespace quorvane {

class SavedProfiles;
class SystemManager;
class UserDefaults;

/// What is known of the configuration that this Mac is in.
struct ConfigurationReadings {
    bool wasScanned = false;                       ///< false: nothing has told yet what the match is
    std::optional<SystemConfigurationMatch> match; ///< none where nothing fits
    std::optional<QString> lastAppliedName;
    QList<UnifiedProfile> profiles; ///< the saved ones
    std::optional<LastFlowStanding> standing = {};
};

/// A configuration by its name: a saved profile, or Default.
struct NamedConfiguration {
    QString name;                              ///< empty: none
    std::optional<QUuid> id;                   ///< of a profile that is listed
    std::optional<PerformanceSettings> tweaks; ///< where they are known

    bool operator==(const NamedConfiguration&) const = default;
};

/// The configuration that title, status, list, menu and Active Tweaks speak of.
struct ActiveConfiguration {
    // What this Mac is in; until something has told, what was applied last stands for it.
    bool wasVerified = false;                            ///< a scan or an apply has told
    QString name;                                        ///< empty where nothing fits, or nothing was ever applied
    bool isSavedProfile = false;                         ///< a profile of the user's is in force; false for Default
    std::optional<QUuid> id;                             ///< of that profile, where it is known
    std::optional<ApplyVerificationResult> verification; ///< none before the first scan, and of one that was kept
    bool isKept = false;                                 ///< it was in force before; no scan has confirmed it since

    // What the user has chosen.
    NamedConfiguration lastApplied; ///< none where no saved profile has that name any more
    NamedConfiguration current;     ///< the last applied one, else the one that a scan has found, else Default

    std::optional<LastFlowStanding> standing = {}; ///< of what the last apply or way back has left, by the last scan

    bool operator==(const ActiveConfiguration&) const = default;
};

/// A profile of the user's is in force, as far as anybody knows; one that was merely kept isn't.
bool isOfSavedProfile(const ActiveConfiguration& active);

ActiveConfiguration activeConfiguration(const ConfigurationReadings& readings);

/// A scan or an apply has found this profile on the Mac: its row is green.
bool isInForce(const ActiveConfiguration& active, const UnifiedProfile& profile);
/// Default was found.
bool isDefaultInForce(const ActiveConfiguration& active);

/// Keeps the active configuration up to date. Main thread.
class ActiveProfile : public QObject {
    Q_OBJECT

public:
    ActiveProfile(const SystemManager& system, const SavedProfiles& profiles, const UserDefaults& defaults,
                  QObject* parent = nullptr);

    const ActiveConfiguration& current() const { return m_current; }
    /// To be called when the last applied name has changed by itself.
    void update();

Q_SIGNALS:
    void changed();

private:
    ActiveConfiguration read() const;

    const SystemManager& m_system;
    const SavedProfiles& m_profiles;
    const UserDefaults& m_defaults;
    ActiveConfiguration m_current;
};

} // namespace quorvane
