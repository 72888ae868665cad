#include "actions/SettingsActions.h"

#include "actions/ActionStage.h"
#include "actions/ActionTexts.h"
#include "actions/ActiveProfile.h"
#include "actions/SettingsStatus.h"
#include "actions/SettingsTexts.h"
#include "actions/WindowTexts.h"
#include "core/UserDefaultKeys.h"
#include "platform/LoginService.h"
#include "platform/UserDefaults.h"
#include "profiles/ProfileLabel.h"
#include "system/SystemManager.h"

#include <QCoroTask>
#include <QScopeGuard>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kLabelActivity = u"change the wallpaper label"_s;
const QString kLoginActivity = u"change the login item settings"_s;
const QString kPrivacySettings = u"x-apple.systempreferences:com.apple.preference.security?Privacy_AllFiles"_s;

} // namespace

// ---- The label

QCoro::Task<ActionOutcome> SettingsActions::showLabel(const QString& name, ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(kLabelActivity)) {
            co_return;
        }
        const std::optional<Alert> question =
            m_parts.label.hasAnimatedPicture() ? std::optional(animatedPictureQuestion()) : std::nullopt;
        if (!co_await action.isAgreedTo(question)) {
            co_return;
        }
        action.carryOutAtOnce();
        const auto readAnew = qScopeGuard([this] { m_parts.status.readAnew(); });
        const QString shown = name.isEmpty() ? labelName() : name;
        co_await m_parts.label.setOverlayEnabled(true, shown);
        action.outcome.succeeded = m_parts.label.isOverlayInPlace();
    });
}

QCoro::Task<ActionOutcome> SettingsActions::removeLabel(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(kLabelActivity)) {
            co_return;
        }
        action.carryOutAtOnce();
        const auto readAnew = qScopeGuard([this] { m_parts.status.readAnew(); });
        co_await m_parts.label.setOverlayEnabled(false, {});
        action.outcome.succeeded = true;
    });
}

QString SettingsActions::labelName() const {
    const QString title = titleName(m_parts.active.current());
    if (!title.isEmpty() && !isDefaultProfileName(title)) {
        return title;
    }
    const QString stored = m_parts.defaults.string(kWallpaperProfileName).value_or(QString());
    return isDefaultProfileName(stored) ? QString() : stored;
}

// ---- Launching at login

QCoro::Task<ActionOutcome> SettingsActions::setLaunchAtLogin(bool isWanted, ActionListener& listener) {
    return m_stage.run(listener, [=, this](Action& action) -> QCoro::Task<void> {
        if (!co_await action.passesGate(kLoginActivity)) {
            co_return;
        }
        action.carryOutAtOnce();
        const std::optional<QString> error = changeLoginItem(isWanted);
        m_parts.status.readAnew();
        const LoginService::State state = m_parts.loginService.state();
        action.outcome.succeeded = (state == LoginService::State::Enabled) == isWanted;
        if (action.outcome.succeeded) {
            m_parts.system.log(isWanted ? u"Login item enabled."_s : u"Login item disabled."_s);
            co_return;
        }
        const QString reason = error.value_or(u"The system left it as it was."_s);
        m_parts.system.log(u"Failed to update login item: "_s + reason);
        if (state != LoginService::State::RequiresApproval) { // or its row says what to do
            co_await action.tell(loginAlert(reason));
        }
    });
}

/// Gives the system's words for a failure.
std::optional<QString> SettingsActions::changeLoginItem(bool isWanted) {
    LoginService& service = m_parts.loginService;
    const std::optional<QString> error = isWanted ? service.registerProgram() : service.unregisterProgram();
    const bool awaitsApproval = isWanted && service.state() == LoginService::State::RequiresApproval;
    return awaitsApproval ? std::optional(kAllowInSettings) : error;
}

// ---- Privacy

QCoro::Task<ActionOutcome> SettingsActions::openPrivacySettings(ActionListener& listener) {
    return m_stage.run(listener, [this](Action& action) -> QCoro::Task<void> {
        m_parts.system.log(u"Opening macOS Privacy & Security settings..."_s);
        co_await action.tell(fullDiskAlert());
        if (!action.mayGoOn()) {
            co_return;
        }
        const QStringList arguments{u"/usr/bin/open"_s, kPrivacySettings};
        const CommandResult result = co_await m_parts.system.runCommand(arguments, OutputCapture::Discard);
        action.outcome.succeeded = result.status == 0;
        if (!action.outcome.succeeded) {
            m_parts.system.log(u"  [ERROR] System Settings could not be opened: "_s + result.standardError.trimmed());
        }
    });
}

} // namespace quorvane
