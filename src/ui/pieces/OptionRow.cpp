#include "ui/pieces/OptionRow.h"

#include "ui/Theme.h"
#include "ui/pieces/AppSwitch.h"
#include "ui/pieces/TextLabel.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace quorvane {

OptionRow::OptionRow(const QString& title, const QString& description, QWidget* parent)
    : QWidget(parent)
    , m_description(new TextLabel(TextStyle::Secondary, TextTone::Secondary))
    , m_switch(new AppSwitch) {
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(Theme::kGap12, Theme::kGap8, Theme::kGap12, Theme::kGap8);
    layout->setSpacing(Theme::kGap12);
    setMinimumHeight(Theme::kRow);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(new TextLabel(TextStyle::RowTitle, TextTone::Normal, title));
    texts->addWidget(m_description);
    layout->addLayout(texts, 1);
    layout->addWidget(m_switch);
    m_switch->setAccessibleName(title);
    setDescription(description);
    setFocusProxy(m_switch);
    connect(m_switch, &QCheckBox::clicked, this, &OptionRow::switched);
}

void OptionRow::setDescription(const QString& description) {
    m_description->setText(description);
    m_description->setVisible(!description.isEmpty());
    m_switch->setAccessibleDescription(description);
}

void OptionRow::setChecked(bool isChecked) {
    m_switch->setChecked(isChecked);
}

bool OptionRow::isChecked() const {
    return m_switch->isChecked();
}

void OptionRow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
        m_switch->click();
    }
}

} // namespace quorvane
