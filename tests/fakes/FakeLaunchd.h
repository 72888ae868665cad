#pragma once

#include "platform/CommandLauncher.h"
#include "startup/launchd/DisabledServices.h"

#include <QMap>
#include <QSet>

#include <optional>

namespace quorvane {

/// launchd's overrides, changed by what the user and root ask of launchctl. In a trace its two answers to a look stand together, as
/// `kLookAtLaunchd`.
class FakeLaunchd {
public:
    /// None for everything but launchctl's overrides.
    std::optional<CommandOutcome> answer(const QStringList& arguments);
    /// What a line of root's asks for.
    void carryOut(const QString& line);

    bool isOff(const QString& target) const { return overrides.value(target); }

    QSet<QString> stoppedJobs;     ///< labels, in both domains: every other job is loaded
    QStringList sessionJobs;       ///< what it lists of the user's session, but for the stopped ones
    bool isMuteOfJobs = false;     ///< doesn't tell which are loaded
    QMap<QString, bool> overrides; ///< by target ("gui/501/com.x"): true is disabled
    QSet<QString> stubborn;        ///< targets whose override never changes
    bool isMute = false;           ///< doesn't tell

private:
    void set(const QString& target, bool isDisabled);
    QByteArray listing(const QString& domain) const;
    CommandOutcome jobAnswer(const QStringList& arguments) const;
};

/// The line of a trace for both looks.
inline const QString kLookAtLaunchd = QStringLiteral("? launchd\n");
/// The line of a trace for a look at the jobs of the user's session.
inline const QString kLookAtJobs = QStringLiteral("$> /bin/launchctl list\n");
/// With both looks together.
QString withLooksAtLaunchd(QString trace);

} // namespace quorvane
