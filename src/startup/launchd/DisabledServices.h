#pragma once

#include <QHash>
#include <QString>

#include <optional>

namespace quorvane {

/// Whose jobs launchd keeps apart.
enum class LaunchdDomain {
    User,   ///< the user's session: agents and login items
    System, ///< daemons
};

/// A job or a login item, as launchd knows it.
struct LaunchdService {
    LaunchdDomain domain = LaunchdDomain::User;
    QString label;

    bool operator==(const LaunchdService&) const = default;
};
size_t qHash(const LaunchdService& service, size_t seed = 0);

/// Whether a label has an override, which outlives a restart.
enum class OverrideState {
    NotListed, ///< it goes by its plist and its record
    Disabled,
    Enabled,
    Unknown, ///< nobody has read it, or launchd says it in a word that isn't known
};

/// The overrides of one of launchd's domains.
class DisabledServices {
public:
    /// Reads what `launchctl print-disabled` prints: of its blocks the one of the disabled services, lines of
    /// `"label" => disabled` or, on older systems, `=> true`. None where that block isn't there or doesn't end.
    static std::optional<DisabledServices> parse(const QString& output);

    OverrideState stateOf(const QString& label) const { return m_states.value(label, OverrideState::NotListed); }

    bool operator==(const DisabledServices&) const = default;

private:
    QHash<QString, OverrideState> m_states;
};

/// The overrides of both domains, at one moment.
struct LaunchdOverrides {
    std::optional<DisabledServices> user;   ///< none where launchd didn't tell
    std::optional<DisabledServices> system; ///< the same

    OverrideState stateOf(const LaunchdService& service) const;
    bool isDisabled(const LaunchdService& service) const { return stateOf(service) == OverrideState::Disabled; }

    bool operator==(const LaunchdOverrides&) const = default;
};

} // namespace quorvane
