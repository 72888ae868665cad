#include "ui/settings/BaselinesSection.h"

#include "actions/BaselineTexts.h"
#include "actions/Session.h"
#include "actions/WindowListener.h"
#include "ui/ViewEnvironment.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/InformationRow.h"
#include "ui/pieces/RowButton.h"
#include "ui/settings/SettingsRows.h"

#include <QCoroTask>

namespace quorvane {

BaselinesSection::BaselinesSection(const ViewEnvironment& environment, QWidget* parent)
    : AppSection(kBaselinesTitle, parent)
    , m_environment(environment)
    , m_used(new InformationRow) {
    auto* const choose = new RowButton(settingsRow(chooseBaselineRow(), BadgeColor::Blue));
    setHeader(kBaselinesHeader);
    card().addRow(m_used);
    card().addRow(choose);
    Session& session = environment.session;
    ActionListener& listener = environment.listener;
    connect(&session.settingsStatus, &SettingsStatus::changed, this, &BaselinesSection::takeStatus);
    connect(choose, &QPushButton::clicked, this,
            [&session, &listener] { session.tasks.start(session.baselineActions.choose(listener)); });
    takeStatus();
}

void BaselinesSection::takeStatus() {
    const Session& session = m_environment.session;
    const std::optional<RestoreBaseline>& used = session.settingsStatus.current().restoreBaseline;
    const RowText text = usedBaselineRow(used, session.system.host().machine);
    m_used->setContent(settingsRow(text, used ? BadgeColor::Green : BadgeColor::Grey));
}

} // namespace quorvane
