#include "ui/settings/PermissionsSection.h"

#include "actions/Session.h"
#include "actions/SettingsTexts.h"
#include "actions/WindowListener.h"
#include "ui/ViewEnvironment.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/InformationRow.h"
#include "ui/pieces/RowButton.h"
#include "ui/settings/SettingsRows.h"

#include <QCoroTask>

namespace quorvane {

namespace {

BadgeColor tintOf(FullDiskAccess access) {
    switch (access) {
    case FullDiskAccess::Given:
        return BadgeColor::Green;
    case FullDiskAccess::Missing:
        return BadgeColor::Orange;
    case FullDiskAccess::Unknown:
        break;
    }
    return BadgeColor::Grey;
}

} // namespace

PermissionsSection::PermissionsSection(const ViewEnvironment& environment, QWidget* parent)
    : AppSection(kPermissionsTitle, parent)
    , m_environment(environment)
    , m_access(new InformationRow) {
    setHeader(kPermissionsHeader);
    auto* const openSettings = new RowButton(settingsRow(openSystemSettingsRow(), BadgeColor::Grey));
    auto* const note = new InformationRow;
    note->setContent({.symbol = kPermissionsNoteSymbol, .tint = BadgeColor::Blue, .title = kPermissionsNote});
    for (QWidget* const row : QList<QWidget*>{m_access, openSettings, note}) {
        card().addRow(row);
    }
    Session& session = environment.session;
    ActionListener& listener = environment.listener;
    connect(openSettings, &QPushButton::clicked, this,
            [&session, &listener] { session.tasks.start(session.settingsActions.openPrivacySettings(listener)); });
    connect(&session.settingsStatus, &SettingsStatus::changed, this, &PermissionsSection::takeStatus);
    takeStatus();
}

void PermissionsSection::takeStatus() {
    const FullDiskAccess access = m_environment.session.settingsStatus.current().fullDiskAccess;
    m_access->setContent(settingsRow(fullDiskAccessRow(access), tintOf(access)));
}

} // namespace quorvane
