#pragma once

#include "tweaks/PerformanceSettings.h"
#include "tweaks/TweakPreferences.h"

#include <QList>
#include <QString>
#include <QStringList>

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

/// One-way: only the selected tweaks have steps.
QList<TweakStep> applySteps(const PerformanceSettings& settings, const QString& notificationCenter);
/// One-way: the commands that need root; empty when no selected tweak needs any.
QStringList applySystemCommands(const PerformanceSettings& settings);

/// Two-way: every tweak has a step, which puts it in force or back.
QList<TweakStep> syncSteps(const PerformanceSettings& settings, const QString& notificationCenter);
/// Two-way: always three commands.
QStringList syncSystemCommands(const PerformanceSettings& settings);

/// Back to what a fresh macOS has.
QList<TweakStep> undoSteps(const QString& notificationCenter);
QStringList undoSystemCommands();

/// Lets macOS reopen apps and windows after a restart.
TweakStep restoreAppRestorationStep();
/// Keeps macOS from reopening apps and windows after a restart.
TweakStep stopAppRestorationStep();

enum class TweakState { InForce, Standard };
/// What follows when the preferences of a group have been written: Notification Center itself is stopped and started.
QList<QStringList> commandsBehindPreferences(const PreferenceGroup& group, TweakState state);

// Single commands of root. Values are words of the shell.

QString motionSensorCommand(const QString& value);
/// Switches the indexing of all volumes.
QString spotlightCommand(bool indexes);
/// Switches the automatic backups.
QString timeMachineCommand(bool backsUp);

} // namespace quorvane
