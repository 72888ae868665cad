#include "ui/settings/AppearanceSection.h"

#include "actions/SettingsTexts.h"
#include "appearance/AppearanceManager.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/TickRow.h"
#include "ui/settings/SettingsRows.h"

namespace quorvane {

AppearanceSection::AppearanceSection(AppearanceManager& appearance, QWidget* parent)
    : AppSection(kAppearanceTitle, parent)
    , m_appearance(appearance) {
    setHeader(kAppearanceHeader);
    card().setTextLeft(rowTextLeft({}));
    for (const AppearanceChoice& choice : appearanceChoices()) {
        auto* const row = new ChoiceRow(settingsRow(choice.text, BadgeColor::Grey));
        card().addRow(row);
        m_choices.insert(choice.mode, row);
        connect(row, &QAbstractButton::toggled, this, [&appearance, mode = choice.mode](bool isChosen) {
            if (isChosen) {
                appearance.setMode(mode);
            }
        });
    }
    takeMode();
}

/// Of the three only the chosen one is on the way of the Tab key; Qt sees to that as soon as one has the focus.
void AppearanceSection::takeMode() {
    QAbstractButton* const unknown = m_choices.value(appearanceChoices().constFirst().mode);
    QAbstractButton* const chosen = m_choices.value(m_appearance.mode(), unknown);
    {
        const QSignalBlocker isNoChoice(chosen); // a mode that is unknown stays as it is stored
        chosen->setChecked(true);
    }
    for (QAbstractButton* const choice : std::as_const(m_choices)) {
        choice->setFocusPolicy(choice == chosen ? Qt::StrongFocus : Qt::ClickFocus);
    }
}

} // namespace quorvane
