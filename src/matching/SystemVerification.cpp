#include "matching/SystemVerification.h"

#include "core/Background.h"
#include "core/Paths.h"
#include "network/NetworkServices.h"
#include "platform/Host.h"
#include "profiles/UnifiedProfile.h"
#include "startup/apply/ActiveStartup.h"
#include "startup/apply/StartupItems.h"
#include "startup/apply/StartupTargets.h"
#include "startup/apply/StartupVerification.h"
#include "startup/background/BackgroundItemPermission.h"
#include "startup/background/BackgroundItems.h"
#include "startup/items/StartupChanges.h"
#include "startup/launchd/Launchd.h"
#include "startup/login/LoginItems.h"
#include "tweaks/TweakCommands.h"
#include "tweaks/ValueTests.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kOrganizations = u"set by your organization"_s;

void addCheck(ApplyVerificationResult& result, bool holds, const QString& name, const QString& verifiedDetail,
              const QString& failedDetail) {
    (holds ? result.verified : result.failed).append({name, holds ? verifiedDetail : failedDetail});
}

void checkPermittedLoginItems(ApplyVerificationResult& result, const LoginItemList& list,
                              const CleanReboot& cleanReboot) {
    const QString name = u"Clean Reboot login items"_s;
    if (!list.wasRead) {
        result.failed.append({name, u"could not read login items"_s}); // a list that nobody may read proves nothing
        return;
    }
    const QList<LoginItem> going = dividedLoginItems(list.items, cleanReboot).going;
    for (const LoginItem& item : going) {
        result.failed.append({u"Login item: "_s + item.name, u"will open at login"_s});
    }
    if (going.isEmpty()) {
        const QString permitted = sortedTexts(allPermittedNames(cleanReboot)).join(u", "_s);
        result.verified.append({name, permitted.isEmpty() ? u"no apps configured to open at login"_s
                                                          : u"only permitted apps remain (%1)"_s.arg(permitted)});
    }
}

/// With no service listed, or one that can't be read, nobody knows.
bool areAllOff(const QList<NetworkServiceState>& services) {
    return !services.isEmpty() && std::all_of(services.begin(), services.end(), [](const NetworkServiceState& service) {
        return service.isEnabled == false;
    });
}

} // namespace

SystemVerification::SystemVerification(FlowEnvironment& environment, const Startup& startup,
                                       SystemReadings::Files files)
    : Flow(environment)
    , m_readings(environment, files)
    , m_startup(startup)
    , m_files(files) {}

OwnSettings SystemVerification::ownSettings() {
    if (m_files == SystemReadings::Files::Anew || !m_own) {
        m_own = readOwnSettings(host());
    }
    return *m_own;
}

QCoro::Task<ApplyVerificationResult> SystemVerification::profile(UnifiedProfile profile, AfterOrder after) {
    ApplyVerificationResult result =
        co_await tweaks(profile.settings, UnselectedTweaks::ExpectedRestored, cleanRebootOf(profile), after);
    const ApplyVerificationResult found = co_await startup(profile.startup);
    result.verified += found.verified;
    for (const ApplyVerificationResult::Item& item : found.failed) {
        if (item != unavailableBackgroundItems() || !result.failed.contains(item)) {
            result.failed.append(item);
        }
    }
    co_return result;
}

QCoro::Task<ApplyVerificationResult> SystemVerification::tweaks(PerformanceSettings settings,
                                                                UnselectedTweaks unselected, CleanReboot cleanReboot,
                                                                AfterOrder after) {
    TweakVerification::Context context;
    context.own = ownSettings();
    context.isNotificationCenterOff = co_await isNotificationCenterOff();
    context.after = after;
    TweakVerification tweaks(m_readings, host().clock, settings, unselected, context);
    ApplyVerificationResult result = co_await tweaks.run();
    ApplyVerificationResult clean;
    if (settings.cleanReboot) {
        clean = co_await this->cleanReboot(cleanReboot);
    } else if (unselected == UnselectedTweaks::ExpectedRestored) {
        clean = co_await appRestorationLeftOn();
    }
    result.verified += clean.verified;
    result.failed += clean.failed;
    co_return result;
}

QCoro::Task<bool> SystemVerification::isNotificationCenterOff() {
    const LaunchdService agent{LaunchdDomain::User, kNotificationCenterLabel.toString()};
    if (!m_startup.launchd.hasRecorded(agent)) {
        co_return false;
    }
    const LaunchdOverrides overrides = co_await m_startup.launchd.overrides();
    co_return overrides.isDisabled(agent);
}

