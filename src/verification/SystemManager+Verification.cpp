#include "core/SystemManager.h"

#include "verification/TweakVerification.h"
#include "verification/ValueTests.h"

#include <QCoroTask>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString described(const ApplyVerificationResult::Item& item) {
    return item.detail ? item.name + u" — "_s + *item.detail : item.name;
}

} // namespace

QCoro::Task<ApplyVerificationResult> SystemManager::verifyAppliedSettings(PerformanceSettings settings,
                                                                          UnselectedTweaks unselected) {
    TweakVerification tweaks(*this, settings, unselected);
    ApplyVerificationResult result = co_await tweaks.run();
    if (!settings.cleanReboot && unselected == UnselectedTweaks::ExpectedRestored) {
        if (co_await isAppRestorationOff()) {
            result.failed.append({u"Clean Reboot"_s, u"expected app restoration enabled"_s});
        } else {
            result.verified.append({u"Clean Reboot"_s, u"app restoration enabled"_s});
        }
    }
    co_return result;
}

QCoro::Task<bool> SystemManager::isAppRestorationOff() {
    const auto savesState = co_await readDefaultValue(u"com.apple.loginwindow"_s, u"TALLogoutSavesState"_s);
    const auto relaunchesApps =
        co_await readDefaultValue(u"com.apple.loginwindow"_s, u"LoginwindowLaunchesRelaunchApps"_s);
    co_return isOffValue(savesState) && isOffValue(relaunchesApps);
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
