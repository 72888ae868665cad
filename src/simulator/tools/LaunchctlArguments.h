#pragma once

#include "simulator/LaunchdState.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace macsim {

/// What a target of launchctl names: a domain, or a service in it where the label isn't empty.
struct LaunchdTarget {
    LaunchdDomain domain;
    QString label;
};

/// Reads "system", "system/LABEL", "user/501", "gui/501/LABEL". None for what is no target: launchctl answers
/// it with the usage and status 64. The kinds login, session and pid are no targets here either.
std::optional<LaunchdTarget> parseLaunchdTarget(const QString& target);

/// The words behind "load" or "unload".
struct LegacyArguments {
    bool changesOverride = false; ///< -w
    QStringList paths;
    bool isUsable = false;
    QString notSimulated; ///< an option of the real tool that has no meaning here
};
LegacyArguments parseLegacyArguments(const QStringList& words);

/// launchd's error numbers: the number in a message is also the exit status.
enum class LaunchdError {
    None = 0,
    NotPermitted = 1,
    NoSuchProcess = 3,
    InputOutput = 5,
    NoDomain = 112,
    NoService = 113,
    Disabled = 119,
    UnsupportedDomain = 125,
    IntegrityProtected = 150,
};

/// "Input/output error".
QString launchdErrorText(LaunchdError error);

} // namespace macsim
