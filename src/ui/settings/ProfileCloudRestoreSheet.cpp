#include "ui/settings/ProfileCloudRestoreSheet.h"

#include "actions/SettingsTexts.h"
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

ProfileCloudRestoreSheet::ProfileCloudRestoreSheet(std::shared_ptr<BackupChoice> choice, QWidget* parent)
    : Sheet(parent)
    , m_choice(std::move(choice)) {
    setTitle(kRestoreTitle, kRestoreText);
    setContents(makeContents());
    m_close = new AppSecondaryButton(kClose);
    addButton(m_close);
    connect(m_close, &QPushButton::clicked, m_choice.get(), &SheetModel::dismiss);
    connect(this, &Sheet::closeRequested, m_choice.get(), &SheetModel::dismiss);
    connect(m_choice.get(), &SheetModel::changed, this, &ProfileCloudRestoreSheet::takeChoice);
    takeChoice();
}

QWidget* ProfileCloudRestoreSheet::makeContents() {
    auto* const contents = new QWidget;
    m_contents = new QVBoxLayout(contents);
    m_contents->setContentsMargins(0, 0, 0, 0);
    m_contents->setSpacing(Theme::kGap12);
    m_contents->addWidget(makeState());
    m_contents->addStretch(1);
    return contents;
}

QWidget* ProfileCloudRestoreSheet::makeState() {
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

QWidget* ProfileCloudRestoreSheet::makeRow(const BackupRow& row) {
    auto* const view = new QWidget;
    auto* const layout = new QHBoxLayout(view);
    layout->setContentsMargins(Theme::kGap12, Theme::kGap8, Theme::kGap12, Theme::kGap8);
    layout->setSpacing(Theme::kGap12);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(2);
    texts->addWidget(new TextLabel(TextStyle::RowTitle, TextTone::Normal, row.text.title));
    texts->addWidget(new TextLabel(TextStyle::Secondary, TextTone::Secondary, row.text.subtitle));
    auto* const restore = new AppSecondaryButton(kRestore);
    restore->setAccessibleName(kRestore + u": "_s + row.text.title);
    restore->setAccessibleDescription(row.text.subtitle);
    layout->addWidget(new PerformanceSymbolBadge(row.text.symbol, BadgeColor::Blue));
    layout->addLayout(texts, 1);
    layout->addWidget(restore);
    connect(restore, &QPushButton::clicked, m_choice.get(),
            [choice = m_choice.get(), id = row.id] { choice->restore(id); });
    m_restoreButtons.append(restore);
    return view;
}

void ProfileCloudRestoreSheet::showEvent(QShowEvent* event) {
    Sheet::showEvent(event);
    orderTabs();
    if (focusWidget() == nullptr) {
        m_close->setFocus(Qt::OtherFocusReason);
    }
}

/// From top to bottom, although rows come later than the button below them.
void ProfileCloudRestoreSheet::orderTabs() {
    const QList<QPushButton*> buttons = m_restoreButtons + QList<QPushButton*>{m_close};
    for (qsizetype index = 1; index < buttons.size(); ++index) {
        setTabOrder(buttons.at(index - 1), buttons.at(index));
    }
}

void ProfileCloudRestoreSheet::takeChoice() {
    takeRows();
    const QString text = m_choice->text();
    m_ring->setVisible(m_choice->isRestoring() || (m_choice->isLoading() && !m_choice->hasFailed()));
    m_text->setTone(m_choice->hasFailed() && !m_choice->isRestoring() ? TextTone::Danger : TextTone::Secondary);
    if (m_text->text() != text) {
        m_text->setText(text);
        if (!text.isEmpty()) {
            announce(m_text, text);
        }
    }
    m_text->parentWidget()->setVisible(!text.isEmpty());
    takeRestoring();
    Q_EMIT contentsChanged();
}

/// Nothing can be pressed while it restores; afterwards what was pressed has the focus again.
void ProfileCloudRestoreSheet::takeRestoring() {
    const bool isRestoring = m_choice->isRestoring();
    const bool wasRestoring = std::exchange(m_isRestoring, isRestoring);
    if (isRestoring && !wasRestoring) {
        m_pressedBackup = focusedBackup();
        if (focusWidget() != nullptr) {
            parkFocus(focusWidget());
        }
    }
    for (QPushButton* const button : std::as_const(m_restoreButtons)) {
        button->setEnabled(!isRestoring);
    }
    m_close->setEnabled(!isRestoring);
    if (wasRestoring && !isRestoring) {
        focusBackup(m_pressedBackup);
    }
}

/// Those that come later stand among those that were here: all are made anew then.
void ProfileCloudRestoreSheet::takeRows() {
    if (m_shownRows == m_choice->rows()) {
        return;
    }
    const std::optional<QString> focused = focusedBackup();
    m_shownRows = m_choice->rows();
    m_restoreButtons.clear();
    delete std::exchange(m_card, nullptr);
    if (!m_shownRows.isEmpty()) {
        m_card = new AppCard;
        for (const BackupRow& row : std::as_const(m_shownRows)) {
            m_card->addRow(makeRow(row));
        }
        m_contents->insertWidget(0, m_card);
        orderTabs();
    }
    if (focused) {
        focusBackup(focused);
    }
}

/// The one whose button the keys go to; none where they go elsewhere.
std::optional<QString> ProfileCloudRestoreSheet::focusedBackup() const {
    for (qsizetype row = 0; row < m_restoreButtons.size(); ++row) {
        if (m_restoreButtons.at(row) == focusWidget()) {
            return m_shownRows.at(row).id;
        }
    }
    return std::nullopt;
}

/// @param id  none, or of one that has gone: the keys go to the button below
void ProfileCloudRestoreSheet::focusBackup(const std::optional<QString>& id) {
    QPushButton* button = m_close;
    for (qsizetype row = 0; row < m_restoreButtons.size(); ++row) {
        if (m_shownRows.at(row).id == id) {
            button = m_restoreButtons.at(row);
        }
    }
    button->setFocus(Qt::OtherFocusReason);
}

} // namespace quorvane
