#include "ui/settings/WallpaperSection.h"

#include "actions/Session.h"
#include "actions/SettingsTexts.h"
#include "actions/WindowListener.h"
#include "ui/ViewEnvironment.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/SwitchRow.h"

#include <QCoroTask>

namespace quorvane {

WallpaperSection::WallpaperSection(const ViewEnvironment& environment, QWidget* parent)
    : AppSection(kWallpaperTitle, parent)
    , m_environment(environment)
    , m_row(new SwitchRow(wallpaperRow(), BadgeColor::Teal)) {
    setHeader(kWallpaperHeader);
    card().addRow(m_row);
    connect(m_row, &SwitchRow::asked, this, &WallpaperSection::change);
    connect(&environment.session.settingsStatus, &SettingsStatus::changed, this, &WallpaperSection::takeStatus);
    takeStatus();
}

void WallpaperSection::takeStatus() {
    const SettingsFacts& facts = m_environment.session.settingsStatus.current();
    m_row->setState(facts.showsLabel, wallpaperNote(facts));
}

void WallpaperSection::change(bool isWanted) {
    Session& session = m_environment.session;
    ActionListener& listener = m_environment.listener;
    if (isWanted) {
        session.tasks.start(session.settingsActions.showLabel({}, listener));
    } else {
        session.tasks.start(session.settingsActions.removeLabel(listener));
    }
}

} // namespace quorvane
