#include "system/SystemManager.h"

#include "core/UserDefaultKeys.h"
#include "matching/SystemVerification.h"
#include "platform/UserDefaults.h"
#include "readings/ManagedPreferences.h"
#include "snapshots/SyncPlan.h"
#include "startup/launchd/LaunchItems.h"
#include "startup/launchd/Launchd.h"
#include "tweaks/TweakCatalogue.h"

#include <QCoroTask>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

LaunchdService notificationCenterAgent() {
    return {LaunchdDomain::User, kNotificationCenterLabel.toString()};
}

QStringList sorted(const QSet<QString>& keys) {
    QStringList list(keys.begin(), keys.end());
    list.sort();
    return list;
}

} // namespace

QCoro::Task<CurrentSettings> SystemManager::lookAtTweaks(LookedAtVolumes volumes) {
    return m_verification->readings().readCurrentSettings(
        volumes == LookedAtVolumes::All ? SystemReadings::Volumes::All : SystemReadings::Volumes::OfTheSystem);
}

/// A capture that knows each volume has each looked at.
SystemManager::LookedAtVolumes SystemManager::volumesFor(const std::optional<SystemSnapshot>& goingBackTo) {
    return goingBackTo && goingBackTo->spotlightByVolume ? LookedAtVolumes::All : LookedAtVolumes::OfTheSystem;
}

MayChange SystemManager::mayChange() const {
    return [&host = m_host](const MacPreference& preference) {
        return !managedValue(preference, host.propertyLists, host.machine);
    };
}

/// Before the first command: a run that is killed has changed something all the same.
void SystemManager::noteChangedTweaks(const PerformanceSettings& settings, const CurrentSettings& current) {
    const QStringList noted = m_host.defaults.stringArray(kQuorvaneChangedTweaks);
    const QStringList all = sorted(tweaksToChange(settings, current) + QSet<QString>(noted.begin(), noted.end()));
    if (all != noted) {
        m_host.defaults.setStringArray(kQuorvaneChangedTweaks, all);
        m_host.defaults.synchronize();
    }
}

/// A tweak that the program has put in force is the program's until it has been read as the user had it. With nothing noted but
/// what is wanted in force nothing is read.
QCoro::Task<void> SystemManager::strikeRestoredTweaks(PerformanceSettings wanted) {
    const QStringList noted = m_host.defaults.stringArray(kQuorvaneChangedTweaks);
    const bool isOneLeftOff = std::any_of(noted.begin(), noted.end(), [&wanted](const QString& key) {
        const Tweak* tweak = findTweak(key);
        return tweak && !(wanted.*tweak->isSelected);
    });
    if (!isOneLeftOff) {
        co_return;
    }
    const CurrentSettings current = co_await lookAtTweaks();
    strikeTweaksSeenBack(current);
}

void SystemManager::strikeTweaksSeenBack(const CurrentSettings& current) {
    const QStringList noted = m_host.defaults.stringArray(kQuorvaneChangedTweaks);
    const OwnSettings own = readOwnSettings(m_host);
    const QStringList left = sorted(QSet<QString>(noted.begin(), noted.end()) - tweaksThatAreBack(own, current));
    if (left.isEmpty()) {
        m_host.defaults.remove(kQuorvaneChangedTweaks);
    } else if (left != noted) {
        m_host.defaults.setStringArray(kQuorvaneChangedTweaks, left);
    }
}

/// As launchd has it now.
QCoro::Task<bool> SystemManager::isNotificationCenterOff() {
    if (m_launchItems->launchd().hasRecorded(notificationCenterAgent())) {
        m_launchItems->launchd().drop();
    }
    co_return co_await m_verification->isNotificationCenterOff();
}

/// Steps that may stop and start Notification Center. launchd's override of it, which may outlive its start, is written down before
/// it is made, and lifted where it was.
/// @return false where launchd keeps it switched off
QCoro::Task<bool> SystemManager::runStepsOfNotificationCenter(QList<TweakStep> steps) {
    Launchd& launchd = m_launchItems->launchd();
    const bool stops = stopsNotificationCenter(steps);
    const QList<LaunchdService> agent(1, notificationCenterAgent());
    if (stops && !co_await launchd.recordOverrides(agent)) {
        steps = leavingNotificationCenterOn(steps);
    }
    const bool isOff = !stops && co_await isNotificationCenterOff();
    if (isOff) {
        const QStringList enable{u"/bin/launchctl"_s, u"enable"_s, launchd.target(notificationCenterAgent())};
        steps = enablingNotificationCenter(steps, enable);
    }
    co_await runTweakSteps(steps);
    if (stops) {
        launchd.drop();
        co_await launchd.settleRecorded();
    }
    const bool isStillOff = isOff && co_await launchd.isStillDisabled(notificationCenterAgent());
    if (isStillOff) {
        log(u"  [ERROR] Notification Center is still switched off."_s);
    }
    co_return !isStillOff;
}

} // namespace quorvane
