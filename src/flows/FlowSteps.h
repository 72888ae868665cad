#pragma once

#include "tweaks/TweakCommands.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace quorvane {

// What recorded flows do, step by step, as their records tell it. What tweaks are changed in is a step each, told by its log line.

inline const QString kStartupStep = QStringLiteral("what runs at login");
inline const QString kAdministratorsStep = QStringLiteral("what needs an administrator");
inline const QString kCheckStep = QStringLiteral("the check");
inline const QString kSettingsStep = QStringLiteral("the settings");
inline const QString kApplicationsStep = QStringLiteral("the applications that were added");
inline const QString kLoginItemsStep = QStringLiteral("the login items");
inline const QString kLaunchItemsStep = QStringLiteral("the launch items");

inline QString flowStep(const TweakStep& step) {
    return step.logLine.trimmed();
}
/// Of those that run a command.
inline QStringList flowSteps(const QList<TweakStep>& steps) {
    QStringList names;
    for (const TweakStep& step : steps) {
        if (!step.commands.isEmpty() && !names.contains(flowStep(step))) {
            names.append(flowStep(step));
        }
    }
    return names;
}

} // namespace quorvane
