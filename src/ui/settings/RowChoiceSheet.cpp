#include "ui/settings/RowChoiceSheet.h"

#include "actions/WindowTexts.h"
#include "ui/pieces/Announcement.h"
#include "ui/pieces/AppButtons.h"
#include "ui/pieces/AppCard.h"
#include "ui/pieces/ParkedFocus.h"
#include "ui/pieces/ProgressRing.h"
#include "ui/pieces/SymbolView.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kLoadingRing = 20;

} // namespace

RowChoiceSheet::RowChoiceSheet(std::shared_ptr<RowChoice> choice, QWidget* parent)
    : Sheet(parent)
    , m_choice(std::move(choice)) {
    setTitle(m_choice->texts().title, m_choice->texts().text);
    setContents(makeContents());
    m_close = new AppSecondaryButton(kClose);
    addButton(m_close);
    connect(m_close, &QPushButton::clicked, m_choice.get(), &SheetModel::dismiss);
    connect(this, &Sheet::closeRequested, m_choice.get(), &SheetModel::dismiss);
    connect(m_choice.get(), &SheetModel::changed, this, &RowChoiceSheet::takeChoice);
    takeChoice();
}

QWidget* RowChoiceSheet::makeContents() {
    auto* const contents = new QWidget;
    m_contents = new QVBoxLayout(contents);
    m_contents->setContentsMargins(0, 0, 0, 0);
    m_contents->setSpacing(Theme::kGap12);
    m_contents->addWidget(makeState());
    m_contents->addStretch(1);
    return contents;
}

QWidget* RowChoiceSheet::makeState() {
    auto* const state = new QWidget;
    auto* const line = new QHBoxLayout(state);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(Theme::kGap8);
    m_ring = new ProgressRing(kLoadingRing);
    m_text = new TextLabel(TextStyle::Body);
    line->addWidget(m_ring);
    line->addWidget(m_text, 1);
    return state;
}

QWidget* RowChoiceSheet::makeRow(const ChoosableRow& row) {
    auto* const view = new QWidget;
    auto* const layout = new QHBoxLayout(view);
    layout->setContentsMargins(Theme::kGap12, Theme::kGap8, Theme::kGap12, Theme::kGap8);
    layout->setSpacing(Theme::kGap12);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(new TextLabel(TextStyle::RowTitle, TextTone::Normal, row.text.title));
    texts->addWidget(new TextLabel(TextStyle::Secondary, TextTone::Secondary, row.text.subtitle));
    if (!row.note.isEmpty()) {
        texts->addWidget(new TextLabel(TextStyle::Secondary, TextTone::Secondary, row.note));
    }
    layout->addWidget(new PerformanceSymbolBadge(row.text.symbol, BadgeColor::Blue));
    layout->addLayout(texts, 1);
    layout->addWidget(makeEnd(row));
    return view;
}

/// The button of a row, or what stands in its place.
QWidget* RowChoiceSheet::makeEnd(const ChoosableRow& row) {
    if (!row.canBeChosen) {
        m_rowButtons.append(nullptr);
        return new TextLabel(TextStyle::Secondary, TextTone::Secondary, row.mark);
    }
    auto* const button = new AppSecondaryButton(m_choice->texts().button);
    button->setAccessibleName(m_choice->texts().button + u": "_s + row.text.title);
    button->setAccessibleDescription(row.note.isEmpty() ? row.text.subtitle : row.text.subtitle + u' ' + row.note);
    connect(button, &QPushButton::clicked, m_choice.get(),
            [choice = m_choice.get(), id = row.id] { choice->choose(id); });
    m_rowButtons.append(button);
    return button;
}

void RowChoiceSheet::showEvent(QShowEvent* event) {
    Sheet::showEvent(event);
    orderTabs();
    if (focusWidget() == nullptr) {
        m_close->setFocus(Qt::OtherFocusReason);
    }
}

/// From top to bottom, although rows come later than the button below them.
void RowChoiceSheet::orderTabs() {
    QList<QPushButton*> buttons = m_rowButtons + QList<QPushButton*>{m_close};
    buttons.removeAll(nullptr);
    for (qsizetype index = 1; index < buttons.size(); ++index) {
        setTabOrder(buttons.at(index - 1), buttons.at(index));
    }
}

void RowChoiceSheet::takeChoice() {
    takeRows();
    const QString text = m_choice->text();
    m_ring->setVisible(m_choice->isCarryingOut() || (m_choice->isLoading() && !m_choice->hasFailed()));
    m_text->setTone(m_choice->hasFailed() && !m_choice->isCarryingOut() ? TextTone::Danger : TextTone::Secondary);
    if (m_text->text() != text) {
        m_text->setText(text);
        if (!text.isEmpty()) {
            announce(m_text, text);
        }
    }
    m_text->parentWidget()->setVisible(!text.isEmpty());
    takeCarryingOut();
    Q_EMIT contentsChanged();
}

/// Nothing can be pressed while it carries one out; afterwards what was pressed has the focus again.
void RowChoiceSheet::takeCarryingOut() {
    const bool isCarryingOut = m_choice->isCarryingOut();
    const bool wasCarryingOut = std::exchange(m_isCarryingOut, isCarryingOut);
    if (isCarryingOut && !wasCarryingOut) {
        m_pressedRow = focusedRow();
        if (focusWidget() != nullptr) {
            parkFocus(focusWidget());
        }
    }
    for (QPushButton* const button : std::as_const(m_rowButtons)) {
        if (button != nullptr) {
            button->setEnabled(!isCarryingOut);
        }
    }
    m_close->setEnabled(!isCarryingOut);
    if (wasCarryingOut && !isCarryingOut) {
        focusRow(m_pressedRow);
    }
}

/// Those that come later stand among those that were here: all are made anew then.
void RowChoiceSheet::takeRows() {
    if (m_shownRows == m_choice->rows()) {
        return;
    }
    const std::optional<QString> focused = focusedRow();
    m_shownRows = m_choice->rows();
    m_rowButtons.clear();
    delete std::exchange(m_card, nullptr);
    if (!m_shownRows.isEmpty()) {
        m_card = new AppCard;
        for (const ChoosableRow& row : std::as_const(m_shownRows)) {
            m_card->addRow(makeRow(row));
        }
        m_contents->insertWidget(0, m_card);
        m_card->show(); // in this turn: the sheet is as high as what is shown
        orderTabs();
    }
    if (focused) {
        focusRow(focused);
    }
}

/// The one whose button the keys go to; none where they go elsewhere.
std::optional<QString> RowChoiceSheet::focusedRow() const {
    for (qsizetype row = 0; row < m_rowButtons.size(); ++row) {
        if (m_rowButtons.at(row) != nullptr && m_rowButtons.at(row) == focusWidget()) {
            return m_shownRows.at(row).id;
        }
    }
    return std::nullopt;
}

/// @param id  none, or of one that has gone: the keys go to the button below
void RowChoiceSheet::focusRow(const std::optional<QString>& id) {
    QPushButton* button = m_close;
    for (qsizetype row = 0; row < m_rowButtons.size(); ++row) {
        if (m_shownRows.at(row).id == id && m_rowButtons.at(row) != nullptr) {
            button = m_rowButtons.at(row);
        }
    }
    button->setFocus(Qt::OtherFocusReason);
}

} // namespace quorvane
