#include "snapshots/SyncPlan.h"

#include "snapshots/RestoreCommands.h"
#include "tweaks/TweakCatalogue.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Settings = PerformanceSettings;
using Setting = bool PerformanceSettings::*;

/// What becomes of a tweak that is left off.
enum class LeftOff {
    NotHere, ///< this Mac doesn't have it
    AsItWas,
    GoesBackToOwn,
    GoesBackToStandard,
    Stays,
};

QString asItWasLine(Setting tweak) {
    return u"  [INFO] Already as it was: "_s + tweakOf(tweak).name;
}

QString staysLine(Setting tweak) {
    return u"  [INFO] Left as it is: "_s + tweakOf(tweak).name;
}

class Planning {
public:
    Planning(const PerformanceSettings& settings, const OwnSettings& own, const CurrentSettings& current,
             const QString& notificationCenter, bool isNotificationCenterOff)
        : m_settings(settings)
        , m_own(own)
        , m_current(current)
        , m_notificationCenter(notificationCenter)
        , m_isNotificationCenterOff(isNotificationCenterOff)
        , m_mayChange([&current](const MacPreference& preference) { return current.isChangeable(preference); }) {}

    SyncPlan plan() {
        for (const PreferenceGroup& group : preferenceGroups()) {
            if (group.tweak != &Settings::cleanReboot) {
                m_plan.steps.append(stepOf(group));
            } else if (!m_settings.cleanReboot) {
                m_plan.appRestoration = stepOf(group);
            }
        }
        planPower();
        planIndexing();
        planBackups();
        planSystemPreferences();
        return m_plan;
    }

private:
    /// Where nothing was captured and the program has changed nothing, only what macOS goes by tells; else nothing may be left.
    LeftOff leftOff(Setting tweak) const {
        const bool isKnown = m_own.captured || m_own.hasChanged(tweak);
        const TweakComparison comparison =
            compared(tweak, m_current, m_own, isKnown ? ComparedPreferences::All : ComparedPreferences::Deciding);
        if (!comparison.isOnThisMac) {
            return LeftOff::NotHere;
        }
        const bool isOff = tweak == &Settings::notifications && m_isNotificationCenterOff;
        if (comparison.isAsItWas() && !isOff) {
            return LeftOff::AsItWas;
        }
        if (comparison.isAsCaptured) {
            return LeftOff::GoesBackToOwn;
        }
        return m_own.hasChanged(tweak) || isOff ? LeftOff::GoesBackToStandard : LeftOff::Stays;
    }

    TweakStep stepOf(const PreferenceGroup& group) const {
        if (m_current.isManaged(group.tweak)) {
            return {{}, managedLine(tweakOf(group.tweak).name)};
        }
        if (m_settings.*group.tweak) {
            return syncStep(group, TweakState::InForce, m_notificationCenter, m_mayChange);
        }
        switch (leftOff(group.tweak)) {
        case LeftOff::GoesBackToOwn:
            return restoreStep(group, *m_own.captured, m_current, m_notificationCenter);
        case LeftOff::GoesBackToStandard:
            return syncStep(group, TweakState::Standard, m_notificationCenter, m_mayChange);
        case LeftOff::Stays:
            return {{}, staysLine(group.tweak)};
        case LeftOff::NotHere:
        case LeftOff::AsItWas:
            break;
        }
        return {{}, asItWasLine(group.tweak)};
    }

    /// What becomes of a setting of root's that is left off, told in the log where it gets no command.
    LeftOff toldLeftOff(Setting tweak) {
        const LeftOff found = leftOff(tweak);
        if (found == LeftOff::AsItWas) {
            m_plan.systemLines.append(asItWasLine(tweak));
        } else if (found == LeftOff::Stays) {
            m_plan.systemLines.append(staysLine(tweak));
        }
        return found;
    }

