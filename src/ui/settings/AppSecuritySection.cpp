#include "ui/settings/AppSecuritySection.h"

#include "actions/LockActions.h"
#include "actions/Session.h"
#include "actions/SettingsTexts.h"
#include "actions/WindowListener.h"
#include "lock/LockManager.h"
#include "ui/ViewEnvironment.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/InformationRow.h"
#include "ui/pieces/RowButton.h"
#include "ui/settings/SettingsRows.h"

#include <QCoroTask>

namespace quorvane {

AppSecuritySection::AppSecuritySection(const ViewEnvironment& environment, QWidget* parent)
    : AppSection(kSecurityTitle, parent)
    , m_environment(environment)
    , m_isActive(new InformationRow)
    , m_lockNow(new RowButton(settingsRow(lockNowRow(), BadgeColor::Blue)))
    , m_change(new RowButton(settingsRow(changePasswordRow(), BadgeColor::Grey)))
    , m_setOrRemove(new RowButton({})) {
    auto* const about = new InformationRow;
    about->setContent(settingsRow(appLockRow(environment.lock.biometryType()), BadgeColor::Blue));
    m_isActive->setContent(settingsRow(lockIsActiveRow(), BadgeColor::Green));
    for (QWidget* const row : QList<QWidget*>{about, m_isActive, m_lockNow, m_change, m_setOrRemove}) {
        card().addRow(row);
    }
    LockManager& lock = environment.lock;
    connect(&lock, &LockManager::isLockEnabledChanged, this, &AppSecuritySection::takeLock);
    connect(m_lockNow, &QPushButton::clicked, this, [&environment] { environment.lockActions.lockNow(); });
    connect(m_change, &QPushButton::clicked, this, [this] { askPassword(AppPasswordSheetMode::change); });
    connect(m_setOrRemove, &QPushButton::clicked, this, [this, &lock] {
        askPassword(lock.isLockEnabled() ? AppPasswordSheetMode::disable : AppPasswordSheetMode::enable);
    });
    takeLock();
}

void AppSecuritySection::takeLock() {
    const bool isOn = m_environment.lock.isLockEnabled();
    for (QWidget* const row : QList<QWidget*>{m_isActive, m_lockNow, m_change}) {
        row->setVisible(isOn);
    }
    m_setOrRemove->setContent(isOn ? settingsRow(removeLockRow(), BadgeColor::Red)
                                   : settingsRow(setPasswordRow(), BadgeColor::Blue));
    card().update();
}

void AppSecuritySection::askPassword(AppPasswordSheetMode mode) {
    m_environment.session.tasks.start(m_environment.lockActions.askPassword(mode, m_environment.listener));
}

} // namespace quorvane
