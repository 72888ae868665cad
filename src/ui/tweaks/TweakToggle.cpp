#include "ui/tweaks/TweakToggle.h"

#include "actions/PageTexts.h"
#include "ui/pieces/AppSwitch.h"
#include "ui/pieces/IconButton.h"
#include "ui/pieces/Popover.h"
#include "ui/pieces/TextLabel.h"
#include "ui/tweaks/IconPicker.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace quorvane {

using namespace Qt::StringLiterals;

TweakToggle::TweakToggle(const QString& tweakKey, const QString& title, const QString& description, const QString& note,
                         QWidget* parent)
    : QWidget(parent)
    , m_tweakKey(tweakKey)
    , m_title(title)
    , m_iconButton(new IconButton)
    , m_switch(new AppSwitch) {
    auto* const layout = new QHBoxLayout(this);
    // The rings of the controls at both ends have room of their own.
    constexpr int kOutside = Theme::kGap12 - IconButton::kRingMargin;
    layout->setContentsMargins(kOutside, Theme::kGap8, kOutside, Theme::kGap8);
    layout->setSpacing(kOutside);
    setMinimumHeight(Theme::kRow);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(new TextLabel(TextStyle::RowTitle, TextTone::Normal, title));
    texts->addWidget(new TextLabel(TextStyle::Secondary, TextTone::Secondary, description));
    if (!note.isEmpty()) {
        texts->addWidget(new TextLabel(TextStyle::Secondary, TextTone::Warning, note));
    }
    layout->addWidget(m_iconButton);
    layout->addLayout(texts, 1);
    layout->addWidget(m_switch);
    m_switch->setAccessibleName(title);
    m_switch->setAccessibleDescription(note.isEmpty() ? description : description + u" — "_s + note);
    m_iconButton->setAccessibleName(u"Icon of "_s + title);
    m_iconButton->setAccessibleDescription(kSelectIcon);
    m_iconButton->setToolTip(kSelectIcon);
    connect(m_switch, &QCheckBox::clicked, this, &TweakToggle::isSelectedChanged);
    connect(m_iconButton, &QAbstractButton::clicked, this, &TweakToggle::pickIcon);
}

void TweakToggle::setState(bool isSelected, const QString& icon) {
    m_icon = icon;
    m_switch->setChecked(isSelected);
    m_iconButton->setSymbol(icon, isSelected ? BadgeColor::Blue : BadgeColor::Grey);
}

/// Its text is the switch's target, too.
void TweakToggle::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
        m_switch->click();
    }
}

void TweakToggle::pickIcon() {
    auto* const picker = new IconPicker(m_icon);
    auto* const popover = new Popover(picker, m_iconButton);
    connect(picker, &IconPicker::iconSelected, this, &TweakToggle::iconSelected);
    connect(picker, &IconPicker::iconSelected, popover, &Popover::close);
}

} // namespace quorvane
