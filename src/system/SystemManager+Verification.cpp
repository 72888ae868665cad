#include "system/SystemManager.h"

#include "startup/login/LoginItems.h"

#include "verification/TweakVerification.h"
#include "verification/ValueTests.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString described(const ApplyVerificationResult::Item& item) {
    return item.detail ? item.name + u" — "_s + *item.detail : item.name;
}

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

} // namespace

QCoro::Task<ApplyVerificationResult> SystemManager::verifyAppliedSettings(PerformanceSettings settings,
                                                                          UnselectedTweaks unselected,
                                                                          CleanReboot cleanReboot) {
    TweakVerification tweaks(m_readings, settings, unselected);
    ApplyVerificationResult result = co_await tweaks.run();
    if (settings.cleanReboot) {
        const ApplyVerificationResult clean = co_await verifyCleanReboot(cleanReboot);
        result.verified += clean.verified;
        result.failed += clean.failed;
    } else if (unselected == UnselectedTweaks::ExpectedRestored) {
        const Reading<bool> isOff = co_await isAppRestorationOff();
        addCheck(result, isOff.value == false, u"Clean Reboot"_s, u"app restoration enabled"_s,
                 u"expected app restoration enabled"_s);
    }
    co_return result;
}

QCoro::Task<ApplyVerificationResult> SystemManager::verifyCleanReboot(CleanReboot cleanReboot) {
    ApplyVerificationResult result;
    const Reading<bool> isOff = co_await isAppRestorationOff();
    addCheck(result, isOff.value == true, u"Clean Reboot"_s, u"app restoration disabled"_s,
             u"expected app restoration disabled"_s);
    const Reading<QString> keepsWindows = co_await m_readings.readPreference(preference::kKeptWindows);
    addCheck(result, isOffValue(keepsWindows.value), u"Clean Reboot windows"_s, u"window restoration disabled"_s,
             u"expected window restoration disabled"_s);
    if (!cleanReboot.startup) {
        co_return result;
    }
    checkPermittedLoginItems(result, co_await m_loginItems->current(), cleanReboot);
    const ApplyVerificationResult background =
        co_await verifyBackgroundLoginItems(allPermittedNames(cleanReboot), cleanReboot.startup);
    result.verified += background.verified;
    result.failed += background.failed;
    co_return result;
}

/// Known when both preferences are.
QCoro::Task<Reading<bool>> SystemManager::isAppRestorationOff() {
    const Reading<QString> savesState = co_await m_readings.readPreference(preference::kLogoutState);
    const Reading<QString> relaunchesApps = co_await m_readings.readPreference(preference::kLoginRelaunch);
    if (!savesState.isAnswered || !relaunchesApps.isAnswered) {
        co_return Reading<bool>::unanswered();
    }
    co_return Reading<bool>::answered(isOffValue(savesState.value) && isOffValue(relaunchesApps.value));
}

void SystemManager::logVerificationResult(const ApplyVerificationResult& result, const QString& section) {
    log(u"\n[VERIFY] "_s + section);
    for (const ApplyVerificationResult::Item& item : result.verified) {
        log(u"  [OK] "_s + described(item));
    }
    for (const ApplyVerificationResult::Item& item : result.failed) {
        log(u"  [MISSING] "_s + described(item));
    }
    log(result.failed.isEmpty() ? u"  [VERIFY] All settings confirmed on system."_s
                                : u"  [VERIFY] %1 setting(s) could not be confirmed."_s.arg(result.failed.size()));
}

} // namespace quorvane
