#include "ui/settings/ProfileBackupSection.h"

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

ProfileBackupSection::ProfileBackupSection(const ViewEnvironment& environment, QWidget* parent)
    : AppSection(kBackupTitle, parent)
    , m_environment(environment)
    , m_status(new InformationRow)
    , m_backUp(new RowButton(settingsRow(backUpRow(), BadgeColor::Blue)))
    , m_restore(new RowButton(settingsRow(restoreRow(), BadgeColor::Orange))) {
    setHeader(kBackupHeader);
    for (QWidget* const row : QList<QWidget*>{m_status, m_backUp, m_restore}) {
        card().addRow(row);
    }
    Session& session = environment.session;
    ActionListener& listener = environment.listener;
    const ProfileCloudManager& backups = session.cloudBackups;
    connect(&backups, &ProfileCloudManager::backupsChanged, this, &ProfileBackupSection::takeBackups);
    connect(&backups, &ProfileCloudManager::isICloudAvailableChanged, this, &ProfileBackupSection::takeBackups);
    connect(&backups, &ProfileCloudManager::isBusyChanged, this, &ProfileBackupSection::takeBackups);
    connect(m_backUp, &QPushButton::clicked, this,
            [&session, &listener] { session.tasks.start(session.backupActions.backUp(listener)); });
    connect(m_restore, &QPushButton::clicked, this,
            [&session, &listener] { session.tasks.start(session.backupActions.chooseAndRestore(listener)); });
    takeBackups();
}

void ProfileBackupSection::takeBackups() {
    const Session& session = m_environment.session;
    const ProfileCloudManager& backups = session.cloudBackups;
    const bool isAvailable = backups.isICloudAvailable();
    const RowText text = cloudRow(isAvailable, backups.backups(), session.system.host().machine);
    m_status->setContent(settingsRow(text, isAvailable ? BadgeColor::Green : BadgeColor::Grey));
    m_backUp->setEnabled(!backups.isBusy());
    m_restore->setEnabled(!backups.isBusy());
}

} // namespace quorvane
