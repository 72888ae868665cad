#include "ui/tweaks/TweakSections.h"

#include "profiles/MasterProfileState.h"
#include "tweaks/TweakCatalogue.h"
#include "tweaks/TweakNotes.h"
#include "ui/Theme.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/AppSection.h"
#include "ui/tweaks/TweakToggle.h"

#include <QVBoxLayout>

namespace quorvane {

TweakSections::TweakSections(MasterProfileState& workingCopy, const QString& systemVersion, QWidget* parent)
    : QWidget(parent)
    , m_workingCopy(workingCopy)
    , m_systemVersion(systemVersion) {
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Theme::kGap24);
    for (const TweakSection& section : tweakSections()) {
        column->addWidget(makeSection(section));
    }
    connect(&workingCopy, &MasterProfileState::settingsChanged, this, &TweakSections::takeSettings);
    takeSettings();
}

QWidget* TweakSections::makeSection(const TweakSection& section) {
    auto* const view = new PerformanceGroupedSection(section.title);
    for (const TweakDescription& described : section.tweaks) {
        const Tweak& tweak = *findTweak(described.key);
        auto* const toggle =
            new TweakToggle(tweak.key, tweak.title, described.text, tweakNote(tweak.key, m_systemVersion));
        connect(toggle, &TweakToggle::isSelectedChanged, this, [this, &tweak](bool isSelected) {
            PerformanceSettings settings = m_workingCopy.settings();
            settings.*tweak.isSelected = isSelected;
            m_workingCopy.setSettings(settings);
        });
        connect(toggle, &TweakToggle::iconSelected, this, [this, &tweak](const QString& icon) {
            PerformanceSettings settings = m_workingCopy.settings();
            settings.customIcons.insert(tweak.key, icon);
            m_workingCopy.setSettings(settings);
        });
        m_toggles.insert(tweak.key, toggle);
        view->card().addRow(toggle);
    }
    return view;
}

void TweakSections::takeSettings() {
    const PerformanceSettings& settings = m_workingCopy.settings();
    for (const Tweak& tweak : tweakCatalogue()) {
        m_toggles.value(tweak.key)->setState(settings.*tweak.isSelected, tweakIcon(settings, tweak));
    }
}

} // namespace quorvane
