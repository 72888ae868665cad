#include "ui/services/CheckPage.h"

#include "actions/Session.h"
#include "ui/ViewEnvironment.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/AppSection.h"
#include "ui/pieces/IdleGuard.h"
#include "ui/pieces/PinnedBar.h"
#include "ui/pieces/ScrollPage.h"

#include <QVBoxLayout>

namespace quorvane {

CheckPage::CheckPage(const ViewEnvironment& environment, const QString& executeTitle, QWidget* parent)
    : QWidget(parent)
    , m_page(new ScrollPage)
    , m_execute(new AppPrimaryButton(executeTitle)) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_page, 1);
    connect(m_execute, &QPushButton::clicked, this, &CheckPage::executed);
    new IdleGuard(this, environment.session.turnstile);
}

void CheckPage::addSection(const QString& title, const QList<QCheckBox*>& toggles) {
    auto* const section = new AppSection(title);
    for (QCheckBox* const toggle : toggles) {
        section->card().addRow(toggle);
    }
    m_page->addPart(section);
    m_toggles.append(toggles);
}

void CheckPage::finish() {
    m_page->finish();
    auto* const bar = new PinnedBar; // comes behind the boxes for the Tab key, too
    bar->addButton(m_execute);
    layout()->addWidget(bar);
    updateExecutable();
}

void CheckPage::untick() {
    for (QCheckBox* const toggle : std::as_const(m_toggles)) {
        toggle->setChecked(false);
    }
}

void CheckPage::updateExecutable() {
    m_execute->setEnabled(canExecute());
}

} // namespace quorvane
