#pragma once

#include "tweaks/PerformanceSettings.h"
#include "tweaks/TweakPreferences.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace quorvane {

// The program's protocol with the operating system for the tweaks: exact argument lists, in their order.
//
// `notificationCenter` is the path of Notification Center's per-host preferences,
// "{home}/Library/Preferences/ByHost/com.apple.notificationcenterui".

/// Commands that run as the user, one after the other, and the log line behind them.
struct TweakStep {
    QList<QStringList> commands;
    QString logLine;
};

/// Whether the program may change a preference: one that an organization has set gets no command.
using MayChange = std::function<bool(const MacPreference&)>;

/// One-way: only the selected tweaks have steps. One whose every preference is an organization's is only told of.
QList<TweakStep> applySteps(const PerformanceSettings& settings, const QString& notificationCenter,
                            const MayChange& mayChange);
/// One-way: the commands that need root; empty when no selected tweak needs any.
QStringList applySystemCommands(const PerformanceSettings& settings, const MayChange& mayChange);

/// Where Focus keeps what it was told of Do Not Disturb.
inline constexpr QStringView kFocusPreferences = u"com.apple.ncprefs.plist";
inline constexpr QStringView kFocusKey = u"dnd_prefs";
/// True where one of the steps marks Do Not Disturb as on there.
bool marksFocus(const QList<TweakStep>& steps);

/// Two-way: puts one group in force, or back to what a fresh macOS has.
TweakStep syncStep(const PreferenceGroup& group, TweakState state, const QString& notificationCenter,
                   const MayChange& mayChange);

/// Back to what a fresh macOS has.
QList<TweakStep> undoSteps(const QString& notificationCenter, const MayChange& mayChange);
QStringList undoSystemCommands();

/// Lets macOS reopen apps and windows after a restart.
TweakStep restoreAppRestorationStep(const MayChange& mayChange);
/// Keeps macOS from reopening apps and windows after a restart.
TweakStep stopAppRestorationStep(const MayChange& mayChange);

/// What follows when the preferences of a group have been written: Notification Center itself is stopped and started.
QList<QStringList> commandsBehindPreferences(const PreferenceGroup& group, TweakState state);

/// "  [INFO] Set by your organization: Siri"
QString managedLine(const QString& tweakName);

// ---- launchd's override of Notification Center: what stops it also disables it, which may outlive what starts it

/// Notification Center's agent, as launchd knows it: not by its file's name.
inline constexpr QStringView kNotificationCenterLabel = u"com.apple.notificationcenterui.agent";
/// The same steps with a command right before each that starts Notification Center.
/// @param enable  lifts the override
QList<TweakStep> enablingNotificationCenter(QList<TweakStep> steps, const QStringList& enable);
/// The same steps without what would disable it: used where nobody could note that the program has done so.
QList<TweakStep> leavingNotificationCenterOn(QList<TweakStep> steps);
bool stopsNotificationCenter(const QList<TweakStep>& steps);

// Single commands of root. Values are words of the shell.

/// A Mac that stays awake, or one with standard sleep values: standby as 1 or 0, the others in minutes, of which 0 is never.
QString powerCommand(bool staysAwake);
/// @param value  1 is on
QString motionSensorCommand(const QString& value);
inline const QString kMotionSensorOff = QStringLiteral("0");
inline const QString kMotionSensorOn = QStringLiteral("1");
/// Switches the indexing of all volumes.
QString spotlightCommand(bool indexes);
/// Switches the automatic backups.
QString timeMachineCommand(bool backsUp);
/// Writes one of the system's switches, or deletes it: macOS's own choice holds then.
QString systemPreferenceCommand(const MacPreference& preference, std::optional<bool> value);
/// Puts those in force that belong to selected tweaks.
QStringList systemPreferenceCommands(const PerformanceSettings& settings, const MayChange& mayChange);

} // namespace quorvane
