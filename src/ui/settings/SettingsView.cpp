#include "ui/settings/SettingsView.h"

#include "actions/Session.h"
#include "ui/ViewEnvironment.h"
#include "ui/pieces/IdleGuard.h"
#include "ui/settings/AppSecuritySection.h"
#include "ui/settings/AppearanceSection.h"
#include "ui/settings/BaselinesSection.h"
#include "ui/settings/PermissionsSection.h"
#include "ui/settings/ProfileBackupSection.h"
#include "ui/settings/StartupSection.h"
#include "ui/settings/WallpaperSection.h"

#include <QGuiApplication>
#include <QShowEvent>

#include <QCoroTask>

namespace quorvane {

SettingsView::SettingsView(const ViewEnvironment& environment, QWidget* parent)
    : ScrollPage(parent)
    , m_environment(environment) {
    addPart(new AppearanceSection(environment.appearance));
    addPart(new AppSecuritySection(environment));
    addPart(new ProfileBackupSection(environment));
    addPart(new BaselinesSection(environment));
    addPart(new WallpaperSection(environment));
    addPart(new StartupSection(environment));
    addPart(new PermissionsSection(environment));
    finish();
    new IdleGuard(this, environment.session.turnstile);
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, &SettingsView::lookAroundWhenActive);
    connect(&environment.session.turnstile, &Turnstile::idleChanged, this, &SettingsView::readAnewWhenIdle);
}

void SettingsView::showEvent(QShowEvent* event) {
    ScrollPage::showEvent(event);
    if (!event->spontaneous()) {
        lookAround();
    }
}

/// Much of what is shown is changed by others, who tell of nothing.
void SettingsView::lookAround() {
    Session& session = m_environment.session;
    session.settingsStatus.readAnew();
    session.tasks.start(session.backupActions.lookAround());
}

/// The user may come from the system's settings.
void SettingsView::lookAroundWhenActive() {
    if (isVisible() && QGuiApplication::applicationState() == Qt::ApplicationActive) {
        lookAround();
    }
}

/// What the menu has begun may have changed what is shown.
void SettingsView::readAnewWhenIdle() {
    if (isVisible() && m_environment.session.turnstile.isIdle()) {
        m_environment.session.settingsStatus.readAnew();
    }
}

} // namespace quorvane
