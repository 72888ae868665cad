#include "ui/pieces/SwitchRow.h"

#include "ui/pieces/AppSwitch.h"
#include "ui/pieces/SymbolView.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QVBoxLayout>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Stays as it is when it is clicked.
class AskingSwitch : public AppSwitch {
protected:
    void nextCheckState() override {}
};

} // namespace

SwitchRow::SwitchRow(const RowText& text, BadgeColor tint, QWidget* parent)
    : QWidget(parent)
    , m_description(text.subtitle)
    , m_switch(new AskingSwitch)
    , m_note(new TextLabel(TextStyle::Secondary, TextTone::Warning)) {
    auto* const layout = new QHBoxLayout(this);
    constexpr int kRight = Theme::kGap12 - Theme::kRingRoom;
    layout->setContentsMargins(Theme::kGap12, Theme::kGap8, kRight, Theme::kGap8);
    layout->setSpacing(Theme::kGap12);
    setMinimumHeight(Theme::kRow);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(new TextLabel(TextStyle::RowTitle, TextTone::Normal, text.title));
    texts->addWidget(new TextLabel(TextStyle::Secondary, TextTone::Secondary, text.subtitle));
    texts->addWidget(m_note);
    layout->addWidget(new PerformanceSymbolBadge(text.symbol, tint));
    layout->addLayout(texts, 1);
    layout->addWidget(m_switch);
    m_switch->setAccessibleName(text.title);
    connect(m_switch, &QCheckBox::clicked, this, [this] { Q_EMIT asked(!m_isOn); });
    connect(m_switch, &QCheckBox::toggled, this, &SwitchRow::moveBack);
    setState(false, {});
}

void SwitchRow::setState(bool isOn, const QString& note) {
    m_isOn = isOn;
    m_switch->setChecked(isOn);
    m_switch->setAccessibleDescription(note.isEmpty() ? m_description : m_description + u". "_s + note);
    m_note->setText(note);
    m_note->setVisible(!note.isEmpty());
}

/// A screen reader moves it without a click.
void SwitchRow::moveBack(bool isOn) {
    if (isOn != m_isOn) {
        m_switch->setChecked(m_isOn);
        Q_EMIT asked(isOn);
    }
}

/// Its text is the switch's target, too.
void SwitchRow::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) {
        m_switch->click();
    }
}

} // namespace quorvane