QCoro::Task<ApplyVerificationResult> SystemVerification::cleanReboot(CleanReboot cleanReboot) {
    ApplyVerificationResult result;
    const AppRestoration found = co_await readAppRestoration();
    const auto detail = [](bool isManaged, const QString& text) { return isManaged ? kOrganizations : text; };
    addCheck(result, found.isAnswered && found.isOff, u"Clean Reboot"_s,
             detail(found.isManaged, u"app restoration disabled"_s),
             detail(found.isManaged, u"expected app restoration disabled"_s));
    const CurrentPreference keepsWindows = co_await m_readings.readCurrentPreference(preference::kKeptWindows);
    addCheck(result, isOffValue(keepsWindows.reading.value), u"Clean Reboot windows"_s,
             detail(keepsWindows.isManaged, u"window restoration disabled"_s),
             detail(keepsWindows.isManaged, u"expected window restoration disabled"_s));
    if (!cleanReboot.startup) {
        co_return result;
    }
    checkPermittedLoginItems(result, co_await m_startup.loginItems.current(), cleanReboot);
    const ApplyVerificationResult background =
        co_await m_startup.backgroundItems.verify(allPermittedNames(cleanReboot), cleanReboot.startup);
    result.verified += background.verified;
    result.failed += background.failed;
    result.failed += co_await nonPermittedRegistrations(cleanReboot);
    co_return result;
}

/// Applications that have registered themselves: System Events can't take out what it doesn't list.
QCoro::Task<QList<ApplyVerificationResult::Item>>
SystemVerification::nonPermittedRegistrations(CleanReboot cleanReboot) {
    const QList<BackgroundTaskItem> applications = nonPermittedApplications(
        m_startup.backgroundItems.records(), allPermittedNames(cleanReboot), cleanReboot.startup);
    QList<ApplyVerificationResult::Item> items;
    if (applications.isEmpty()) {
        co_return items;
    }
    const StartupReadings readings = co_await startupReadings();
    const ActiveStartup active(readings, {});
    for (const BackgroundTaskItem& application : applications) {
        const QString path = recordedPath(application).value_or(QString());
        if (active.isRegisteredUnlisted(path)) {
            items.append(opensByItsRegistration(nameInPath(path)));
        }
    }
    co_return items;
}

QCoro::Task<AppRestoration> SystemVerification::readAppRestoration() {
    CurrentSettings current;
    current.of(preference::kLogoutState) = co_await m_readings.readCurrentPreference(preference::kLogoutState);
    current.of(preference::kLoginRelaunch) = co_await m_readings.readCurrentPreference(preference::kLoginRelaunch);
    co_return appRestoration(current, ownSettings());
}

/// Of a profile that leaves the clean reboot off.
QCoro::Task<ApplyVerificationResult> SystemVerification::appRestorationLeftOn() {
    ApplyVerificationResult result;
    const AppRestoration found = co_await readAppRestoration();
    const bool isChanged = ownSettings().hasChanged(&PerformanceSettings::cleanReboot);
    if (found.isAnswered && found.isOff && !found.wasOff && !found.isManaged && !isChanged) {
        co_return result; // the user's to decide
    }
    const bool isAsItWas = found.isOff == found.wasOff.value_or(false);
    const QString enabled = u"app restoration enabled"_s;
    const QString own = u"your own setting"_s;
    const QString detail = found.isManaged ? kOrganizations : found.isOff ? own : enabled;
    addCheck(result, found.isAnswered && (found.isManaged || isAsItWas), u"Clean Reboot"_s, detail,
             u"expected "_s + (found.wasOff == true ? own : enabled));
    co_return result;
}

QCoro::Task<ApplyVerificationResult> SystemVerification::startup(StartupConfiguration configuration) {
    if (!hasStartupChanges(configuration) && m_startup.loginItems.managedPaths().isEmpty()) {
        co_return ApplyVerificationResult(); // nothing to check, so nobody has to wait for System Events
    }
    StartupReadings readings = co_await startupReadings();
    if (configuration.disableNetworkAtStartup) {
        readings.isNetworkOff = areAllOff(co_await m_readings.readNetworkServices());
    }
    co_return co_await inBackground(startupVerification, configuration, readings);
}

QCoro::Task<StartupReadings> SystemVerification::startupReadings() {
    StartupReadings readings;
    const DiscoveredStartup found = co_await m_startup.items.discover();
    readings.discovered = found.items;
    readings.loginItems = co_await m_startup.loginItems.current();
    readings.backgroundItems = m_startup.backgroundItems.list();
    readings.managedPaths = m_startup.loginItems.managedPaths();
    readings.launchd = co_await m_startup.launchd.readings();
    readings.memory = m_startup.backgroundItems.memory();
    readings.onAgain = labelsOnAgain(m_startup.launchd.recordedOverrides(), readings.launchd.overrides());
    co_return readings;
}

} // namespace quorvane
