#include "ui/settings/StartupSection.h"

#include "actions/Session.h"
#include "actions/SettingsTexts.h"
#include "actions/WindowListener.h"
#include "ui/ViewEnvironment.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/SwitchRow.h"

#include <QCoroTask>

namespace quorvane {

StartupSection::StartupSection(const ViewEnvironment& environment, QWidget* parent)
    : AppSection(kStartupTitle, parent)
    , m_environment(environment)
    , m_row(new SwitchRow(launchAtLoginRow(), BadgeColor::Green)) {
    setHeader(kStartupHeader);
    card().addRow(m_row);
    Session& session = environment.session;
    ActionListener& listener = environment.listener;
    connect(m_row, &SwitchRow::asked, this, [&session, &listener](bool isWanted) {
        session.tasks.start(session.settingsActions.setLaunchAtLogin(isWanted, listener));
    });
    connect(&session.settingsStatus, &SettingsStatus::changed, this, &StartupSection::takeStatus);
    takeStatus();
}

void StartupSection::takeStatus() {
    const LoginService::State state = m_environment.session.settingsStatus.current().launchAtLogin;
    m_row->setState(state == LoginService::State::Enabled, launchAtLoginNote(state));
}

} // namespace quorvane