    /// What is one for every source of power stands in one line.
    void planPower() {
        QString settings;
        QStringList back;
        const LeftOff sleep = m_settings.usbPower ? LeftOff::NotHere : toldLeftOff(&Settings::usbPower);
        if (m_settings.usbPower || sleep == LeftOff::GoesBackToStandard) {
            settings = powerCommand(m_settings.usbPower).mid(u"pmset -a"_s.size());
        } else if (sleep == LeftOff::GoesBackToOwn) {
            back = sleepCommandsBack(*m_own.captured, m_current.power);
        }
        const LeftOff sensor = m_settings.sms ? LeftOff::NotHere : toldLeftOff(&Settings::sms);
        if (m_settings.sms || sensor == LeftOff::GoesBackToStandard) {
            settings += u" sms "_s + (m_settings.sms ? kMotionSensorOff : kMotionSensorOn);
        } else if (sensor == LeftOff::GoesBackToOwn) {
            back += motionSensorCommandsBack(*m_own.captured, m_current.power);
        }
        if (!settings.isEmpty()) {
            m_plan.systemCommands.append(u"pmset -a"_s + settings);
        }
        m_plan.systemCommands += back;
    }

    void planIndexing() {
        if (m_settings.spotlight) {
            m_plan.systemCommands.append(spotlightCommand(false));
            return;
        }
        const LeftOff indexing = toldLeftOff(&Settings::spotlight);
        if (indexing == LeftOff::GoesBackToOwn) {
            m_plan.systemCommands +=
                indexingCommandsBack(*m_own.captured, m_current.indexing.value.value_or(QList<IndexedVolume>()));
        } else if (indexing == LeftOff::GoesBackToStandard) {
            m_plan.systemCommands.append(spotlightCommand(true));
        }
    }

    void planBackups() {
        if (m_settings.timeMachine) {
            m_plan.systemCommands.append(timeMachineCommand(false));
            return;
        }
        const LeftOff backups = toldLeftOff(&Settings::timeMachine);
        if (backups == LeftOff::GoesBackToOwn) {
            m_plan.systemCommands.append(timeMachineCommand(*m_own.captured->timeMachineEnabled));
        } else if (backups == LeftOff::GoesBackToStandard) {
            m_plan.systemCommands.append(timeMachineCommand(true));
        }
    }

    void planSystemPreferences() {
        if (m_settings.updates) {
            m_plan.systemCommands += systemPreferenceCommands(m_settings, m_mayChange);
            return;
        }
        const LeftOff updates = leftOff(&Settings::updates);
        if (updates == LeftOff::GoesBackToOwn || updates == LeftOff::GoesBackToStandard) {
            m_plan.systemCommands += systemPreferenceCommandsBack(m_own.captured, m_current);
        }
    }

    const PerformanceSettings& m_settings;
    const OwnSettings& m_own;
    const CurrentSettings& m_current;
    QString m_notificationCenter;
    bool m_isNotificationCenterOff;
    MayChange m_mayChange;
    SyncPlan m_plan;
};

} // namespace

SyncPlan syncPlan(const PerformanceSettings& settings, const OwnSettings& own, const CurrentSettings& current,
                  const QString& notificationCenter, bool isNotificationCenterOff) {
    return Planning(settings, own, current, notificationCenter, isNotificationCenterOff).plan();
}

QSet<QString> tweaksToChange(const PerformanceSettings& settings, const CurrentSettings& current) {
    QSet<QString> keys;
    for (const Tweak& tweak : tweakCatalogue()) {
        const bool hasNoteOfItsOwn = tweak.isSelected == &Settings::timeMachine;
        const bool isHere = compared(tweak.isSelected, current, {}, ComparedPreferences::Deciding).isOnThisMac;
        if (settings.*tweak.isSelected && !hasNoteOfItsOwn && isHere && !current.isManaged(tweak.isSelected) &&
            !isInForce(tweak.isSelected, current)) {
            keys.insert(tweak.key);
        }
    }
    return keys;
}

QSet<QString> tweaksThatAreBack(const OwnSettings& own, const CurrentSettings& current) {
    QSet<QString> keys;
    for (const Tweak& tweak : tweakCatalogue()) {
        const TweakComparison comparison = compared(tweak.isSelected, current, own, ComparedPreferences::All);
        if (own.changedTweaks.contains(tweak.key) && (comparison.isAsItWas() || !comparison.isOnThisMac)) {
            keys.insert(tweak.key);
        }
    }
    return keys;
}

} // namespace quorvane
